#pragma once

#include <string_view>

#include "tov/base/result_p.h"

namespace kiri::tov::impl_detail {

/// Replaces the file at `path` by a new one with that text, or leaves everything as it is, see
/// TOV::saveAtomically. The text of a failure is one line that begins with the path.
Result replaceFile(char const* path, std::string_view text);

}  // namespace kiri::tov::impl_detail
