#pragma once

#include <string>

#include "tov/names/edit_distance.h"
#include "tov/names/hits.h"
#include "tov/names/name_index.h"

namespace kiri::tov::impl_detail {

/// See TovDesignNames::nameOf().
std::string nameOf(TovNode const& node);

/// Finds the name nearest to a word among nodes of some kinds.
class NearestName {
public:
    NearestName(NameIndex const& index, NameKinds kinds) : index_(index), kinds_(kinds) {}

    /// Compares all names with a word; ignores those more than `bound` away.
    void compare(std::string_view word, unsigned bound);
    /// Returns the nameOf() of the nearest node so far; empty if there is none.
    std::string const& name() const { return name_; }

private:
    void compareSorted(EditDistance const& distance, SortedNames const& names);
    void compareCells(EditDistance const& distance, CellTree::Id parent, EditDistance::Row const& start);
    template <class Nodes>
    void compareOwn(EditDistance const& distance, Nodes const& nodes, EditDistance::Row const& start);
    void offer(unsigned distance, TovNode const& node);

    NameIndex const& index_;
    NameKinds kinds_;
    unsigned distance_ = EditDistance::mostBound + 1;
    std::string name_;
};

}  // namespace kiri::tov::impl_detail
