#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/dci.h"
#include "tov/names/design_names.h"

namespace tool {

/// A word of a command that matches nothing in the design.
struct MissingWord {
    taDciObjTyp type;
    kiri::tov::TovNameMatch match;
    bool isClock;  ///< means a clock, by its query or by the option before it
    std::string text;

    /// Whether it may match a clock that the files define.
    bool mayBeClock() const { return type == taDciObjClock || type == taDciObjName; }
};

/// What the comparison of statements needs to know about one of them.
struct Facts {
    /// Identifies the kind, objects, clock and flags of a command that is compared with others; 0 for any other.
    std::uint64_t key = 0;
    /// Identifies the path whose delay a command bounds from below or above; 0 for any other command.
    std::uint64_t path = 0;
    bool isMin = false;
    bool isMax = false;
    bool isDelay = false;  ///< `value` is a delay, neither a number of cycles nor nothing
    double value = 0;

    std::vector<MissingWord> missing;
    std::vector<std::string> clocks;  ///< names that it defines
    bool isCompared = false;          ///< the rules for commands judge it
    bool hidesClocks = false;         ///< it may define clocks whose names are unknown
};

}  // namespace tool
