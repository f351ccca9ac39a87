#pragma once

#include <tcl.h>

namespace tool::sdc {

class Run;

/// Replaces `foreach` with one that accepts lists with extents: the body runs once with each element, and once more
/// silently, because the design may have more objects. If the two runs differ, the loop depends on the design.
void replaceLoops(Run& run);

/// Returns whether the commands that run are not the script's.
bool isLookingOn();

/// A command of Tcl whose procedure is replaced.
struct Replaced {
    Run* run;
    Tcl_CmdInfo original;
};

/// Replaces the procedure of a command of Tcl; its client data is then a Replaced.
void replaceCommand(Run& run, char const* name, Tcl_ObjCmdProc* procedure);

}  // namespace tool::sdc
