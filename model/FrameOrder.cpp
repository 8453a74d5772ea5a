#include "model/FrameOrder.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ZT {

// Radix sort by the frames' bytes, the lowest first. A byte that is the same in all frames is passed over.
void FrameOrder::_sort() {
    constexpr std::size_t few = 256;
    if (_numbers.size() < few) {
        std::sort(_numbers.begin(), _numbers.end());
        return;
    }
    constexpr unsigned int byteBits = 8;
    constexpr std::size_t bytes = 256;
    std::vector<std::uint64_t> sorted(_numbers.size());
    for (unsigned int shift = 32; shift < 64; shift += byteBits) {
        const auto byteOf = [shift](std::uint64_t number) {
            return static_cast<std::size_t>((number >> shift) % bytes);
        };
        std::array<std::size_t, bytes> starts{};
        for (const std::uint64_t number : _numbers) {
            ++starts[byteOf(number)];
        }
        if (starts[byteOf(_numbers.front())] == _numbers.size()) {
            continue;
        }
        std::size_t start = 0;
        for (std::size_t& each : starts) {
            start += std::exchange(each, start);
        }
        for (const std::uint64_t number : _numbers) {
            sorted[starts[byteOf(number)]++] = number;
        }
        _numbers.swap(sorted);
    }
}

void FrameOrder::reverse() noexcept {
    std::reverse(_numbers.begin(), _numbers.end());
}

} // namespace ZT
