#include "tov/tokenizer.h"

#include "tov/text.h"

namespace kiri::tov {

namespace {

bool isEnclosed(std::string_view text, char open, char close) {
    return text.size() >= 2 && text.front() == open && text.back() == close;
}

// The group at the start of `text`, with its brackets; all of the text if nothing closes it. The matcher skips one
// nested group and no more: a group ends at the first `close` after the first nested group. Saved files rely on this
// limit.
std::string_view groupOf(std::string_view text, char open, char close) {
    std::size_t end = text.find(close, 1);
    bool const nested = end != std::string_view::npos && text.substr(1, end - 1).find(open) != std::string_view::npos;
    if (nested) end = text.find(close, end + 1);
    return end == std::string_view::npos ? text : text.substr(0, end + 1);
}

}  // namespace

WordCursor::WordCursor(std::string_view line) {
    line = trim(line);
    if (isEnclosed(line, '[', ']') || isEnclosed(line, '{', '}')) line = trim(line.substr(1, line.size() - 2));
    at_ = line.data();
    end_ = at_ + line.size();
}

bool WordCursor::next(std::string_view& word) {
    if (at_ == end_) return false;
    char const* const first = at_;
    char const* const end = end_;
    char const* at = first;  // the end of the word
    std::string_view const rest(first, static_cast<std::size_t>(end - first));
    if (*first == '"') {
        std::size_t const quote = rest.find('"', 1);
        bool const closed = quote != std::string_view::npos;
        word = trim(closed ? rest.substr(1, quote - 1) : rest.substr(1));
        at = closed ? first + quote + 1 : end;
    } else if (*first == '[' || *first == '{') {
        word = *first == '[' ? groupOf(rest, '[', ']') : groupOf(rest, '{', '}');
        at = first + word.size();
    } else {
        while (at != end && !isSpace(*at)) ++at;
        word = std::string_view(first, static_cast<std::size_t>(at - first));
    }
    while (at != end && isSpace(*at)) ++at;
    at_ = at;
    return true;
}

std::vector<std::string> tokenizeTclString(std::string const& line) {
    std::vector<std::string> words;
    WordCursor cursor(line);
    for (std::string_view word; cursor.next(word);) words.emplace_back(word);
    return words;
}

}  // namespace kiri::tov
