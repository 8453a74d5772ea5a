#pragma once

#include "base/TangentSide.h"
#include "document/KeySelection.h"

#include <optional>

namespace Editor {

class Document;

/// The numbers of the "bezier" handles that some keys have on one side.
class HandleNumbers {
public:
    /// The two numbers of a handle, relative to its key.
    enum class Number {
        frames,
        value,
    };

    HandleNumbers(const KeySelection::Keys& keys, ZT::TangentSide side);

    /// Whether there is no such handle at all.
    bool isEmpty() const noexcept { return _isEmpty; }
    /// What all handles have in common; empty where they differ or there are none.
    std::optional<float> common(Number number) const;

    /// Gives all handles one number; each keeps its other one. One entry of the history, none where nothing
    /// changes. What slots throw is thrown when all is as it was. Handles with a number that is not finite
    /// stay.
    void set(Number number, float to, Document& document) const;

private:
    void _keepIfSame(std::optional<float>& common, float own) const;
    bool _hasHandle(const ZT::EditableMotionCurveKey& key) const;
    float _get(const ZT::EditableMotionCurveKey& key, Number number) const;

    KeySelection::Keys _keys; ///< also those without such a handle, so that none is copied
    ZT::TangentSide _side;
    bool _isEmpty = true;
    std::optional<float> _frames; ///< common ones
    std::optional<float> _value;
};

} // namespace Editor
