#pragma once

#include <cstddef>

/// While it lives, one allocation by operator new throws std::bad_alloc: the n-th from its beginning, counted
/// from 1.
///
/// Not counted is what Qt cannot stand, and whatever else is as large as the second of these: its containers
/// call malloc and end the program where that fails; and a receiver's first connection, where the object's
/// connection data cannot be allocated, is left in the sender's list after it was freed
/// (QObjectPrivate::addConnection() of Qt 5.15).
class AllocationFailure {
public:
    explicit AllocationFailure(std::size_t n);
    AllocationFailure(const AllocationFailure&) = delete;
    AllocationFailure& operator=(const AllocationFailure&) = delete;
    ~AllocationFailure();

    /// Whether so many allocations were made.
    bool hasHappened() const noexcept;
};
