// How a line and its saved line are compared:
//
//   0. Most lines have the same words as the saved line in the same order: then nothing differs.
//   1. Both are split into words. Equal words at the end of both are dropped, which settles most of the rest.
//   2. The rest is sorted. Equal words are dropped in pairs, the last ones of a line first: the last value of an
//      option is the one that is saved.
//   3. The rest of the line is lost, the rest of the saved line is added.
//   4. Lost and added numbers are paired, the last ones first. The lost number of a pair is changed, not lost.

#include "tov/check/word_comparison_p.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

#include "tov/base/text_p.h"
#include "tov/cmd/number_p.h"

namespace kiri::tov::impl_detail {

namespace {

using Word = WordComparison::Word;
using Words = WordComparison::Words;

constexpr auto wordEnds = [] {
    std::array<bool, 256> table{};
    for (std::string_view ends : {whiteSpace, std::string_view("[]{}\"\0", 6)}) {
        for (char c : ends) table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}();

bool isEqual(Word const& a, Word const& b) {
    return a.text == b.text || (a.isNumber && b.isNumber && a.value == b.value);
}

bool isLess(Word const& a, Word const& b) {
    if (a.isNumber != b.isNumber) return a.isNumber;
    return a.isNumber ? a.value < b.value : a.text < b.text;
}

/// Walks over the words of a text.
class WordWalk {
public:
    explicit WordWalk(std::string_view text) : at_(text.data()), end_(at_ + text.size()) {}

    /// Returns the next word; an empty one at the end of the text.
    std::string_view next() {
        while (at_ != end_ && WordComparison::endsWord(*at_)) ++at_;
        char const* const first = at_;
        while (at_ != end_ && !WordComparison::endsWord(*at_)) ++at_;
        return {first, static_cast<std::size_t>(at_ - first)};
    }

private:
    char const* at_;
    char const* end_;
};

// Returns whether two texts have equal words in the same order.
bool haveEqualWords(std::string_view a, std::string_view b) {
    for (WordWalk left(a), right(b);;) {
        std::string_view const word = left.next();
        std::string_view const other = right.next();
        if (word != other && !isEqual(Word(word), Word(other))) return false;
        if (word.empty()) return true;
    }
}

// Drops equal words at the end of both lines.
void dropCommonEnd(Words& a, Words& b) {
    while (!a.empty() && !b.empty() && isEqual(a.back(), b.back())) {
        a.pop_back();
        b.pop_back();
    }
}

// The words in ascending order; equal ones keep their order.
std::vector<Word*> sorted(Words& words) {
    std::vector<Word*> order;
    for (Word& word : words) order.push_back(&word);
    std::sort(order.begin(), order.end(),
              [](Word const* a, Word const* b) { return isLess(*a, *b) || (a < b && !isLess(*b, *a)); });
    return order;
}

bool isMarked(Word const& word) {
    return word.isMarked;
}

void dropMarked(Words& words) {
    words.erase(std::remove_if(words.begin(), words.end(), isMarked), words.end());
}

void dropPairs(Words& a, Words& b) {
    std::vector<Word*> left = sorted(a);
    std::vector<Word*> right = sorted(b);
    while (!left.empty() && !right.empty()) {
        if (isLess(*left.back(), *right.back())) {
            right.pop_back();
        } else if (isLess(*right.back(), *left.back())) {
            left.pop_back();
        } else {
            left.back()->isMarked = right.back()->isMarked = true;
            left.pop_back();
            right.pop_back();
        }
    }
    dropMarked(a);
    dropMarked(b);
}

using Predicate = bool (*)(Word const& word);

bool isNumber(Word const& word) {
    return word.isNumber;
}

// A save writes an infinite number as a word that commands do not read as a number.
bool isSavedNumber(Word const& word) {
    return word.isNumber || word.text == "inf" || word.text == "-inf";
}

auto count(Words const& words, Predicate isWanted) {
    return std::count_if(words.begin(), words.end(), isWanted);
}

// Marks the last `left` wanted words.
void markLast(Words& words, Predicate isWanted, std::ptrdiff_t left) {
    for (auto word = words.rbegin(); left > 0; ++word) {
        word->isMarked = isWanted(*word);
        if (word->isMarked) --left;
    }
}

}  // namespace

WordComparison::Word::Word(std::string_view word) : text(word), isNumber(parseFloatValue(word, value)) {}

bool WordComparison::endsWord(char c) {
    return wordEnds[static_cast<unsigned char>(c)];
}

void WordComparison::appendWords(Words& words, std::string_view text) {
    WordWalk walk(text);
    for (std::string_view word = walk.next(); !word.empty(); word = walk.next()) words.emplace_back(word);
}

void WordComparison::compare(std::string_view line, std::string_view saved) {
    lost_.clear();
    changed_.clear();
    added_.clear();
    if (haveEqualWords(line, saved)) return;
    appendWords(lost_, line);
    appendWords(added_, saved);
    dropCommonEnd(lost_, added_);
    if (!lost_.empty() && !added_.empty()) dropPairs(lost_, added_);

    auto const pairs = std::min(count(lost_, isNumber), count(added_, isSavedNumber));
    if (pairs == 0) return;
    markLast(lost_, isNumber, pairs);
    markLast(added_, isSavedNumber, pairs);
    std::copy_if(lost_.begin(), lost_.end(), std::back_inserter(changed_), isMarked);
    dropMarked(lost_);
    dropMarked(added_);
}

}  // namespace kiri::tov::impl_detail
