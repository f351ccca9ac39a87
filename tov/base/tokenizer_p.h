#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tov/base/text_p.h"

namespace kiri::tov::impl_detail {

/// Walks over the words of a line, which are views into it, in linear time.
class WordCursor {
public:
    explicit WordCursor(std::string_view line) {
        line = trim(line);
        if (isGroup(line)) line = trim(line.substr(1, line.size() - 2));
        at_ = line.data();
        end_ = at_ + line.size();
    }

    /// A line without words.
    WordCursor() = default;

    /// The words after the first one, which ends at `at`. The line must not end in white space.
    WordCursor(char const* at, char const* end) : at_(at), end_(end) {
        if (at_ != end_) at_ = skipSpace(at_);
    }

    /// Stores the next word in `word`. At the end of the line, returns false and leaves `word` as it was.
    bool next(std::string_view& word) {
        if (at_ == end_) return false;
        if (opensGroupOrQuote(*at_)) {
            word = takeEnclosed();
        } else {
            char const* const first = at_;
            at_ = findSpace(first, end_);
            word = std::string_view(first, static_cast<std::size_t>(at_ - first));
        }
        if (at_ != end_) at_ = skipSpace(at_);
        return true;
    }

    /// Returns whether the next word is a plain one, which ends at white space.
    bool isAtPlainWord() const { return at_ != end_ && !opensGroupOrQuote(*at_); }

private:
    // Returns whether brackets or braces enclose the whole text.
    static bool isGroup(std::string_view text) {
        if (text.size() < 2 || !opensGroupOrQuote(text.front())) return false;
        return (text.front() == '[' && text.back() == ']') || (text.front() == '{' && text.back() == '}');
    }

    // The text does not end in white space, so the end needs no test.
    static char const* skipSpace(char const* at) {
        while (isSpace(*at)) ++at;
        return at;
    }

    std::string_view takeEnclosed();

    char const* at_ = nullptr;  // the next word, or the end; the last character is not white space
    char const* end_ = nullptr;
};

}  // namespace kiri::tov::impl_detail

namespace kiri::tov {

/// Returns all words of `line`.
std::vector<std::string> tokenizeTclString(std::string const& line);

}  // namespace kiri::tov
