#pragma once

#include <string>

#include "tov/tov.h"

namespace kiri::tov::impl_detail {

/// The file text of a document.
std::string fileTextOf(TOV& document);

}  // namespace kiri::tov::impl_detail
