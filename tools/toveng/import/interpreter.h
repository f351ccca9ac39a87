#pragma once

#include <tcl.h>

#include <string_view>

namespace tool::sdc {

class Run;

/// Prepares the Tcl library before the limits are set.
void prepareTcl();

/// Creates a safe interpreter, which lives as long as the process.
Tcl_Interp* makeInterpreter();

/// Adds the commands of SDC, and removes those that reach beyond the interpreter.
void addCommands(Run& run);

/// A command of the script.
using Procedure = int (*)(Run& run, int objc, Tcl_Obj* const objv[]);

/// Adds a command. The script cannot define, rename or delete one that is protected.
void addCommand(Run& run, char const* name, Procedure procedure, bool isProtected = true);

/// Returns whether a command is one of the nine.
bool isCall(std::string_view name);

/// Returns whether addCommand has added a command.
bool isOwnCommand(Tcl_Command command);

/// Sets a Tcl error.
int failure(Run& run, std::string_view message);

// The commands, in parts.
void addQueries(Run& run);
void addFileCommands(Run& run);

}  // namespace tool::sdc
