#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/dci.h"

namespace kiri::tov::impl_detail {

/// A word in a list of object references.
struct ObjectWord {
    std::string_view text;  ///< a view into the references
    taDciObjTyp type;       ///< of the reference, or of the query that holds the word
    bool isHierarchical;    ///< its query has -hierarchical
    bool isJudged;          ///< what it matches depends only on names
    bool isTarget;          ///< it is the name of an object to which the expression may refer
    std::size_t query;      ///< the number of the query that contains the word
};

/// Returns the words of a list of object references in the order of writing, including options such as "-quiet". The
/// views are valid as long as the references.
std::vector<ObjectWord> objectWords(ppStlList<taDciObj*> const& list);

}  // namespace kiri::tov::impl_detail
