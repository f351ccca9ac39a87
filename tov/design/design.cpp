#include "tov/design/design.h"

#include <utility>

#include "tov/design/mrc_dump_reader.h"

namespace kiri::tov {

namespace {

/// Runs `collect(top, found)` on a loaded design; `out` changes only when the list is complete.
template <class Node, class Collect>
std::size_t query(TovTopNode const* top, std::list<Node*>& out, Collect collect) {
    if (top == nullptr) return 0;
    std::list<Node*> found;
    collect(*top, found);
    out.swap(found);
    return out.size();
}

template <class Node>
void addAll(std::list<Node*>& to, std::list<Node*> const& nodes) {
    for (Node* node : nodes) to.push_back(node);
}

}  // namespace

TovDesign::TovDesign() = default;

TovDesign::~TovDesign() = default;

void TovDesign::reset() {
    top_.reset();
}

bool TovDesign::load(char const* path) {
    return load(path, {});
}

bool TovDesign::load(char const* path, TovProgress const& progress, std::string* error) {
    reset();
    auto top = std::make_unique<TovTopNode>("", "", "", "work");
    if (!impl_detail::MrcDumpReader(top.get()).doRead(path, progress, error)) return false;
    top_ = std::move(top);
    return true;
}

std::size_t TovDesign::getPorts(std::list<TovPortNode*>& out) const {
    return query(top_.get(), out, [](auto const& top, auto& found) { addAll(found, top.ports()); });
}

std::size_t TovDesign::getPins(std::list<TovPortNode*>& out) const {
    return query(top_.get(), out, [](auto const& top, auto& found) {
        for (TovCellNode* cell : top.cells()) addAll(found, cell->ports());
    });
}

std::size_t TovDesign::getNets(std::list<TovNetNode*>& out) const {
    return query(top_.get(), out, [](auto const& top, auto& found) {
        addAll(found, top.nets());
        for (TovCellNode* cell : top.cells()) addAll(found, cell->nets());
    });
}

std::size_t TovDesign::getCells(std::list<TovCellNode*>& out) const {
    return query(top_.get(), out, [](auto const& top, auto& found) { addAll(found, top.cells()); });
}

std::size_t TovDesign::getRegs(std::list<TovCellNode*>& out) const {
    return query(top_.get(), out, [](auto const& top, auto& found) {
        for (TovCellNode* cell : top.cells()) {
            if (cell->cellType() == CELL_REG) found.push_back(cell);
        }
    });
}

std::size_t TovDesign::getClocks(std::list<TovClockNode*>& out) const {
    return query(top_.get(), out, [](auto const& top, auto& found) {
        addAll(found, top.clocks());
        for (TovCellNode* cell : top.cells()) addAll(found, cell->clocks());
    });
}

std::size_t TovDesign::getViews(std::list<TovViewNode*>& out) const {
    return query(top_.get(), out, [](auto const& top, auto& found) { addAll(found, top.views()); });
}

std::size_t TovDesign::getRams(std::list<TovRamNode*>& out) const {
    return query(top_.get(), out, [](auto const& top, auto& found) { addAll(found, top.rams()); });
}

std::size_t TovDesign::getRoms(std::list<TovRomNode*>& out) const {
    return query(top_.get(), out, [](auto const& top, auto& found) { addAll(found, top.roms()); });
}

std::size_t TovDesign::getMults(std::list<TovMultNode*>& out) const {
    return query(top_.get(), out, [](auto const& top, auto& found) { addAll(found, top.mults()); });
}

}  // namespace kiri::tov
