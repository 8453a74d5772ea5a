#include "MemoryShortage.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();
std::size_t tooMuch = none;

} // namespace

MemoryShortage::MemoryShortage(std::size_t atLeast) noexcept {
    tooMuch = atLeast;
}

MemoryShortage::~MemoryShortage() {
    tooMuch = none;
}

void* operator new(std::size_t size) {
    void* const memory = size >= tooMuch ? nullptr : std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
