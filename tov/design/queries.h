#pragma once

#include "tov/design/design.h"

namespace kiri::tov {

/// Calls `visit(what, query)` with the title and the member function of each query of a design:
///
///     forEachQuery([&](char const* what, auto query) {
///         NodesOf<decltype(query)> nodes;
///         std::printf("%s: %zu\n", what, (design.*query)(nodes));
///     });
template <class Visit>
void forEachQuery(Visit visit) {
    visit("ports", &TovDesign::getPorts);
    visit("pins", &TovDesign::getPins);
    visit("nets", &TovDesign::getNets);
    visit("cells", &TovDesign::getCells);
    visit("registers", &TovDesign::getRegs);
    visit("clocks", &TovDesign::getClocks);
    visit("views", &TovDesign::getViews);
    visit("RAMs", &TovDesign::getRams);
    visit("ROMs", &TovDesign::getRoms);
    visit("multipliers", &TovDesign::getMults);
}

template <class Query>
struct QueryList;

template <class Node>
struct QueryList<std::size_t (TovDesign::*)(std::list<Node*>&) const> {
    using Type = std::list<Node*>;
};

/// The list type that a query of that type fills.
template <class Query>
using NodesOf = typename QueryList<Query>::Type;

}  // namespace kiri::tov
