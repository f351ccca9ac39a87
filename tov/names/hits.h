#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/dci.h"
#include "tov/design/design.h"

namespace kiri::tov::impl_detail {

/// Kinds of nodes that a word may stand for, in the order of results.
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

/// The kinds that a reference of this type may be to.
NameKinds kindsOf(taDciObjTyp type);

/// The place of a node in the design; results are in the order of their places. The owner is 0 for the top node, else
/// one more than the cell's number; the position counts within the owner's list.
constexpr std::uint64_t placeOf(NameKind kind, std::uint64_t owner, std::uint64_t position) {
    return std::uint64_t{static_cast<unsigned>(kind)} << 61U | owner << 29U | position;
}

struct PlacedNode {
    std::uint64_t place;
    TovNode const* node;
};

/// Collects the nodes that a word stands for.
class Hits {
public:
    explicit Hits(bool firstOnly) : firstOnly_(firstOnly) {}

    void add(std::uint64_t place, TovNode const& node) { nodes_.push_back({place, &node}); }
    /// Returns whether no more nodes are needed.
    bool isEnough() const { return firstOnly_ && !nodes_.empty(); }
    bool isEmpty() const { return nodes_.empty(); }
    bool firstOnly() const { return firstOnly_; }

    /// Replaces `nodes` by those added, in the order of their places, each once. std::bad_alloc leaves it as it was.
    void moveTo(std::vector<TovNode const*>& nodes);

private:
    bool firstOnly_;
    std::vector<PlacedNode> nodes_;
};

/// Returns whether the node is a bus, which no word stands for. Only a node whose plain name ends in an index can be
/// one.
bool isBus(TovNode const& node);

}  // namespace kiri::tov::impl_detail
