#pragma once

#include <string>

#include "tov/names/name_index_p.h"

namespace kiri::tov::impl_detail {

/// See TovDesignNames::nameOf().
std::string nameOf(TovNode const& node);

/// Returns the nameOf() of the node of these kinds whose path is nearest to the word, see TovDesignNames::nearest().
std::string nearestName(NameIndex const& index, NameKinds kinds, std::string const& word);

}  // namespace kiri::tov::impl_detail
