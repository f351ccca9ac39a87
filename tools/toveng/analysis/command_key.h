#pragma once

#include <vector>

#include "analysis/facts.h"
#include "analysis/rules.h"
#include "tov/names/document_names.h"

namespace tool {

/// Sets what a command is compared by. `uses` are those of the command. Clock definitions are not compared.
void setKey(Command const& command, std::vector<kiri::tov::TovNameUse> const& uses, Facts& facts);

/// Whether a word means a clock: by its query, or by the option before it.
bool meansClock(kiri::tov::TovNameUse const& use);

}  // namespace tool
