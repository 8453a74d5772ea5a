#pragma once

#include <cstdint>
#include <functional>
#include <map>

namespace VQ::Animation {

/// Where a key stands: the number of the map that holds it, and its position there.
///
/// A key that carries its place answers "where is this key?" without a search, and without a table beside the
/// map that would cost memory and could be wrong. The curve alone writes it: when it places the key and when
/// it lets it go, before anybody else can look.
///
/// Every map has a number of its own, which goes with its contents: where they are swapped, all their keys
/// stand in the other curve, and where they are dropped, none of them stands anywhere, without a walk.
struct KeyPlace {
    /// The map under a curve's pointer map.
    using Map = std::map<unsigned int, void*, std::less<>>;

    /// Nowhere.
    KeyPlace() noexcept
        : mapNumber(0)
        , wasShared(0) {}

    std::uint64_t mapNumber : 63; ///< of no map where the key stands nowhere
    std::uint64_t wasShared : 1;  ///< once held by two curves, of which the place names one at most
    unsigned int frame = 0;       ///< the position's, at hand without it
    std::uint32_t placings = 0; ///< how often a map has placed the key, so that one who waits for it can tell
    /// The key's element in the map of that number; dangling where the key stands nowhere.
    Map::iterator position;
};

} // namespace VQ::Animation
