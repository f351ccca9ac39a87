#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kiri::tov::impl_detail {

/// A word of a constraint, taken apart: its levels, what of it is a wildcard, and the range of bits at its end.
///
/// Where `hasBits` is true, a text "base[3]" also reads as "base", and the range "base[7:0]" fits it.
class NameWord {
public:
    explicit NameWord(std::string_view word);

    /// The Latin-1 form of a word that is UTF-8. What Latin-1 does not have becomes a literal '?'.
    NameWord latin1() const;

    std::size_t levels() const { return starts_.size(); }
    /// A level without its escapes.
    std::string_view level(std::size_t i) const;
    /// Where a level ends in text().
    std::size_t endOf(std::size_t level) const;
    bool isPattern() const { return firstWild_ != std::string::npos; }
    bool isPattern(std::size_t level) const;

    /// The whole word without its escapes, levels joined by '/'; in it, '*' and '?' may be literal.
    std::string_view text() const { return bytes_; }
    /// For each byte of text(), '*' or '?' if it is a wildcard, else 0.
    std::string_view marks() const { return marks_; }
    /// The bytes before the first wildcard of text(), or of a level.
    std::string_view prefix() const { return text().substr(0, firstWild_); }
    std::string_view prefix(std::size_t level) const;

    /// No shorter path fits.
    std::size_t leastSize() const;

    /// Whether the word ends in a range; `rangeBegin()` is where it begins in text().
    bool hasRange() const { return rangeBegin_ != std::string::npos; }
    std::size_t rangeBegin() const { return rangeBegin_; }
    bool isInRange(long index) const { return low_ <= index && index <= high_; }

    /// Whether a level of the word fits the level of a path.
    bool fitsLevel(std::size_t i, std::string_view text) const { return fits(starts_[i], endOf(i), text); }
    /// Whether the last level fits the last level of a path.
    bool fitsLast(std::string_view text, bool hasBits) const { return fitsFrom(starts_.back(), text, hasBits); }
    /// Whether the levels from `first` on fit the levels of a path, one by one.
    bool fitsPath(std::size_t first, std::string_view path, bool hasBits) const;
    /// Whether the whole word fits the whole path as one text.
    bool fitsFlat(std::string_view path, bool hasBits) const { return fitsFrom(0, path, hasBits); }

private:
    NameWord() = default;
    void add(char byte, bool isEscaped);
    void findRange(std::size_t lastEscape);
    bool fits(std::size_t begin, std::size_t end, std::string_view text) const;
    bool fitsFrom(std::size_t begin, std::string_view text, bool hasBits) const;

    std::string bytes_;
    std::string marks_;
    std::vector<std::size_t> starts_;  // of the levels
    std::size_t firstWild_ = std::string::npos;
    std::size_t rangeBegin_ = std::string::npos;
    long low_ = 0;
    long high_ = 0;
};

bool isUtf8BeyondAscii(std::string_view text);
/// A text that is UTF-8 as Latin-1; each UTF-16 unit that Latin-1 does not have becomes '?'.
std::string latin1Of(std::string_view text);

/// A text "base[12]" taken apart. The base may be empty.
struct BitName {
    std::string_view base;
    long index;  // above INT_MAX for numbers that are no int

    static std::optional<BitName> of(std::string_view text);
    /// Whether the base is a name of its own.
    bool hasBase() const;
};

}  // namespace kiri::tov::impl_detail
