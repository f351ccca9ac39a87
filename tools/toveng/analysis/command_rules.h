#pragma once

#include <vector>

#include "analysis/rules.h"

// The rules for single commands.

namespace tool {

void judgeObjects(Command const& command, std::vector<Remark>& remarks);     ///< no-objects
void judgeDelayClock(Command const& command, std::vector<Remark>& remarks);  ///< no-clock
void judgeClock(Command const& command, std::vector<Remark>& remarks);       ///< bad-clock
void judgeCycles(Command const& command, std::vector<Remark>& remarks);      ///< bad-value
void judgeQueries(Command const& command, std::vector<Remark>& remarks);     ///< misspelt-query
void judgeVariables(Command const& command, std::vector<Remark>& remarks);   ///< variable-name

/// Whether the name of a clock that the command defines is unknown: the name contains a variable or is the result of a
/// command, or the target of the clock does.
bool definesUnknownClock(Command const& command);

}  // namespace tool
