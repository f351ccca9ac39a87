#include "tov/names/cell_tree_p.h"

#include <algorithm>

#include "tov/names/path_text_p.h"

namespace kiri::tov::impl_detail {

std::string CellTree::path(Id node) const {
    std::vector<Id> nodes;
    for (; node != root; node = parent(node)) nodes.push_back(node);
    std::string path;
    for (std::size_t i = nodes.size(); i-- > 0;) {
        path += text(nodes[i]);
        if (i > 0) path += '/';
    }
    return path;
}

CellTree::Id CellTree::child(Id node, std::string_view text, PathHash const& hash) const {
    Range const siblings = children(node);
    if (siblings.size() == 0) return none;
    Span<Id> const all = texts_.find(hash);
    auto const* at = std::lower_bound(all.begin(), all.end(), siblings.begin);
    while (at != all.end() && *at < siblings.end && this->text(*at) != text) ++at;
    return at != all.end() && *at < siblings.end ? *at : none;
}

CellTree::Range CellTree::withPrefix(Range siblings, std::string_view prefix) const {
    if (prefix.empty()) return siblings;
    auto const beginOf = [&](Node const& node) {
        return std::string_view(node.text, node.size).substr(0, prefix.size());
    };
    Node const* const all = nodes_.data();
    Node const* const first = std::partition_point(all + siblings.begin, all + siblings.end,
                                                   [&](Node const& node) { return beginOf(node) < prefix; });
    Node const* const last =
        std::partition_point(first, all + siblings.end, [&](Node const& node) { return beginOf(node) == prefix; });
    return {static_cast<Id>(first - all), static_cast<Id>(last - all)};
}

Span<CellTree::Id> CellTree::withText(Range nodes, PathHash const& hash) const {
    Span<Id> const all = texts_.find(hash);
    Id const* const first = std::lower_bound(all.begin(), all.end(), nodes.begin);
    return {first, std::lower_bound(first, all.end(), nodes.end)};
}

Span<std::uint32_t> CellTree::cells(Range nodes) const {
    return {cells_.data() + nodes_[nodes.begin].firstCell, cells_.data() + nodes_[nodes.end].firstCell};
}

CellTreeBuilder::CellTreeBuilder(std::size_t cells) : nodes_(1), slots_(16) {
    nodes_.reserve(cells + cells / 8 + 1);
    nodeOfCell_.reserve(cells);
    while (slots_.size() < 2 * cells) slots_.resize(2 * slots_.size());
}

void CellTreeBuilder::add(std::string_view name) {
    Id node = CellTree::root;
    while (name.data() != nullptr) node = childOf(node, takeLevel(name));
    nodeOfCell_.push_back(node);
}

/// Returns the slot of a child, or the empty slot where it belongs.
CellTree::Id& CellTreeBuilder::slotOf(Node const& child) {
    std::size_t const mask = slots_.size() - 1;
    for (std::size_t at = child.hash ^ (child.parent * 0x9E3779B9U);; ++at) {
        Id& slot = slots_[at & mask];
        Node const& node = nodes_[slot];
        bool const isSame = node.hash == child.hash && node.parent == child.parent && node.size == child.size;
        if (slot == CellTree::root || (isSame && std::equal(child.text, child.text + child.size, node.text)))
            return slot;
    }
}

void CellTreeBuilder::growSlots() {
    slots_.assign(2 * slots_.size(), CellTree::root);
    for (Id node = 1; node < nodes_.size(); ++node) slotOf(nodes_[node]) = node;
}

CellTree::Id CellTreeBuilder::childOf(Id parent, std::string_view text) {
    if (2 * nodes_.size() > slots_.size()) growSlots();
    Node const child{text.data(), static_cast<std::uint32_t>(text.size()), PathHash(text).bits(), parent};
    Id& slot = slotOf(child);
    if (slot == CellTree::root) {
        slot = static_cast<Id>(nodes_.size());
        nodes_.push_back(child);
    }
    return slot;
}

/// Numbers the nodes in the order of the tree, and moves them there without their cells. Returns the new number of each
/// node.
std::vector<CellTree::Id> CellTreeBuilder::sortNodes(CellTree& tree) {
    std::vector<std::uint32_t> ends(nodes_.size());  // of each node's children in `children`
    for (Id node = 1; node < nodes_.size(); ++node) ++ends[nodes_[node].parent];
    sumUp(ends);
    std::vector<Id> children(nodes_.size() - 1);
    for (Id node = 1; node < nodes_.size(); ++node) children[ends[nodes_[node].parent]++] = node;

    std::vector<Id> order{CellTree::root};
    std::vector<Id> numbers(nodes_.size());
    order.reserve(nodes_.size());
    tree.nodes_.reserve(nodes_.size() + 1);
    for (Id number = 0; number < nodes_.size(); ++number) {
        Id const old = order[number];
        numbers[old] = number;
        Node const& node = nodes_[old];
        tree.nodes_.push_back({node.text, node.size, numbers[node.parent], static_cast<Id>(order.size()), 0});
        auto const first = children.begin() + (old == 0 ? 0 : ends[old - 1]);
        auto const last = children.begin() + ends[old];
        std::sort(first, last, [this](Id a, Id b) { return textOf(a) < textOf(b); });
        order.insert(order.end(), first, last);
    }
    tree.nodes_.push_back({nullptr, 0, CellTree::none, static_cast<Id>(nodes_.size()), 0});
    return numbers;
}

CellTree CellTreeBuilder::build() {
    CellTree tree;
    slots_ = {};
    std::vector<Id> const numbers = sortNodes(tree);
    sortCells(tree, numbers);
    std::vector<TextTable::Entry> texts(nodes_.size() - 1);
    for (Id node = 1; node < nodes_.size(); ++node) texts[numbers[node] - 1] = {nodes_[node].hash, numbers[node]};
    tree.texts_ = TextTable(texts, nodes_.size(), SIZE_MAX);
    return tree;
}

/// Puts the cells in the order of their nodes.
void CellTreeBuilder::sortCells(CellTree& tree, std::vector<Id> const& numbers) {
    std::vector<std::uint32_t> places(nodes_.size() + 1);
    for (Id const node : nodeOfCell_) ++places[numbers[node]];
    sumUp(places);
    for (std::size_t i = 0; i < places.size(); ++i) tree.nodes_[i].firstCell = places[i];
    tree.cells_.resize(nodeOfCell_.size());
    for (std::uint32_t cell = 0; cell < nodeOfCell_.size(); ++cell)
        tree.cells_[places[numbers[nodeOfCell_[cell]]]++] = cell;
}

}  // namespace kiri::tov::impl_detail
