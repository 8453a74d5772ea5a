#pragma once

#include "base/animation/AnimationXml.h"

#include <string_view>

namespace VQ::Animation {

/// Checks what the property tree's XML reader does not: that the text declares no other encoding than UTF-8,
/// that it has the root element "animation" and only this one, that every element is closed by its own name,
/// that references stand for characters, and that elements and attributes stay within @p limits. Throws
/// std::runtime_error that names the line. Text that is malformed otherwise is left to the reader. One walk:
/// O(size of @p text).
void requireSoundMarkup(std::string_view text, const XmlLimits& limits);

} // namespace VQ::Animation
