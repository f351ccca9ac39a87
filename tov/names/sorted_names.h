#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
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
    /// Calls `visit(node)` for those with that beginning, until it returns false.
    template <class Visit>
    void visit(std::string_view prefix, Visit visit) const {
        for (Iterator at = lowerBound(prefix); at != nodes_.end() && beginsWith(*at, prefix); ++at) {
            if (!visit(*at)) return;
        }
    }

private:
    Iterator lowerBound(std::string_view name) const;
    static bool beginsWith(PlacedNode const& placed, std::string_view prefix);

    std::vector<PlacedNode> nodes_;
    std::array<std::uint32_t, 257> starts_{};  // of the names with each first byte, and the end of all
};

}  // namespace kiri::tov::impl_detail
