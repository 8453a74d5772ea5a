#pragma once

#include "commands/Export.h"

#include <QDebug>
#include <QUndoCommand>

#include <iosfwd>

// Commands on one line, for qDebug() and failing tests; including this header is all that QDebug and
// GoogleTest need. The functions stand where QUndoCommand does, so that what a stack gives is found, too.

/// "command "Move one key", final"; a command that may take in further steps of its drag says "open", one
/// that never merges neither. "no command" for null.
///@{
ZT_COMMANDS_EXPORT QDebug operator<<(QDebug debug, const QUndoCommand* command);
ZT_COMMANDS_EXPORT std::ostream& operator<<(std::ostream& stream, const QUndoCommand& command);
ZT_COMMANDS_EXPORT void PrintTo(const QUndoCommand* command, std::ostream* stream);
// GoogleTest's own printer of pointers would suit pointers to what may be changed better.
inline void PrintTo(QUndoCommand* command, std::ostream* stream) {
    PrintTo(static_cast<const QUndoCommand*>(command), stream);
}
///@}
