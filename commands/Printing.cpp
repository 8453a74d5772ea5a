#include "commands/Printing.h"

#include "commands/MergeableCommand.h"

#include <QDebugStateSaver>

#include <ostream>

namespace {

QString textOf(const QUndoCommand* command) {
    if (command == nullptr) {
        return QStringLiteral("no command");
    }
    const auto* const step = dynamic_cast<const ZT::MergeableCommand*>(command);
    const char* const drag = step == nullptr ? "" : step->isFinalCommand() ? ", final" : ", open";
    return QStringLiteral("command \"%1\"%2").arg(command->text(), QString::fromUtf8(drag));
}

} // namespace

QDebug operator<<(QDebug debug, const QUndoCommand* command) {
    const QDebugStateSaver saver(debug);
    debug.noquote().nospace() << textOf(command);
    return debug;
}

std::ostream& operator<<(std::ostream& stream, const QUndoCommand& command) {
    return stream << textOf(&command).toStdString();
}

void PrintTo(const QUndoCommand* command, std::ostream* stream) {
    *stream << textOf(command).toStdString();
}
