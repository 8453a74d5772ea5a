#pragma once

#include "base/Export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace VQ::Animation {

/// One character of a text in UTF-8.
struct Utf8Character {
    char32_t code;
    std::size_t length; ///< in bytes; 0 when there is no character in its one right form
};

/// The character at @p position of @p text, which must be inside it. Overlong forms, surrogates and numbers
/// beyond U+10FFFF are no characters.
VQ_EXPORT Utf8Character utf8CharacterAt(std::string_view text, std::size_t position) noexcept;

/// The beginning of any bytes as a message quotes them: at most 40 characters, whole ones, with '?' for
/// control characters and for bytes that are not UTF-8.
VQ_EXPORT std::string inQuotes(std::string_view text);

} // namespace VQ::Animation
