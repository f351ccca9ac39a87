#ifndef TOVENG_TOV_TOKENIZER_H
#define TOVENG_TOV_TOKENIZER_H

#include <string>
#include <string_view>
#include <vector>

#include "tov/text.h"

namespace kiri::tov {

/// Gives the words of a line one by one, as views into it. The walk over all words is linear in the line.
class WordCursor {
public:
    explicit WordCursor(std::string_view line) : rest_(trim(line)) {
        if (isEnclosed(rest_, '[', ']') || isEnclosed(rest_, '{', '}')) {
            rest_ = trim(rest_.substr(1, rest_.size() - 2));
        }
    }

    /// Puts the next word into `word`. False at the end of the line, `word` untouched.
    bool next(std::string_view& word);

private:
    static bool isEnclosed(std::string_view text, char open, char close) {
        return text.size() >= 2 && text.front() == open && text.back() == close;
    }
    std::string_view take(std::size_t size, std::size_t skip);

    std::string_view rest_;  // begins at a word; no white space at its end
};

/// Returns all words of `line`.
std::vector<std::string> tokenizeTclString(std::string const& line);

}  // namespace kiri::tov

#endif
