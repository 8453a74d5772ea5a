#pragma once

#include <cstddef>
#include <utility>

namespace ZT {

/// Fewer keys than that are in the processor's caches or come from there soon enough.
constexpr std::size_t worthPrefetching = 4096;

/// Has the processor fetch the memory of @p object, which will be read soon, and that of @p before bytes in
/// front of it. No more than a hint, also for an address that is not valid.
template <class T>
void prefetch(const T* object, std::size_t before = 0) noexcept {
#if defined(__GNUC__)
    if (object == nullptr) {
        return; // There is no arithmetic with it.
    }
    constexpr std::size_t line = 64;
    const char* const end = reinterpret_cast<const char*>(object) + sizeof(T);
    for (const char* address = end - sizeof(T) - before; address < end; address += line) {
        __builtin_prefetch(address);
    }
    __builtin_prefetch(end - 1);
#else
    static_cast<void>(object);
    static_cast<void>(before);
#endif
}

/// The same for a map's node, whose links to other nodes stand in front of the element.
template <class Position>
void prefetchNode(Position position) noexcept {
    prefetch(&*position, 4 * sizeof(void*));
}

/// Goes through a container some steps ahead of a loop, and has the objects fetched that the loop will come
/// to.
template <class Position, class ObjectAt>
class PrefetchAhead {
public:
    /// @p count objects are to come; @p objectAt gives the address of the object that a position names.
    PrefetchAhead(std::size_t count, Position first, Position end, ObjectAt objectAt)
        : _position(count < worthPrefetching ? end : first)
        , _end(std::move(end))
        , _objectAt(std::move(objectAt)) {
        for (int i = 0; i < distance; ++i) {
            step();
        }
    }

    /// Called once in each turn of the loop.
    void step() {
        if (_position != _end) {
            prefetch(_objectAt(_position));
            ++_position;
        }
    }

    /// Goes on from where the loop went instead.
    void restartAt(Position position) { _position = std::move(position); }

private:
    static constexpr int distance = 8;

    Position _position;
    Position _end;
    ObjectAt _objectAt;
};

} // namespace ZT
