#pragma once

#include <string_view>

namespace kiri::tov::impl_detail {

/// The comment headers that open the two sections of a saved file.
inline constexpr std::string_view sdcHeader =
    "################################################\n"
    "# This section describes SDC language elements for timing-driven\n"
    "# synthesis that are supported by the Morrow Compiler (MRC).\n"
    "#\n"
    "# The constraints here will be translated to corresponding\n"
    "# timing Preference (Preferences are implementation constraints\n"
    "# for assigning design logic to physical resources) for back-end flow.\n"
    "################################################\n";

inline constexpr std::string_view attributeHeader =
    "################################################\n"
    "# This section describes the HDL Attributes that are supported\n"
    "# by the Morrow Compiler (MRC).\n"
    "#\n"
    "# These attributes are directly interpreted by the engine and\n"
    "# influence the optimization or structure of the output netlist.\n"
    "################################################\n";

}  // namespace kiri::tov::impl_detail
