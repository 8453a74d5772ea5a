#include "base/animation/XmlText.h"

#include "base/animation/Utf8.h"

#include <algorithm>
#include <stdexcept>

namespace VQ::Animation {

namespace {

bool isPlain(char letter) noexcept {
    return (letter >= ' ' && letter <= '~') || letter == '\n' || letter == '\t' || letter == '\r';
}

std::string inHexadecimal(char32_t number, std::size_t leastDigits) {
    std::string digits;
    for (; number != 0 || digits.size() < leastDigits; number >>= 4U) {
        digits += "0123456789ABCDEF"[number & 0xfU];
    }
    return {digits.rbegin(), digits.rend()};
}

} // namespace

bool isXmlCharacter(char32_t code) noexcept {
    if (code < 0x20) {
        return code == '\t' || code == '\n' || code == '\r';
    }
    return code <= 0x10ffff && (code < 0xd800 || code > 0xdfff) && code != 0xfffe && code != 0xffff;
}

std::optional<XmlTextFault> findXmlTextFault(std::string_view text) {
    for (std::size_t position = 0; position < text.size();) {
        if (isPlain(text[position])) { // Nearly all of a file.
            ++position;
            continue;
        }
        const auto [code, length] = utf8CharacterAt(text, position);
        if (length == 0) {
            const auto byte = static_cast<unsigned char>(text[position]);
            return XmlTextFault{position, "the byte 0x" + inHexadecimal(byte, 2) + ", which is not UTF-8"};
        }
        if (!isXmlCharacter(code)) {
            return XmlTextFault{position,
                                "the character U+" + inHexadecimal(code, 4) + ", which XML cannot hold"};
        }
        position += length;
    }
    return std::nullopt;
}

void refuseXml(std::string_view text, std::size_t position, const std::string& what) {
    const std::string_view before = text.substr(0, position);
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    throw std::runtime_error("line " + std::to_string(line) + ": " + what);
}

} // namespace VQ::Animation
