#include "memory/HeapCounter.h"

#include <malloc.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <fstream>

// The C library's allocator under names that stay its own.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp): the reserved names are the C
// library's
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

namespace {

std::atomic<std::size_t> liveBytes{0};

void* counted(void* block) noexcept {
    liveBytes += block == nullptr ? 0 : malloc_usable_size(block);
    return block;
}

void uncount(void* block) noexcept {
    liveBytes -= block == nullptr ? 0 : malloc_usable_size(block);
}

} // namespace

// The program's own definitions go before those of the C library everywhere, if they can be seen.
#pragma GCC visibility push(default)
extern "C" {

void* malloc(std::size_t size) noexcept {
    return counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    return counted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) noexcept {
    const std::size_t before = block == nullptr ? 0 : malloc_usable_size(block);
    void* const moved = __libc_realloc(block, size);
    if (moved == nullptr && size != 0) {
        return nullptr; // The block is as it was.
    }
    liveBytes -= before;
    return counted(moved);
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    return counted(__libc_memalign(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return counted(__libc_memalign(alignment, size));
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    void* const aligned = counted(__libc_memalign(alignment, size));
    if (aligned == nullptr) {
        return ENOMEM;
    }
    *block = aligned;
    return 0;
}

void free(void* block) noexcept {
    uncount(block);
    __libc_free(block);
}
}
#pragma GCC visibility pop

namespace Memory {

std::size_t heapBytes() noexcept {
    return liveBytes;
}

std::size_t residentBytes() {
    std::size_t total = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

} // namespace Memory
