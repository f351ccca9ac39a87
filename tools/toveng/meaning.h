#pragma once

#include <string>

#include "tov/tov.h"

namespace tool {

/// What a command says, apart from whether it is enabled. Braces and quotes around a single word do not count.
struct Meaning {
    std::string objects;  ///< the roles and their objects; neither order nor repetition within a role matters
    std::string flags;    ///< whether a delay is a minimum or a maximum
    std::string values;   ///< the saved line without its objects and flags
};

/// Returns the saved line of a command as if it were enabled.
std::string enabledLine(kiri::tov::TOVCMD_TYPE list, kiri::tov::TovCmd& cmd);

Meaning meaningOf(kiri::tov::TOVCMD_TYPE list, kiri::tov::TovCmd& cmd);

}  // namespace tool
