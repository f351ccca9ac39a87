#include "analysis/command_key.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <iterator>
#include <string_view>

#include "analysis/words.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"

using namespace kiri::tov;

namespace tool {

namespace {

using Hash = std::uint64_t;

// Mixes a part into a hash; the order of the parts matters.
Hash mixed(Hash hash, Hash part) {
    hash = (hash ^ part) * 0x9e3779b97f4a7c15;
    return hash ^ (hash >> 29);
}

Hash hashOf(std::string_view text) {
    return std::hash<std::string_view>()(text);
}

Hash hashOf(std::string_view role, taDciObjTyp type, TovNameMatch match, std::string_view word) {
    return mixed(mixed(mixed(hashOf(role), static_cast<Hash>(type)), static_cast<Hash>(match)), hashOf(word));
}

// Neither the order nor the repetition of the parts matters.
Hash hashOfSet(std::vector<Hash>& parts) {
    std::sort(parts.begin(), parts.end());
    parts.erase(std::unique(parts.begin(), parts.end()), parts.end());
    Hash hash = parts.size();
    for (Hash part : parts) hash = mixed(hash, part);
    return hash;
}

bool isClockRole(std::string_view role) {
    return role == "-clock" || role == "-master_clock" || role == "-group";
}

Hash hashOf(WordUse const& use) {
    return hashOf(use.role, meansClock(use) ? taDciObjClock : use.type, use.match, use.word);
}

// The text of an expression without surrounding blanks, braces and quotes.
std::string withoutBlanks(std::string_view text) {
    std::string rest;
    for (char c : text) {
        if (!isSpace(c)) rest += c;
    }
    return rest;
}

// Whether a reference names nothing but words that can be judged.
bool isCovered(taDciObj const& object, std::string_view role, std::vector<WordUse> const& uses) {
    std::string_view const text = object.name;
    auto const isWord = [&](std::string_view word) {
        return std::any_of(uses.begin(), uses.end(),
                           [&](WordUse const& use) { return role == use.role && word == use.word; });
    };
    if (object.type != taDciObjName) return isWord(text);
    bool const isExpression = startsWith(trimFront(text), "[");
    for (std::size_t at = 0; (at = text.find_first_not_of(separators, at)) != std::string_view::npos;) {
        std::size_t const end =
            std::min(text.find_first_of(isExpression ? separators : " \t\n\r\v\f{}\"", at), text.size());
        std::string_view const word = text.substr(at, end - at);
        bool const isSyntax = isExpression && (startsWith(word, "get_") || word == "list");
        if (!isSyntax && !isWord(word)) return false;
        at = end;
    }
    return true;
}

// The objects of a command in their roles. A save writes only the first reference of a list, and a command that loses
// others is not compared.
Hash hashOfObjects(Command const& command, std::vector<WordUse> const& uses) {
    std::vector<Hash> parts;
    parts.reserve(uses.size());
    for (WordUse const& use : uses) parts.push_back(hashOf(use));
    for (TovReferences const& references : command.references) {
        if (references.list->empty()) continue;
        taDciObj const* const object = references.list->front();
        if (object == nullptr || object->name == nullptr || isCovered(*object, references.role, uses)) continue;
        parts.push_back(mixed(hashOf(references.role, object->type, TOVMATCH_LEVELS, withoutBlanks(object->name)), 1));
    }
    return hashOfSet(parts);
}

Hash hashOfGroups(Command const& command) {
    std::vector<Hash> groups;
    for (TovReferences const& group : command.references) {
        std::vector<Hash> clocks;
        for (taDciObj const* object : *group.list) {
            if (object != nullptr && object->name != nullptr) clocks.push_back(hashOf(withoutBlanks(object->name)));
        }
        groups.push_back(hashOfSet(clocks));
    }
    return hashOfSet(groups);
}

// Words of only these characters are literal, in queries and, without brackets, as plain names.
constexpr auto plainCharacters = [] {
    std::array<bool, 256> table{};
    for (char c : std::string_view("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_/.:*?-[]")) {
        table[static_cast<unsigned char>(c)] = true;
    }
    return table;
}();

bool isPlainWord(std::string_view word, bool isQueried) {
    auto const isPlain = [isQueried](char c) {
        return plainCharacters[static_cast<unsigned char>(c)] && (isQueried || (c != '[' && c != ']'));
    };
    bool const isSyntax =
        word.empty() || word[0] == '[' || word[0] == '-' || startsWith(word, "get_") || word == "list";
    return !isSyntax && std::all_of(word.begin(), word.end(), isPlain);
}

}  // namespace

bool gatherPlainUses(Command const& command, TovNameMatch match, std::vector<WordUse>& uses) {
    for (TovReferences const& references : command.references) {
        auto const& list = *references.list;
        if (list.empty()) continue;
        taDciObj const* const object = list.front();
        bool const isOne = std::next(list.begin()) == list.end() && object != nullptr && object->name != nullptr;
        bool const isPlain = isOne && isPlainWord(object->name, object->type != taDciObjName);
        if (!isPlain) {
            uses.clear();
            return false;
        }
        uses.push_back({references.role, object->type, match, object->name});
    }
    return true;
}

bool meansClock(WordUse const& use) {
    return use.type == taDciObjClock || (use.type == taDciObjName && isClockRole(use.role));
}

void setKey(Command const& command, std::vector<WordUse> const& uses, Facts& facts) {
    auto const kind = static_cast<Hash>(command.list);
    switch (command.list) {
        case TOVCMD_INPUTDELAY:
        case TOVCMD_OUTPUTDELAY: {
            auto const& delay = static_cast<TovCmdIODelay const&>(command.cmd);
            facts.path = mixed(kind, hashOfObjects(command, uses));
            facts.key = mixed(facts.path, (delay.min ? 1U : 0U) + (delay.max ? 2U : 0U));
            facts.isMin = delay.min;
            facts.isMax = delay.max;
            facts.isDelay = true;
            facts.value = delay.delay;
            if (!delay.min && !delay.max) facts.path = 0;
            break;
        }
        case TOVCMD_MAXDELAY:
        case TOVCMD_MINDELAY:
            facts.path = mixed(TOVCMD_MAXDELAY, hashOfObjects(command, uses));
            facts.key = mixed(facts.path, kind);
            facts.isMin = command.list == TOVCMD_MINDELAY;
            facts.isMax = !facts.isMin;
            facts.isDelay = true;
            facts.value = static_cast<TovCmdTimingDelay const&>(command.cmd).delay;
            break;
        case TOVCMD_MULTICYCLE:
            facts.key = mixed(kind, hashOfObjects(command, uses));
            facts.value = static_cast<TovCmdMultiPath const&>(command.cmd).multiplier;
            break;
        case TOVCMD_FALSEPATH:
            facts.key = mixed(kind, hashOfObjects(command, uses));
            break;
        case TOVCMD_CLOCKGROUP:
            facts.key = mixed(kind + (static_cast<TovCmdClockGroupDef const&>(command.cmd).exclusive ? 100 : 0),
                              hashOfGroups(command));
            break;
        default:
            break;
    }
}

}  // namespace tool
