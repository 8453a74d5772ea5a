#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

/// Reads decisions from a fuzzer's bytes. Behind the last byte all decisions are 0.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) noexcept
        : _next(data)
        , _end(data + size) {}

    bool isAtEnd() const noexcept { return _next == _end; }

    std::uint8_t byte() noexcept { return isAtEnd() ? std::uint8_t{0} : *_next++; }

    /// From 0 to below @p count.
    unsigned int below(unsigned int count) noexcept { return byte() % count; }

    bool yesOrNo() noexcept { return below(2) == 1; }

    template <class Item, std::size_t count>
    const Item& oneOf(const std::array<Item, count>& items) noexcept {
        return items.at(below(static_cast<unsigned int>(count)));
    }

    /// Up to @p longest characters of any kind.
    std::string text(unsigned int longest) {
        const std::size_t length = std::min<std::size_t>(below(longest + 1), left());
        std::string result(_next, _next + length);
        _next += length;
        return result;
    }

    std::uint32_t word() noexcept {
        std::uint32_t result = 0;
        for (int i = 0; i < 4; ++i) {
            result = result << 8U | byte();
        }
        return result;
    }

private:
    std::size_t left() const noexcept { return static_cast<std::size_t>(_end - _next); }

    const std::uint8_t* _next;
    const std::uint8_t* _end;
};
