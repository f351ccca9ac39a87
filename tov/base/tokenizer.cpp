#include "tov/base/tokenizer_p.h"

#include <cstring>

namespace kiri::tov::impl_detail {

namespace {

// Returns the group at the start of a text, with its brackets; the whole text if nothing closes it. The matcher skips
// only one nested group: a group ends at the first `close` after its first nested group. Saved files rely on this
// limit.
std::string_view groupOf(char const* at, char const* end, char open, char close) {
    auto const find = [](char const* from, char c, char const* to) {
        return static_cast<char const*>(std::memchr(from, c, static_cast<std::size_t>(to - from)));
    };
    char const* last = find(at, close, end);
    bool const nested = last != nullptr && find(at + 1, open, last) != nullptr;
    if (nested) last = find(last + 1, close, end);
    return {at, static_cast<std::size_t>(last == nullptr ? end - at : last + 1 - at)};
}

}  // namespace

// Takes the word that begins with a quote, bracket or brace.
std::string_view WordCursor::takeEnclosed() {
    if (*at_ == '"') {
        std::string_view const rest(at_ + 1, static_cast<std::size_t>(end_ - at_ - 1));
        std::string_view const quoted = rest.substr(0, rest.find('"'));
        at_ = quoted.size() == rest.size() ? end_ : at_ + quoted.size() + 2;
        return trim(quoted);
    }
    std::string_view const group = *at_ == '[' ? groupOf(at_, end_, '[', ']') : groupOf(at_, end_, '{', '}');
    at_ += group.size();
    return group;
}

}  // namespace kiri::tov::impl_detail

namespace kiri::tov {

std::vector<std::string> tokenizeTclString(std::string const& line) {
    std::vector<std::string> words;
    impl_detail::WordCursor cursor(line);
    for (std::string_view word; cursor.next(word);) words.emplace_back(word);
    return words;
}

}  // namespace kiri::tov
