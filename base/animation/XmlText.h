#pragma once

#include "base/Export.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace VQ::Animation {

/// The first place in a text that an XML file in UTF-8 cannot hold.
struct XmlTextFault {
    /// In bytes from the beginning of the text.
    std::size_t position;
    std::string what; ///< "the byte 0xFF, which is not UTF-8"
};

/// Whether XML can hold the character: no control character but tab, line feed and carriage return, no
/// surrogate, neither U+FFFE nor U+FFFF.
bool isXmlCharacter(char32_t code) noexcept;

/// The fault of @p text, such as an actuator's name; nothing when a file can hold it.
VQ_EXPORT std::optional<XmlTextFault> findXmlTextFault(std::string_view text);

/// Throws std::runtime_error "line N: what", with the line of @p position in @p text.
[[noreturn]] void refuseXml(std::string_view text, std::size_t position, const std::string& what);

} // namespace VQ::Animation
