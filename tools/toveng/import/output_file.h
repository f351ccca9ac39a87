#pragma once

#include <string>
#include <string_view>

namespace tool::sdc {

/// Writes a file completely or not at all; a replaced file keeps its permission bits, and a link stays a link. On
/// failure, returns false and the reason.
bool writeWhole(std::string const& path, std::string_view text, std::string& error);

}  // namespace tool::sdc
