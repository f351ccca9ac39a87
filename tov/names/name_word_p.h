#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "tov/names/path_text_p.h"

namespace kiri::tov::impl_detail {

/// How far a word is matched after the first bytes of a path. For the word "u*/CK" and the path "u12/CK":
///
///     "u"     at 1   star none
///     "u12"   at 2   star 1  starEnd 3: the '*' matches "12"; on a mismatch it takes one byte more
///     "u12/"  at 3   star none: level by level, a '*' matches nothing of another level
struct Match {
    static constexpr std::size_t none = std::string_view::npos;

    std::size_t at = 0;       ///< the symbols of the word that match; none if no path that begins so fits
    std::size_t star = none;  ///< the last '*' among them, if it may match more
    std::size_t starEnd = 0;  ///< where in the path what it matches ends
    bool crosses = false;     ///< wildcards match separators, too

    bool isDead() const { return at == none; }
};

/// What a word of a constraint says, taken apart: its bytes without escapes, its wildcards, and the range of bits that
/// it stands for.
class NameWord {
public:
    /// The bytes of `word` must outlive the object.
    explicit NameWord(std::string_view word);

    /// Whether the word ends in a range of bits.
    bool endsInRange() const { return rangeLow_ <= rangeHigh_; }
    /// Returns such a word as a range, "d[7:0]" as "d" with the indexes 0 to 7. The word must outlive it.
    NameWord asRange() const;

    /// The word without escapes and range, levels joined by '/'; in it, '*' and '?' may be literal.
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
    /// Returns how the level that begins at `at` begins.
    Literal literalAt(std::size_t at) const;

    /// The match of an empty path, or of one that leads up to `at`.
    static Match start(bool crosses, std::size_t at = 0) { return {at, Match::none, 0, crosses}; }
    /// Goes on with the bytes of a path from `from` on. Bytes before `from` are read only if the match crosses levels.
    Match advance(Match match, std::string_view path, std::size_t from = 0) const;
    /// Returns whether the path so far fits the whole word.
    bool accepts(Match const& match) const {
        return match.at == text_.size() || (match.at + 1 == text_.size() && isWild(match.at, '*'));
    }
    /// Returns whether a path fits whose first `from` bytes led to `match`. A text "base[3]" also reads as "base", and
    /// only such a text fits a range.
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
    /// Returns whether the bytes of a path from `from` on begin with what is left of a word without wildcards.
    bool hasRest(Match const& match, std::string_view path, std::size_t from) const {
        std::size_t const size = text_.size() - match.at;
        return path.size() - from >= size && equalPaths(text_.data() + match.at, path.data() + from, size);
    }
    void findRange(std::size_t lastEscape);

    std::string_view text_;  // the word, if nothing in it is special, else `bytes_`
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
/// is UTF-8 beyond ASCII.
template <class Visit>
void forEachForm(std::string_view word, Visit visit);

bool isUtf8BeyondAscii(std::string_view text);
/// Returns a text that is UTF-8 as Latin-1; each UTF-16 unit that Latin-1 does not have becomes '?'. In a word, the '?'
/// is escaped.
std::string latin1Of(std::string_view text, bool isWord);

/// A text "base[12]", split. The base may be empty.
struct BitName {
    std::string_view base;
    long index;  // above INT_MAX for numbers beyond int

    static std::optional<BitName> of(std::string_view text);
    /// Whether the base is a name of its own.
    bool hasBase() const { return !base.empty() && !isSeparator(base.back()); }
};

/// Returns what the last level of a path reads as without its indexes: "m" for "u/m[1][2]".
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
