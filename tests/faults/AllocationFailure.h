#pragma once

#include <cstddef>

/// While it lives, one allocation by operator new throws std::bad_alloc: the n-th from its beginning, counted
/// from 1.
///
/// Not counted is what Qt's containers allocate by malloc, which a program cannot replace by means of the
/// language; and a receiver's first connection, with whatever else is as large: where the object's connection
/// data cannot be allocated, the connection is left in the sender's list after it was freed
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
