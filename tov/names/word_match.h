#pragma once

#include <string>
#include <string_view>

#include "tov/names/design_names.h"

namespace kiri::tov {

/// Returns whether a word stands for a node, as TovDesignNames::find has it.
bool standsFor(taDciObjTyp type, std::string const& word, TovNameMatch match, TovNode const& node);

/// Returns whether a word stands for nodes by its bytes alone, with '.' equal to '/': it is no pattern and no range,
/// and holds no escape and nothing beyond ASCII.
bool isLiteral(std::string_view word);

/// Returns whether a word matches a name as one text, as it would match that of a clock.
bool matchesText(std::string const& word, std::string const& name);

}  // namespace kiri::tov
