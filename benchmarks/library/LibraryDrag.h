#pragma once

#include "support/CurveRows.h"

namespace Bench {

/// Drags as an editor does them: each step is a command that an undo stack merges with the one before.
class LibraryDragOperations : public DragOperations {
public:
    Operation dragging(const Setting& setting) const override;
    Operation draggingHeardKeys(const Setting& setting) const override;
};

} // namespace Bench
