#include "analysis/nesting.h"

#include <algorithm>
#include <array>

#include "analysis/words.h"

namespace tool {

namespace {

// Characters that may begin or end something; all others are always part of a word.
constexpr auto syntaxCharacters = [] {
    std::array<bool, 256> table{};
    for (char c : std::string_view(" \t\n\r\v\f\\\"{}[];#")) table[static_cast<unsigned char>(c)] = true;
    return table;
}();

bool isInWord(char c) {
    return !syntaxCharacters[static_cast<unsigned char>(c)];
}

}  // namespace

void Nesting::clear() {
    frames_.clear();
    commandBegins_ = wordBegins_ = true;
    endsInBackslash_ = lastIsOpenBrace_ = false;
}

void Nesting::open(Frame frame) {
    frames_.push_back(frame);
    commandBegins_ = wordBegins_ = frame == Frame::bracket;
}

void Nesting::close() {
    frames_.pop_back();
    commandBegins_ = wordBegins_ = false;
}

std::size_t Nesting::readToClose(std::string_view line, std::size_t at) {
    endsInBackslash_ = lastIsOpenBrace_ = false;
    while (at < line.size()) {
        std::size_t const depth = frames_.size();
        if (depth == 0 || top() == Frame::bracket) {
            readInCommand(line, at);
        } else if (top() == Frame::brace) {
            readInBrace(line, at);
        } else {
            readInQuote(line, at);
        }
        if (frames_.size() < depth) return at;
    }
    return npos;
}

void Nesting::endLine() {
    bool const isCommand = frames_.empty() || top() == Frame::bracket;
    if (!isCommand) return;
    wordBegins_ = true;
    if (!endsInBackslash_) commandBegins_ = true;
}

bool Nesting::endsInOpenBrace() const {
    auto const isBrace = [](Frame frame) { return frame == Frame::brace; };
    return lastIsOpenBrace_ && std::all_of(frames_.begin(), frames_.end(), isBrace);
}

// `at` is the place of a "\".
void Nesting::skipEscape(std::string_view line, std::size_t& at) {
    endsInBackslash_ = at + 1 == line.size();
    at = std::min(at + 2, line.size());
}

// Each of these reads up to and including the next character that opens or closes a frame.

void Nesting::readInBrace(std::string_view line, std::size_t& at) {
    while (at < line.size()) {
        char const c = line[at];
        if (isInWord(c)) {
            lastIsOpenBrace_ = false;
            ++at;
            continue;
        }
        if (c == '\\') {
            lastIsOpenBrace_ = false;
            skipEscape(line, at);
            continue;
        }
        ++at;
        if (c == '{') {
            lastIsOpenBrace_ = true;
            return open(Frame::brace);
        }
        if (!isSpace(c)) lastIsOpenBrace_ = false;
        if (c != '}') continue;
        close();
        // What follows {*} is a word.
        bool const isExpansion = at >= 3 && line.substr(at - 3, 3) == "{*}";
        if (isExpansion && (frames_.empty() || top() == Frame::bracket)) wordBegins_ = true;
        return;
    }
}

void Nesting::readInQuote(std::string_view line, std::size_t& at) {
    while (at < line.size()) {
        char const c = line[at];
        if (c == '\\') {
            skipEscape(line, at);
            continue;
        }
        ++at;
        if (c == '[') return open(Frame::bracket);
        if (c == '"') return close();
    }
}

void Nesting::readInCommand(std::string_view line, std::size_t& at) {
    while (at < line.size()) {
        if (isInWord(line[at])) {
            while (++at < line.size() && isInWord(line[at])) {
            }
            commandBegins_ = wordBegins_ = false;
            continue;
        }
        char const c = line[at];
        if (c == '#' && commandBegins_) {
            at = line.size();
            return;
        }
        if (c == '\\') {
            skipEscape(line, at);
            if (!endsInBackslash_) commandBegins_ = wordBegins_ = false;
            continue;
        }
        ++at;
        if (isSpace(c)) {
            wordBegins_ = true;
        } else if (c == ';') {
            commandBegins_ = wordBegins_ = true;
        } else if (c == '[') {
            return open(Frame::bracket);
        } else if (c == ']' && !frames_.empty()) {
            return close();
        } else if (c == '{' && wordBegins_) {
            lastIsOpenBrace_ = true;
            return open(Frame::brace);
        } else if (c == '"' && wordBegins_) {
            return open(Frame::quote);
        } else {
            commandBegins_ = wordBegins_ = false;
        }
    }
}

}  // namespace tool
