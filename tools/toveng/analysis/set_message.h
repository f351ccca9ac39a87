#pragma once

#include <functional>
#include <string>
#include <utility>

#include "analysis/statement_set.h"
#include "tov/names/design_names.h"

namespace tool {

/// Looks for near names among those of a design, if there is one, and the clocks of a set.
class NearNames {
public:
    /// Returns the name of a design that is nearest to a word; empty if there is none.
    using Search = std::function<std::string(taDciObjTyp type, std::string const& word)>;

    /// `search` is empty without a design. Because it may scan all names of the design, it is called at most `searches`
    /// times.
    NearNames(KnownClocks const& clocks, Search search, int searches = 100)
        : clocks_(clocks), search_(std::move(search)), searches_(searches) {}

    /// "no such port: `a`; did you mean `b`?" If a clock is meant, only clocks count as near.
    std::string messageOf(MissingWord const& word);

    /// Returns the near name; empty if there is none.
    std::string nearestTo(MissingWord const& word);

private:
    KnownClocks const& clocks_;
    Search search_;
    int searches_;
};

/// Returns the message of a finding between statements. `other` is the place that it names, "FILE:LINE".
std::string messageOf(SetFinding const& finding, StatementSet const& set, std::size_t place, std::string const& other,
                      NearNames& near);

}  // namespace tool
