#include "analysis/kept_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>

#include "analysis/words.h"
#include "tov/cmd/commands.h"

using namespace kiri::tov;

namespace tool {

namespace {

enum CharacterClass : std::uint8_t { other, plain, separator };

constexpr auto classes = [] {
    std::array<CharacterClass, 256> table{};
    for (char c : std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_/.:*?-")) {
        table[static_cast<unsigned char>(c)] = plain;
    }
    for (char c : separators) table[static_cast<unsigned char>(c)] = separator;
    return table;
}();

bool isPlainWord(std::string_view word) {
    auto const isPlain = [](char c) { return classes[static_cast<unsigned char>(c)] == plain; };
    return !word.empty() && word[0] != '-' && std::all_of(word.begin(), word.end(), isPlain);
}

// A plain word, or a bit of one.
bool isPlainName(std::string_view name) {
    if (isPlainWord(name)) return true;
    std::size_t const open = name.find('[');
    return open != std::string_view::npos && name.back() == ']' && isPlainWord(name.substr(0, open)) &&
           isPlainWord(name.substr(open + 1, name.size() - open - 2));
}

bool hasPlainNames(Command const& command) {
    std::string const* clockName = nullptr;
    if (command.list == TOVCMD_CLOCK) clockName = &static_cast<TovCmdClockDef const&>(command.cmd).clockName;
    if (command.list == TOVCMD_GENCLOCK) clockName = &static_cast<TovCmdGenClockDef const&>(command.cmd).clockName;
    if (clockName != nullptr && !clockName->empty() && !isPlainName(*clockName)) return false;
    return std::all_of(
        command.references.begin(), command.references.end(), [&command](TovReferences const& references) {
            bool const isGroup = command.list == TOVCMD_CLOCKGROUP;
            return !(isGroup && references.list->empty()) &&
                   std::all_of(references.list->begin(), references.list->end(), [isGroup](taDciObj const* object) {
                       bool const isNamed = object != nullptr && object->name != nullptr;
                       if (isGroup) return isNamed && object->type == taDciObjClock && isPlainWord(object->name);
                       return isNamed && isPlainName(object->name);
                   });
        });
}

bool isSeparator(char c) {
    return classes[static_cast<unsigned char>(c)] == separator;
}

void skipSeparators(std::string_view& text) {
    auto const* const word = std::find_if_not(text.begin(), text.end(), isSeparator);
    text.remove_prefix(static_cast<std::size_t>(word - text.begin()));
}

// Returns the word that a text begins with, and removes it there.
std::string_view takeWord(std::string_view& text) {
    auto const* const end = std::find_if(text.begin(), text.end(), isSeparator);
    std::string_view const word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(word.size());
    return word;
}

// Removes a word that a text begins with. Returns false if it begins with another.
bool skipWord(std::string_view& text, std::string_view word) {
    bool const isThere = startsWith(text, word) && (text.size() == word.size() || isSeparator(text[word.size()]));
    if (isThere) text.remove_prefix(word.size());
    return isThere;
}

bool beginsLikeNumber(std::string_view word) {
    char const first = word.size() > 1 && word[0] == '-' ? word[1] : word[0];
    return first >= '0' && first <= '9';
}

// Adds a word to a sum, a number by its value. Returns false if the word begins like a number but is not one.
bool addToSum(std::string_view word, std::uint64_t& sum) {
    std::hash<std::string_view> const hash;
    if (!beginsLikeNumber(word)) {
        sum += hash(word);
        return true;
    }
    double value = 0;
    auto const [last, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || last != word.data() + word.size()) return false;
    float const number = static_cast<float>(value) + 0.0F;  // -0 is 0
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof bytes);
    sum += ~hash({bytes, sizeof bytes});
    return true;
}

// Returns whether two texts certainly have the same words, in any order; numbers are compared by value.
bool haveSameWords(std::string_view text, std::string_view other) {
    std::uint64_t sum = 0;
    std::uint64_t otherSum = 0;
    for (;;) {
        skipSeparators(text);
        skipSeparators(other);
        if (text.empty() && other.empty()) return sum == otherSum;
        std::string_view const word = takeWord(text);
        if (!word.empty() && !beginsLikeNumber(word) && skipWord(other, word)) continue;  // most words of most lines
        std::string_view const otherWord = takeWord(other);
        if (!word.empty() && !addToSum(word, sum)) return false;
        if (!otherWord.empty() && !addToSum(otherWord, otherSum)) return false;
    }
}

}  // namespace

bool isCertainlyKept(std::string_view line, Command const& command) {
    if (command.list == TOVCMD_ATTRIBUTE || line.find('\0') != std::string_view::npos) return false;
    return hasPlainNames(command) && haveSameWords(line, command.cmd.toSaveString(nullptr));
}

}  // namespace tool
