#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tov/names/text_table_p.h"

namespace kiri::tov::impl_detail {

/// The paths of the cells as a tree of levels. Its nodes are numbered level by level, the children of a node in byte
/// order, so the children of a node, and its descendants at one depth, have consecutive numbers. A node refers to the
/// text of its level in a cell's name; nothing is copied. The cells 0 "u2.b", 1 "u1" and 2 "u2.a" give:
///
///     node        0      1     2     3    4
///     text               u1    u2    a    b
///     firstChild  1      3     3     5    5    (those of node 2 are 3 and 4)
///     firstCell   0      0     1     1    2    (in cells_)
///     cells_      1 2 0
class CellTree {
public:
    using Id = std::uint32_t;
    static constexpr Id root = 0;
    static constexpr Id none = UINT32_MAX;

    /// Consecutive nodes.
    struct Range {
        Id begin;
        Id end;

        Id size() const { return end - begin; }
    };

    Id size() const { return static_cast<Id>(nodes_.size() - 1); }
    std::string_view text(Id node) const { return {nodes_[node].text, nodes_[node].size}; }
    Id parent(Id node) const { return nodes_[node].parent; }
    /// Returns the path of a node, its levels joined by '/'.
    std::string path(Id node) const;

    /// Returns the children of consecutive nodes.
    Range children(Range nodes) const { return {nodes_[nodes.begin].firstChild, nodes_[nodes.end].firstChild}; }
    Range children(Id node) const { return children(Range{node, node + 1}); }
    /// Returns the child with that text, which has this hash, or none.
    Id child(Id node, std::string_view text, PathHash const& hash) const;
    /// Returns those of consecutive siblings whose texts begin with a prefix.
    Range withPrefix(Range siblings, std::string_view prefix) const;
    /// Returns those of consecutive nodes whose texts have this hash, and perhaps a few others.
    Span<Id> withText(Range nodes, PathHash const& hash) const;

    /// The cells of consecutive nodes, as indexes in the design.
    Span<std::uint32_t> cells(Range nodes) const;
    Span<std::uint32_t> cells(Id node) const { return cells(Range{node, node + 1}); }

private:
    friend class CellTreeBuilder;

    struct Node {
        char const* text;
        std::uint32_t size;
        Id parent;
        Id firstChild;
        std::uint32_t firstCell;
    };

    std::vector<Node> nodes_;  // and one more, whose children and cells begin where the others end
    std::vector<std::uint32_t> cells_;
    TextTable texts_;
};

/// Makes a tree, cell by cell.
class CellTreeBuilder {
public:
    /// Reserves memory for that many cells.
    explicit CellTreeBuilder(std::size_t cells);

    /// Adds the next cell of the design. The tree refers to the bytes of `name`.
    void add(std::string_view name);
    CellTree build();

private:
    using Id = CellTree::Id;

    struct Node {
        char const* text;
        std::uint32_t size;
        std::uint32_t hash;
        Id parent;
    };

    std::string_view textOf(Id node) const { return {nodes_[node].text, nodes_[node].size}; }
    Id& slotOf(Node const& child);
    void growSlots();
    Id childOf(Id parent, std::string_view text);
    std::vector<Id> sortNodes(CellTree& tree);
    void sortCells(CellTree& tree, std::vector<Id> const& numbers);

    std::vector<Node> nodes_;  // in the order of their first cells
    std::vector<Id> slots_;    // hash table of them; the root marks an empty slot
    std::vector<Id> nodeOfCell_;
};

}  // namespace kiri::tov::impl_detail
