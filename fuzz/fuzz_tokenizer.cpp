// The words of a line, against the rules of the format told step by step.

#include "fuzz/fuzz.h"
#include "tov/tokenizer.h"

namespace {

std::string trimmed(std::string const& text) {
    constexpr char const* space = " \t\n\r\v\f";
    std::size_t const first = text.find_first_not_of(space);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(space) - first + 1);
}

// The one nested group that a group may hold is found by where the whole rest first closes.
std::size_t groupEnd(std::string const& rest, char open, char close) {
    std::size_t from = 1;
    for (;;) {
        std::size_t const opened = rest.find(open, from);
        std::size_t const closed = rest.find(close, 0);
        if (opened == std::string::npos || closed == std::string::npos || closed <= opened) break;
        from = closed + 1;
    }
    return rest.find(close, from);
}

std::vector<std::string> wordsOf(std::string const& line) {
    std::vector<std::string> words;
    std::string rest = trimmed(line);
    if (!rest.empty() && ((rest.front() == '[' && rest.back() == ']') || (rest.front() == '{' && rest.back() == '}'))) {
        rest = trimmed(rest.substr(1, rest.size() - 2));
    }
    while (!rest.empty()) {
        if (rest.front() == '"') {
            std::size_t const quote = rest.find('"', 1);
            bool const closed = quote != std::string::npos;
            words.push_back(trimmed(closed ? rest.substr(1, quote - 1) : rest.substr(1)));
            rest = closed ? trimmed(rest.substr(quote + 1)) : "";
            continue;
        }
        std::size_t const end = rest.front() == '['   ? groupEnd(rest, '[', ']')
                                : rest.front() == '{' ? groupEnd(rest, '{', '}')
                                                      : rest.find_first_of(" \t\n\r\v\f");
        words.push_back(trimmed(end == std::string::npos ? rest : rest.substr(0, end + 1)));
        rest = end == std::string::npos ? "" : trimmed(rest.substr(end + 1));
    }
    return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const line(reinterpret_cast<char const*>(data), size);
    fuzz::require(kiri::tov::tokenizeTclString(line) == wordsOf(line), "the words of a line", line);
    return 0;
}
