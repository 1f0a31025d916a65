#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "korvel/platform/framework.h"
#include "korvel/platform/prefetch.h"

namespace korvel {

/// Spreads the bits of a key over all 64 bits (the finaliser of SplitMix64, S. Vigna).
inline std::uint64_t mix_bits(std::uint64_t key) {
    key += 0x9e3779b97f4a7c15U;
    key = (key ^ (key >> 30U)) * 0xbf58476d1ce4e5b9U;
    key = (key ^ (key >> 27U)) * 0x94d049bb133111ebU;
    return key ^ (key >> 31U);
}

/// The two ints in one key.
inline std::uint64_t pair_key(int first, int second) {
    return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(first)) << 32U) |
           static_cast<std::uint32_t>(second);
}

/// The same key for both directions of a side.
inline std::uint64_t side_key(int p0, int p1) {
    return pair_key(std::min(p0, p1), std::max(p0, p1));
}

inline std::uint64_t point_key(tagPOINT pt) {
    return pair_key(pt.x, pt.y);
}

/// Finds the first index that had a key, as a scan from index 0 would, in constant time: a hash
/// table with linear probing.
class KeyIndex {
public:
    explicit KeyIndex(int expected_keys) {
        std::size_t slots = 16;
        while (slots < 2 * static_cast<std::size_t>(std::max(expected_keys, 0))) {
            slots *= 2;
        }
        slots_.resize(slots);
    }

    /// The index stored with the key; a key that is not there yet is stored with `index`.
    int find_or_add(std::uint64_t key, int index) {
        if (2 * used_ >= slots_.size()) {
            grow();
        }
        Slot& slot = slot_of(key);
        if (slot.index < 0) {
            slot = {key, index};
            ++used_;
        }
        return slot.index;
    }

    /// The index stored with the key, or −1.
    int find(std::uint64_t key) const { return const_cast<KeyIndex*>(this)->slot_of(key).index; }

    /// Has the place of a key fetched, for a look-up soon after. Worth it in large tables.
    void prefetch(std::uint64_t key) const {
        korvel::prefetch(&slots_[mix_bits(key) & (slots_.size() - 1)]);
    }
    static constexpr int prefetch_distance = 16; ///< in look-ups

private:
    struct Slot {
        std::uint64_t key = 0;
        int index = -1;
    };

    Slot& slot_of(std::uint64_t key) {
        const std::size_t mask = slots_.size() - 1;
        std::size_t at = mix_bits(key) & mask;
        while (slots_[at].index >= 0 && slots_[at].key != key) {
            at = (at + 1) & mask;
        }
        return slots_[at];
    }

    void grow() {
        std::vector<Slot> old(slots_.size() * 2);
        old.swap(slots_);
        for (const Slot& slot : old) {
            if (slot.index >= 0) {
                slot_of(slot.key) = slot;
            }
        }
    }

    std::vector<Slot> slots_;
    std::size_t used_ = 0;
};

/// The first of the records so far that equals record `index`, which may be `index` itself. Records
/// with different keys differ; `same(i, j)` compares two whose keys are equal.
template <class Same>
int first_equal(KeyIndex& table, std::uint64_t key, int index, Same same) {
    for (;; key = mix_bits(key)) {
        const int first = table.find_or_add(key, index);
        if (first == index || same(first, index)) {
            return first;
        }
    }
}

} // namespace korvel
