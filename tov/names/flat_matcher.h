#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "tov/names/name_word.h"

namespace kiri::tov::impl_detail {

/// Matches a word against a text in pieces, in which '*' and '?' match separators too. The pieces so
/// far lead to a state, so texts with a common beginning are matched once up to its end.
class FlatMatcher {
public:
    /// Bit i: the first i symbols of the word fit the text so far. Copies reuse their memory.
    using State = std::vector<std::uint64_t>;

    /// `word` must outlive the matcher.
    explicit FlatMatcher(NameWord const& word);

    State const& start() const { return start_; }
    void advance(State& state, std::string_view text) const;
    /// Returns whether no text that begins like this fits.
    static bool isDead(State const& state);
    /// Returns whether the text so far fits.
    bool accepts(State const& state) const { return has(state, symbols_); }
    /// Returns whether the text so far, continued by `name`, fits; `name` may be a bit.
    bool fits(State const& state, std::string_view name, bool hasBits, State& scratch) const;

private:
    using Symbols = std::vector<std::uint64_t>;

    static bool has(State const& state, std::size_t bit) { return (state[bit / 64] >> bit % 64 & 1U) != 0; }
    void advance(State& state, unsigned char byte) const;

    NameWord const* word_;
    std::size_t symbols_;
    std::size_t size_;                    // of a state, in words
    std::array<std::uint32_t, 256> row_;  // of a byte, in `fitting_`
    Symbols fitting_;                     // for each row, the symbols that the byte fits, except '*'
    Symbols runs_;                        // the symbols that are '*'
    State start_;
};

}  // namespace kiri::tov::impl_detail
