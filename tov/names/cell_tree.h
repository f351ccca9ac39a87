#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace kiri::tov::impl_detail {

/// The cells' paths as a tree of levels. Its nodes are numbered level by level, the children of a node in byte order,
/// so that children, and the descendants of a node at one depth, have consecutive numbers. A node refers to the text of
/// its level in a cell's name; nothing is copied.
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

    /// Items of one of the arrays here.
    template <class Item>
    struct Span {
        Item const* first;
        Item const* last;

        Item const* begin() const { return first; }
        Item const* end() const { return last; }
        std::size_t size() const { return static_cast<std::size_t>(last - first); }
    };

    Id size() const { return static_cast<Id>(nodes_.size() - 1); }
    std::string_view text(Id node) const { return {nodes_[node].text, nodes_[node].size}; }
    Id parent(Id node) const { return nodes_[node].parent; }

    /// Returns the children of consecutive nodes.
    Range children(Range nodes) const { return {nodes_[nodes.begin].firstChild, nodes_[nodes.end].firstChild}; }
    Range children(Id node) const { return children(Range{node, node + 1}); }
    /// Returns the child of that text, or none.
    Id child(Id node, std::string_view text) const;
    /// Returns those of consecutive siblings whose text begins with a prefix.
    Range withPrefix(Range siblings, std::string_view prefix) const;
    /// Of consecutive nodes, those whose text has the hash of this text; few others do. The low half of an item is the
    /// node.
    Span<std::uint64_t> withText(Range nodes, std::string_view text) const;

    /// The cells of consecutive nodes, as their places in the design.
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

    Span<std::uint64_t> withHash(std::uint64_t hash) const;

    std::vector<Node> nodes_;  // and one more, whose children and cells begin where the others end
    std::vector<std::uint32_t> cells_;
    std::vector<std::uint64_t> byText_;      // the text's hash and the node, in this order
    std::vector<std::uint32_t> hashStarts_;  // where the hashes with the same first bits begin in byText_, and its end
    unsigned hashShift_ = 32;                // the hash without its first bits
};

/// Makes a tree, cell by cell.
class CellTreeBuilder {
public:
    /// Room for so many cells.
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
    Id childOf(Id parent, std::string_view text);
    void growSlots();
    std::vector<Id> sortNodes(CellTree& tree);
    void sortTexts(CellTree& tree, std::vector<Id> const& numbers);
    void sortCells(CellTree& tree, std::vector<Id> const& numbers);

    std::vector<Node> nodes_;           // in the order of their first cells
    std::vector<std::uint32_t> slots_;  // a hash table of the nodes by parent and text; 0 is free
    std::vector<Id> nodeOfCell_;
    std::vector<Id> lastPath_;  // the nodes of the cell added last
};

}  // namespace kiri::tov::impl_detail
