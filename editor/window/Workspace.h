#pragma once

#include "curves/ViewAxis.h"
#include "document/Document.h"
#include "document/Drag.h"
#include "document/KeyClipboard.h"
#include "document/KeyEdits.h"
#include "document/Playback.h"
#include "window/SelectionState.h"

#include <memory>

namespace Editor {

/// A document with what edits, plays and shows it. Outlives the widgets, which refer to its parts.
struct Workspace {
    Document document;
    Drag drag{document};
    KeyEdits edits{document};
    KeyClipboard clipboard{document};
    Playback playback{document};
    SelectionState selection{document};
    std::unique_ptr<ViewAxis> frames{
        ViewAxis::forFrames(nullptr)}; ///< never null; shared by curves and timeline
};

} // namespace Editor
