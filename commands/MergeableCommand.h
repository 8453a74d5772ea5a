#pragma once

#include "commands/Export.h"

namespace ZT {

/// A command of a drag: the steps of one drag merge into one entry of the history.
class ZT_COMMANDS_EXPORT MergeableCommand {
public:
    virtual ~MergeableCommand();

    /// Whether the command takes no further step of the current drag in: it ended its drag, or it refused the
    /// last step that was offered.
    virtual bool isFinalCommand() const = 0;
};

} // namespace ZT
