#pragma once

#include <string>

#include "analysis/statement_set.h"
#include "tov/names/design_names.h"

namespace tool {

/// Looks for near names among those of a design, where there is one, and the clocks of a set.
class NearNames {
public:
    /// `names` is null for none. Each search goes through all names of the design: at most `searches` are made.
    NearNames(KnownClocks const& clocks, kiri::tov::TovDesignNames const* names, int searches = 100)
        : clocks_(clocks), names_(names), searches_(searches) {}

    /// "no such port: `a`; did you mean `b`?" Where a clock is meant, clocks alone are near.
    std::string messageOf(MissingWord const& word);

private:
    KnownClocks const& clocks_;
    kiri::tov::TovDesignNames const* names_;
    int searches_;
};

/// Returns the message of a finding between statements. `other` is the place that it names, "FILE:LINE".
std::string messageOf(SetFinding const& finding, StatementSet const& set, std::size_t place, std::string const& other,
                      NearNames& near);

}  // namespace tool
