// The words of a line, compared with a simple model.

#include <map>

#include "fuzz/fuzz.h"
#include "tov/base/tokenizer_p.h"

namespace {

std::string const space = " \t\n\r\v\f";

std::string trimmed(std::string const& text) {
    std::size_t const first = std::min(text.find_first_not_of(space), text.size());
    return text.substr(first, text.find_last_not_of(space) + 1 - first);
}

// Returns the end of the first word of a text. The place where the whole text first closes shows the one nested group
// that a group may hold.
std::size_t wordEnd(std::string const& text) {
    std::map<char, char> const closing = {{'[', ']'}, {'{', '}'}};
    if (text[0] == '"') return text.find('"', 1);
    auto const group = closing.find(text[0]);
    if (group == closing.end()) return text.find_first_of(space);
    std::size_t const closed = text.find(group->second);
    bool const nested = closed != text.npos && text.find(group->first, 1) < closed;
    return text.find(group->second, nested ? closed + 1 : 1);
}

std::vector<std::string> wordsOf(std::string const& line) {
    std::vector<std::string> words;
    std::string rest = trimmed(line);
    std::string const ends = {rest[0], rest.empty() ? rest[0] : rest.back()};
    if (rest.size() > 1 && (ends == "[]" || ends == "{}")) rest = trimmed(rest.substr(1, rest.size() - 2));
    while (!rest.empty()) {
        std::size_t const end = wordEnd(rest);
        std::string const word = rest.substr(0, end == rest.npos ? end : end + 1);
        bool const quoted = word[0] == '"';
        words.push_back(trimmed(quoted ? word.substr(1, end == rest.npos ? end : end - 1) : word));
        rest = trimmed(rest.substr(word.size()));
    }
    return words;
}

}  // namespace

void fuzz::run(std::string const& input) {
    fuzz::require(kiri::tov::tokenizeTclString(input) == wordsOf(input), "the words of a line", input);
}
