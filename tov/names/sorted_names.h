#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

#include "tov/names/hits.h"
#include "tov/names/path_text.h"

namespace kiri::tov::impl_detail {

/// Nodes in the byte order of their own names as paths; those of equal names in the order of their places.
class SortedNames {
public:
    using Iterator = std::vector<PlacedNode>::const_iterator;

    struct Range {
        Iterator first;
        Iterator last;

        Iterator begin() const { return first; }
        Iterator end() const { return last; }
    };

    void add(std::uint64_t place, TovNode const& node) { nodes_.push_back({place, &node}); }
    void sort();

    Range all() const { return {nodes_.begin(), nodes_.end()}; }
    /// Those of that name.
    Range equal(std::string_view name) const;
    /// Those whose name begins so.
    Range withPrefix(std::string_view prefix) const;

private:
    std::vector<PlacedNode> nodes_;
};

}  // namespace kiri::tov::impl_detail
