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
    /// Makes room for the keys of a walk, where fetching so many ahead is worth while. May throw; afterwards
    /// nothing does.
    void expect(std::size_t count) { _steps.reserve(count < worthPrefetching ? 0 : count); }

    /// The walk came to @p key, whose element in the map is at @p position. Without room it goes unnoted.
    template <class Position>
    void note(const EditableMotionCurveKey* key, Position position) noexcept {
        if (_steps.size() < _steps.capacity()) {
            _steps.push_back({key, &*position});
        }
    }

    /// The next walk goes in the other direction, if @p isBackwards.
    void turn(bool isBackwards) noexcept {
        if (isBackwards) {
            std::reverse(_steps.begin(), _steps.end());
        }
    }

    std::size_t size() const noexcept { return _steps.size(); }

    /// The walk is at @p key. Fetches what comes next; gives up for good where the walk never meets the key
    /// that the trail expects.
    template <class Key>
    void follow(const Key* key) noexcept {
        if (_next == _steps.size() || _steps[_next].key != key) {
            return;
        }
        ++_next;
        if (_next + distance < _steps.size()) {
            const auto& [coming, element] = _steps[_next + distance];
            prefetch(static_cast<const Key*>(coming));
            prefetch(static_cast<const char*>(element), nodeLinks);
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
