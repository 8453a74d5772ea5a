#pragma once

#include "commands/Export.h"

#include <QDebug>
#include <QUndoCommand>

#include <iosfwd>

// Commands on one line, for qDebug() and failing tests; including this header is all that QDebug and
// GoogleTest need.

namespace ZT::AnimCmd {

/// "command "Move one key", final"; a command that may take in further steps of its drag says "open", one
/// that never merges neither. "no command" for null.
///@{
ZT_COMMANDS_EXPORT QDebug operator<<(QDebug debug, const QUndoCommand* command);
ZT_COMMANDS_EXPORT std::ostream& operator<<(std::ostream& stream, const QUndoCommand& command);
///@}

} // namespace ZT::AnimCmd
