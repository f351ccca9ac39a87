#include "tov/names/name_word.h"

#include <array>
#include <climits>

#include "tov/names/path_text.h"

namespace kiri::tov::impl_detail {

namespace {

constexpr long beyondInt = static_cast<long>(INT_MAX) + 1;

bool isBeyondAscii(char c) {
    return static_cast<unsigned char>(c) >= 0x80;
}

/// The bytes with a meaning of their own in a word.
class SpecialBytes {
public:
    constexpr SpecialBytes() : is_() {
        for (char const c : {'*', '.', '/', '?', '\\'}) is_[static_cast<unsigned char>(c)] = true;
        for (std::size_t c = 0x80; c < is_.size(); ++c) is_[c] = true;
    }
    constexpr bool has(char c) const { return is_[static_cast<unsigned char>(c)]; }

private:
    std::array<bool, 256> is_;
};

constexpr SpecialBytes specialBytes;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Returns the value of `digits`, or `beyondInt`.
long numberOf(std::string_view digits) {
    long number = 0;
    for (char const c : digits) number = std::min(number * 10 + (c - '0'), beyondInt);
    return number;
}

/// Returns where the digits at the end of `text` begin.
std::size_t digitsAtEnd(std::string_view text) {
    std::size_t begin = text.size();
    while (begin > 0 && isDigit(text[begin - 1])) --begin;
    return begin;
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

std::string latin1Of(std::string_view text) {
    std::string latin1;
    while (!text.empty()) {
        unsigned const code = takeCharacter(text).value_or('?');
        latin1.append(code > 0xffff ? 2 : 1, code < 0x100 ? static_cast<char>(code) : '?');
    }
    return latin1;
}

std::optional<BitName> BitName::of(std::string_view text) {
    if (text.empty() || text.back() != ']') return {};
    text.remove_suffix(1);
    std::size_t const digits = digitsAtEnd(text);
    if (digits == text.size() || digits == 0 || text[digits - 1] != '[') return {};
    return BitName{text.substr(0, digits - 1), numberOf(text.substr(digits))};
}

bool BitName::hasBase() const {
    return !base.empty() && !isSeparator(base.back());
}

NameWord::NameWord(std::string_view word) : bytes_(word) {
    levels_.reserve(8);
    char* end = bytes_.data();   // of the bytes without escapes
    std::size_t lastEscape = 0;  // the bytes up to the last escape
    for (std::size_t i = 0; i < word.size(); ++i) {
        if (!specialBytes.has(word[i])) {
            *end++ = word[i];
            continue;
        }
        bool const isEscaped = word[i] == '\\';
        if (isEscaped) {
            lastEscape = sizeUpTo(end) + 1;
            if (++i == word.size()) break;
        }
        end = add(end, word[i], isEscaped);
    }
    endWord(end);
    findRange(lastEscape);
}

/// Puts a byte with its meaning at `end`, and returns the new end. Of several '*' in a row only the first is kept.
char* NameWord::add(char* end, char byte, bool isEscaped) {
    std::size_t const size = sizeUpTo(end);
    if (isBeyondAscii(byte)) isAscii_ = false;
    if (isSeparator(byte)) endLevel(size);
    if (!isEscaped && (byte == '*' || byte == '?')) {
        if (byte == '*' && marks_.size() == size && !marks_.empty() && marks_.back() == '*') return end;
        marks_.resize(size);
        marks_ += byte;
    }
    *end = pathByte(byte);
    return end + 1;
}

void NameWord::endLevel(std::size_t end) {
    std::size_t const begin = levels_.empty() ? 0 : levels_.back().end + 1;
    std::size_t const wild = marks_.empty() ? end : std::min(marks_.find_first_not_of('\0', begin), end);
    levels_.push_back({begin, end, wild});
}

void NameWord::endWord(char const* end) {
    bytes_.resize(sizeUpTo(end));
    endLevel(bytes_.size());
    if (!marks_.empty()) marks_.resize(bytes_.size());
    whole_ = {0, bytes_.size(), std::min(marks_.find_first_not_of('\0'), bytes_.size())};
}

void NameWord::findRange(std::size_t lastEscape) {
    std::string_view text = bytes_;
    if (text.empty() || text.back() != ']' || lastEscape == text.size() + 1) return;
    text.remove_suffix(1);
    std::size_t const second = digitsAtEnd(text);
    if (second == text.size() || second == 0 || text[second - 1] != ':') return;
    std::string_view const before = text.substr(0, second - 1);
    std::size_t const first = digitsAtEnd(before);
    if (first == before.size() || first == 0 || before[first - 1] != '[') return;
    if (first - 1 <= levels_.back().begin || lastEscape >= first) return;
    rangeBegin_ = first - 1;
    low_ = numberOf(before.substr(first));
    high_ = numberOf(text.substr(second));
    if (low_ > high_) std::swap(low_, high_);
    high_ = std::min(high_, static_cast<long>(INT_MAX));
}

NameWord NameWord::latin1() const {
    NameWord form;
    form.bytes_ = bytes_;  // no shorter than the form
    char* end = form.bytes_.data();
    for (std::string_view rest = bytes_; !rest.empty();) {
        bool const isEscaped = !isPattern() || marks_[bytes_.size() - rest.size()] == '\0';
        unsigned const code = takeCharacter(rest).value_or('?');
        if (code < 0x100) {
            end = form.add(end, static_cast<char>(code), isEscaped);
        } else {
            for (int units = code > 0xffff ? 2 : 1; units > 0; --units) end = form.add(end, '?', true);
        }
    }
    form.endWord(end);
    form.low_ = low_;
    form.high_ = high_;
    if (hasRange()) form.rangeBegin_ = form.bytes_.size() - (bytes_.size() - rangeBegin_);
    return form;
}

std::size_t NameWord::leastSize() const {
    std::string_view const wild = marks().substr(0, rangeBegin_);
    return wild.size() - static_cast<std::size_t>(std::count(wild.begin(), wild.end(), '*'));
}

// After a mismatch the last '*' matches one byte more.
bool NameWord::fitsWild(std::size_t begin, std::size_t end, std::string_view text) const {
    std::size_t p = begin;
    std::size_t star = std::string::npos;
    std::size_t taken = 0;
    for (std::size_t t = 0; t < text.size();) {
        if (p < end && marks_[p] == '*') {
            star = p++;
            taken = t;
        } else if (p < end && (marks_[p] == '?' || bytes_[p] == pathByte(text[t]))) {
            ++p;
            ++t;
        } else if (star != std::string::npos) {
            p = star + 1;
            t = ++taken;
        } else {
            return false;
        }
    }
    return p == end || (p + 1 == end && marks_[p] == '*');
}

/// Returns whether a text that ends in "]" fits as a bit. What the text also reads as are its first bytes.
bool NameWord::fitsAsBit(Part const& part, std::string_view text) const {
    Part const base{part.begin, std::min(part.end, rangeBegin_), std::min(part.wild, rangeBegin_)};
    if (!hasPrefix(base, text)) return false;
    for (auto bit = BitName::of(text); bit; bit = BitName::of(bit->base)) {
        if (hasRange() && !bit->base.empty() && isInRange(bit->index) && fits(base, bit->base)) return true;
        if (!bit->hasBase()) return false;
        if (fits(part, bit->base)) return true;
    }
    return false;
}

bool NameWord::fitsLevels(std::size_t first, std::string_view path, bool hasBits) const {
    for (std::size_t i = first; i + 1 < levels(); ++i) {
        std::string_view const level = takeLevel(path);
        if (path.data() == nullptr || !fitsLevel(i, level)) return false;
    }
    return fitsOneLevel(path, hasBits);
}

}  // namespace kiri::tov::impl_detail
