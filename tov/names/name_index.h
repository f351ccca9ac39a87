#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string_view>
#include <vector>

#include "tov/names/cell_tree.h"
#include "tov/names/path_text.h"
#include "tov/names/sorted_names.h"

namespace kiri::tov::impl_detail {

/// What the index keeps of a design's names. It reads the pins and nets of cells in the lists of their cells.
class NameIndex {
public:
    /// See the constructor of TovDesignNames.
    NameIndex(TovDesign const& design, TovProgress const& progress);

    bool isComplete = false;
    std::vector<TovCellNode const*> cells;  ///< in the order of the design
    CellTree tree;
    SortedNames ports;  ///< of the design
    SortedNames nets;   ///< of the design
    SortedNames clocks;
    std::vector<std::uint32_t> clockCells;           ///< the cells that have clocks
    std::vector<std::uint32_t> unnamedCells;         ///< the cells whose hierarchy names are empty
    std::set<std::string_view, PathLess> libraries;  ///< of the cells, where hierarchy names show them
    std::vector<std::uint32_t> levelledCells;        ///< the cells of which a pin, net or clock has several levels
    std::size_t mostLevels = 1;                      ///< of the own name of a pin, net or clock of a cell
    std::size_t longestPath = 0;                     ///< in bytes, of whatever is in a cell

private:
    bool fill(TovTopNode const& top, TovProgress const& progress);
    void addCell(TovCellNode const& cell);
    template <class Nodes>
    void noteNames(TovCellNode const& cell, Nodes const& nodes);
};

/// Returns the library that the hierarchy name of a cell shows; empty for none.
inline std::string_view shownLibrary(TovCellNode const& cell) {
    std::string_view const library = cell.library();
    return library == "work" ? std::string_view() : library;
}

}  // namespace kiri::tov::impl_detail
