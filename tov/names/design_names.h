#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/dci.h"
#include "platform/export.h"
#include "tov/base/progress.h"
#include "tov/design/design.h"

namespace kiri::tov {

namespace impl_detail {
class NameIndex;
}

// What a word of a constraint refers to in a design:
//
//     TovDesign design;
//     design.load("chip.xml");
//     TovDesignNames const names(design);
//     std::vector<TovNode const*> nodes;
//     if (names.find(taDciObjPin, "u_core/*/CK", nodes) == 0) suggest(names.nearest(taDciObjPin, "u_core/*/CK"));
//
// docs/names.md has the rules, with examples.

/// How words match the levels of a name. Any other value counts as TOVMATCH_LEVELS.
enum TovNameMatch : int {
    TOVMATCH_LEVELS = 0,  ///< level by level: "*/CK" has two. The default of timing tools.
    TOVMATCH_LOCAL = 1,   ///< the last level, or the last two of a pin, wherever they are: "-hierarchical"
    TOVMATCH_FLAT = 2     ///< the whole name as one text, in which '*' and '?' match '/' too
};

/// An index of the names in a loaded design: finds the nodes that words and patterns match.
///
/// The index refers to the design's nodes and does not copy them. The design must outlive the index, and must not be
/// loaded again or reset while the index is in use: the pointers in the index and those that find() returned would then
/// dangle. Calls on one index may run in several threads at once. Any call may throw std::bad_alloc.
///
/// The type of a reference determines which nodes are searched: ports of the design for taDciObjPort and
/// taDciObjSourcePort, pins of the cells for taDciObjPin and taDciObjPin2, nets of both for taDciObjNet and
/// taDciObjSourceNet, cells for taDciObjCell, clocks for taDciObjClock, and all of these for taDciObjName. Other types
/// find nothing. Buses are never found, but their bits are.
class TOVENG_API TovDesignNames {
public:
    /// Indexes the design; a design that is not loaded has no names. Calls `progress` meanwhile, unless it is empty,
    /// with the number of nodes indexed so far and the total. If it returns false, the index stays empty and complete()
    /// is false; what it throws is rethrown.
    explicit TovDesignNames(TovDesign const& design, TovProgress const& progress = {});
    ~TovDesignNames();
    TovDesignNames(TovDesignNames const&) = delete;
    TovDesignNames& operator=(TovDesignNames const&) = delete;

    /// Returns false if `progress` stopped the construction. The index then finds nothing.
    bool complete() const;

    /// Replaces `nodes` with the nodes that the word matches, and returns their number. Each node is listed once: ports
    /// first, then pins, nets, cells and clocks, and each kind in the order of the design's query. Clears `nodes` for a
    /// word that is not a name. std::bad_alloc leaves `nodes` unchanged.
    std::size_t find(taDciObjTyp type, std::string const& word, std::vector<TovNode const*>& nodes,
                     TovNameMatch match = TOVMATCH_LEVELS) const;

    /// Returns whether the word matches any node. Stops at the first one, so it is faster than find().
    bool has(taDciObjTyp type, std::string const& word, TovNameMatch match = TOVMATCH_LEVELS) const;

    /// Returns false for words that are not names: an empty word, "\" alone, and words that begin with '[' (a nested
    /// query), '$' (a variable), '@' (a reserved key) or '-' (an option).
    static bool isName(std::string const& word);

    /// Returns a word that matches the node: its path, with levels joined by '/', or the plain name() of a port of the
    /// design or a clock of the top node. A '\' precedes each '*', '?' and '\', and a leading '[', '$', '@' or '-'. Put
    /// the word in braces in a constraint. It may also match other nodes, if it is the base of a bus or a block. Empty
    /// for a node without a name.
    std::string nameOf(TovNode const& node) const;

    /// Returns the nameOf() of the node whose path differs least from the word, in bytes inserted, dropped or replaced;
    /// '.' equals '/'. At most 1 byte differs for words under 4 bytes, 2 under 12, and 3 for longer words. Among
    /// equally near names, returns the first in byte order. Empty if there is none, and for words over 1,000 bytes. For
    /// "did you mean" messages.
    std::string nearest(taDciObjTyp type, std::string const& word) const;

private:
    std::unique_ptr<impl_detail::NameIndex const> index_;
};

}  // namespace kiri::tov
