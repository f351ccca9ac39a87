#include "tov/tokenizer.h"

namespace kiri::tov {

namespace {

constexpr std::size_t none = std::string_view::npos;

// Position of the character that closes the group at the start of `text`. The matcher skips one nested group
// and no more: a group ends at the first `close` behind the first nested group. Saved files rely on this
// limit.
std::size_t groupEnd(std::string_view text, char open, char close) {
    std::size_t const firstClose = text.find(close, 1);
    if (firstClose == none) return none;
    bool const nested = text.substr(1, firstClose - 1).find(open) != none;
    return nested ? text.find(close, firstClose + 1) : firstClose;
}

std::size_t plainEnd(std::string_view text) {
    std::size_t end = 0;
    while (end < text.size() && !isSpace(text[end])) ++end;
    return end;
}

}  // namespace

// Cuts the next word, `size` characters long, and `skip` characters behind it off the rest.
std::string_view WordCursor::take(std::size_t size, std::size_t skip) {
    std::string_view const word = rest_.substr(0, size);
    rest_ = size + skip < rest_.size() ? trimFront(rest_.substr(size + skip)) : std::string_view();
    return word;
}

bool WordCursor::next(std::string_view& word) {
    if (rest_.empty()) return false;
    char const first = rest_.front();
    if (first == '"') {
        rest_.remove_prefix(1);
        std::size_t const quote = rest_.find('"');
        word = trim(quote == none ? take(rest_.size(), 0) : take(quote, 1));
    } else if (first == '[' || first == '{') {
        std::size_t const end = first == '[' ? groupEnd(rest_, '[', ']') : groupEnd(rest_, '{', '}');
        word = take(end == none ? rest_.size() : end + 1, 0);
    } else {
        word = take(plainEnd(rest_), 0);
    }
    return true;
}

std::vector<std::string> tokenizeTclString(std::string const& line) {
    std::vector<std::string> words;
    WordCursor cursor(line);
    for (std::string_view word; cursor.next(word);) words.emplace_back(word);
    return words;
}

}  // namespace kiri::tov
