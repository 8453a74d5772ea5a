#pragma once

#include "model/Export.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ZT {

/// The positions of a list's items in ascending order of their frames; items of one frame keep their
/// order. O(n): containers of keys are walked in the order of addresses, which often is not that of frames,
/// and sorting by comparison would cost more than moving the keys.
class ZT_MODEL_EXPORT FrameOrder {
public:
    /// @p frameOf gives an item's frame.
    template <class Items, class FrameOf>
    FrameOrder(const Items& items, FrameOf frameOf) {
        _numbers.reserve(static_cast<std::size_t>(items.size()));
        std::uint64_t last = 0;
        bool isInOrder = true;
        for (const auto& item : items) {
            const std::uint64_t frame = frameOf(item);
            const std::uint64_t number = frame << 32U | _numbers.size();
            isInOrder = isInOrder && last <= number;
            last = number;
            _numbers.push_back(number);
        }
        if (!isInOrder) {
            _sort();
        }
    }

    void reverse() noexcept;

    /// Gives positions.
    class iterator {
    public:
        explicit iterator(const std::uint64_t* number) noexcept
            : _number(number) {}
        std::size_t operator*() const noexcept { return static_cast<std::uint32_t>(*_number); }
        iterator& operator++() noexcept {
            ++_number;
            return *this;
        }
        bool operator!=(const iterator& other) const noexcept { return _number != other._number; }

    private:
        const std::uint64_t* _number;
    };
    std::size_t size() const noexcept { return _numbers.size(); }
    std::size_t operator[](std::size_t i) const noexcept { return static_cast<std::uint32_t>(_numbers[i]); }
    iterator begin() const noexcept { return iterator(_numbers.data()); }
    iterator end() const noexcept { return iterator(_numbers.data() + _numbers.size()); }

private:
    void _sort();

    std::vector<std::uint64_t> _numbers; ///< an item's frame in the upper half, its position in the lower
};

} // namespace ZT
