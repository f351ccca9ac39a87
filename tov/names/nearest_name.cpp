#include "tov/names/nearest_name_p.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <tuple>
#include <utility>
#include <vector>

#include "tov/names/name_word_p.h"

namespace kiri::tov::impl_detail {

namespace {

/// The Levenshtein distance between a word and texts with common prefixes, if it is at most `bound`; '.' equals '/'.
class EditDistance {
public:
    static constexpr unsigned mostBound = 3;
    static constexpr std::uint8_t far = mostBound + 1;

    /// The distances between the text so far and the prefixes of the word, only near the diagonal: costs[k] belongs to
    /// the first `size + k - bound` bytes of the word.
    struct Row {
        std::size_t size = 0;  // of the text so far
        std::array<std::uint8_t, 2 * mostBound + 1> costs{};
    };

    EditDistance(std::string_view word, unsigned bound) : word_(word), bound_(bound) {}

    Row start() const;
    /// Returns the row for one byte more.
    Row next(Row const& row, char byte) const;
    /// Returns whether every text with this prefix is farther away than the bound.
    bool isTooFar(Row const& row) const {
        return std::all_of(row.costs.begin(), row.costs.end(), [this](std::uint8_t cost) { return cost > bound_; });
    }
    /// Returns the distance of the text so far, or `far` if it is over the bound.
    unsigned distance(Row const& row) const;

private:
    std::string_view word_;
    unsigned bound_;
};

EditDistance::Row EditDistance::start() const {
    Row row;
    for (std::size_t k = 0; k < row.costs.size(); ++k) {
        bool const isInWord = k >= bound_ && k - bound_ <= std::min<std::size_t>(word_.size(), bound_);
        row.costs[k] = isInWord ? static_cast<std::uint8_t>(k - bound_) : far;
    }
    return row;
}

EditDistance::Row EditDistance::next(Row const& row, char byte) const {
    Row after;
    after.size = row.size + 1;
    after.costs.fill(far);
    unsigned const width = 2 * bound_ + 1;
    for (unsigned k = 0; k < width; ++k) {
        std::size_t const before = after.size + k;  // the bytes of the word, and the bound
        if (before < bound_ || before - bound_ > word_.size()) continue;
        std::size_t const at = before - bound_;
        unsigned cost = far;
        if (at > 0) cost = row.costs[k] + (pathByte(word_[at - 1]) == pathByte(byte) ? 0U : 1U);
        if (k + 1 < width) cost = std::min(cost, row.costs[k + 1] + 1U);
        if (k > 0) cost = std::min(cost, after.costs[k - 1] + 1U);
        after.costs[k] = static_cast<std::uint8_t>(std::min<unsigned>(cost, far));
    }
    return after;
}

unsigned EditDistance::distance(Row const& row) const {
    std::size_t const k = word_.size() + bound_;
    unsigned const cost = k >= row.size && k - row.size < row.costs.size() ? row.costs[k - row.size] : far;
    return cost <= bound_ ? cost : far;
}

/// Walks over texts in byte order, stopping at each that may be near. A common prefix is compared only once, and texts
/// whose prefix is too far away are skipped together.
class NearTexts {
public:
    using Row = EditDistance::Row;

    NearTexts(EditDistance const& distance, Row const& start, std::size_t count)
        : distance_(&distance), count_(count), rows_{start} {}

    /// Goes to the next text; returns false at the end. `textOf(i)` is the i-th text.
    template <class TextOf>
    bool next(TextOf textOf);
    std::size_t index() const { return index_; }
    /// The distances of the text.
    Row const& row() const { return rows_.back(); }

private:
    /// Skips the texts that begin with the first bytes of the text at `index_`.
    template <class TextOf>
    void skip(TextOf textOf, std::size_t bytes);

    EditDistance const* distance_;
    std::size_t count_;
    std::vector<Row> rows_;  // of the prefixes of `last_`
    std::string_view last_;
    std::size_t index_ = 0;
    std::size_t next_ = 0;
};

template <class TextOf>
bool NearTexts::next(TextOf textOf) {
    while (next_ < count_) {
        index_ = next_;
        std::string_view const text = textOf(index_);
        std::size_t shared = 0;
        while (shared + 1 < rows_.size() && shared < text.size() && pathByte(text[shared]) == pathByte(last_[shared]))
            ++shared;
        rows_.resize(shared + 1);
        for (; rows_.size() <= text.size() && !distance_->isTooFar(rows_.back()); ++shared)
            rows_.push_back(distance_->next(rows_.back(), text[shared]));
        last_ = text;
        next_ = index_ + 1;
        if (!distance_->isTooFar(rows_.back())) return true;
        skip(textOf, shared);
    }
    return false;
}

template <class TextOf>
void NearTexts::skip(TextOf textOf, std::size_t bytes) {
    std::string_view const prefix = textOf(index_).substr(0, bytes);
    auto const hasPrefix = [&](std::size_t i) { return comparePaths(textOf(i).substr(0, bytes), prefix) == 0; };
    std::size_t step = 1;
    while (index_ + step < count_ && hasPrefix(index_ + step)) step *= 2;
    std::size_t bound = std::min(index_ + step, count_);
    for (std::size_t last = index_ + step / 2; last + 1 < bound;) {
        std::size_t const middle = last + (bound - last) / 2;
        (hasPrefix(middle) ? last : bound) = middle;
    }
    next_ = bound;
}

/// Finds the name that is nearest to a word among nodes of some kinds.
class NearestName {
public:
    NearestName(NameIndex const& index, NameKinds kinds) : index_(index), kinds_(kinds) {}

