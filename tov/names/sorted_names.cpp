#include "tov/names/sorted_names.h"

#include <numeric>

namespace kiri::tov::impl_detail {

namespace {

unsigned char firstByte(std::string_view name) {
    return static_cast<unsigned char>(pathByte(name[0]));
}

}  // namespace

void SortedNames::sort() {
    std::vector<PlacedNode>(nodes_).swap(nodes_);  // takes no more room than it needs
    std::sort(nodes_.begin(), nodes_.end(), [](PlacedNode const& a, PlacedNode const& b) {
        int const order = comparePaths(a.node->plainName(), b.node->plainName());
        return order != 0 ? order < 0 : a.place < b.place;
    });
    for (PlacedNode const& placed : nodes_) {
        std::string const& name = placed.node->plainName();
        ++starts_[name.empty() ? 0 : firstByte(name) + std::size_t{1}];
    }
    std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
}

SortedNames::Iterator SortedNames::lowerBound(std::string_view name) const {
    if (name.empty()) return nodes_.begin();
    std::uint32_t const* const starts = starts_.data() + firstByte(name);
    return std::lower_bound(nodes_.begin() + starts[0], nodes_.begin() + starts[1], name,
                            [](PlacedNode const& placed, std::string_view wanted) {
                                return comparePaths(placed.node->plainName(), wanted) < 0;
                            });
}

bool SortedNames::beginsWith(PlacedNode const& placed, std::string_view prefix) {
    std::string const& name = placed.node->plainName();
    return name.size() >= prefix.size() && equalPaths(name.data(), prefix.data(), prefix.size());
}

}  // namespace kiri::tov::impl_detail
