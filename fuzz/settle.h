#pragma once

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "fuzz/fuzz.h"
#include "tov/cmd/commands.h"
#include "tov/tokenizer.h"

namespace fuzz {

using List = ppStlList<taDciObj*>;

/// Whether a text that stands in a line is read as the word it is.
inline bool isWord(std::string const& text) {
    return kiri::tov::tokenizeTclString("a " + text + " b") == std::vector<std::string>{"a", text, "b"};
}

/// Whether a query gives the name back that it is written with.
inline bool isPlain(taDciObj const* obj) {
    std::string const name = obj->name == nullptr ? "" : obj->name;
    if (obj->type == taDciObjName) return isWord(name);
    return !name.empty() && name.find_first_of(" \t\n\r\v\f\"[]{}") == std::string::npos;
}

inline bool isPlain(List const& list) {
    return std::all_of(list.begin(), list.end(), [](auto* o) { return isPlain(o); });
}

/// A group that is empty, or has a member other than a clock, is read back as another group or none.
inline bool isPlainGroup(List const& group) {
    std::string reserved;
    return !group.empty() && std::all_of(group.begin(), group.end(), [&](auto* obj) {
        return obj->type == taDciObjClock && isPlain(obj) && !kiri::tov::TovCmd::reservedKey(obj->name, reserved);
    });
}

/// Whether all names of a command are plain.
inline bool isPlain(kiri::tov::TovCmd& cmd) {
    using namespace kiri::tov;
    auto const isName = [](std::string const& name) { return name.empty() || isWord(name); };
    if (auto* c = dynamic_cast<TovCmdClockDef*>(&cmd)) return isName(c->clockName) && isPlain(c->targets);
    if (auto* c = dynamic_cast<TovCmdGenClockDef*>(&cmd)) {
        return isName(c->clockName) && isPlain(c->sources) && isPlain(c->masterClock) && isPlain(c->targets);
    }
    if (auto* c = dynamic_cast<TovCmdClockGroupDef*>(&cmd)) {
        return std::all_of(c->groups.begin(), c->groups.end(), [](auto* group) { return isPlainGroup(*group); });
    }
    if (auto* c = dynamic_cast<TovCmdIODelay*>(&cmd)) return isPlain(c->clock) && isPlain(c->objects);
    if (auto* c = dynamic_cast<TovCmdTimingDelay*>(&cmd)) return isPlain(c->from) && isPlain(c->to);
    if (auto* c = dynamic_cast<TovCmdMultiPath*>(&cmd)) return isPlain(c->from) && isPlain(c->to);
    if (auto* c = dynamic_cast<TovCmdFalsePath*>(&cmd))
        return isPlain(c->from) && isPlain(c->to) && isPlain(c->through);
    return true;
}

/// Follows a text through reading and saving, `next`, until it no longer changes. A text of plain names is settled
/// when it was saved twice. Each reading takes one layer of quotes or braces off any other name, so that such a text
/// takes longer, but it settles as well: all but a clock group, which may repeat its words at each saving.
template <class Next>
void requireSettled(std::string text, bool plain, Next next) {
    constexpr int patience = 40;
    constexpr std::size_t tooLong = 1 << 20;
    for (int saves = 1; text.size() < tooLong; ++saves) {
        std::string again;
        try {
            again = next(text);
        } catch (std::out_of_range const&) {
            require(!plain && text.find("-waveform") != std::string::npos, "a saved text can be read", text);
            return;
        }
        if (again == text) return;
        require(!plain || saves < 2, "plain names: the second and third saved text are equal", text, again);
        if (saves == patience) {
            require(text.find("set_clock_groups") != std::string::npos, "a text settles", text, again);
            return;
        }
        text.swap(again);
    }
}

}  // namespace fuzz
