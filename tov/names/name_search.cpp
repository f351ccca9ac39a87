#include "tov/names/name_search_p.h"

#include <algorithm>

namespace kiri::tov::impl_detail {

namespace {

constexpr NameKinds flatKinds = NameKinds(NameKind::port) | NameKind::clock;
constexpr std::size_t allLevels = std::string_view::npos;

}  // namespace

void Hits::moveTo(std::vector<TovNode const*>& nodes) {
    auto const isBefore = [](PlacedNode const& a, PlacedNode const& b) { return a.place < b.place; };
    if (!std::is_sorted(nodes_.begin(), nodes_.end(), isBefore)) std::sort(nodes_.begin(), nodes_.end(), isBefore);
    nodes.reserve(nodes_.size());
    nodes.clear();
    std::uint64_t last = UINT64_MAX;
    for (PlacedNode const& placed : nodes_) {
        if (placed.place != last) nodes.push_back(placed.node);
        last = placed.place;
    }
}

void NameSearch::run(NameKinds kinds, TovNameMatch match) {
    NameKinds const local = match == TOVMATCH_LOCAL ? kinds.without(flatKinds) : NameKinds();
    NameKinds const whole = kinds.without(local);
    if (word_.isPattern()) {
        NameKinds const flat = match == TOVMATCH_FLAT ? whole : whole & flatKinds;
        findPaths(flat, true);
        findPaths(whole.without(flat), false);
    } else {
        findPaths(whole, false);
    }
    findLocal(local);
}

/// Finds the nodes whose whole paths the word matches.
void NameSearch::findPaths(NameKinds kinds, bool crosses) {
    if (kinds.has(NameKind::port)) findAtTop(index_.ports, true, crosses);
    if (kinds.has(NameKind::net)) findAtTop(index_.nets, true, crosses);
    if (kinds.has(NameKind::clock)) findAtTop(index_.clocks, false, crosses);
    NameKinds const inCells = kinds.without(NameKind::port);
    if (inCells.isEmpty() || hits_.isEnough()) return;
    if (!word_.isPattern()) {
        findLiteral(inCells, 0);
        // A cell with an empty hierarchy name adds no level to the names of its objects.
        for (Cell const cell : index_.unnamedCells) addOwn(inCells, cell, NameWord::start(false));
        if (index_.libraries.empty()) return;
        std::string_view const text = word_.text();
        for (std::size_t at = text.find('/'); at != std::string_view::npos; at = text.find('/', at + 1)) {
            if (index_.libraries.count(text.substr(0, at)) != 0) findLiteral(inCells, at + 1);
        }
        return;
    }
    if (kinds.has(NameKind::cell)) findBlocks(crosses);
    findOwn(kinds & kindsInCells, crosses);
}

/// Searches the names of ports, nets or clocks. Equal names come before longer ones.
void NameSearch::findAtTop(SortedNames const& names, bool hasBits, bool crosses) {
    if (hits_.isEnough()) return;
    auto const add = [&](PlacedNode const& placed) {
        if (word_.fits(placed.name(), hasBits, crosses)) hits_.add(placed);
        return !hits_.isEnough();
    };
    if (word_.isPattern()) return names.visit(word_.prefix(), add);
    bool hasLonger = false;
    names.visit(word_.text(), [&](PlacedNode const& placed) {
        hasLonger = placed.name().size() > word_.text().size();
        return !hasLonger && add(placed);
    });
    if (hasBits && hasLonger) names.visit(std::string(word_.text()) + '[', add);
}

/// Follows a word without wildcards through the cells, from `begin` on: the part before that is a library.
void NameSearch::findLiteral(NameKinds kinds, std::size_t begin) {
    bool const hasLibrary = begin > 0;
    std::string_view const library = word_.text().substr(0, hasLibrary ? begin - 1 : 0);
    bool const hasCells = kinds.has(NameKind::cell) && !word_.isRange();
    std::size_t const own = lastLevelsOf(word_.text(), *index_.ownLevels.rbegin());
    TreeWalk walk(index_.tree, word_, NameWord::start(false, begin), hasCells ? allLevels : lastLevelsOf(word_.text()));
    while (!hits_.isEnough() && walk.next()) {
        for (Cell const cell : index_.tree.cells(walk.node())) {
            if (!hasLibrary && walk.below().at >= own) addOwn(kinds, cell, walk.below());
            addHierarchical(kinds, cell, library, walk.match());
        }
        if (!hasLibrary && hasCells && word_.accepts(walk.match())) addSubtree(walk.node());
    }
}

/// Tries the hierarchy names of a cell and of its objects: the match is that of the library and the cell's path.
void NameSearch::addHierarchical(NameKinds kinds, Cell cell, std::string_view library, Match match) {
    std::string_view const arch = index_.cells[cell]->arch();
    std::string_view const shown = shownLibrary(*index_.cells[cell]);
    if ((arch.empty() && shown.empty()) || comparePaths(shown, library) != 0) return;
    if (!arch.empty()) match = word_.advance(word_.advance(match, "/"), arch);
    if (kinds.has(NameKind::cell) && !word_.isRange() && word_.accepts(match)) addCell(cell);
    addOwn(kinds, cell, word_.advance(match, "/"));
}

void NameSearch::findBlocks(bool crosses) {
    if (word_.isRange()) return;
    TreeWalk walk(index_.tree, word_, NameWord::start(crosses), allLevels);
    while (!hits_.isEnough() && walk.next()) {
        if (!word_.accepts(walk.match())) continue;
        addSubtree(walk.node());
        walk.skipBelow();
    }
}

/// A pattern for pins, nets and clocks of cells.
void NameSearch::findOwn(NameKinds kinds, bool crosses) {
    if (kinds.isEmpty() || hits_.isEnough() || findByLastLevel(kinds, crosses)) return;
    std::set<std::size_t> const& ownLevels = index_.ownLevels;
    Match const start = NameWord::start(crosses);
    if (crosses) {
        findOwn(kinds, start, lastLevelsOf(word_.prefix(), *ownLevels.rbegin()), allLevels);
        return;
    }
    for (std::size_t const own : ownLevels) {
        std::size_t const begin = lastLevelsOf(word_.text(), own);
        findOwn(kinds, start, begin, begin);
    }
}

/// Reads the cells whose paths lead to `begin` at least, in the order of the design, in which their pins and nets are
/// in memory; each at once where the first hit is enough.
void NameSearch::findOwn(NameKinds kinds, Match const& start, std::size_t begin, std::size_t until) {
    std::vector<std::pair<Cell, Match>> found;
    TreeWalk walk(index_.tree, word_, start, until);
    while (!hits_.isEnough() && walk.next()) {
        if (walk.below().isDead() || walk.below().at < begin) continue;
        for (Cell const cell : index_.tree.cells(walk.node())) found.emplace_back(cell, walk.below());
        if (hits_.firstOnly()) addFound(kinds, found);
    }
    addFound(kinds, found);
}

void NameSearch::addFound(NameKinds kinds, std::vector<std::pair<Cell, Match>>& found) {
    auto const isBefore = [](auto const& a, auto const& b) { return a.first < b.first; };
    if (!std::is_sorted(found.begin(), found.end(), isBefore)) std::sort(found.begin(), found.end(), isBefore);
    for (auto const& [cell, match] : found) {
        if (match.crosses) path_.assign(index_.cells[cell]->plainName()) += '/';
        addOwn(kinds, cell, match);
    }
    found.clear();
}

/// If only few cells have an object that the last level may match, searches those. Returns false if others may have
/// one.
bool NameSearch::findByLastLevel(NameKinds kinds, bool crosses) {
    bool const isClock = kinds.without(NameKind::clock).isEmpty();
    if (isClock && word_.prefix().find('/') == std::string_view::npos) {
        for (PlacedNode const& clock : index_.clocks.nodes()) {
            TovNode const& owner = *clock.node->parent();
            if (owner.type() != TOV_OBJ_CELL || hits_.isEnough()) continue;
            path_.assign(owner.plainName()).append("/").append(clock.name());
            if (word_.fits(path_, false, crosses)) hits_.add(clock);
        }
        return true;
    }
    auto const numbers = withLastLevel();
    if (!numbers) return false;
    for (std::uint32_t const cell : *numbers) {
        if (cell >= index_.cells.size() || hits_.isEnough()) break;
        path_.assign(index_.cells[cell]->plainName()) += '/';
        addOwn(kinds, cell, word_.advance(NameWord::start(crosses), path_));
    }
    return true;
}

std::optional<Span<std::uint32_t>> NameSearch::withLastLevel() const {
    PathHash const hash(busOf(word_.text()));
    if (!word_.literalAt(lastLevelsOf(word_.text())).isLevel || index_.lastLevels.isCommon(hash)) return {};
    return index_.lastLevels.find(hash);
}

/// Finds the nodes whose last levels the word matches.
void NameSearch::findLocal(NameKinds kinds) {
    std::size_t const levels = kinds.isEmpty() ? allLevels : word_.levels();
    if (levels == 1) {
        if (kinds.has(NameKind::net)) findLocalNets();
        if (kinds.has(NameKind::cell) && !word_.isRange()) findLocalCells();
        findLocalOwn(kinds & kindsInCells);
    } else if (levels == 2) {
        findLocalOwn(kinds & NameKind::pin);
    }
}

/// Adds nets of the design.
void NameSearch::findLocalNets() {
    auto const add = [this](PlacedNode const& net) {
        if (word_.fits(net.name().substr(lastLevelsOf(net.name())), true, false)) hits_.add(net);
        return !hits_.isEnough();
    };
    auto const numbers = withLastLevel();
    if (!numbers) return index_.nets.visit({}, add);
    findAtTop(index_.nets, true, false);
    for (std::uint32_t const number : *numbers) {
        if (number >= index_.cells.size() && !hits_.isEnough()) add(index_.nets.nodes()[number - index_.cells.size()]);
    }
}

/// Adds the cells in any matching block. Of nested blocks, the outermost contains all cells.
void NameSearch::findLocalCells() {
    CellTree const& tree = index_.tree;
    auto const fits = [&](Id node) { return word_.fits(tree.text(node), false, false); };
    if (!word_.isPattern()) {
        for (Id const node : tree.withText({0, tree.size()}, PathHash(word_.text()))) {
            Id above = tree.parent(node);
            while (above != CellTree::root && !fits(above)) above = tree.parent(above);
            if (above == CellTree::root && fits(node) && !hits_.isEnough()) addSubtree(node);
        }
        return;
    }
    std::vector<bool> isFound(tree.size());
    for (Id node = 1; node < tree.size() && !hits_.isEnough(); ++node) {
        isFound[node] = isFound[tree.parent(node)] || fits(node);
        if (!isFound[node]) continue;
        for (Cell const cell : tree.cells(node)) addCell(cell);
    }
}

void NameSearch::findLocalOwn(NameKinds kinds) {
    if (kinds.isEmpty()) return;
    std::size_t const count = index_.cells.size();
    NameWord::Literal const first = word_.literalAt(0);
    if (auto const numbers = withLastLevel()) {
        for (std::uint32_t const cell : *numbers) {
            if (cell < count) addLocal(kinds, cell);
        }
    } else if (first.isLevel && word_.levels() > 1) {
        for (Id const node : index_.tree.withText({0, index_.tree.size()}, first.hash)) {
            for (Cell const cell : index_.tree.cells(node)) addLocal(kinds, cell);
        }
        for (Cell const cell : index_.levelledCells) addLocal(kinds, cell);
    } else {
        for (Cell cell = 0; cell < count && !hits_.isEnough(); ++cell) addLocal(kinds, cell);
    }
}

void NameSearch::addLocal(NameKinds kinds, Cell cell) {
    std::string_view const name = index_.cells[cell]->plainName();
    bool const hasCell = word_.levels() > 1;
    Match const start = NameWord::start(false);
    Match const below = hasCell ? word_.advance(word_.advance(start, name.substr(lastLevelsOf(name))), "/") : start;
    addFitting(kinds, cell, [&](std::string_view own, bool bits) {
        std::size_t const last = lastLevelsOf(own);
        if (!hasCell || last == 0) return word_.fits(below, own.substr(last), 0, bits);
        return word_.fits(start, own.substr(lastLevelsOf(own, 2)), 0, bits);
    });
}

void NameSearch::addOwn(NameKinds kinds, Cell cell, Match const& match) {
    if (match.isDead()) return;
    std::size_t const size = match.crosses ? path_.size() : 0;
    addFitting(kinds, cell, [&](std::string_view name, bool bits) {
        if (!match.crosses) return word_.fits(match, name, 0, bits);
        path_.resize(size);
        path_ += name;
        return word_.fits(match, path_, size, bits);
    });
}

template <class Fits>
void NameSearch::addFitting(NameKinds kinds, Cell cell, Fits fits) {
    forEachIn(*index_.cells[cell], kinds, [&](NameKind kind, TovNode const& node, std::size_t position) {
        bool const isHit = !hits_.isEnough() && fits(node.plainName(), hasBits(kind)) && !isBus(node);
        if (isHit) hits_.add({placeOf(kind, cell + std::uint64_t{1}, position), &node});
    });
}

void NameSearch::addCell(Cell cell) {
    hits_.add({placeOf(NameKind::cell, cell + std::uint64_t{1}, 0), index_.cells[cell]});
}

void NameSearch::addSubtree(Id node) {
    CellTree::Range nodes{node, node + 1};
    for (; nodes.size() > 0 && !hits_.isEnough(); nodes = index_.tree.children(nodes)) {
        for (Cell const cell : index_.tree.cells(nodes)) addCell(cell);
    }
}

}  // namespace kiri::tov::impl_detail
