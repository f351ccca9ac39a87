#pragma once

#include <string_view>
#include <vector>

#include "platform/dci.h"
#include "tov/names/design_names.h"

namespace kiri::tov {

class TovCmd;

/// A word by which a command refers to objects.
struct ReferenceWord {
    char const* role;       ///< as TovReferences has it
    taDciObjTyp type;       ///< the type of the reference, or of the query that holds the word
    std::string_view text;  ///< a view into the command's reference
    TovNameMatch match;     ///< TOVMATCH_LOCAL in a hierarchical query
};

/// Returns whether a word holds a variable, so that only a program knows what it stands for.
inline bool holdsVariable(std::string_view word) {
    return word.find('$') != std::string_view::npos;
}

/// Returns the words of a command's references in the order of writing: each role, type, text and match once, nothing
/// that is not a name, and nothing of a query that cannot be judged by names alone. Words that are in no hierarchical
/// query have `match`. The views end with the references.
std::vector<ReferenceWord> referenceWords(TovCmd& cmd, TovNameMatch match);

}  // namespace kiri::tov
