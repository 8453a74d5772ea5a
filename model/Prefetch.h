#pragma once

namespace ZT {

/// Has the processor fetch the memory at @p address, which will be read soon. No more than a hint, also for
/// an address that is not valid.
inline void prefetch(const void* address) noexcept {
#if defined(__GNUC__)
    __builtin_prefetch(address);
#else
    static_cast<void>(address);
#endif
}

} // namespace ZT
