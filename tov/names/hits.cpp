#include "tov/names/hits.h"

#include <algorithm>

namespace kiri::tov::impl_detail {

NameKinds kindsOf(taDciObjTyp type) {
    switch (type) {
        case taDciObjPort:
        case taDciObjSourcePort:
            return NameKind::port;
        case taDciObjPin:
        case taDciObjPin2:
            return NameKind::pin;
        case taDciObjNet:
        case taDciObjSourceNet:
            return NameKind::net;
        case taDciObjCell:
            return NameKind::cell;
        case taDciObjClock:
            return NameKind::clock;
        case taDciObjName:
            return NameKinds(NameKind::port) | NameKind::pin | NameKind::net | NameKind::cell | NameKind::clock;
        default:
            return {};
    }
}

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

bool isBus(TovNode const& node) {
    std::string const& name = node.plainName();
    return !name.empty() && name.back() == ']' && dynamic_cast<TovBusNode const*>(&node) != nullptr;
}

}  // namespace kiri::tov::impl_detail
