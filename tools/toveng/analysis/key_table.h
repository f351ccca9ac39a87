#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "analysis/pool.h"

namespace tool {

/// Groups by 64-bit keys, which are hashes; 0 is not a key. A group keeps its number as long as it exists. Unlike a map
/// of the standard library, a lookup waits for memory only about once.
template <class Group>
class KeyTable {
public:
    using Number = typename Pool<Group>::Id;

    Group& operator[](Number number) { return groups_[number]; }
    Group const& operator[](Number number) const { return groups_[number]; }

    /// Returns the group of a key, a new empty one if there is none.
    Number put(std::uint64_t key) {
        if ((count_ + 1) * 3 > slots_.size() * 2) grow();
        std::size_t const at = find(key);
        if (slots_[at].key == 0) {
            slots_[at] = {key, groups_.add()};
            ++count_;
        }
        return slots_[at].number;
    }

    /// Removes a key whose group is empty.
    void erase(std::uint64_t key) {
        std::size_t gap = find(key);
        groups_.remove(slots_[gap].number);
        --count_;
        // Entries that probing put after the gap move up.
        for (std::size_t at = next(gap); slots_[at].key != 0; at = next(at)) {
            std::size_t const home = homeOf(slots_[at].key);
            bool const mayMove = gap <= at ? home <= gap || home > at : home <= gap && home > at;
            if (!mayMove) continue;
            slots_[gap] = slots_[at];
            gap = at;
        }
        slots_[gap] = {};
    }

private:
    struct Slot {
        std::uint64_t key = 0;
        Number number = 0;
    };

    std::size_t homeOf(std::uint64_t key) const { return (key ^ (key >> 32)) & (slots_.size() - 1); }
    std::size_t next(std::size_t at) const { return (at + 1) & (slots_.size() - 1); }

    // The slot of a key, or the free slot where it belongs.
    std::size_t find(std::uint64_t key) const {
        std::size_t at = homeOf(key);
        while (slots_[at].key != 0 && slots_[at].key != key) at = next(at);
        return at;
    }

    void grow() {
        std::vector<Slot> older(slots_.empty() ? 64 : slots_.size() * 2);
        older.swap(slots_);
        for (Slot const& slot : older) {
            if (slot.key != 0) slots_[find(slot.key)] = slot;
        }
    }

    std::vector<Slot> slots_;  // their number is a power of two; at least a third is free
    std::size_t count_ = 0;
    Pool<Group> groups_;
};

}  // namespace tool
