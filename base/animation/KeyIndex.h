#pragma once

#include "base/Export.h"
#include "base/math/Interpolation.h"

#include <cstddef>
#include <functional>
#include <map>
#include <vector>

namespace VQ::Animation {

/// Where each key of a curve stands: a hash table from key to place in the curve's map.
///
/// One flat array with open addressing: a lookup costs a multiplication and, as a rule, one cache line. It
/// compares addresses only and never reads a key.
class VQ_EXPORT KeyIndex {
public:
    using Key = Math::Interpolation::Key;
    /// The map under the curve's pointer map.
    using Places = std::map<unsigned int, void*, std::less<>>;

    /// The key's place, or null. Valid until the next change of the index. O(1).
    Places::iterator* find(const Key* key) noexcept;
    const Places::iterator* find(const Key* key) const noexcept;

    std::size_t size() const noexcept { return _size; }

    /// Makes room for @p count keys in all. O(count).
    void reserve(std::size_t count);

    /// Notes the place of a key that is not noted yet, and returns it to be corrected. Allocates only where
    /// the room does not suffice.
    Places::iterator& insert(const Key* key, Places::iterator place);

    /// Forgets a key that is noted. Its room stays: noting as many keys as before needs no memory.
    void erase(const Key* key) noexcept;

    /// Forgets all keys and gives up the room.
    void clear() noexcept;

    void swap(KeyIndex& other) noexcept;

private:
    struct Slot {
        const Key* key = nullptr;
        Places::iterator place;
    };

    std::size_t _home(const Key* key) const noexcept;
    std::size_t _slotOf(const Key* key) const noexcept;

    std::vector<Slot> _slots; ///< a power of two, never full; empty for an index without keys
    unsigned int _shift = 0;  ///< leaves as many bits of a hash as number the slots
    std::size_t _size = 0;
};

} // namespace VQ::Animation
