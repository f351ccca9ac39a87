#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tov/names/path_text.h"

namespace kiri::tov::impl_detail {

/// A word of a constraint, split into its parts: its levels, its wildcards, and the range of bits at its end.
///
/// Where `hasBits` is true, a text "base[3]" also reads as "base", and the range "base[7:0]" fits it.
class NameWord {
public:
    explicit NameWord(std::string_view word);

    /// Returns the Latin-1 form of a word that is UTF-8. What Latin-1 does not have becomes a literal '?'.
    NameWord latin1() const;

    bool isAscii() const { return isAscii_; }

    std::size_t levels() const { return levels_.size(); }
    /// A level without its escapes.
    std::string_view level(std::size_t i) const { return textOf(levels_[i].begin, levels_[i].end); }
    /// Where a level ends in text().
    std::size_t endOf(std::size_t level) const { return levels_[level].end; }
    bool isPattern() const { return whole_.wild < whole_.end; }
    bool isPattern(std::size_t level) const { return levels_[level].wild < levels_[level].end; }

    /// The whole word without its escapes, levels joined by '/'; in it, '*' and '?' may be literal.
    std::string_view text() const { return bytes_; }
    /// Of a pattern, for each byte of text(): '*' or '?' if it is a wildcard, else 0.
    std::string_view marks() const { return marks_; }
    /// The bytes before the first wildcard of text(), or of a level.
    std::string_view prefix() const { return textOf(0, whole_.wild); }
    std::string_view prefix(std::size_t level) const { return textOf(levels_[level].begin, levels_[level].wild); }
    /// A lower bound for the size of the paths that fit.
    std::size_t leastSize() const;

    /// Whether the word ends in a range; `rangeBegin()` is where it begins in text().
    bool hasRange() const { return rangeBegin_ != std::string::npos; }
    std::size_t rangeBegin() const { return rangeBegin_; }
    bool isInRange(long index) const { return low_ <= index && index <= high_; }

    /// Returns whether a level of the word fits the level of a path.
    bool fitsLevel(std::size_t i, std::string_view text) const { return fits(levels_[i], text); }
    /// Returns whether the last level fits the last level of a path.
    bool fitsLast(std::string_view text, bool hasBits) const { return fitsBits(levels_.back(), text, hasBits); }
    /// Returns whether the levels from `first` on fit the levels of a path, one by one.
    bool fitsPath(std::size_t first, std::string_view path, bool hasBits) const {
        return first + 1 == levels() ? fitsOneLevel(path, hasBits) : fitsLevels(first, path, hasBits);
    }
    /// Returns whether the whole word fits the whole path as one text.
    bool fitsFlat(std::string_view path, bool hasBits) const { return fitsBits(whole_, path, hasBits); }

private:
    /// A part of text(), and its first wildcard or its end.
    struct Part {
        std::size_t begin;
        std::size_t end;
        std::size_t wild;
    };

    NameWord() = default;
    std::size_t sizeUpTo(char const* end) const { return static_cast<std::size_t>(end - bytes_.data()); }
    char* add(char* end, char byte, bool isEscaped);
    void endLevel(std::size_t end);
    void endWord(char const* end);
    void findRange(std::size_t lastEscape);
    std::string_view textOf(std::size_t begin, std::size_t end) const { return {bytes_.data() + begin, end - begin}; }
    /// Returns whether a text begins with the bytes before the part's first wildcard.
    bool hasPrefix(Part const& part, std::string_view text) const {
        std::size_t const size = part.wild - part.begin;
        return text.size() >= size && equalPaths(bytes_.data() + part.begin, text.data(), size);
    }
    bool fits(Part const& part, std::string_view text) const {
        std::size_t const literal = part.wild - part.begin;
        bool const isWild = part.wild < part.end;
        if ((!isWild && text.size() != literal) || !hasPrefix(part, text)) return false;
        return !isWild || fitsWild(part.wild, part.end, text.substr(literal));
    }
    bool fitsWild(std::size_t begin, std::size_t end, std::string_view text) const;
    bool fitsBits(Part const& part, std::string_view text, bool hasBits) const {
        return fits(part, text) || (hasBits && !text.empty() && text.back() == ']' && fitsAsBit(part, text));
    }
    bool fitsAsBit(Part const& part, std::string_view text) const;
    /// Whether the last level fits a path of one level.
    bool fitsOneLevel(std::string_view path, bool hasBits) const {
        return fitsLast(path, hasBits) && std::none_of(path.begin(), path.end(), isSeparator);
    }
    bool fitsLevels(std::size_t first, std::string_view path, bool hasBits) const;

    std::string bytes_;
    std::string marks_;
    Part whole_{};
    std::vector<Part> levels_;
    std::size_t rangeBegin_ = std::string::npos;
    bool isAscii_ = true;
    long low_ = 0;
    long high_ = 0;
};

bool isUtf8BeyondAscii(std::string_view text);
/// Returns a text that is UTF-8 as Latin-1; each UTF-16 unit that Latin-1 does not have becomes '?'.
std::string latin1Of(std::string_view text);

/// A text "base[12]", split. The base may be empty.
struct BitName {
    std::string_view base;
    long index;  // above INT_MAX for numbers beyond int

    static std::optional<BitName> of(std::string_view text);
    /// Whether the base is a name of its own.
    bool hasBase() const;
};

}  // namespace kiri::tov::impl_detail
