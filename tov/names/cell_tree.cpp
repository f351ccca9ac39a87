#include "tov/names/cell_tree.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "tov/names/path_text.h"

namespace kiri::tov::impl_detail {

namespace {

std::uint32_t hashOf(std::string_view text) {
    return static_cast<std::uint32_t>(std::hash<std::string_view>()(text));
}

/// Turns counts into the places where the items of each begin; the last count is one more, for the end.
void sumUp(std::vector<std::uint32_t>& counts) {
    std::uint32_t sum = 0;
    for (std::uint32_t& count : counts) sum += std::exchange(count, sum);
}

}  // namespace

CellTree::Id CellTree::child(Id node, std::string_view text) const {
    Range const siblings = children(node);
    if (siblings.size() == 0) return none;
    std::uint64_t const hash = std::uint64_t{hashOf(text)} << 32U;
    Span<std::uint64_t> const items = withHash(hash);
    auto const* const end = items.end();
    for (auto const* at = std::lower_bound(items.begin(), end, hash | siblings.begin); at != end; ++at) {
        if (*at >= (hash | siblings.end)) break;
        if (this->text(static_cast<Id>(*at)) == text) return static_cast<Id>(*at);
    }
    return none;
}

CellTree::Range CellTree::withPrefix(Range siblings, std::string_view prefix) const {
    if (prefix.empty()) return siblings;
    struct Less {
        std::size_t size;
        std::string_view cut(Node const& node) const { return {node.text, std::min<std::size_t>(node.size, size)}; }
        bool operator()(Node const& node, std::string_view wanted) const { return cut(node) < wanted; }
        bool operator()(std::string_view wanted, Node const& node) const { return wanted < cut(node); }
    };
    auto const [first, last] =
        std::equal_range(nodes_.begin() + siblings.begin, nodes_.begin() + siblings.end, prefix, Less{prefix.size()});
    return {static_cast<Id>(first - nodes_.begin()), static_cast<Id>(last - nodes_.begin())};
}

/// Returns the items of all hashes with the first bits of this one.
CellTree::Span<std::uint64_t> CellTree::withHash(std::uint64_t hash) const {
    std::uint64_t const bits = hash >> hashShift_ >> 32U;
    return {byText_.data() + hashStarts_[bits], byText_.data() + hashStarts_[bits + 1]};
}

CellTree::Span<std::uint64_t> CellTree::withText(Range nodes, std::string_view text) const {
    std::uint64_t const hash = std::uint64_t{hashOf(text)} << 32U;
    Span<std::uint64_t> const items = withHash(hash);
    auto const* const first = std::lower_bound(items.begin(), items.end(), hash | nodes.begin);
    return {first, std::lower_bound(first, items.end(), hash | nodes.end)};
}

CellTree::Span<std::uint32_t> CellTree::cells(Range nodes) const {
    return {cells_.data() + nodes_[nodes.begin].firstCell, cells_.data() + nodes_[nodes.end].firstCell};
}

CellTreeBuilder::CellTreeBuilder(std::size_t cells) : nodes_(1), slots_(1024) {
    nodes_.reserve(cells + cells / 8 + 1);
    nodeOfCell_.reserve(cells);
}

// Cells often follow others of the same block.
void CellTreeBuilder::add(std::string_view name) {
    Id node = CellTree::root;
    std::size_t depth = 0;
    for (bool isShared = true; name.data() != nullptr; ++depth) {
        std::string_view const level = takeLevel(name);
        isShared = isShared && depth < lastPath_.size() && textOf(lastPath_[depth]) == level;
        if (isShared) {
            node = lastPath_[depth];
            continue;
        }
        node = childOf(node, level);
        lastPath_.resize(depth);
        lastPath_.push_back(node);
    }
    lastPath_.resize(depth);
    nodeOfCell_.push_back(node);
}

CellTree::Id CellTreeBuilder::childOf(Id parent, std::string_view text) {
    std::uint32_t const hash = hashOf(text);
    std::size_t const mask = slots_.size() - 1;
    for (std::size_t slot = (hash ^ parent * 0x9e3779b9U) & mask;; slot = (slot + 1) & mask) {
        Id const known = slots_[slot];
        if (known == 0) {
            slots_[slot] = static_cast<Id>(nodes_.size());
            nodes_.push_back({text.data(), static_cast<std::uint32_t>(text.size()), hash, parent});
            if (nodes_.size() > slots_.size() / 4 * 3) growSlots();
            return static_cast<Id>(nodes_.size() - 1);
        }
        if (nodes_[known].hash == hash && nodes_[known].parent == parent && textOf(known) == text) return known;
    }
}

void CellTreeBuilder::growSlots() {
    std::vector<std::uint32_t> slots(slots_.size() * 2);
    std::size_t const mask = slots.size() - 1;
    for (Id node = 1; node < nodes_.size(); ++node) {
        std::size_t slot = (nodes_[node].hash ^ nodes_[node].parent * 0x9e3779b9U) & mask;
        while (slots[slot] != 0) slot = (slot + 1) & mask;
        slots[slot] = node;
    }
    slots_.swap(slots);
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
    sortTexts(tree, numbers);
    sortCells(tree, numbers);
    return tree;
}

/// Two to four nodes have the same first bits of their hashes.
void CellTreeBuilder::sortTexts(CellTree& tree, std::vector<Id> const& numbers) {
    tree.byText_.reserve(nodes_.size());
    for (Id node = 1; node < nodes_.size(); ++node)
        tree.byText_.push_back(std::uint64_t{nodes_[node].hash} << 32U | numbers[node]);
    std::sort(tree.byText_.begin(), tree.byText_.end());
    for (std::size_t starts = 4; starts <= nodes_.size() && tree.hashShift_ > 0; starts *= 2) --tree.hashShift_;
    tree.hashStarts_.resize((std::size_t{1} << (32 - tree.hashShift_)) + 1);
    for (std::uint64_t const item : tree.byText_) ++tree.hashStarts_[item >> 32U >> tree.hashShift_];
    sumUp(tree.hashStarts_);
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
