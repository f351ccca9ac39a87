#pragma once

#include <string_view>
#include <vector>

#include "analysis/facts.h"
#include "analysis/rules.h"
#include "tov/names/document_names.h"

namespace tool {

/// A word by which a command refers to objects; like TovNameUse, but the text is a view.
struct WordUse {
    std::string_view role;
    taDciObjTyp type;
    kiri::tov::TovNameMatch match;
    std::string_view word;
};

/// Collects the words of a command whose lists have one plain word each, as TovDocumentNames::usesIn does. For any
/// other command, returns false and collects nothing.
bool gatherPlainUses(Command const& command, kiri::tov::TovNameMatch match, std::vector<WordUse>& uses);

/// Sets the keys by which a command is compared. `uses` are those of the command. Clock definitions are not compared.
void setKey(Command const& command, std::vector<WordUse> const& uses, Facts& facts);

/// Whether a word means a clock: by its query, or by the option before it.
bool meansClock(WordUse const& use);

}  // namespace tool
