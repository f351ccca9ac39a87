#include "tov/names/flat_matcher.h"

#include <algorithm>

#include "tov/names/path_text.h"

namespace kiri::tov::impl_detail {

namespace {

void set(std::vector<std::uint64_t>& bits, std::size_t bit) {
    bits[bit / 64] |= std::uint64_t{1} << bit % 64;
}

}  // namespace

// The bytes that are not in the word share row 0, where only '?' fits.
FlatMatcher::FlatMatcher(NameWord const& word)
    : word_(&word), symbols_(word.text().size()), size_(symbols_ / 64 + 1), row_(), runs_(size_), start_(size_) {
    std::string_view const text = word.text();
    std::string_view const marks = word.marks();
    std::uint32_t rows = 1;
    for (std::size_t i = 0; i < symbols_; ++i) {
        std::uint32_t& row = row_[static_cast<unsigned char>(text[i])];
        if (marks[i] == '\0' && row == 0) row = rows++;
    }
    row_[static_cast<unsigned char>('.')] = row_[static_cast<unsigned char>('/')];
    fitting_.resize(rows * size_);
    for (std::size_t i = 0; i < symbols_; ++i) {
        std::uint64_t const bit = std::uint64_t{1} << i % 64;
        if (marks[i] == '*') runs_[i / 64] |= bit;
        if (marks[i] == '\0') fitting_[row_[static_cast<unsigned char>(text[i])] * size_ + i / 64] |= bit;
        if (marks[i] != '?') continue;
        for (std::size_t row = 0; row < rows; ++row) fitting_[row * size_ + i / 64] |= bit;
    }
    set(start_, 0);
    if (marks[0] == '*') set(start_, 1);
}

/// A symbol that fits leads to the next one, a '*' also stays, and may match nothing.
void FlatMatcher::advance(State& state, unsigned char byte) const {
    std::uint64_t const* const fitting = fitting_.data() + row_[byte] * size_;
    std::uint64_t carried = 0;
    std::uint64_t carriedRun = 0;
    for (std::size_t i = 0; i < size_; ++i) {
        std::uint64_t const moved = state[i] & fitting[i];
        std::uint64_t next = moved << 1U | carried | (state[i] & runs_[i]);
        carried = moved >> 63U;
        std::uint64_t const run = next & runs_[i];
        next |= run << 1U | carriedRun;
        carriedRun = run >> 63U;
        state[i] = next;
    }
}

void FlatMatcher::advance(State& state, std::string_view text) const {
    for (char const c : text) advance(state, static_cast<unsigned char>(c));
}

bool FlatMatcher::isDead(State const& state) {
    return std::all_of(state.begin(), state.end(), [](std::uint64_t bits) { return bits == 0; });
}

bool FlatMatcher::fits(State const& state, std::string_view name, bool hasBits, State& scratch) const {
    auto const advanceBy = [&](std::string_view text) {
        scratch = state;
        advance(scratch, text);
    };
    advanceBy(name);
    if (accepts(scratch)) return true;
    if (!hasBits) return false;
    for (auto bit = BitName::of(name); bit; bit = BitName::of(bit->base)) {
        advanceBy(bit->base);
        bool const isInRange = word_->hasRange() && word_->isInRange(bit->index);
        if (isInRange && has(scratch, word_->rangeBegin())) return true;
        if (!bit->hasBase()) return false;
        if (accepts(scratch)) return true;
    }
    return false;
}

}  // namespace kiri::tov::impl_detail
