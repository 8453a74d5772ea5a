#pragma once

#include "tests/faults/AllocationFailure.h"

#include <functional>
#include <new>

/// Calls @p attempt with the number of the allocation that is to fail, until it says that there was none.
/// Returns how many failed.
inline std::size_t failEachAllocation(const std::function<bool(std::size_t)>& attempt) {
    std::size_t n = 1;
    while (attempt(n)) {
        ++n;
    }
    return n - 1;
}

/// Runs an action, of which the n-th allocation fails. Returns whether there was one.
inline bool runFailing(std::size_t n, const std::function<void()>& action) {
    AllocationFailure failure(n);
    try {
        action();
    } catch (const std::bad_alloc&) {
        return true;
    }
    // Some are made up for where they fail.
    return failure.hasHappened();
}
