#include "tov/names/name_index_p.h"

#include <algorithm>
#include <numeric>

#include "tov/io/progress_meter_p.h"
#include "tov/names/name_word_p.h"

namespace kiri::tov::impl_detail {

namespace {

constexpr std::size_t mostOfOneText = 32;  // cells; more are found by reading all

std::size_t countNodes(TovBaseCellNode const& cell) {
    return cell.ports().size() + cell.nets().size() + cell.clocks().size();
}

std::size_t countAllNodes(TovTopNode const& top) {
    std::size_t count = countNodes(top) + top.cells().size();
    for (TovCellNode const* cell : top.cells()) count += countNodes(*cell);
    return count;
}

unsigned char firstByte(std::string_view name) {
    return static_cast<unsigned char>(pathByte(name[0]));
}

}  // namespace

NameKinds kindsOf(taDciObjTyp type) {
    constexpr struct {
        taDciObjTyp type;
        NameKinds kinds;
    } known[] = {
        {taDciObjPort, NameKind::port},
        {taDciObjSourcePort, NameKind::port},
        {taDciObjPin, NameKind::pin},
        {taDciObjPin2, NameKind::pin},
        {taDciObjNet, NameKind::net},
        {taDciObjSourceNet, NameKind::net},
        {taDciObjCell, NameKind::cell},
        {taDciObjClock, NameKind::clock},
        {taDciObjName, kindsInCells | NameKind::port | NameKind::cell},
    };
    for (auto const& row : known) {
        if (row.type == type) return row.kinds;
    }
    return {};
}

// Only a node whose plain name ends in an index can be a bus.
bool isBus(TovNode const& node) {
    std::string const& name = node.plainName();
    return !name.empty() && name.back() == ']' && dynamic_cast<TovBusNode const*>(&node) != nullptr;
}

template <class Nodes>
void SortedNames::add(NameKind kind, std::size_t owner, Nodes const& nodes) {
    std::size_t position = 0;
    for (TovNode const* node : nodes) {
        if (!isBus(*node)) nodes_.push_back({placeOf(kind, owner, position), node});
        ++position;
    }
}

void SortedNames::sort() {
    std::vector<PlacedNode>(nodes_).swap(nodes_);  // takes no more room than it needs
    std::sort(nodes_.begin(), nodes_.end(),
              [](PlacedNode const& a, PlacedNode const& b) { return comparePaths(a.name(), b.name()) < 0; });
    for (PlacedNode const& placed : nodes_) {
        ++starts_[placed.name().empty() ? 0 : firstByte(placed.name()) + std::size_t{1}];
    }
    std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
}

std::size_t SortedNames::lowerBound(std::string_view name) const {
    if (name.empty()) return 0;
    std::uint32_t const* const starts = starts_.data() + firstByte(name);
    auto const isBefore = [](PlacedNode const& placed, std::string_view text) {
        return comparePaths(placed.name(), text) < 0;
    };
    auto const* const begin = nodes_.data();
    return static_cast<std::size_t>(std::lower_bound(begin + starts[0], begin + starts[1], name, isBefore) - begin);
}

NameIndex::NameIndex(TovDesign const& design, TovProgress const& progress) : tree(CellTreeBuilder(0).build()) {
    TovTopNode const* const top = design.top();
    isComplete = top != nullptr ? fill(*top, progress) : !progress || progress(0, 0);
    if (top == nullptr) sort();
}

bool NameIndex::fill(TovTopNode const& top, TovProgress const& progress) {
    ProgressMeter meter(progress, progress ? countAllNodes(top) : 0);
    CellTreeBuilder builder(top.cells().size());
    cells.reserve(top.cells().size());
    ports.add(NameKind::port, 0, top.ports());
    nets.add(NameKind::net, 0, top.nets());
    clocks.add(NameKind::clock, 0, top.clocks());
    bool goesOn = meter.add(countNodes(top));
    for (auto at = top.cells().begin(); goesOn && at != top.cells().end(); ++at) {
        addCell(**at);
        builder.add((*at)->plainName());
        goesOn = meter.add(countNodes(**at) + 1);
    }
    if (goesOn) {
        tree = builder.build();
        sort();
        goesOn = meter.finish();
    }
    if (!goesOn) meter.rethrow();
    return goesOn;
}

void NameIndex::addCell(TovCellNode const& cell) {
    auto const number = static_cast<std::uint32_t>(cells.size());
    cells.push_back(&cell);
    forEachIn(cell, kindsInCells, [&](NameKind, TovNode const& node, std::size_t) { noteName(node.plainName()); });
    clocks.add(NameKind::clock, number + std::size_t{1}, cell.clocks());
    if (cell.plainName().empty() && cell.hierachyName('/').empty()) unnamedCells.push_back(number);
    std::string_view const library = shownLibrary(cell);
    if (!library.empty()) libraries.insert(library);
}

/// Notes the name of something in the last cell.
void NameIndex::noteName(std::string_view name) {
    auto const number = static_cast<std::uint32_t>(cells.size() - 1);
    std::size_t const levels = countLevels(name);
    if (levels > 1) ownLevels.insert(levels);
    bool const isLevelled = levels > 1 && (levelledCells.empty() || levelledCells.back() != number);
    if (isLevelled) levelledCells.push_back(number);
    TextTable::Entry const entry{PathHash(busOf(name)).bits(), number};
    bool const isNew = entries_.empty() || entries_.back().number != number || entries_.back().hash != entry.hash;
    if (isNew) entries_.push_back(entry);
}

void NameIndex::sort() {
    ports.sort();
    nets.sort();
    clocks.sort();
    auto number = static_cast<std::uint32_t>(cells.size());
    for (PlacedNode const& net : nets.nodes()) {
        if (lastLevelsOf(net.name()) > 0) entries_.push_back({PathHash(busOf(net.name())).bits(), number});
        ++number;
    }
    lastLevels = TextTable(entries_, cells.size() + nets.nodes().size(), mostOfOneText);
    std::vector<TextTable::Entry>().swap(entries_);
}

}  // namespace kiri::tov::impl_detail
