#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tov/names/path_text_p.h"

namespace kiri::tov::impl_detail {

/// Consecutive items of an array.
template <class Item>
struct Span {
    Item const* first = nullptr;
    Item const* last = nullptr;

    Item const* begin() const { return first; }
    Item const* end() const { return last; }
    std::size_t size() const { return static_cast<std::size_t>(last - first); }
};

/// Finds numbers by texts. The numbers of all texts whose hashes begin with the same bits are stored together,
/// ascending:
///
///     starts_   0     2  3        6      (of each beginning of a hash, and the end)
///     numbers_  4 17  9  2 11 30  ...
class TextTable {
public:
    struct Entry {
        std::uint32_t hash;  // PathHash::bits() of the text
        std::uint32_t number;
    };

    TextTable() = default;
    /// Takes entries in the order of their numbers, for about `size` texts. If a group has more than `most` numbers,
    /// the table drops it.
    TextTable(std::vector<Entry> const& entries, std::size_t size, std::size_t most);

    /// Returns the numbers of the text with this hash, and perhaps a few numbers of other texts.
    Span<std::uint32_t> find(PathHash const& hash) const {
        std::uint32_t const* const start = starts_.data() + (hash.bits() >> shift_);
        return {numbers_.data() + start[0], numbers_.data() + start[1]};
    }
    /// Returns whether the table has dropped the numbers of this text because there are too many.
    bool isCommon(PathHash const& hash) const {
        Span<std::uint32_t> const numbers = find(hash);
        return numbers.size() == 1 && *numbers.first == common;
    }

private:
    static constexpr std::uint32_t common = UINT32_MAX;  // marks a text with too many numbers

    std::vector<std::uint32_t> numbers_;
    std::vector<std::uint32_t> starts_;
    unsigned shift_ = 24;  // the number of ignored low bits of a hash; initially 8 bits count
};

/// Turns counts into the places where the items of each begin; the last count is one more, for the end.
void sumUp(std::vector<std::uint32_t>& counts);

}  // namespace kiri::tov::impl_detail
