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
    bool isJudged;          ///< names alone say what it stands for
    bool isTarget;          ///< it is the name of an object that the expression may stand for
    std::size_t query;      ///< the query that holds the word has this number
};

/// Returns the words of a list of object references in the order of writing, options such as "-quiet" among them.
/// The views end with the references.
std::vector<ObjectWord> objectWords(ppStlList<taDciObj*> const& list);

}  // namespace kiri::tov::impl_detail
