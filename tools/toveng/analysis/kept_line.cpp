#include "analysis/kept_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>

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
    for (char c : std::string_view(" \t\n\r\v\f[]{}\"")) table[static_cast<unsigned char>(c)] = separator;
    return table;
}();

bool isPlainWord(std::string_view word) {
    auto const isPlain = [](char c) { return classes[static_cast<unsigned char>(c)] == plain; };
    return !word.empty() && word[0] != '-' && std::all_of(word.begin(), word.end(), isPlain);
}

// A plain word, or a bit of one.
bool isPlainName(std::string_view name) {
    std::size_t const open = name.find('[');
    if (open == std::string_view::npos) return isPlainWord(name);
    return name.back() == ']' && isPlainWord(name.substr(0, open)) &&
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

std::uint64_t hashOfWord(std::string_view word) {
    constexpr std::uint64_t factor = 0x9e3779b97f4a7c15;
    std::uint64_t hash = word.size() * factor;
    while (!word.empty()) {
        std::uint64_t chars = 0;
        std::size_t const size = std::min(word.size(), sizeof chars);
        std::memcpy(&chars, word.data(), size);
        hash = (hash ^ chars) * factor;
        hash ^= hash >> 32;
        word.remove_prefix(size);
    }
    return hash;
}

// Adds up the words of a text, regardless of their order, and numbers by value. Returns false if a word begins like a
// number but is not one.
bool addWords(std::string_view text, std::uint64_t& sum) {
    constexpr std::uint64_t ofNumbers = 0x5bd1e995;
    for (std::size_t at = 0; at < text.size();) {
        if (classes[static_cast<unsigned char>(text[at])] == separator) {
            ++at;
            continue;
        }
        std::size_t end = at + 1;
        while (end < text.size() && classes[static_cast<unsigned char>(text[end])] != separator) ++end;
        std::string_view const word = text.substr(at, end - at);
        at = end;
        char const first = word[0] == '-' && word.size() > 1 ? word[1] : word[0];
        if (first < '0' || first > '9') {
            sum += hashOfWord(word);
            continue;
        }
        double value = 0;
        auto const [last, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (error != std::errc() || last != word.data() + word.size()) return false;
        float const number = static_cast<float>(value) + 0.0F;  // -0 is 0
        std::uint32_t bits = 0;
        std::memcpy(&bits, &number, sizeof bits);
        sum += (bits + 1) * ofNumbers * 0x9e3779b97f4a7c15;
    }
    return true;
}

}  // namespace

bool isCertainlyKept(std::string_view line, Command const& command) {
    if (command.list == TOVCMD_ATTRIBUTE || line.find('\0') != std::string_view::npos) return false;
    if (!hasPlainNames(command)) return false;
    std::string const saved = command.cmd.toSaveString(nullptr);
    std::uint64_t words = 0;
    std::uint64_t savedWords = 0;
    return saved.find("inf") == std::string::npos && addWords(line, words) && addWords(saved, savedWords) &&
           words == savedWords;
}

}  // namespace tool
