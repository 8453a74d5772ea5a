#pragma once

#include <string>

namespace VQ::Animation {

/// Checks what the property tree's XML reader does not: that every element is closed by its own name, and
/// that elements are nested at most 64 deep, since that reader's stack grows with them. Throws
/// std::runtime_error that names the line. Text that is malformed otherwise is left to the reader.
void requireSoundNesting(const std::string& text);

} // namespace VQ::Animation
