#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "tov/names/path_text_p.h"

namespace kiri::tov::impl_detail {

/// How far a word has matched after the first bytes of a path. For the word "u*/CK" and the path "u12/CK":
///
///     "u"     at 1   star none
///     "u12"   at 2   star 1  starEnd 3: the '*' matches "12"; on a mismatch it takes one byte more
///     "u12/"  at 3   star none: level by level, a '*' matches nothing of another level
struct Match {
    static constexpr std::size_t none = std::string_view::npos;

    std::size_t at = 0;       ///< matching symbols of the word; none if no path with this prefix can match
    std::size_t star = none;  ///< the last '*' among them, if it may match more
    std::size_t starEnd = 0;  ///< end of its match in the path
    bool crosses = false;     ///< wildcards match separators, too

    bool isDead() const { return at == none; }
};

/// A parsed word of a constraint: its bytes without escapes, its wildcards, and its range of bits.
class NameWord {
public:
    /// The bytes of `word` must outlive the object.
    explicit NameWord(std::string_view word);

    /// Whether the word ends in a range of bits.
    bool endsInRange() const { return rangeLow_ <= rangeHigh_; }
    /// Returns such a word as a range: "d[7:0]" as "d" with the indexes 0 to 7. The word must outlive the result.
    NameWord asRange() const;

    /// The word without escapes and range, with levels joined by '/'; '*' and '?' in it may be literal.
    std::string_view text() const { return text_; }
    std::size_t levels() const { return levels_; }
    bool isPattern() const { return wild_ < text_.size(); }
    bool isRange() const { return low_ <= high_; }
    bool isAscii() const { return isAscii_; }
    /// The bytes before the first wildcard.
    std::string_view prefix() const { return text_.substr(0, wild_); }
    /// The bytes before a wildcard or the end of a level.
    struct Literal {
        std::string_view text;
        PathHash hash;
        bool isLevel;  // the level has no wildcard
    };
    /// Returns the literal prefix of the level that begins at `at`.
    Literal literalAt(std::size_t at) const;

    /// The match of an empty path, or of one that leads up to `at`.
    static Match start(bool crosses, std::size_t at = 0) { return {at, Match::none, 0, crosses}; }
    /// Continues the match with the bytes of a path from `from` on. Bytes before `from` are read only if the match
    /// crosses levels.
    Match advance(Match match, std::string_view path, std::size_t from = 0) const;
    /// Returns whether the whole word matches the path so far.
    bool accepts(Match const& match) const {
        return match.at == text_.size() || (match.at + 1 == text_.size() && isWild(match.at, '*'));
    }
    /// Returns whether the word matches a path whose first `from` bytes led to `match`. A text "base[3]" also reads as
    /// "base", and a range matches only such a text.
    bool fits(Match const& match, std::string_view path, std::size_t from, bool hasBits) const {
        if (!isRange() && fitsText(match, path, from)) return true;
        bool const mayBeBit = hasBits && !path.empty() && path.back() == ']' && !match.isDead();
        return mayBeBit && (isPattern() || hasRest(match, path, from)) && fitsAsBit(match, path, from);
    }
    bool fits(std::string_view path, bool hasBits, bool crosses) const {
        return fits(start(crosses), path, 0, hasBits);
    }

private:
    NameWord(NameWord const&) = default;
    void takeSpecial(std::string_view word);
    bool isWild(std::size_t at, char wildcard) const { return isPattern() && marks_[at] == wildcard; }
    bool fitsText(Match const& match, std::string_view path, std::size_t from) const {
        if (isPattern()) return mayFit(match, path, from) && accepts(advance(match, path, from));
        return !match.isDead() && path.size() - from == text_.size() - match.at && hasRest(match, path, from);
    }
    /// Compares the first byte: it differs in most names.
    bool mayFit(Match const& match, std::string_view path, std::size_t from) const {
        bool const isLiteral = match.star == Match::none && match.at < text_.size() && marks_[match.at] == '\0';
        return !isLiteral || from == path.size() || pathByte(path[from]) == text_[match.at];
    }
    bool fitsAsBit(Match const& match, std::string_view path, std::size_t from) const;
    /// Returns whether the bytes of a path from `from` on begin with the rest of a word without wildcards.
    bool hasRest(Match const& match, std::string_view path, std::size_t from) const {
        std::size_t const size = text_.size() - match.at;
        return path.size() - from >= size && equalPaths(text_.data() + match.at, path.data() + from, size);
    }
    void findRange(std::size_t lastEscape);

    std::string_view text_;  // the word if nothing in it is special, else `bytes_`
    std::string bytes_;
    std::string marks_;  // of a pattern, for each byte of text_: '*' or '?' if it is a wildcard, else 0
    std::size_t wild_;   // the first wildcard, or the end
    // The range at the end of text_, and the one that the word stands for; there is none where low is above high.
    std::size_t rangeBegin_ = 0;
    long rangeLow_ = 1;
    long rangeHigh_ = 0;
    long low_ = 1;
    long high_ = 0;
    std::size_t levels_ = 1;
    bool isAscii_ = true;
};

/// Calls `visit` with each form of a word, until it returns false: the word, its range, and both in Latin-1 if the word
/// is non-ASCII UTF-8.
template <class Visit>
void forEachForm(std::string_view word, Visit visit);

bool isUtf8BeyondAscii(std::string_view text);
/// Converts a text from UTF-8 to Latin-1; each UTF-16 unit that Latin-1 does not have becomes '?'. In a word, the '?'
/// is escaped.
std::string latin1Of(std::string_view text, bool isWord);

/// A text "base[12]", split. The base may be empty.
struct BitName {
    std::string_view base;
    long index;  // above INT_MAX for numbers beyond int

    static std::optional<BitName> of(std::string_view text);
    /// Whether the base is also a name.
    bool hasBase() const { return !base.empty() && !isSeparator(base.back()); }
};

/// Returns the last level of a path without its indexes: "m" for "u/m[1][2]".
std::string_view busOf(std::string_view path);

template <class Visit>
void forEachForm(std::string_view word, Visit visit) {
    auto const visitBoth = [&](NameWord const& form) {
        return visit(form) && (!form.endsInRange() || visit(form.asRange()));
    };
    NameWord const form(word);
    if (!visitBoth(form) || form.isAscii() || !isUtf8BeyondAscii(word)) return;
    visitBoth(NameWord(latin1Of(word, true)));
}

}  // namespace kiri::tov::impl_detail
