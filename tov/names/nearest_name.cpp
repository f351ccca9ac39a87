#include "tov/names/nearest_name.h"

#include <tuple>
#include <utility>

namespace kiri::tov::impl_detail {

namespace {

std::string pathOf(TovNode const& node) {
    TovNode const* const parent = node.parent();
    bool const isInCell = parent != nullptr && parent->type() == TOV_OBJ_CELL;
    std::string path = isInCell ? parent->name() + '/' + node.name() : node.name();
    std::transform(path.begin(), path.end(), path.begin(), pathByte);
    return path;
}

bool isPortOrClockOfTop(TovNode const& node) {
    bool const isOfTop = node.parent() != nullptr && node.parent()->type() == TOV_OBJ_TOP;
    return isOfTop &&
           (dynamic_cast<TovPortNode const*>(&node) != nullptr || dynamic_cast<TovClockNode const*>(&node) != nullptr);
}

}  // namespace

std::string nameOf(TovNode const& node) {
    std::string const own = node.name();
    if (own.empty()) return {};
    std::string const path = isPortOrClockOfTop(node) ? own : pathOf(node);
    std::string word;
    for (char const c : path) {
        char const* const special = word.empty() ? "*?\\[$@-" : "*?\\";
        if (std::string_view(special).find(c) != std::string_view::npos) word += '\\';
        word += c;
    }
    return word;
}

void NearestName::compare(std::string_view word, unsigned bound) {
    EditDistance const distance(word, bound);
    if (kinds_.has(NameKind::port)) compareSorted(distance, index_.ports);
    if (kinds_.has(NameKind::net)) compareSorted(distance, index_.nets);
    if (kinds_.has(NameKind::clock)) compareSorted(distance, index_.clocks);
    if (!kinds_.without(NameKind::port).isEmpty()) compareCells(distance, CellTree::root, distance.start());
}

void NearestName::compareSorted(EditDistance const& distance, SortedNames const& names) {
    auto const first = names.all().begin();
    auto const textOf = [first](std::size_t i) {
        return std::string_view(first[static_cast<std::ptrdiff_t>(i)].node->plainName());
    };
    auto const count = static_cast<std::size_t>(names.all().end() - first);
    distance.walk(distance.start(), count, textOf, [&](std::size_t i, EditDistance::Row const& row) {
        offer(distance.distance(row), *first[static_cast<std::ptrdiff_t>(i)].node);
    });
}

/// Goes as deep as the word has bytes, and a few levels more.
void NearestName::compareCells(EditDistance const& distance, CellTree::Id parent, EditDistance::Row const& start) {
    CellTree const& tree = index_.tree;
    CellTree::Range const children = tree.children(parent);
    auto const textOf = [&](std::size_t i) { return tree.text(children.begin + static_cast<CellTree::Id>(i)); };
    distance.walk(start, children.size(), textOf, [&](std::size_t i, EditDistance::Row const& row) {
        auto const node = children.begin + static_cast<CellTree::Id>(i);
        EditDistance::Row const below = distance.next(row, '/');
        bool const goesOn = !distance.isTooFar(below);
        for (std::uint32_t const number : tree.cells(node)) {
            TovCellNode const& cell = *index_.cells[number];
            if (kinds_.has(NameKind::cell)) offer(distance.distance(row), cell);
            if (goesOn && kinds_.has(NameKind::pin)) compareOwn(distance, cell.ports(), below);
            if (goesOn && kinds_.has(NameKind::net)) compareOwn(distance, cell.nets(), below);
            if (goesOn && kinds_.has(NameKind::clock)) compareOwn(distance, cell.clocks(), below);
        }
        if (goesOn) compareCells(distance, node, below);
    });
}

template <class Nodes>
void NearestName::compareOwn(EditDistance const& distance, Nodes const& nodes, EditDistance::Row const& start) {
    for (TovNode const* node : nodes) {
        EditDistance::Row row = start;
        for (char const c : node->plainName()) {
            row = distance.next(row, c);
            if (distance.isTooFar(row)) break;
        }
        if (!distance.isTooFar(row) && !isBus(*node)) offer(distance.distance(row), *node);
    }
}

/// Keeps the name of the node if it is nearer, or equally near and earlier in byte order.
void NearestName::offer(unsigned distance, TovNode const& node) {
    if (distance > distance_ || distance > EditDistance::mostBound) return;
    std::string name = nameOf(node);
    if (name.empty()) return;
    if (std::tie(distance, name) >= std::tie(distance_, name_)) return;
    distance_ = distance;
    name_ = std::move(name);
}

}  // namespace kiri::tov::impl_detail
