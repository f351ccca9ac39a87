#pragma once

#include <algorithm>
#include <functional>
#include <iterator>
#include <typeinfo>

#include "tov/cmd/command_kind_p.h"
#include "tov/tov.h"

namespace kiri::tov::impl_detail {

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
