#pragma once

#include <tcl.h>

#include <string_view>

namespace tool::sdc {

class Run;

// A script may store and pass on values that depend on the design (extents), but not look into them.

/// Checks every command from now on before it runs.
void traceLooks(Run& run);

/// Sets the global variables that a Tcl text and the procedures that it calls would set to values that refer to
/// nothing.
void forgetVariables(Tcl_Interp* interp, std::string_view text);

/// Returns whether neither a command in the brackets of a command nor, once its words are complete, the command itself
/// looks into a value.
bool isStraightCommand(Tcl_Interp* interp, std::string_view text, bool isSubstituting);

}  // namespace tool::sdc
