#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace ZT {

/// Fewer keys than that are in the processor's caches or come from there soon enough. Debug builds fetch
/// ahead for a handful, so that each test runs through it.
#ifdef NDEBUG
constexpr std::size_t worthPrefetching = 4096;
#else
constexpr std::size_t worthPrefetching = 4;
#endif

/// The links of a map's node stand so many bytes in front of its element.
constexpr std::size_t nodeLinks = 4 * sizeof(void*);

/// Has the processor fetch the memory of @p object, which will be read soon, and that of @p before bytes in
/// front of it. No more than a hint, also for an address that is not valid.
template <class T>
void prefetch(const T* object, std::size_t before = 0) noexcept {
#if defined(__GNUC__)
    // Numbers, since there is no arithmetic with the address of what may be gone.
    const auto fetch = [](std::uintptr_t address) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): a hint, never read, so nothing is there to optimize
        __builtin_prefetch(reinterpret_cast<const void*>(address));
    };
    constexpr std::uintptr_t line = 64;
    const auto begin = reinterpret_cast<std::uintptr_t>(object);
    for (std::uintptr_t address = begin - before; address < begin + sizeof(T); address += line) {
        fetch(address);
    }
    fetch(begin + sizeof(T) - 1);
#else
    static_cast<void>(object);
    static_cast<void>(before);
#endif
}

/// The same for a map's node, whose links to other nodes stand in front of the element.
template <class Position>
void prefetchNode(Position position) noexcept {
    prefetch(&*position, nodeLinks);
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
