#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tov/text.h"

namespace kiri::tov {

/// Gives the words of a line one by one, as views into it. The walk over all words is linear in the line.
class WordCursor {
public:
    explicit WordCursor(std::string_view line) {
        line = trim(line);
        if (isEnclosed(line, '[', ']') || isEnclosed(line, '{', '}')) line = trim(line.substr(1, line.size() - 2));
        at_ = line.data();
        end_ = at_ + line.size();
    }

    /// Puts the next word into `word`. False at the end of the line, `word` untouched.
    bool next(std::string_view& word) {
        if (at_ == end_) return false;
        if (isEnclosing(*at_)) {
            word = takeEnclosed();
        } else {
            char const* const first = at_;
            at_ = findSpace(first, end_);
            word = std::string_view(first, static_cast<std::size_t>(at_ - first));
        }
        while (at_ != end_ && isSpace(*at_)) ++at_;
        return true;
    }

private:
    static bool isEnclosed(std::string_view text, char open, char close) {
        return text.size() >= 2 && text.front() == open && text.back() == close;
    }

    std::string_view takeEnclosed();

    char const* at_;  // the next word, or the end; no white space stands before the end
    char const* end_;
};

/// Returns all words of `line`.
std::vector<std::string> tokenizeTclString(std::string const& line);

}  // namespace kiri::tov
