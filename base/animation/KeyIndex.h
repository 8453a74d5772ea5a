#pragma once

#include "base/Export.h"
#include "base/math/Interpolation.h"

#include <cstddef>
#include <cstdint>
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
    const Places::iterator* find(const Key* key) const noexcept {
        if (_slots.empty() || key == nullptr) {
            return nullptr;
        }
        const Slot& slot = _slots[_slotOf(key)];
        return slot.key == nullptr ? nullptr : &slot.place;
    }
    Places::iterator* find(const Key* key) noexcept {
        return const_cast<Places::iterator*>(static_cast<const KeyIndex*>(this)->find(key));
    }

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

    /// Where the search for a key begins. Multiplying by 2^64 over the golden ratio spreads addresses, which
    /// have much in common, over the upper bits.
    std::size_t _home(const Key* key) const noexcept {
        const auto address = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(key));
        return static_cast<std::size_t>((address * 0x9E3779B97F4A7C15U) >> _shift);
    }

    /// The slot that holds the key or, if none does, the free one where it would go.
    std::size_t _slotOf(const Key* key) const noexcept {
        const std::size_t mask = _slots.size() - 1;
        std::size_t slot = _home(key);
        while (_slots[slot].key != key && _slots[slot].key != nullptr) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    std::vector<Slot> _slots; ///< a power of two, never full; empty for an index without keys
    unsigned int _shift = 0;  ///< leaves as many bits of a hash as number the slots
    std::size_t _size = 0;
};

} // namespace VQ::Animation
