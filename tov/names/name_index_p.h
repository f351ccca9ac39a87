#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string_view>
#include <vector>

#include "platform/dci.h"
#include "tov/design/design.h"
#include "tov/names/cell_tree_p.h"
#include "tov/names/path_text_p.h"

namespace kiri::tov::impl_detail {

/// Kinds of nodes that a word may match, in the order of results.
enum class NameKind : unsigned { port, pin, net, cell, clock };

/// A set of kinds.
class NameKinds {
public:
    constexpr NameKinds() = default;
    // NOLINTNEXTLINE(google-explicit-constructor): one kind is a set
    constexpr NameKinds(NameKind kind) : bits_(1U << static_cast<unsigned>(kind)) {}
    constexpr NameKinds operator|(NameKinds other) const { return NameKinds(bits_ | other.bits_); }
    constexpr NameKinds operator&(NameKinds other) const { return NameKinds(bits_ & other.bits_); }
    constexpr NameKinds without(NameKinds other) const { return NameKinds(bits_ & ~other.bits_); }
    constexpr bool has(NameKind kind) const { return !(*this & kind).isEmpty(); }
    constexpr bool isEmpty() const { return bits_ == 0; }

private:
    explicit constexpr NameKinds(unsigned bits) : bits_(bits) {}
    unsigned bits_ = 0;
};

/// Returns the kinds to which an object reference of this type may refer.
NameKinds kindsOf(taDciObjTyp type);

constexpr NameKinds kindsInCells = NameKinds(NameKind::pin) | NameKind::net | NameKind::clock;

constexpr bool hasBits(NameKind kind) {
    return kind != NameKind::cell && kind != NameKind::clock;
}

/// Returns whether the node is a bus, which no word matches.
bool isBus(TovNode const& node);

/// The place of a node in the design; results are in the order of their places. The owner is 0 for the top node, else
/// one more than the cell's number; the position counts within the owner's list.
constexpr std::uint64_t placeOf(NameKind kind, std::uint64_t owner, std::uint64_t position) {
    return std::uint64_t{static_cast<unsigned>(kind)} << 61U | owner << 29U | position;
}

struct PlacedNode {
    std::uint64_t place;
    TovNode const* node;

    std::string_view name() const { return node->plainName(); }
};

/// Calls `visit(kind, node, position)` for the pins, nets and clocks of a cell that are of these kinds, and their
/// buses; the position counts within a list.
template <class Visit>
void forEachIn(TovCellNode const& cell, NameKinds kinds, Visit visit) {
    auto const visitAll = [&](NameKind kind, auto const& nodes) {
        std::size_t position = 0;
        if (!kinds.has(kind)) return;
        for (TovNode const* node : nodes) visit(kind, *node, position++);
    };
    visitAll(NameKind::pin, cell.ports());
    visitAll(NameKind::net, cell.nets());
    visitAll(NameKind::clock, cell.clocks());
}

/// Nodes in the byte order of their own names as paths.
class SortedNames {
public:
    /// Adds the nodes of an owner's list, except the buses.
    template <class Nodes>
    void add(NameKind kind, std::size_t owner, Nodes const& nodes);
    void sort();

    std::vector<PlacedNode> const& nodes() const { return nodes_; }
    /// Calls `visit(node)` for the nodes with that prefix, until it returns false.
    template <class Visit>
    void visit(std::string_view prefix, Visit visit) const {
        for (std::size_t i = lowerBound(prefix); i < nodes_.size(); ++i) {
            bool const begins = comparePaths(nodes_[i].name().substr(0, prefix.size()), prefix) == 0;
            if (!begins || !visit(nodes_[i])) return;
        }
    }

private:
    std::size_t lowerBound(std::string_view name) const;

    std::vector<PlacedNode> nodes_;
    std::array<std::uint32_t, 257> starts_{};  // of the names with each first byte, and the end of all
};

/// What the index stores of a design's names, here for two cells "u1" (pins "CK", "d[0]", "d[1]") and "u2" (pins "CK",
/// "q"):
///
///     cells     u1  u2              the nodes of the design, in its order
///     tree      root -> 0: u1, root -> 1: u2
///     lastLevels   "CK" 0 1   "d" 0   "q" 1     cells by what they have, without indexes
///     ports, nets  of the top node, sorted      clocks: those of the top node and of all cells, sorted
///
/// A search reads the pins and nets of cells in the lists of their cells.
class NameIndex {
public:
    /// See the constructor of TovDesignNames.
    NameIndex(TovDesign const& design, TovProgress const& progress);

    bool isComplete = false;
    std::vector<TovCellNode const*> cells;
    CellTree tree;
    SortedNames ports;
    SortedNames nets;
    SortedNames clocks;
    /// Maps busOf() of the name of a pin, net or clock to the cells that have one and, after the cells' numbers, to the
    /// places in `nets` of nets with several levels. Names that many cells have are left out.
    TextTable lastLevels;
    std::vector<std::uint32_t> unnamedCells;         ///< the cells whose hierarchy names are empty
    std::set<std::string_view, PathLess> libraries;  ///< of the cells, if hierarchy names include them
    std::vector<std::uint32_t> levelledCells;        ///< the cells with a pin, net or clock of several levels
    std::set<std::size_t> ownLevels{1};              ///< the level counts of the own names of pins, nets and clocks

private:
    bool fill(TovTopNode const& top, TovProgress const& progress);
    void addCell(TovCellNode const& cell);
    void noteName(std::string_view name);
    void sort();

    std::vector<TextTable::Entry> entries_;  // of lastLevels, until it is made
};

/// Returns the library in the hierarchy name of a cell; empty if there is none.
inline std::string_view shownLibrary(TovCellNode const& cell) {
    std::string_view const library = cell.library();
    return library == "work" ? std::string_view() : library;
}

}  // namespace kiri::tov::impl_detail
