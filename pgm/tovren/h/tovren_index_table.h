// A hash table over the positions of an array: filled once, asked often. It holds hashes and positions; what is looked
// for stays in the array.
//
// One flat array with a power of two of slots, less than half full. The slot of a hash and those behind it, around the
// end, are tried up to the first empty one.
#ifndef TOVREN_INDEX_TABLE_H
#define TOVREN_INDEX_TABLE_H

#include "tovren_types.h"

#include <bit>
#include <vector>

class TOVREN_INDEX_TABLE {
public:
    // For at most `count` entries.
    explicit TOVREN_INDEX_TABLE(size_t count) : m_slots(std::bit_ceil(4 * count + 1)), m_mask(m_slots.size() - 1) {}

    // The position of the entry that has this hash and that `is_it(position)` accepts; INVALID_DWORD for none.
    template <typename IS_IT>
    DWORD find(DWORD hash, IS_IT&& is_it) const {
        return m_slots[find_slot(hash, is_it)].position;
    }

    // The same; where there is none, `position` is entered and returned.
    template <typename IS_IT>
    DWORD find_or_add(DWORD hash, DWORD position, IS_IT&& is_it) {
        SLOT& slot = m_slots[find_slot(hash, is_it)];
        if (slot.position == INVALID_DWORD)
            slot = {hash, position};
        return slot.position;
    }

private:
    struct SLOT {
        DWORD hash = 0;
        DWORD position = INVALID_DWORD;
    };

    template <typename IS_IT>
    size_t find_slot(DWORD hash, IS_IT&& is_it) const {
        size_t i = spread(hash) & m_mask;
        while (m_slots[i].position != INVALID_DWORD && !(m_slots[i].hash == hash && is_it(m_slots[i].position)))
            i = (i + 1) & m_mask;
        return i;
    }

    // Hashes may differ in their high bits only.
    static constexpr DWORD spread(DWORD hash) { return (hash * 0x9E3779B1U) >> 8; }

    std::vector<SLOT> m_slots;
    size_t m_mask;
};

#endif
