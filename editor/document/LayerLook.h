#pragma once

#include <QColor>

namespace Editor {

/// What only an editor knows of a layer.
struct LayerLook {
    QColor colour;
    bool isVisible = true; ///< in the curve view
    bool isLocked = false; ///< its keys can be seen but not edited

    bool operator==(const LayerLook& other) const {
        return colour == other.colour && isVisible == other.isVisible && isLocked == other.isLocked;
    }
    bool operator!=(const LayerLook& other) const { return !(*this == other); }
};

} // namespace Editor
