#pragma once

#include <string>
#include <string_view>

namespace tool::sdc {

/// Writes a file that is whole or not there; a file that is replaced keeps its permission bits, and a link stays one.
/// Returns false and says why.
bool writeWhole(std::string const& path, std::string_view text, std::string& error);

}  // namespace tool::sdc
