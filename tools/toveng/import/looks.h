#pragma once

#include <tcl.h>

#include <string_view>

namespace tool::sdc {

class Run;

// A script may keep and pass on what the design alone knows, but not look into it.

/// Has every command looked at from now on, before it runs.
void traceLooks(Run& run);

/// Sets the global variables that a text of Tcl sets, and those that the procedures set that it calls, to values that
/// stand for nothing.
void forgetVariables(Tcl_Interp* interp, std::string_view text);

/// Returns whether no command in the brackets of a command looks into a value, nor the command itself unless its words
/// are still being made.
bool isStraightCommand(Tcl_Interp* interp, std::string_view text, bool isSubstituting);

}  // namespace tool::sdc
