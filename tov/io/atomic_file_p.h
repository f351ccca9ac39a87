#pragma once

#include <string>
#include <string_view>

namespace kiri::tov::impl_detail {

/// Replaces the file at `path` by a new one with that text, or leaves everything as it is, see
/// TOV::saveAtomically. Returns why it was not replaced, in one line; "" if it was.
std::string replaceFile(char const* path, std::string_view text);

}  // namespace kiri::tov::impl_detail
