#pragma once

#include <cstddef>

/// While one lives, operator new of the program that this is linked to finds no memory in one piece of @p
/// atLeast bytes or more. Qt's own containers do not ask there. Not more than one at a time.
class MemoryShortage {
public:
    explicit MemoryShortage(std::size_t atLeast = 0) noexcept;
    ~MemoryShortage();
    MemoryShortage(const MemoryShortage&) = delete;
    MemoryShortage& operator=(const MemoryShortage&) = delete;
};
