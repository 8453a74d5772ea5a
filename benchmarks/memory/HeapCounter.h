#pragma once

#include <cstddef>

namespace Memory {

/// The bytes in all blocks that the program's heap has given out at this moment, as large as they really are.
///
/// A program that links this counts every block of itself and of all its shared libraries.
std::size_t heapBytes() noexcept;

/// The bytes of memory that the program has in use at this moment, in whole pages.
std::size_t residentBytes();

} // namespace Memory
