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

/// A design read from a dump of the synthesis tool, and queries for its objects.
///
/// The nodes that queries return belong to the design and live until the next load() or reset(), or until it is
/// destroyed. A load() that fails, is stopped or throws deletes them too: the pointers from earlier queries then
/// dangle. Queries may run in several threads at once, but not together with load() or reset().
class TOVENG_API TovDesign {
public:
    /// Makes an empty design.
    TovDesign();
    ~TovDesign();
    TovDesign(TovDesign const&) = delete;
    TovDesign& operator=(TovDesign const&) = delete;

    /// Deletes the design's nodes and leaves it empty.
    void reset();

    /// Replaces the design with the dump at `path`. Returns false and leaves the design empty if the file cannot be
    /// opened or its root element is not `top`. For a dump that is truncated, not well formed or has an unexpected
    /// child of `top`, returns true and keeps what precedes that place. std::bad_alloc leaves the design empty.
    bool load(char const* path);

    /// The same; calls `progress` during the load, unless it is empty. If `progress` returns false, stops, returns
    /// false and leaves the design empty; if it throws, leaves the design empty and rethrows. `progress` is called with
    /// `read` equal to `size` once, and only if the whole dump was read and used.
    ///
    /// `error`, unless null, becomes empty if the dump was read completely, or else one line that says why not, in
    /// UTF-8 and at most 1,000 bytes: "Line 1 Column 9: Tag design is not valid tag", the XML parser's message with its
    /// place in that form (both possible even if the result is true), the system's message for a file that cannot be
    /// opened, or that the caller stopped the load. Control characters become "?", and the middle of a long message is
    /// left out. An exception leaves it unchanged.
    bool load(char const* path, TovProgress const& progress, std::string* error = nullptr);

    /// The root of the nodes, for walks that need no copies of the lists; null for an empty design.
    TovTopNode const* top() const { return top_.get(); }

    /// Each query replaces `out` and returns its length. For an empty design it returns 0 and does not change `out`,
    /// nor does it if it throws std::bad_alloc: a list that was filled before a new load still holds pointers to the
    /// deleted nodes. Entries are in file order; a bus follows its first bit.
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
