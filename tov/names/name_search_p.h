#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tov/names/design_names.h"
#include "tov/names/name_index_p.h"
#include "tov/names/tree_walk_p.h"

namespace kiri::tov::impl_detail {

/// Collects the nodes that a word matches.
class Hits {
public:
    explicit Hits(bool firstOnly) : firstOnly_(firstOnly) {}

    void add(PlacedNode const& placed) { nodes_.push_back(placed); }
    /// Returns whether no more nodes are needed.
    bool isEnough() const { return firstOnly_ && !nodes_.empty(); }
    bool isEmpty() const { return nodes_.empty(); }
    bool firstOnly() const { return firstOnly_; }

    /// Replaces `nodes` with the added nodes, in the order of their places, each once. std::bad_alloc leaves it
    /// unchanged.
    void moveTo(std::vector<TovNode const*>& nodes);

private:
    bool firstOnly_;
    std::vector<PlacedNode> nodes_;
};

/// Finds the nodes of some kinds that one form of a word matches. Each rule for words is one function.
class NameSearch {
public:
    /// All arguments must outlive the search.
    NameSearch(NameIndex const& index, NameWord const& word, Hits& hits) : index_(index), word_(word), hits_(hits) {}

    void run(NameKinds kinds, TovNameMatch match);

private:
    using Id = CellTree::Id;
    using Cell = std::uint32_t;  // its number

    void findPaths(NameKinds kinds, bool crosses);
    void findAtTop(SortedNames const& names, bool hasBits, bool crosses);
    void findLiteral(NameKinds kinds, std::size_t begin);
    void addHierarchical(NameKinds kinds, Cell cell, std::string_view library, Match match);
    void findBlocks(bool crosses);
    void findOwn(NameKinds kinds, bool crosses);
    void findOwn(NameKinds kinds, Match const& start, std::size_t begin, std::size_t until);
    void addFound(NameKinds kinds, std::vector<std::pair<Cell, Match>>& found);
    bool findByLastLevel(NameKinds kinds, bool crosses);
    void findLocal(NameKinds kinds);
    void findLocalNets();
    void findLocalCells();
    void findLocalOwn(NameKinds kinds);

    /// The numbers of lastLevels for the last level of the word; none if it has wildcards or too many have it.
    std::optional<Span<std::uint32_t>> withLastLevel() const;

    /// Adds the objects in a cell that match the rest of the word, after the match of the cell's path and a separator.
    void addOwn(NameKinds kinds, Cell cell, Match const& match);
    /// Adds the objects in a cell whose last levels match.
    void addLocal(NameKinds kinds, Cell cell);
    template <class Fits>
    void addFitting(NameKinds kinds, Cell cell, Fits fits);
    void addCell(Cell cell);
    /// Adds the cells of a block.
    void addSubtree(Id node);

    NameIndex const& index_;
    NameWord const& word_;
    Hits& hits_;
    std::string path_;  // of a cell, to which the names in it are appended
};

}  // namespace kiri::tov::impl_detail
