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

/// How words meet the levels of a name. Any other value is TOVMATCH_LEVELS.
enum TovNameMatch : int {
    TOVMATCH_LEVELS = 0,  ///< level by level: "*/CK" has two. The default of timing tools.
    TOVMATCH_LOCAL = 1,   ///< the last level, or the last two of a pin, wherever they are: "-hierarchical"
    TOVMATCH_FLAT = 2     ///< the whole name as one text, in which '*' and '?' match '/' too
};

/// An index of the names in a loaded design: finds what words and patterns stand for.
///
/// The index refers to the design's nodes and copies none of them. The design must outlive the index, and must not be
/// loaded again or reset while the index is in use: the index would then refer to deleted nodes, and so would the nodes
/// that find() returned. Calls on one index may run in several threads at once. Any call may throw std::bad_alloc.
///
/// The type of a reference says which nodes are looked at: ports of the design for taDciObjPort and taDciObjSourcePort,
/// pins of the cells for taDciObjPin and taDciObjPin2, nets of both for taDciObjNet and taDciObjSourceNet, cells for
/// taDciObjCell, clocks for taDciObjClock, and all of these for taDciObjName. Other types find nothing. Buses are never
/// found, but their bits are.
class TOVENG_API TovDesignNames {
public:
    /// Indexes the design; one that is not loaded has no names. Calls `progress` meanwhile, unless it is empty, with
    /// the nodes counted so far and their number. If it returns false, the index stays empty and complete() is false;
    /// what it throws is rethrown.
    explicit TovDesignNames(TovDesign const& design, TovProgress const& progress = {});
    ~TovDesignNames();
    TovDesignNames(TovDesignNames const&) = delete;
    TovDesignNames& operator=(TovDesignNames const&) = delete;

    /// Returns false if `progress` stopped the construction. Nothing is found then.
    bool complete() const;

    /// Replaces `nodes` by the nodes that the word stands for, and returns their number. Each node comes once: the
    /// ports, then the pins, nets, cells and clocks, and each kind as the design's query lists it. Clears `nodes` for a
    /// word that is not a name. After std::bad_alloc `nodes` is as it was.
    std::size_t find(taDciObjTyp type, std::string const& word, std::vector<TovNode const*>& nodes,
                     TovNameMatch match = TOVMATCH_LEVELS) const;

    /// Returns whether the word stands for any node. Stops at the first, so it is faster than find().
    bool has(taDciObjTyp type, std::string const& word, TovNameMatch match = TOVMATCH_LEVELS) const;

    /// Returns false for what names nothing by itself: an empty word, "\" alone, and what begins with '[' (a nested
    /// query), '$' (a variable), '@' (a reserved key) or '-' (an option).
    static bool isName(std::string const& word);

    /// Returns a word that stands for the node: its path, levels joined by '/', or the plain name() of a port of the
    /// design and of a clock of the top node. A '\' precedes each '*', '?' and '\', and a first '[', '$', '@' or '-'.
    /// Put the word in braces in a constraint. It may stand for other nodes too: of a bus's base, or of a block. Empty
    /// for a node without a name.
    std::string nameOf(TovNode const& node) const;

    /// Returns the nameOf() of the node whose path differs least from the word, in bytes inserted, dropped or replaced;
    /// '.' equals '/'. At most 1 byte differs for words under 4 bytes, 2 under 12, and 3 for longer words. Of names
    /// equally near the first in byte order. Empty if there is none, and for words over 1,000 bytes. For "did you
    /// mean".
    std::string nearest(taDciObjTyp type, std::string const& word) const;

private:
    std::unique_ptr<impl_detail::NameIndex const> index_;
};

}  // namespace kiri::tov
