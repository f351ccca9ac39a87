#include "tov/names/sorted_names.h"

namespace kiri::tov::impl_detail {

namespace {

/// Compares the first `size` bytes of names.
struct PrefixLess {
    std::size_t size;

    std::string_view cut(PlacedNode const& placed) const {
        return std::string_view(placed.node->plainName()).substr(0, size);
    }
    bool operator()(PlacedNode const& a, std::string_view b) const { return comparePaths(cut(a), b) < 0; }
    bool operator()(std::string_view a, PlacedNode const& b) const { return comparePaths(a, cut(b)) < 0; }
};

}  // namespace

void SortedNames::sort() {
    nodes_.shrink_to_fit();
    std::sort(nodes_.begin(), nodes_.end(), [](PlacedNode const& a, PlacedNode const& b) {
        int const order = comparePaths(a.node->plainName(), b.node->plainName());
        return order != 0 ? order < 0 : a.place < b.place;
    });
}

SortedNames::Range SortedNames::equal(std::string_view name) const {
    auto const [first, last] = std::equal_range(nodes_.begin(), nodes_.end(), name, PrefixLess{std::string_view::npos});
    return {first, last};
}

SortedNames::Range SortedNames::withPrefix(std::string_view prefix) const {
    auto const [first, last] = std::equal_range(nodes_.begin(), nodes_.end(), prefix, PrefixLess{prefix.size()});
    return {first, last};
}

}  // namespace kiri::tov::impl_detail
