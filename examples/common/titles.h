#pragma once

#include "tov/check.h"

/// What a finding is called.
inline char const* titleOf(kiri::tov::TovFindingKind kind) {
    using namespace kiri::tov;
    switch (kind) {
        case TOVFINDING_DROPPED_LINE:
            return "dropped";
        case TOVFINDING_UNKNOWN_COMMAND:
            return "unknown command";
        case TOVFINDING_LOST_WORD:
            return "lost";
        case TOVFINDING_CHANGED_VALUE:
            return "changed or added";
        case TOVFINDING_MISTAKEN_WORD:
            return "taken as a name";
        case TOVFINDING_ENDS_LOAD:
            return "ends the load";
    }
    return "";
}
