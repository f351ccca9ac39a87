#include "tov/word_comparison.h"

#include <algorithm>
#include <array>
#include <string>

#include "tov/cmd/number.h"
#include "tov/text.h"

namespace kiri::tov {

namespace {

using Word = WordComparison::Word;
using Words = WordComparison::Words;

constexpr std::array<bool, 256> makeWordEnds() {
    std::array<bool, 256> table{};
    for (std::string_view ends : {whiteSpace, std::string_view("[]{}\"\0", 6)}) {
        for (char c : ends) table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}

constexpr std::array<bool, 256> wordEnds = makeWordEnds();

bool isWordEnd(char c) {
    return wordEnds[static_cast<unsigned char>(c)];
}

char const* nextWord(char const* text) {
    while (*text != '\0' && isWordEnd(*text)) ++text;
    return text;
}

// The word at the start of a text.
std::string_view wordAt(char const* text) {
    char const* end = text;
    while (!isWordEnd(*end)) ++end;
    return {text, static_cast<std::size_t>(end - text)};
}

// Whether two lines have the same words in the same order, as most lines and their saved lines have.
bool haveSameWords(char const* line, char const* saved) {
    for (;;) {
        line = nextWord(line);
        saved = nextWord(saved);
        char const* a = line;
        char const* b = saved;
        for (; *a == *b && !isWordEnd(*a); ++a) ++b;
        if (!isWordEnd(*a) || !isWordEnd(*b)) {
            Word const word(wordAt(line));
            Word const other(wordAt(saved));
            if (!(word == other)) return false;
            a = line + word.text.size();
            b = saved + other.text.size();
        }
        if (a == line) return b == saved;
        line = a;
        saved = b;
    }
}

// Puts the words into an order in which equal ones stand together, as they stand in the line.
void sort(std::vector<Word*>& order, Words& words) {
    order.clear();
    for (Word& word : words) order.push_back(&word);
    std::sort(order.begin(), order.end(),
              [](Word const* a, Word const* b) { return *a < *b || (a < b && !(*b < *a)); });
}

void eraseCommon(Words& words) {
    words.erase(std::remove_if(words.begin(), words.end(), [](Word const& word) { return word.isCommon; }),
                words.end());
}

using Judge = bool (*)(Word const& word);

bool isNumber(Word const& word) {
    return word.isNumber;
}

// A save writes an infinite number as a word that is no number to the commands.
bool isSavedNumber(Word const& word) {
    return word.isNumber || word.text == "inf" || word.text == "-inf";
}

std::size_t count(Words const& words, Judge isWanted) {
    return static_cast<std::size_t>(std::count_if(words.begin(), words.end(), isWanted));
}

// Moves the last `wanted` ones of `words` to `taken`.
void takeLast(std::size_t wanted, Words& words, Judge isWanted, Words& taken) {
    taken.clear();
    std::size_t others = count(words, isWanted) - wanted;
    for (Word& word : words) {
        if (!isWanted(word)) continue;
        word.isCommon = others == 0;
        if (word.isCommon) taken.push_back(word);
        if (others > 0) --others;
    }
    eraseCommon(words);
}

}  // namespace

WordComparison::Word::Word(std::string_view word) : text(word), isNumber(parseFloatValue(word, value)) {}

bool WordComparison::Word::operator<(Word const& other) const {
    if (isNumber != other.isNumber) return isNumber;
    return isNumber ? value < other.value : text < other.text;
}

bool WordComparison::Word::operator==(Word const& other) const {
    return text == other.text || (isNumber && other.isNumber && value == other.value);
}

bool WordComparison::endsWord(char c) {
    return isWordEnd(c);
}

void WordComparison::appendWords(Words& words, char const* text) {
    for (text = nextWord(text); *text != '\0'; text = nextWord(text)) {
        words.emplace_back(wordAt(text));
        text += words.back().text.size();
    }
}

// Of equal words the last ones are common, as the last value of an option is the one that counts.
void WordComparison::dropCommonWords() {
    auto const back = std::mismatch(lost_.rbegin(), lost_.rend(), added_.rbegin(), added_.rend());
    lost_.erase(back.first.base(), lost_.end());
    added_.erase(back.second.base(), added_.end());
    auto const front = std::mismatch(lost_.begin(), lost_.end(), added_.begin(), added_.end());
    lost_.erase(lost_.begin(), front.first);
    added_.erase(added_.begin(), front.second);
    if (lost_.empty() || added_.empty()) return;
    std::vector<Word*>& a = lineOrder_;
    std::vector<Word*>& b = savedOrder_;
    sort(a, lost_);
    sort(b, added_);
    while (!a.empty() && !b.empty()) {
        bool const aIsGreater = *b.back() < *a.back();
        bool const bIsGreater = *a.back() < *b.back();
        if (!aIsGreater && !bIsGreater) a.back()->isCommon = b.back()->isCommon = true;
        if (!bIsGreater) a.pop_back();
        if (!aIsGreater) b.pop_back();
    }
    eraseCommon(lost_);
    eraseCommon(added_);
}

void WordComparison::compare(char const* line, char const* saved) {
    lost_.clear();
    changed_.clear();
    added_.clear();
    if (haveSameWords(line, saved)) return;
    appendWords(lost_, line);
    appendWords(added_, saved);
    dropCommonWords();
    // A number that is gone was saved as another one, if there is another one.
    std::size_t const numbers = std::min(count(lost_, isNumber), count(added_, isSavedNumber));
    if (numbers == 0) return;
    takeLast(numbers, added_, isSavedNumber, changed_);
    takeLast(numbers, lost_, isNumber, changed_);
}

}  // namespace kiri::tov
