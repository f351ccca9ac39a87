#pragma once

#include <tcl.h>

namespace tool::sdc {

class Run;

/// Replaces `foreach` by one that goes through a list with parts of unknown extent: its body runs once with each part,
/// and once more in silence, since the design may have more objects; a difference is a look.
void replaceLoops(Run& run);

/// Returns whether commands run that are not the script's.
bool isLookingOn();

/// A command of Tcl whose procedure is replaced.
struct Replaced {
    Run* run;
    Tcl_CmdInfo original;
};

/// Replaces the procedure of a command of Tcl; its client data is then a Replaced.
void replaceCommand(Run& run, char const* name, Tcl_ObjCmdProc* procedure);

}  // namespace tool::sdc
