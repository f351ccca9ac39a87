#include "tov/names/name_word_p.h"

#include <algorithm>
#include <array>
#include <climits>
#include <utility>

namespace kiri::tov::impl_detail {

namespace {

constexpr long beyondInt = static_cast<long>(INT_MAX) + 1;

bool isBeyondAscii(char c) {
    return static_cast<unsigned char>(c) >= 0x80;
}

/// The bytes of a word that need translation: special characters and non-ASCII bytes.
constexpr std::array<bool, 256> specialBytes = [] {
    std::array<bool, 256> is{};
    for (char const c : {'*', '.', '?', '\\'}) is[static_cast<unsigned char>(c)] = true;
    for (std::size_t c = 0x80; c != is.size(); ++c) is[c] = true;
    return is;
}();

bool isSpecial(char c) {
    return specialBytes[static_cast<unsigned char>(c)];
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Returns the value of `digits`, or `beyondInt`.
long numberOf(std::string_view digits) {
    long number = 0;
    for (char const c : digits) number = std::min(number * 10 + (c - '0'), beyondInt);
    return number;
}

/// Removes the digits at the end of `text` and the `opening` before them, and returns the digits; none unless it has
/// both.
std::optional<std::string_view> takeDigits(std::string_view& text, char opening) {
    std::size_t begin = text.size();
    while (begin > 0 && isDigit(text[begin - 1])) --begin;
    if (begin == text.size() || begin == 0 || text[begin - 1] != opening) return {};
    std::string_view const digits = text.substr(begin);
    text = text.substr(0, begin - 1);
    return digits;
}

/// Decodes one character of UTF-8 and removes it from `text`; returns none if it is not valid.
std::optional<unsigned> takeCharacter(std::string_view& text) {
    constexpr unsigned least[] = {0, 0x80, 0x800, 0x10000};
    auto const first = static_cast<unsigned char>(text[0]);
    std::size_t const more = first < 0x80 ? 0 : first < 0xe0 ? 1 : first < 0xf0 ? 2 : 3;
    if (more > 0 && (first < 0xc2 || first > 0xf4 || text.size() <= more)) return {};
    unsigned code = more == 0 ? first : first & (0x3fU >> more);
    for (std::size_t i = 1; i <= more; ++i) {
        auto const next = static_cast<unsigned char>(text[i]);
        if ((next & 0xc0U) != 0x80) return {};
        code = code << 6U | (next & 0x3fU);
    }
    bool const isSurrogate = code >= 0xd800 && code < 0xe000;
    if (code < least[more] || code > 0x10ffff || isSurrogate) return {};
    text.remove_prefix(more + 1);
    return code;
}

}  // namespace

bool isUtf8BeyondAscii(std::string_view text) {
    if (std::none_of(text.begin(), text.end(), isBeyondAscii)) return false;
    while (!text.empty()) {
        if (!takeCharacter(text)) return false;
    }
    return true;
}

std::string latin1Of(std::string_view text, bool isWord) {
    std::string latin1;
    bool isEscaped = false;
    while (!text.empty()) {
        unsigned const code = takeCharacter(text).value_or('?');
        for (int units = code < 0x100 ? 0 : code > 0xffff ? 2 : 1; units > 0; --units) {
            latin1 += isWord && !isEscaped ? "\\?" : "?";
            isEscaped = false;
        }
        if (code < 0x100) latin1 += static_cast<char>(code);
        isEscaped = code == '\\' && !isEscaped;
    }
    return latin1;
}

std::optional<BitName> BitName::of(std::string_view text) {
    if (text.empty() || text.back() != ']') return {};
    text.remove_suffix(1);
    std::optional<std::string_view> const digits = takeDigits(text, '[');
    if (!digits) return {};
    return BitName{text, numberOf(*digits)};
}

std::string_view busOf(std::string_view path) {
    path.remove_prefix(lastLevelsOf(path));
    for (auto bit = BitName::of(path); bit && bit->hasBase(); bit = BitName::of(path)) path = bit->base;
    return path;
}

NameWord::NameWord(std::string_view word) : text_(word), wild_(word.size()) {
    if (std::any_of(word.begin(), word.end(), isSpecial)) {
        takeSpecial(word);
    } else {
        findRange(0);
    }
    levels_ += static_cast<std::size_t>(std::count(text_.begin(), text_.end(), '/'));
}

void NameWord::takeSpecial(std::string_view word) {
    bytes_.reserve(word.size());
    std::size_t lastEscape = 0;  // the number of bytes up to the last escaped one
    bool endsEscaped = false;
    for (std::size_t i = 0; i < word.size(); ++i) {
        bool const isEscaped = word[i] == '\\';
        endsEscaped = isEscaped && ++i == word.size();
        if (endsEscaped) break;
        char const byte = word[i];
        isAscii_ = isAscii_ && !isBeyondAscii(byte);
        if (isEscaped) {
            lastEscape = bytes_.size() + 1;
        } else if (byte == '*' || byte == '?') {
            bool const isSecondStar =
                byte == '*' && !bytes_.empty() && marks_.size() == bytes_.size() && marks_.back() == '*';
            if (isSecondStar) continue;
            marks_.resize(bytes_.size());
            marks_ += byte;
        }
        bytes_ += pathByte(byte);
    }
    text_ = bytes_;
    wild_ = std::min(marks_.find_first_not_of('\0'), text_.size());
    if (isPattern()) marks_.resize(text_.size());
    if (!endsEscaped) findRange(lastEscape);
}

void NameWord::findRange(std::size_t lastEscape) {
    std::string_view rest = text_;
    if (rest.empty() || rest.back() != ']') return;
    rest.remove_suffix(1);
    std::optional<std::string_view> const second = takeDigits(rest, ':');
    std::optional<std::string_view> const first = second ? takeDigits(rest, '[') : second;
    if (!first || lastEscape > rest.size() || rest.empty() || isSeparator(rest.back())) return;
    rangeBegin_ = rest.size();
    rangeLow_ = std::min(numberOf(*first), numberOf(*second));
    rangeHigh_ = std::min(std::max(numberOf(*first), numberOf(*second)), beyondInt - 1);
}

NameWord NameWord::asRange() const {
    NameWord range = *this;
    range.text_ = text_.substr(0, rangeBegin_);
    if (isPattern()) range.marks_.resize(rangeBegin_);
    range.low_ = rangeLow_;
    range.high_ = rangeHigh_;
    return range;
}

NameWord::Literal NameWord::literalAt(std::size_t at) const {
    std::string_view const all = text_;
    std::size_t const wild = wild_;
    PathHash hash;
    std::size_t end = at;
    for (; end < all.size() && all[end] != '/'; ++end) {
        if (end >= wild && marks_[end] != '\0') break;
        hash.addPathByte(all[end]);
    }
    return {all.substr(at, end - at), hash, end == all.size() || all[end] == '/'};
}

// After a mismatch, the last '*' matches one more byte.
Match NameWord::advance(Match match, std::string_view path, std::size_t from) const {
    Match const dead = start(match.crosses, Match::none);
    if (match.isDead()) return dead;
    if (!isPattern()) {
        std::size_t const size = path.size() - from;
        bool const isEqual =
            size <= text_.size() - match.at && equalPaths(text_.data() + match.at, path.data() + from, size);
        match.at += size;
        return isEqual ? match : dead;
    }
    for (std::size_t t = from; t < path.size();) {
        char const byte = pathByte(path[t]);
        bool const isEnd = match.at == text_.size();
        char const mark = isEnd ? '\0' : marks_[match.at];
        if (mark == '*') {
            match.star = match.at++;
            match.starEnd = t;
        } else if (!isEnd && (mark == '?' ? match.crosses || byte != '/' : text_[match.at] == byte)) {
            ++match.at;
            ++t;
            if (byte == '/' && !match.crosses) match.star = Match::none;
        } else if (match.star != Match::none && (match.crosses || byte != '/')) {
            match.at = match.star + 1;
            t = ++match.starEnd;
        } else {
            return dead;
        }
    }
    return match;
}

bool NameWord::fitsAsBit(Match const& match, std::string_view path, std::size_t from) const {
    for (auto bit = BitName::of(path.substr(from)); bit; bit = BitName::of(bit->base)) {
        std::string_view const base = path.substr(0, from + bit->base.size());
        // The base of a bit in a range may be empty after other bytes.
        bool const hasText = bit->hasBase() || (isRange() && match.crosses && !base.empty());
        bool const isInRange = !isRange() || (low_ <= bit->index && bit->index <= high_);
        if (hasText && isInRange && fitsText(match, base, from)) return true;
    }
    return false;
}

}  // namespace kiri::tov::impl_detail
