#include "tov/design/cell_node.h"

#include <iostream>
#include <utility>

namespace kiri::tov {

namespace {

template <class Node>
void deleteNodes(std::list<Node*>& nodes) {
    for (Node*& node : nodes) {
        delete node;
        node = nullptr;
    }
}

template <class Node>
void dumpNodes(char const* heading, std::list<Node*> const& nodes) {
    std::cout << heading << std::endl;
    for (Node const* node : nodes) node->dump();
}

}  // namespace

TovBaseCellNode::TovBaseCellNode(std::string name, TovNode* parent, std::string arch, std::string library)
    : TovNode(std::move(name), TOV_OBJ_CELL, parent), library_(std::move(library)), arch_(std::move(arch)) {}

TovBaseCellNode::~TovBaseCellNode() {
    deleteNodes(clocks_);
    deleteNodes(ports_);
    deleteNodes(nets_);
}

std::string TovBaseCellNode::hierachyName(char separator) const {
    std::string path;
    if (!library_.empty() && library_ != "work") {
        path += library_;
        path += separator;
    }
    path += name();
    if (!arch_.empty()) {
        path += separator;
        path += arch_;
    }
    return path;
}

void TovBaseCellNode::dump() const {
    std::cout << std::string(54, '-') << std::endl;
    std::cout << "Cell:" << hierachyName('/') << '(' << name() << ')';
    if (TovNode const* const above = parent()) {
        std::cout << " - Parent:" << above->hierachyName('/') << '(' << above->name() << ')';
    }
    std::cout << std::endl;
    dumpNodes("Clock list:", clocks_);
    dumpNodes("Port list:", ports_);
    dumpNodes("Net list:", nets_);
}

TovCellNode::TovCellNode(std::string name, TovNode* parent, CELL_TYPE cellType, std::string arch, std::string library)
    : TovBaseCellNode(std::move(name), parent, std::move(arch), std::move(library)), cellType_(cellType) {}

TovCellNode::~TovCellNode() = default;

TovTopNode::TovTopNode(std::string name, std::string entry, std::string arch, std::string library)
    : TovBaseCellNode(std::move(name), nullptr, std::move(arch), std::move(library)), entry_(std::move(entry)) {
    type_ = TOV_OBJ_TOP;
}

TovTopNode::~TovTopNode() {
    deleteNodes(cells_);
    deleteNodes(views_);
    deleteNodes(rams_);
    deleteNodes(roms_);
    deleteNodes(mults_);
}

std::string TovTopNode::hierachyName(char) const {
    return {};
}

void TovTopNode::dump() const {
    TovBaseCellNode::dump();
    dumpNodes("Child Cell list:", cells_);
    dumpNodes("View list:", views_);
    dumpNodes("Ram list:", rams_);
    dumpNodes("Rom list:", roms_);
    dumpNodes("Mult list:", mults_);
}

}  // namespace kiri::tov
