#pragma once

#include "document/LayerLook.h"
#include "model/EditableAnimation.h"

#include <memory>
#include <optional>
#include <vector>

namespace Editor {

/// Frames of AnimationMarkers.
struct MarkerFrames {
    unsigned int selected = 1;
    unsigned int start = 1;
    unsigned int end = 1;
    unsigned int rangeStart = 1;
    unsigned int rangeEnd = 1;
    bool isRangeVisible = false;
};

/// An animation as it comes from a file, with what only the editor knows of it. What a file does not say is
/// missing.
struct AnimationData {
    std::unique_ptr<ZT::EditableAnimation> animation; ///< never null
    std::vector<std::optional<LayerLook>> looks;      ///< by layer; may be shorter than the list of layers
    std::optional<MarkerFrames> markers;
};

} // namespace Editor
