#pragma once

#include <string_view>

#include "tov/base/result_p.h"

namespace kiri::tov::impl_detail {

/// Replaces the file at `path` with a new one with that text, or changes nothing, see TOV::saveAtomically. The text of
/// a failure is one line that begins with the path.
Result replaceFile(char const* path, std::string_view text);

}  // namespace kiri::tov::impl_detail
