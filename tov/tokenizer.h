#ifndef TOVENG_TOV_TOKENIZER_H
#define TOVENG_TOV_TOKENIZER_H

#include <string>
#include <string_view>
#include <vector>

namespace kiri::tov {

/// Gives the words of a line one by one, as views into it. The walk over all words is linear in the line.
class WordCursor {
public:
    explicit WordCursor(std::string_view line);

    /// Puts the next word into `word`. False at the end of the line, `word` untouched.
    bool next(std::string_view& word);

private:
    char const* at_;  // the next word, or the end; no white space stands before the end
    char const* end_;
};

/// Returns all words of `line`.
std::vector<std::string> tokenizeTclString(std::string const& line);

}  // namespace kiri::tov

#endif
