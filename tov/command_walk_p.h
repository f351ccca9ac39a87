#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <tuple>
#include <typeinfo>
#include <utility>

#include "tov/cmd/command_kind_p.h"
#include "tov/document_lists_p.h"
#include "tov/tov.h"

namespace kiri::tov::impl_detail {

/// Returns whether the class of a command in the list of `kind` is one of the library's, not one derived by a caller.
inline bool isLibraryCommand(CommandKind const& kind, TovCmd const& cmd) {
    std::type_info const& type = typeid(cmd);
    return type == *kind.type || std::any_of(std::begin(commandKinds), std::end(commandKinds),
                                             [&type](CommandKind const& other) { return type == *other.type; });
}

/// A place in a list. Places are ordered as their commands were appended; those that a caller inserted come first, by
/// their addresses.
struct ListPlace {
    std::list<TovCmd*>::iterator at;

    std::uintptr_t address() const { return reinterpret_cast<std::uintptr_t>(&*at); }
    friend bool operator<(ListPlace const& a, ListPlace const& b) {
        return std::make_tuple(DocumentLists::orderOf(*a.at), a.address()) <
               std::make_tuple(DocumentLists::orderOf(*b.at), b.address());
    }
};

/// Calls visit(kind, place in the list) for the commands of all lists of a document and skips null entries. It walks
/// the lists together, each in its own order, and roughly in the order in which the commands were appended.
///
/// A load takes the heap's blocks in the order of the lines: mostly one after the other, a command and then its list
/// node, but for a while elsewhere if an earlier document left a gap. A walk list by list crosses the whole heap once
/// for each list and waits for memory at each step; this walk crosses it once.
///
/// Among the next places of all lists, it takes the one that follows the last place within 4 KiB. The address is known
/// from the place before it; reading the command would be another step across the heap. Only if no place follows that
/// closely does it read the next commands of all lists, to find the one that was appended first.
///
/// `visit` may erase the place from its list. If it returns false, the walk ends and returns false.
template <class Visit>
bool visitInMemoryOrder(TOV& document, Visit visit) {
    struct Rest {
        CommandKind const* kind;
        ListPlace next;
        std::list<TovCmd*>::iterator end;
    };
    constexpr std::uintptr_t near = 4096;

    Rest rests[std::size(commandKinds)];
    Rest* end = rests;
    for (CommandKind const& kind : commandKinds) {
        std::list<TovCmd*>& list = DocumentLists::of(document)[kind];
        if (!list.empty()) *end++ = {&kind, {list.begin()}, list.end()};
    }
    std::uintptr_t last = 0;
    while (end != rests) {
        Rest* closest = nullptr;
        std::uintptr_t step = near;
        std::uintptr_t limit = near;  // a place of the closest list stays the closest if its step is smaller
        for (Rest* rest = rests; rest != end; ++rest) {
            std::uintptr_t distance = rest->next.address() - last;  // a lower address is far
            if (distance < step) {
                std::swap(distance, step);
                closest = rest;
            }
            limit = std::min(limit, distance);
        }
        if (closest == nullptr) {
            limit = 0;
            closest = std::min_element(rests, end, [](Rest const& a, Rest const& b) { return a.next < b.next; });
        }
        std::uintptr_t const start = last;
        do {
            auto const place = closest->next.at++;
            last = ListPlace{place}.address();
            if (*place != nullptr && !visit(*closest->kind, place)) return false;
        } while (closest->next.at != closest->end && closest->next.address() - start < limit);
        if (closest->next.at == closest->end) *closest = *--end;
    }
    return true;
}

}  // namespace kiri::tov::impl_detail
