#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>

#include "platform/export.h"
#include "tov/base/progress.h"
#include "tov/design/bus_node.h"
#include "tov/design/cell_node.h"
#include "tov/design/node.h"

namespace kiri::tov {

/// A design read from a dump of the synthesis tool, and the lists of what is in it.
///
/// The nodes that queries hand out belong to the design and live until the next load(), reset() or its destruction. A
/// load() that fails, is stopped or throws has deleted them too: the lists that earlier queries filled then dangle.
/// Queries may run in several threads at once, but not together with load() or reset().
class TOVENG_API TovDesign {
public:
    /// Makes an empty design.
    TovDesign();
    ~TovDesign();
    TovDesign(TovDesign const&) = delete;
    TovDesign& operator=(TovDesign const&) = delete;

    /// Deletes the design's nodes and leaves it empty.
    void reset();

    /// Replaces the design by the dump at `path`. Returns false and leaves the design empty when the file cannot be
    /// opened or its root element is not `top`. A dump that is cut short, not well formed or has an unexpected child of
    /// `top` returns true and leaves what comes before that place. std::bad_alloc leaves the design empty.
    bool load(char const* path);

    /// The same; calls `progress` meanwhile, unless it is empty. If it returns false, stops, returns false and leaves
    /// the design empty; if it throws, leaves the design empty and rethrows. The call where
    /// `read` is `size` comes once, and only when the whole dump was read and used.
    ///
    /// `error`, unless null, becomes empty when the dump was read whole, and else one line that says why not, in UTF-8
    /// and at most 1,000 bytes: "Line 1 Column 9: Tag design is not valid tag", the XML parser's message with its place
    /// in that form (both also where the result is true), the system's message for a file that cannot be opened, or
    /// that the caller stopped the load. Control characters show as "?", and the middle of a long message is left out.
    /// After an exception it is as it was.
    bool load(char const* path, TovProgress const& progress, std::string* error = nullptr);

    /// The root of the nodes, for walks without the copies that queries make; null for an empty design.
    TovTopNode const* top() const { return top_.get(); }

    /// Each query replaces `out` and returns its length. An empty design returns 0 and leaves `out` alone, as does
    /// std::bad_alloc: a list that was filled before the design was loaded again still holds the deleted nodes. Entries
    /// are in file order; a bus follows its first bit.
    std::size_t getPorts(std::list<TovPortNode*>& out) const;  ///< ports of the design
    std::size_t getPins(std::list<TovPortNode*>& out) const;   ///< ports of the cells, cell by cell
    std::size_t getNets(std::list<TovNetNode*>& out) const;    ///< nets of the design, then of the cells
    std::size_t getCells(std::list<TovCellNode*>& out) const;
    std::size_t getRegs(std::list<TovCellNode*>& out) const;     ///< cells of type CELL_REG
    std::size_t getClocks(std::list<TovClockNode*>& out) const;  ///< clocks of the design, then of the cells
    std::size_t getViews(std::list<TovViewNode*>& out) const;
    std::size_t getRams(std::list<TovRamNode*>& out) const;
    std::size_t getRoms(std::list<TovRomNode*>& out) const;
    std::size_t getMults(std::list<TovMultNode*>& out) const;

private:
    std::unique_ptr<TovTopNode> top_;
};

}  // namespace kiri::tov
