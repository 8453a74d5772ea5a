#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <vector>

/// What every benchmark works on. Knows neither the library nor Qt, so that library and floor get the same.
namespace Bench {

/// The sizes at which most rows are measured.
constexpr std::array<std::size_t, 3> usualSizes{1000, 10000, 100000};

/// How the addresses of a curve's keys lie relative to their frames.
enum class Layout { frameOrder, randomAddresses };

/// One row's size: a curve of n keys in a layout.
struct Setting {
    Layout layout;
    std::size_t n;

    std::string text() const {
        return (layout == Layout::frameOrder ? "frame order/" : "random addresses/") + std::to_string(n);
    }
};

/// The frame of the i-th key where keys have a free frame between them.
inline unsigned int gapFrame(std::size_t i) {
    return static_cast<unsigned int>(2 * i + 10);
}

/// The frame of the i-th key where every frame holds one.
inline unsigned int denseFrame(std::size_t i) {
    return static_cast<unsigned int>(i + 10);
}

/// The value of the i-th key: a smooth wave with noise, so that neighbours differ in size and direction.
inline float waveValue(std::size_t i) {
    std::uint32_t noise = static_cast<std::uint32_t>(i) * 2654435761U;
    noise = (noise ^ (noise >> 15U)) * 2246822519U;
    const double unit = static_cast<double>(noise >> 8U) / 16777216.0;
    return static_cast<float>(10.0 * std::sin(0.05 * static_cast<double>(i)) + unit - 0.5);
}

/// n keys from @p makeKey(i), in the order of the frames that they shall get.
template <class MakeKey>
auto allocateKeys(const Setting& setting, MakeKey makeKey) {
    std::vector<decltype(makeKey(std::size_t{}))> keys(setting.n);
    for (std::size_t i = 0; i < setting.n; ++i) {
        keys[i] = makeKey(i);
    }
    // A used heap hands out addresses in any order.
    std::sort(keys.begin(), keys.end(), std::less<>());
    if (setting.layout == Layout::randomAddresses) {
        std::shuffle(keys.begin(), keys.end(), std::mt19937(20011)); // NOLINT(cert-msc51-cpp): repeatable
    }
    return keys;
}

} // namespace Bench
