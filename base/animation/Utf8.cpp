#include "base/animation/Utf8.h"

#include <array>

namespace VQ::Animation {

namespace {

constexpr int mostQuoted = 40; // characters

constexpr Utf8Character noCharacter{0, 0};

// By how many bytes a character is written, as its first one says.
std::size_t lengthFrom(unsigned char first) noexcept {
    if (first < 0x80U) {
        return 1;
    }
    if (first < 0xc2U || first > 0xf4U) { // Inside a character, an overlong form, or beyond U+10FFFF.
        return 0;
    }
    return first < 0xe0U ? 2 : first < 0xf0U ? 3 : 4;
}

} // namespace

Utf8Character utf8CharacterAt(std::string_view text, std::size_t position) noexcept {
    const auto first = static_cast<unsigned char>(text[position]);
    const std::size_t length = lengthFrom(first);
    if (length < 2) {
        return {first, length};
    }
    char32_t code = first & (0x7fU >> length); // Too small for its length where the text ends before it does.
    for (const char next : text.substr(position + 1, length - 1)) {
        const auto byte = static_cast<unsigned char>(next);
        if ((byte & 0xc0U) != 0x80U) {
            return noCharacter;
        }
        code = code << 6U | (byte & 0x3fU);
    }
    constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
    return code < smallest.at(length) || code > 0x10ffff || isSurrogate ? noCharacter
                                                                        : Utf8Character{code, length};
}

std::string inQuotes(std::string_view text) {
    std::string result = "\"";
    std::size_t position = 0;
    for (int count = 0; position < text.size(); ++count) {
        if (count == mostQuoted) {
            return result + "...\"";
        }
        const auto [code, length] = utf8CharacterAt(text, position);
        const bool isShown = length != 0 && code >= 0x20 && (code < 0x7f || code > 0x9f);
        result += isShown ? text.substr(position, length) : "?";
        position += length == 0 ? 1 : length;
    }
    return result + '"';
}

} // namespace VQ::Animation
