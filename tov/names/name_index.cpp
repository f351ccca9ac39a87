#include "tov/names/name_index.h"

#include "tov/io/progress_meter_p.h"

namespace kiri::tov::impl_detail {

namespace {

std::size_t countNodes(TovBaseCellNode const& cell) {
    return cell.ports().size() + cell.nets().size() + cell.clocks().size();
}

std::size_t countAllNodes(TovTopNode const& top) {
    std::size_t count = countNodes(top) + top.cells().size();
    for (TovCellNode const* cell : top.cells()) count += countNodes(*cell);
    return count;
}

/// Adds the nodes of a list, except the buses.
template <class Nodes>
void addNodes(SortedNames& names, NameKind kind, std::size_t owner, Nodes const& nodes) {
    std::size_t position = 0;
    for (TovNode const* node : nodes) {
        if (!isBus(*node)) names.add(placeOf(kind, owner, position), *node);
        ++position;
    }
}

}  // namespace

NameIndex::NameIndex(TovDesign const& design, TovProgress const& progress) : tree(CellTreeBuilder(0).build()) {
    TovTopNode const* const top = design.top();
    isComplete = top != nullptr ? fill(*top, progress) : !progress || progress(0, 0);
}

bool NameIndex::fill(TovTopNode const& top, TovProgress const& progress) {
    ProgressMeter meter(progress, progress ? countAllNodes(top) : 0);
    CellTreeBuilder builder(top.cells().size());
    cells.reserve(top.cells().size());
    addNodes(ports, NameKind::port, 0, top.ports());
    addNodes(nets, NameKind::net, 0, top.nets());
    addNodes(clocks, NameKind::clock, 0, top.clocks());
    bool goesOn = meter.add(countNodes(top));
    for (auto at = top.cells().begin(); goesOn && at != top.cells().end(); ++at) {
        addCell(**at);
        builder.add((*at)->plainName());
        goesOn = meter.add(countNodes(**at) + 1);
    }
    if (goesOn) {
        tree = builder.build();
        ports.sort();
        nets.sort();
        clocks.sort();
        goesOn = meter.finish();
    }
    if (!goesOn) meter.rethrow();
    return goesOn;
}

void NameIndex::addCell(TovCellNode const& cell) {
    auto const number = static_cast<std::uint32_t>(cells.size());
    cells.push_back(&cell);
    longestPath = std::max(longestPath, cell.plainName().size());
    noteNames(cell, cell.ports());
    noteNames(cell, cell.nets());
    noteNames(cell, cell.clocks());
    if (!cell.clocks().empty()) clockCells.push_back(number);
    addNodes(clocks, NameKind::clock, number + std::size_t{1}, cell.clocks());
    if (cell.plainName().empty() && cell.hierachyName('/').empty()) unnamedCells.push_back(number);
    std::string_view const library = shownLibrary(cell);
    if (!library.empty()) libraries.insert(library);
}

template <class Nodes>
void NameIndex::noteNames(TovCellNode const& cell, Nodes const& nodes) {
    auto const number = static_cast<std::uint32_t>(cells.size() - 1);
    for (TovNode const* node : nodes) {
        std::string const& name = node->plainName();
        longestPath = std::max(longestPath, cell.plainName().size() + 1 + name.size());
        std::size_t const levels = countLevels(name);
        if (levels == 1) continue;
        mostLevels = std::max(mostLevels, levels);
        if (levelledCells.empty() || levelledCells.back() != number) levelledCells.push_back(number);
    }
}

}  // namespace kiri::tov::impl_detail