    /// Compares all names with a word; ignores those more than `bound` away.
    void compare(std::string_view word, unsigned bound);
    /// The name of the nearest node so far; empty if there is none.
    std::string const& name() const { return name_; }

private:
    using Row = EditDistance::Row;

    /// The children of a node, and the next of them.
    struct Level {
        CellTree::Id first;
        NearTexts texts;
    };

    void compareSorted(EditDistance const& distance, SortedNames const& names);
    void compareCells(EditDistance const& distance);
    void compareIn(EditDistance const& distance, TovCellNode const& cell, Row const& below);
    void offer(unsigned distance, TovNode const& node);

    NameIndex const& index_;
    NameKinds kinds_;
    unsigned distance_ = EditDistance::far;
    std::string name_;
};

void NearestName::compare(std::string_view word, unsigned bound) {
    EditDistance const distance(word, bound);
    if (kinds_.has(NameKind::port)) compareSorted(distance, index_.ports);
    if (kinds_.has(NameKind::net)) compareSorted(distance, index_.nets);
    if (kinds_.has(NameKind::clock)) compareSorted(distance, index_.clocks);
    if (!kinds_.without(NameKind::port).isEmpty()) compareCells(distance);
}

void NearestName::compareSorted(EditDistance const& distance, SortedNames const& names) {
    std::vector<PlacedNode> const& nodes = names.nodes();
    NearTexts texts(distance, distance.start(), nodes.size());
    while (texts.next([&](std::size_t i) { return nodes[i].name(); }))
        offer(distance.distance(texts.row()), *nodes[texts.index()].node);
}

/// Goes as deep as the word has bytes, and a few levels more.
void NearestName::compareCells(EditDistance const& distance) {
    CellTree const& tree = index_.tree;
    std::vector<Level> levels;
    auto const enter = [&](CellTree::Id node, Row const& start) {
        CellTree::Range const children = tree.children(node);
        levels.push_back({children.begin, NearTexts(distance, start, children.size())});
    };
    enter(CellTree::root, distance.start());
    while (!levels.empty()) {
        auto& [first, texts] = levels.back();
        auto const idOf = [begin = first](std::size_t i) { return begin + static_cast<CellTree::Id>(i); };
        if (!texts.next([&](std::size_t i) { return tree.text(idOf(i)); })) {
            levels.pop_back();
            continue;
        }
        CellTree::Id const node = idOf(texts.index());
        Row const below = distance.next(texts.row(), '/');
        for (std::uint32_t const number : tree.cells(node)) {
            TovCellNode const& cell = *index_.cells[number];
            if (kinds_.has(NameKind::cell)) offer(distance.distance(texts.row()), cell);
            if (!distance.isTooFar(below)) compareIn(distance, cell, below);
        }
        if (!distance.isTooFar(below)) enter(node, below);
    }
}

void NearestName::compareIn(EditDistance const& distance, TovCellNode const& cell, Row const& below) {
    forEachIn(cell, kinds_, [&](NameKind, TovNode const& node, std::size_t) {
        Row row = below;
        for (char const c : node.plainName()) {
            row = distance.next(row, c);
            if (distance.isTooFar(row)) return;
        }
        if (!isBus(node)) offer(distance.distance(row), node);
    });
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

std::string nearestName(NameIndex const& index, NameKinds kinds, std::string const& word) {
    if (word.size() > 1000) return {};
    std::string const latin1 = isUtf8BeyondAscii(word) ? latin1Of(word, false) : word;
    NearestName nearest(index, kinds);
    unsigned const most = word.size() < 4 ? 1 : word.size() < 12 ? 2 : EditDistance::mostBound;
    for (unsigned bound = 1; bound <= most && nearest.name().empty(); ++bound) {
        nearest.compare(word, bound);
        if (latin1 != word) nearest.compare(latin1, bound);
    }
    return nearest.name();
}

}  // namespace kiri::tov::impl_detail
