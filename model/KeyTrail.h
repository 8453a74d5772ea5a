#pragma once

#include "model/Prefetch.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace ZT {

class EditableMotionCurveKey;

/// Keys in the order in which a walk over the curve came to them, for the next walk to fetch ahead. A map
/// leads from each node only to the next one, and waits for memory there; the trail names them all. It holds
/// addresses that are never read: keys on it may be dead by then.
class KeyTrail {
public:
    void reserve(std::size_t count) { _steps.reserve(count); }

    /// The walk came to @p key, whose element in the map is @p node.
    template <class Position>
    void note(const EditableMotionCurveKey* key, Position node) {
        _steps.push_back({key, &*node});
    }

    /// For a walk in the other direction.
    void reverse() { std::reverse(_steps.begin(), _steps.end()); }

    std::size_t size() const noexcept { return _steps.size(); }

    /// The walk is at @p key. Fetches what comes next, if the trail leads there.
    template <class Key>
    void follow(const Key* key) noexcept {
        if (_next == _steps.size() || _steps[_next].key != key) {
            return;
        }
        ++_next;
        if (_next + distance < _steps.size()) {
            const auto& [coming, element] = _steps[_next + distance];
            prefetch(static_cast<const Key*>(coming));
            prefetch(static_cast<const char*>(element), 4 * sizeof(void*));
        }
    }

private:
    struct Step {
        const void* key;
        const void* element;
    };
    static constexpr std::size_t distance = 8;

    std::vector<Step> _steps;
    std::size_t _next = 0;
};

} // namespace ZT
