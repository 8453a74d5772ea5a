#include "tests/faults/AllocationFailure.h"

#include <QObject>

#include <cstdlib>
#include <new>

namespace {

struct Counter {
    bool isCounting = false;
    std::size_t left = 0;           ///< until the allocation that is to fail; 0 when none is
    std::size_t sizeNotCounted = 0; ///< of objects that Qt must get
    std::size_t lastSize = 0;
};
Counter counter;

void* allocate(std::size_t size) {
    counter.lastSize = size;
    if (counter.isCounting && size != counter.sizeNotCounted && --counter.left == 0) {
        counter.isCounting = false;
        throw std::bad_alloc();
    }
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

// The last thing that an object's first connection allocates for its receiver is the connection data.
std::size_t sizeOfConnectionData() {
    const QObject sender;
    const QObject receiver;
    QObject::connect(&sender, SIGNAL(destroyed()), &receiver, SLOT(deleteLater()));
    return counter.lastSize;
}

} // namespace

AllocationFailure::AllocationFailure(std::size_t n) {
    static const std::size_t size = sizeOfConnectionData();
    counter.sizeNotCounted = size;
    counter.left = n;
    counter.isCounting = true;
}

AllocationFailure::~AllocationFailure() {
    counter.isCounting = false;
}

bool AllocationFailure::hasHappened() const noexcept {
    return counter.left == 0;
}

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
#else
    return allocate(size);
#endif
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
