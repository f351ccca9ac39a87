#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <typeinfo>

#include "tov/cmd/commands.h"
#include "tov/cmd/read_p.h"
#include "tov/tov.h"

namespace kiri::tov::impl_detail {

/// A kind of command: its list, and the keyword of its lines.
struct CommandKind {
    TOVCMD_TYPE list;
    std::string_view keyword;
    std::type_info const* type;
    /// Makes the command of a line that begins with the keyword; null if the line makes none.
    std::unique_ptr<TovCmd> (*make)(CommandKind const& kind, std::string_view line);
    /// Appends the line that a save writes for a command.
    void (*append)(std::string& text, TovCmd& cmd, TOV& document);
};

/// A line whose first word is longer than the keyword makes an empty command.
template <class Cmd>
std::unique_ptr<TovCmd> makeCommand(CommandKind const& kind, std::string_view line) {
    auto cmd = std::make_unique<Cmd>(static_cast<char const*>(nullptr));
    WordCursor words(line);
    if (words.skipKeyword(kind.keyword.size())) readWords(*cmd, words);
    return cmd;
}

/// An attribute line without six or seven words makes no command.
template <>
inline std::unique_ptr<TovCmd> makeCommand<TovCmdAttr>(CommandKind const&, std::string_view line) {
    return makeAttribute(WordCursor(line));
}

/// A class derived from `Cmd` may save another line.
template <class Cmd>
void appendCommand(std::string& text, TovCmd& cmd, TOV& document) {
    if (typeid(cmd) == typeid(Cmd)) {
        static_cast<Cmd&>(cmd).appendSaveString(text);
    } else {
        text += cmd.toSaveString(&document);
    }
}

template <class Cmd>
constexpr CommandKind kindOf(TOVCMD_TYPE list, std::string_view keyword) {
    return {list, keyword, &typeid(Cmd), makeCommand<Cmd>, appendCommand<Cmd>};
}

/// All kinds, in the order of writing, which is that of the lists. No keyword begins with another one, so each line is
/// of one kind at most.
inline constexpr CommandKind commandKinds[] = {
    kindOf<TovCmdClockDef>(TOVCMD_CLOCK, "create_clock"),
    kindOf<TovCmdGenClockDef>(TOVCMD_GENCLOCK, "create_generated_clock"),
    kindOf<TovCmdClockGroupDef>(TOVCMD_CLOCKGROUP, "set_clock_groups"),
    kindOf<TovCmdInputDelay>(TOVCMD_INPUTDELAY, "set_input_delay"),
    kindOf<TovCmdOutputDelay>(TOVCMD_OUTPUTDELAY, "set_output_delay"),
    kindOf<TovCmdMaxDelay>(TOVCMD_MAXDELAY, "set_max_delay"),
    kindOf<TovCmdMinDelay>(TOVCMD_MINDELAY, "set_min_delay"),
    kindOf<TovCmdMultiPath>(TOVCMD_MULTICYCLE, "set_multicycle_path"),
    kindOf<TovCmdFalsePath>(TOVCMD_FALSEPATH, "set_false_path"),
    kindOf<TovCmdAttr>(TOVCMD_ATTRIBUTE, "#attribute"),
};

static_assert(std::size(commandKinds) == TOVCMD_ATTRIBUTE, "each list has its kind");

/// Returns whether the class of a command in the list of `kind` is one of the library's, not one that a caller derived.
inline bool isLibraryCommand(CommandKind const& kind, TovCmd const& cmd) {
    std::type_info const& type = typeid(cmd);
    return type == *kind.type || std::any_of(std::begin(commandKinds), std::end(commandKinds),
                                             [&type](CommandKind const& other) { return type == *other.type; });
}

/// Calls visit(kind, place in the list) for the commands of all lists of a document, null entries skipped. It walks
/// the lists together: each list in its own order, and of the lists' next places the one at the lowest address first.
///
/// A load leaves the commands on the heap in the order of their lines, each followed by its place in the list. Where
/// the kinds of the lines alternate, a walk list by list crosses the whole heap once for each list and waits for memory
/// at each step; this walk crosses it once. It compares the address of a place, which the place before it holds, and
/// does not touch the command, which would be another step across the heap.
///
/// `visit` may erase the place from its list. Where it returns false, the walk ends, and its result is false.
template <class Visit>
bool visitInMemoryOrder(TOV& document, Visit visit) {
    struct Rest {
        CommandKind const* kind;
        std::list<TovCmd*>::iterator at;
        std::list<TovCmd*>::iterator end;

        TovCmd* const* address() const { return &*at; }
    };
    constexpr std::less<TovCmd* const*> below;

    Rest rests[std::size(commandKinds)];
    Rest* end = rests;
    for (CommandKind const& kind : commandKinds) {
        std::list<TovCmd*>& list = *document.getTovCmdList(kind.list);
        if (!list.empty()) *end++ = {&kind, list.begin(), list.end()};
    }
    while (end != rests) {
        Rest* lowest = rests;
        TovCmd* const* limit = nullptr;  // up to here the lowest rest stays the lowest; null: to its end
        for (Rest* rest = rests + 1; rest != end; ++rest) {
            TovCmd* const* higher = rest->address();
            if (below(higher, lowest->address())) {
                higher = lowest->address();
                lowest = rest;
            }
            if (limit == nullptr || below(higher, limit)) limit = higher;
        }
        do {
            auto const place = lowest->at++;
            if (*place != nullptr && !visit(*lowest->kind, place)) return false;
        } while (lowest->at != lowest->end && (limit == nullptr || below(lowest->address(), limit)));
        if (lowest->at == lowest->end) *lowest = *--end;
    }
    return true;
}

}  // namespace kiri::tov::impl_detail
