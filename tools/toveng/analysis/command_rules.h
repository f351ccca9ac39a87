#pragma once

#include <vector>

#include "analysis/rules.h"

// Rules on one command.

namespace tool {

void judgeObjects(Command const& command, std::vector<Remark>& remarks);     ///< no-objects
void judgeDelayClock(Command const& command, std::vector<Remark>& remarks);  ///< no-clock
void judgeClock(Command const& command, std::vector<Remark>& remarks);       ///< bad-clock
void judgeCycles(Command const& command, std::vector<Remark>& remarks);      ///< bad-value
void judgeQueries(Command const& command, std::vector<Remark>& remarks);     ///< misspelt-query
void judgeVariables(Command const& command, std::vector<Remark>& remarks);   ///< variable-name

/// Whether a clock that the command defines is not known by its name: the name holds a variable or is the result of a
/// command, or what the clock is defined on is.
bool definesUnknownClock(Command const& command);

}  // namespace tool
