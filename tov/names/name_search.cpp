#include "tov/names/name_search.h"

#include <algorithm>

#include "tov/names/cell_selection.h"

namespace kiri::tov::impl_detail {

namespace {

constexpr NameKinds flatKinds = NameKinds(NameKind::port) | NameKind::clock;
constexpr NameKinds kindsInCells = NameKinds(NameKind::pin) | NameKind::net | NameKind::clock;

constexpr bool hasBits(NameKind kind) {
    return kind != NameKind::cell && kind != NameKind::clock;
}

/// Visits the cells of the selected nodes: each at once where the first hit is enough, else in the order of the design,
/// in which their pins and nets are in memory.
template <class Selection, class Visit>
void forEachCell(CellTree const& tree, Selection selection, Hits const& hits, Visit visit) {
    std::vector<std::uint32_t> found;
    for (CellTree::Id node = selection.next(); node != CellTree::none && !hits.isEnough(); node = selection.next()) {
        for (std::uint32_t const cell : tree.cells(node)) {
            if (hits.firstOnly()) {
                visit(cell);
            } else {
                found.push_back(cell);
            }
        }
    }
    if (!std::is_sorted(found.begin(), found.end())) std::sort(found.begin(), found.end());
    for (std::uint32_t const cell : found) visit(cell);
}

}  // namespace

void NameSearch::run(NameKinds kinds, TovNameMatch match) {
    bool const isLocal = match == TOVMATCH_LOCAL;
    if (!word_.isPattern()) {
        findExact(isLocal ? kinds & flatKinds : kinds);
        if (isLocal) findLocal(kinds.without(flatKinds));
        return;
    }
    NameKinds const flat = match == TOVMATCH_FLAT ? kinds : kinds & flatKinds;
    findFlat(flat);
    if (isLocal) {
        findLocal(kinds.without(flat));
    } else {
        findLevels(kinds.without(flat));
    }
}

/// A word without wildcards, in any match but the local one.
void NameSearch::findExact(NameKinds kinds) {
    if (kinds.has(NameKind::port)) findExactAtTop(index_.ports, true);
    if (kinds.has(NameKind::net)) findExactAtTop(index_.nets, true);
    if (kinds.has(NameKind::clock)) findExactAtTop(index_.clocks, false);
    NameKinds const below = kinds.without(NameKind::port);
    if (below.isEmpty()) return;
    findExactBelow(below, {}, 0);
    // A cell whose hierarchy name is empty leaves no level in the names of what it holds.
    for (std::uint32_t const cell : index_.unnamedCells) findExactOwn(below, cell, 0);
    for (std::size_t i = 1; i < word_.levels() && !index_.libraries.empty(); ++i) {
        std::string_view const library = word_.text().substr(0, word_.endOf(i - 1));
        if (index_.libraries.count(library) != 0) findExactBelow(below, library, i);
    }
}

/// Adds names that are equal, and bits that read as the word or are in its range. Equal names come before longer ones.
void NameSearch::findExactAtTop(SortedNames const& names, bool hasBits) {
    auto const fits = [&](std::string_view name) { return word_.fitsFlat(name, hasBits); };
    std::string_view const text = word_.text();
    bool hasLonger = false;
    names.visit(text, [&](PlacedNode const& placed) {
        hasLonger = placed.node->plainName().size() > text.size();
        if (!hasLonger) hits_.add(placed.place, *placed.node);
        return !hasLonger && !hits_.isEnough();
    });
    if (hasBits && hasLonger) addFrom(names, std::string(text) + '[', fits);
    if (hasBits && word_.hasRange()) addFrom(names, text.substr(0, word_.rangeBegin() + 1), fits);
}

/// Follows the word through the cells, after the levels of a library, if any.
void NameSearch::findExactBelow(NameKinds kinds, std::string_view library, std::size_t level) {
    Id node = CellTree::root;
    while (level < word_.levels()) {
        node = index_.tree.child(node, word_.level(level++));
        if (node == CellTree::none) return;
        for (std::uint32_t const cell : index_.tree.cells(node)) {
            if (library.empty()) findExactOwn(kinds, cell, level);
            findExactIn(kinds, cell, library, level);
        }
    }
    if (library.empty() && kinds.has(NameKind::cell)) addSubtree(node);
}

/// Tries the hierarchy names of a cell and of what is in it: the levels before `level` are those of library and name.
void NameSearch::findExactIn(NameKinds kinds, std::uint32_t number, std::string_view library, std::size_t level) {
    TovCellNode const& cell = *index_.cells[number];
    std::string_view arch = cell.arch();
    std::string_view const shown = shownLibrary(cell);
    if ((arch.empty() && shown.empty()) || comparePaths(shown, library) != 0) return;
    if (arch.empty()) arch = {};
    for (; arch.data() != nullptr; ++level) {
        if (level == word_.levels() || takeLevel(arch) != word_.level(level)) return;
    }
    if (level < word_.levels()) {
        findExactOwn(kinds, number, level);
    } else if (kinds.has(NameKind::cell)) {
        addCell(number);
    }
}

/// Adds what is in a cell and has the levels from `level` on as its own name.
void NameSearch::findExactOwn(NameKinds kinds, std::uint32_t cell, std::size_t level) {
    if (level == word_.levels() || word_.levels() - level > index_.mostLevels) return;
    addOwn(kinds, cell, [&](std::string_view name, bool bits) { return word_.fitsPath(level, name, bits); });
}

/// A pattern, level by level. The own name of a pin or net may have several levels.
void NameSearch::findLevels(NameKinds kinds) {
    std::size_t const levels = word_.levels();
    if (kinds.has(NameKind::net)) {
        addFrom(index_.nets, word_.prefix(), [&](std::string_view name) { return word_.fitsPath(0, name, true); });
    }
    if (kinds.has(NameKind::cell)) {
        LevelSelection blocks(index_.tree, word_, levels);
        for (Id node = blocks.next(); node != CellTree::none && !hits_.isEnough(); node = blocks.next())
            addSubtree(node);
    }
    if ((kinds & kindsInCells).isEmpty()) return;
    for (std::size_t own = 1; own < levels && own <= index_.mostLevels; ++own) {
        forEachCell(index_.tree, LevelSelection(index_.tree, word_, levels - own), hits_, [&](std::uint32_t cell) {
            addOwn(kinds, cell,
                   [&](std::string_view name, bool bits) { return word_.fitsPath(levels - own, name, bits); });
        });
    }
}

void NameSearch::findLocal(NameKinds kinds) {
    if (word_.levels() == 2 && kinds.has(NameKind::pin)) findLocalPinsOfCells();
    if (word_.levels() != 1) return;
    auto const fitsLast = [&](std::string_view name, bool bits = true) {
        return word_.fitsLast(name.substr(lastLevelOf(name)), bits);
    };
    if (kinds.has(NameKind::net)) addFrom(index_.nets, {}, fitsLast);
    if (kinds.has(NameKind::cell)) findLocalCells();
    if ((kinds & kindsInCells).isEmpty()) return;
    for (std::uint32_t cell = 0; cell < index_.cells.size(); ++cell) addOwn(kinds, cell, fitsLast);
}

/// Adds the cells in any block that fits. Of nested blocks the outermost has them all.
void NameSearch::findLocalCells() {
    CellTree const& tree = index_.tree;
    if (!word_.isPattern()) {
        TextSelection blocks(tree, word_);
        for (Id node = blocks.next(); node != CellTree::none && !hits_.isEnough(); node = blocks.next()) {
            Id above = tree.parent(node);
            while (above != CellTree::root && !word_.fitsLevel(0, tree.text(above))) above = tree.parent(above);
            if (above == CellTree::root) addSubtree(node);
        }
        return;
    }
    std::vector<bool> isFound(tree.size());
    for (Id node = 1; node < tree.size() && !hits_.isEnough(); ++node) {
        isFound[node] = isFound[tree.parent(node)] || word_.fitsLevel(0, tree.text(node));
        if (!isFound[node]) continue;
        for (std::uint32_t const cell : tree.cells(node)) addCell(cell);
    }
}

/// Adds pins by their last two levels: cell and pin, or both in the pin's own name.
void NameSearch::findLocalPinsOfCells() {
    forEachCell(index_.tree, TextSelection(index_.tree, word_), hits_, [&](std::uint32_t cell) {
        addOwn(NameKind::pin, cell, [&](std::string_view name, bool bits) { return word_.fitsPath(1, name, bits); });
    });
    for (std::uint32_t const cell : index_.levelledCells) {
        addOwn(NameKind::pin, cell, [&](std::string_view name, bool bits) {
            std::size_t const last = lastLevelOf(name);
            return last > 0 && word_.fitsPath(0, name.substr(lastLevelOf(name.substr(0, last - 1))), bits);
        });
    }
}

/// A pattern over whole names.
void NameSearch::findFlat(NameKinds kinds) {
    auto const fits = [&](bool bits) {
        return [&, bits](std::string_view name) { return word_.fitsFlat(name, bits); };
    };
    if (kinds.has(NameKind::port)) addFrom(index_.ports, word_.prefix(), fits(true));
    if (kinds.has(NameKind::net)) addFrom(index_.nets, word_.prefix(), fits(true));
    if (kinds.has(NameKind::clock)) addFrom(index_.clocks, word_.prefix(), fits(false));
    if (word_.leastSize() > index_.longestPath || hits_.isEnough()) return;

    FlatMatcher const matcher(word_);
    if (kinds.has(NameKind::cell)) {
        FlatSelection blocks(index_.tree, matcher);
        for (Id node = blocks.next(); node != CellTree::none && !hits_.isEnough(); node = blocks.next()) {
            if (!matcher.accepts(blocks.state())) continue;
            addSubtree(node);
            blocks.skipBelow();
        }
    }
    FlatMatcher::State path;
    FlatMatcher::State scratch;
    auto const addFlat = [&](NameKinds some, std::uint32_t cell) {
        path = matcher.start();
        matcher.advance(path, index_.cells[cell]->plainName());
        matcher.advance(path, "/");
        if (FlatMatcher::isDead(path)) return;
        addOwn(some, cell, [&](std::string_view name, bool bits) { return matcher.fits(path, name, bits, scratch); });
    };
    if (kinds.has(NameKind::clock)) {
        for (std::uint32_t const cell : index_.clockCells) addFlat(NameKind::clock, cell);
    }
    NameKinds const others = (kinds & kindsInCells).without(NameKind::clock);
    if (others.isEmpty()) return;
    forEachCell(index_.tree, FlatSelection(index_.tree, matcher), hits_,
                [&](std::uint32_t cell) { addFlat(others, cell); });
}

template <class Fits>
void NameSearch::addFrom(SortedNames const& names, std::string_view prefix, Fits fits) {
    if (hits_.isEnough()) return;
    names.visit(prefix, [&](PlacedNode const& placed) {
        if (fits(placed.node->plainName())) hits_.add(placed.place, *placed.node);
        return !hits_.isEnough();
    });
}

template <class Fits>
void NameSearch::addOwn(NameKinds kinds, std::uint32_t number, Fits fits) {
    TovCellNode const& cell = *index_.cells[number];
    if (kinds.has(NameKind::pin)) addFitting(NameKind::pin, number, cell.ports(), fits);
    if (kinds.has(NameKind::net)) addFitting(NameKind::net, number, cell.nets(), fits);
    if (kinds.has(NameKind::clock)) addFitting(NameKind::clock, number, cell.clocks(), fits);
}

template <class Nodes, class Fits>
void NameSearch::addFitting(NameKind kind, std::uint32_t cell, Nodes const& nodes, Fits fits) {
    std::uint64_t place = placeOf(kind, cell + std::uint64_t{1}, 0);
    for (TovNode const* node : nodes) {
        if (hits_.isEnough()) return;
        if (fits(node->plainName(), hasBits(kind)) && !isBus(*node)) hits_.add(place, *node);
        ++place;
    }
}

void NameSearch::addCell(std::uint32_t cell) {
    hits_.add(placeOf(NameKind::cell, cell + std::uint64_t{1}, 0), *index_.cells[cell]);
}

void NameSearch::addSubtree(Id node) {
    CellTree::Range nodes{node, node + 1};
    for (; nodes.size() > 0 && !hits_.isEnough(); nodes = index_.tree.children(nodes)) {
        for (std::uint32_t const cell : index_.tree.cells(nodes)) addCell(cell);
    }
}

}  // namespace kiri::tov::impl_detail
