#include "interpreter.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <string>

#include "child.h"
#include "run.h"

namespace tool::sdc {

namespace {

struct Entry {
    Run* run;
    Procedure procedure;
    std::string name;
    bool isProtected;
};

[[noreturn]] void panic(char const*, ...) {
    ::_exit(exitMemory);  // Tcl panics only when memory is short
}

// An exception cannot pass through Tcl: the process ends.
int dispatch(ClientData data, Tcl_Interp*, int objc, Tcl_Obj* const objv[]) noexcept {
    auto const* entry = static_cast<Entry const*>(data);
    try {
        return entry->procedure(*entry->run, objc, objv);
    } catch (std::bad_alloc const&) {
        ::_exit(exitMemory);
    }
}

// Someone replaces the command, by whatever means: the command of the file that does so does not run.
void deleted(ClientData data) {
    auto const* entry = static_cast<Entry const*>(data);
    if (entry->isProtected) entry->run->refuse("\"" + entry->name + "\" cannot be redefined or deleted");
}

template <Command command>
int call(Run& run, int objc, Tcl_Obj* const objv[]) {
    return run.call(command, objc, objv);
}

int other(Run& run, int objc, Tcl_Obj* const objv[]) {
    if (objc < 2) return failure(run, "wrong # args: should be \"unknown command ?arg ...?\"");
    return run.other(objc - 1, objv + 1);
}

int refused(Run& run, int, Tcl_Obj* const objv[]) {
    return failure(run,
                   "\"" + std::string(textOf(objv[0])) + "\" is not available: a constraint script can only compute");
}

int nothing(Run& run, int, Tcl_Obj* const[]) {
    Tcl_ResetResult(run.interp());
    return TCL_OK;
}

Tcl_CmdInfo tclRename{};

int renameCommand(Run& run, int objc, Tcl_Obj* const objv[]) {
    Tcl_CmdInfo info{};
    if (objc == 3 && Tcl_GetCommandInfo(run.interp(), Tcl_GetString(objv[1]), &info) != 0 && info.objProc == dispatch &&
        static_cast<Entry const*>(info.objClientData)->isProtected) {
        return failure(run, "\"" + std::string(textOf(objv[1])) + "\" cannot be renamed");
    }
    return tclRename.objProc(tclRename.objClientData, run.interp(), objc, objv);
}

int scriptName(Run& run, int objc, Tcl_Obj* const[]) {
    if (objc > 1) return failure(run, "\"info script\" takes no file name here");
    Tcl_SetObjResult(run.interp(), newText(fromBytes(run.scriptPath())));
    return TCL_OK;
}

int source(Run& run, int objc, Tcl_Obj* const objv[]) {
    bool const hasEncoding = objc == 4 && textOf(objv[1]) == "-encoding";
    if (objc != 2 && !hasEncoding) return failure(run, "wrong # args: should be \"source fileName\"");
    return run.source(bytesOf(objv[objc - 1]));
}

int unknownHandler(Run& run, int objc, Tcl_Obj* const[]) {
    if (objc > 1) return failure(run, "\"namespace unknown\" cannot be set");
    Tcl_SetObjResult(run.interp(), newText("::unknown"));
    return TCL_OK;
}

constexpr char const* refusedCommands[] = {
    "after",
    "cd",
    "chan",
    "clock",
    "close",
    "encoding",
    "eof",
    "exec",
    "exit",
    "fblocked",
    "fconfigure",
    "fcopy",
    "fileevent",
    "gets",
    "glob",
    "interp",
    "load",
    "open",
    "pid",
    "pwd",
    "read",
    "seek",
    "socket",
    "tell",
    "time",
    "trace",
    "unload",
    "update",
    "vwait",
    "::tcl::info::cmdcount",
    "::tcl::info::hostname",
    "::tcl::info::library",
    "::tcl::info::loaded",
    "::tcl::info::nameofexecutable",
    "::tcl::info::sharedlibextension",
    "::tcl::mathfunc::rand",
    "::tcl::mathfunc::srand",
};

constexpr char const* deletedNamespaces[] = {"::tcl::unsupported", "::tcl::chan", "::tcl::clock", "::tcl::file",
                                             "::tcl::encoding"};

void addCalls(Run& run) {
    constexpr Procedure procedures[] = {call<createClock>,   call<createGeneratedClock>, call<setClockGroups>,
                                        call<setInputDelay>, call<setOutputDelay>,       call<setMaxDelay>,
                                        call<setMinDelay>,   call<setFalsePath>,         call<setMulticyclePath>};
    for (std::size_t i = 0; i < std::size(procedures); ++i) addCommand(run, commandNames[i].name, procedures[i]);
}

void deleteHidden(Tcl_Interp* interp) {
    // The script could expose again what Tcl_MakeSafe has hidden.
    Tcl_Eval(interp, "interp hidden {}");
    Value const names(Tcl_GetObjResult(interp));
    int size = 0;
    Tcl_Obj** elements = nullptr;
    Tcl_ListObjGetElements(interp, names.get(), &size, &elements);
    for (int i = 0; i < size; ++i) {
        Tcl_ExposeCommand(interp, Tcl_GetString(elements[i]), "toveng_hidden");
        Tcl_DeleteCommand(interp, "toveng_hidden");
    }
}

}  // namespace

void prepareTcl() {
    Tcl_SetPanicProc(panic);
    Tcl_FindExecutable(nullptr);
}

void addCommand(Run& run, char const* name, Procedure procedure, bool isProtected) {
    Tcl_CreateObjCommand(run.interp(), name, dispatch, new Entry{&run, procedure, name, isProtected}, deleted);
}

bool isCall(std::string_view name) {
    return std::any_of(std::begin(commandNames), std::end(commandNames),
                       [&](CommandName const& known) { return name == known.name; });
}

bool isOwnCommand(Tcl_Command command) {
    Tcl_CmdInfo info{};
    return Tcl_GetCommandInfoFromToken(command, &info) != 0 && info.objProc == dispatch;
}

int failure(Run& run, std::string_view message) {
    Tcl_SetObjResult(run.interp(), newText(message));
    return TCL_ERROR;
}

Tcl_Interp* makeInterpreter() {
    Tcl_Interp* const interp = Tcl_CreateInterp();
    Tcl_MakeSafe(interp);
    deleteHidden(interp);
    for (char const* name : deletedNamespaces) {
        Tcl_Namespace* const found = Tcl_FindNamespace(interp, name, nullptr, TCL_GLOBAL_ONLY);
        if (found != nullptr) Tcl_DeleteNamespace(found);
    }
    return interp;
}

void addCommands(Run& run) {
    for (char const* name : refusedCommands) addCommand(run, name, refused, false);
    for (char const* name : {"puts", "flush"}) addCommand(run, name, nothing, false);
    Tcl_GetCommandInfo(run.interp(), "rename", &tclRename);
    addCommand(run, "rename", renameCommand);
    addCommand(run, "source", source);
    addCommand(run, "unknown", other);
    addCommand(run, "::tcl::info::script", scriptName);
    addCommand(run, "::tcl::namespace::unknown", unknownHandler);
    addCalls(run);
    addFileCommands(run);
    addQueries(run);
    Tcl_ResetResult(run.interp());
}

}  // namespace tool::sdc
