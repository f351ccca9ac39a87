#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "tov/names/design_names.h"
#include "tov/names/flat_matcher.h"
#include "tov/names/hits.h"
#include "tov/names/name_index.h"
#include "tov/names/name_word.h"

namespace kiri::tov::impl_detail {

/// Finds the nodes of some kinds that a word stands for. Each rule for words is one function.
class NameSearch {
public:
    /// All arguments must outlive the search.
    NameSearch(NameIndex const& index, NameWord const& word, Hits& hits) : index_(index), word_(word), hits_(hits) {}

    void run(NameKinds kinds, TovNameMatch match);

private:
    using Id = CellTree::Id;

    void findExact(NameKinds kinds);
    void findExactAtTop(SortedNames const& names, bool hasBits);
    void findExactBelow(NameKinds kinds, std::string_view library, std::size_t level);
    void findExactIn(NameKinds kinds, std::uint32_t number, std::string_view library, std::size_t level);
    void findExactOwn(NameKinds kinds, std::uint32_t cell, std::size_t level);
    void findLevels(NameKinds kinds);
    void findLocal(NameKinds kinds);
    void findLocalCells();
    void findLocalPinsOfCells();
    void findFlat(NameKinds kinds);

    /// Adds the names with that beginning that fit.
    template <class Fits>
    void addFrom(SortedNames const& names, std::string_view prefix, Fits fits);
    /// Adds what is in a cell, of these kinds, and fits by its own name.
    template <class Fits>
    void addOwn(NameKinds kinds, std::uint32_t number, Fits fits);
    template <class Nodes, class Fits>
    void addFitting(NameKind kind, std::uint32_t cell, Nodes const& nodes, Fits fits);
    void addCell(std::uint32_t cell);
    /// Adds the cells of a block.
    void addSubtree(Id node);

    NameIndex const& index_;
    NameWord const& word_;
    Hits& hits_;
};

}  // namespace kiri::tov::impl_detail
