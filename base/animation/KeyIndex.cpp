#include "base/animation/KeyIndex.h"

#include <cassert>
#include <utility>

namespace VQ::Animation {

namespace {

constexpr unsigned int hashBits = 64;
constexpr unsigned int fewestSlotsBits = 3;

} // namespace

// At most three quarters of the slots are taken, so that a search soon meets its key or a free slot.
void KeyIndex::reserve(std::size_t count) {
    if (count <= _slots.size() / 4 * 3) {
        return;
    }
    unsigned int bits = fewestSlotsBits;
    while ((std::size_t{1} << bits) / 4 * 3 < count) {
        ++bits;
    }
    std::vector<Slot> old(std::size_t{1} << bits);
    old.swap(_slots);
    _shift = hashBits - bits;
    for (const Slot& slot : old) {
        if (slot.key != nullptr) {
            _slots[_slotOf(slot.key)] = slot;
        }
    }
}

KeyIndex::Places::iterator& KeyIndex::insert(const Key* key, Places::iterator place) {
    reserve(_size + 1);
    Slot& slot = _slots[_slotOf(key)];
    assert(slot.key == nullptr);
    slot = {key, place};
    ++_size;
    return slot.place;
}

// Keys behind the gap move up where a search for them would otherwise end at it.
void KeyIndex::erase(const Key* key) noexcept {
    const std::size_t mask = _slots.size() - 1;
    std::size_t gap = _slotOf(key);
    assert(_slots[gap].key == key);
    for (std::size_t slot = (gap + 1) & mask; _slots[slot].key != nullptr; slot = (slot + 1) & mask) {
        const std::size_t home = _home(_slots[slot].key);
        if (((slot - home) & mask) >= ((slot - gap) & mask)) {
            _slots[gap] = _slots[slot];
            gap = slot;
        }
    }
    _slots[gap].key = nullptr;
    --_size;
}

void KeyIndex::clear() noexcept {
    KeyIndex().swap(*this);
}

void KeyIndex::swap(KeyIndex& other) noexcept {
    _slots.swap(other._slots);
    std::swap(_shift, other._shift);
    std::swap(_size, other._size);
}

} // namespace VQ::Animation
