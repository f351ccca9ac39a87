#include "tov/names/sorted_names.h"

namespace kiri::tov::impl_detail {

void SortedNames::sort() {
    std::vector<PlacedNode>(nodes_).swap(nodes_);  // takes no more room than it needs
    std::sort(nodes_.begin(), nodes_.end(), [](PlacedNode const& a, PlacedNode const& b) {
        int const order = comparePaths(a.node->plainName(), b.node->plainName());
        return order != 0 ? order < 0 : a.place < b.place;
    });
}

SortedNames::Iterator SortedNames::lowerBound(std::string_view name) const {
    return std::lower_bound(nodes_.begin(), nodes_.end(), name, [](PlacedNode const& placed, std::string_view wanted) {
        return comparePaths(placed.node->plainName(), wanted) < 0;
    });
}

bool SortedNames::beginsWith(PlacedNode const& placed, std::string_view prefix) {
    std::string const& name = placed.node->plainName();
    return name.size() >= prefix.size() && equalPaths(name.data(), prefix.data(), prefix.size());
}

}  // namespace kiri::tov::impl_detail
