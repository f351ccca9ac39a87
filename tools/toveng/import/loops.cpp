#include "loops.h"

#include <map>
#include <string>
#include <vector>

#include "references.h"
#include "run.h"

namespace tool::sdc {

namespace {

int onlookers = 0;

/// During its lifetime, the commands that run are not the script's.
class Onlooker {
public:
    Onlooker() { ++onlookers; }
    ~Onlooker() { --onlookers; }
    Onlooker(Onlooker const&) = delete;
    Onlooker& operator=(Onlooker const&) = delete;
};

using Variables = std::map<std::string, std::string>;

/// Evaluates a Tcl command in a frame ("#0" is the global one); returns an empty text on error.
std::string ask(Tcl_Interp* interp, std::string const& frame, std::vector<std::string> const& words) {
    Value const command(Tcl_NewListObj(0, nullptr));
    for (std::string const& word : words) Tcl_ListObjAppendElement(nullptr, command.get(), newText(word));
    Value const uplevel(Tcl_NewListObj(0, nullptr));
    for (std::string const& word : {std::string("::uplevel"), frame}) {
        Tcl_ListObjAppendElement(nullptr, uplevel.get(), newText(word));
    }
    Tcl_ListObjAppendElement(nullptr, uplevel.get(), command.get());
    int const status = Tcl_EvalObjEx(interp, uplevel.get(), 0);
    return status == TCL_OK ? std::string(textOf(Tcl_GetObjResult(interp))) : std::string();
}

std::vector<std::string> elements(std::string const& list) {
    std::vector<std::string> all;
    Value const value(newText(list));
    int size = 0;
    Tcl_Obj** words = nullptr;
    if (Tcl_ListObjGetElements(nullptr, value.get(), &size, &words) != TCL_OK) return all;
    for (int i = 0; i < size; ++i) all.emplace_back(textOf(words[i]));
    return all;
}

void readFrame(Tcl_Interp* interp, std::string const& frame, std::vector<std::string> const& names, Variables& values) {
    for (std::string const& name : names) {
        bool const isArray = ask(interp, frame, {"::array", "exists", name}) == "1";
        std::string key = frame;
        key.append(1, ' ').append(name);
        values[key] = isArray ? ask(interp, frame, {"::array", "get", name}) : ask(interp, frame, {"::set", name});
    }
}

void readNamespaces(Tcl_Interp* interp, std::string const& parent, Variables& values) {
    for (std::string const& name : elements(ask(interp, "#0", {"::namespace", "children", parent}))) {
        if (name == "::tcl" || name == "::oo" || name == "::zlib") continue;
        readFrame(interp, "#0", elements(ask(interp, "#0", {"::info", "vars", name + "::*"})), values);
        readNamespaces(interp, name, values);
    }
}

/// Returns the values of all variables.
Variables readVariables(Tcl_Interp* interp) {
    Onlooker const onlooker;
    Tcl_InterpState const state = Tcl_SaveInterpState(interp, TCL_OK);
    Variables values;
    Tcl_Eval(interp, "::info level");
    int level = 0;
    Tcl_GetIntFromObj(nullptr, Tcl_GetObjResult(interp), &level);
    readFrame(interp, "#0", elements(ask(interp, "#0", {"::info", "globals"})), values);
    for (; level > 0; --level) {
        std::string const frame = "#" + std::to_string(level);
        readFrame(interp, frame, elements(ask(interp, frame, {"::info", "locals"})), values);
    }
    readNamespaces(interp, "::", values);
    values.erase("#0 errorInfo");
    values.erase("#0 errorCode");
    Tcl_RestoreInterpState(interp, state);
    return values;
}

bool isExtent(Tcl_Obj* value) {
    std::vector<Word> words;
    return holdsExtent(textOf(value)) && appendWords(value, words) && words.size() == 1 &&
           words[0].kind == Word::extent;
}

int runOnce(Run& run, Tcl_Obj* variable, Tcl_Obj* value, Tcl_Obj* body) {
    if (Tcl_ObjSetVar2(run.interp(), variable, nullptr, value, TCL_LEAVE_ERR_MSG) == nullptr) return TCL_ERROR;
    int const status = Tcl_EvalObjEx(run.interp(), body, 0);
    return status == TCL_CONTINUE ? TCL_OK : status;
}

/// Runs a loop body with an extent: its effects must not depend on the number of objects.
int runTwice(Run& run, Tcl_Obj* variable, Tcl_Obj* value, Tcl_Obj* body) {
    std::vector<std::string>* const outer = run.log;
    std::vector<std::string> first, second;
    run.log = &first;
    int const status = runOnce(run, variable, value, body);
    if (status == TCL_ERROR) {
        run.log = outer;
        return status;
    }
    std::string const shown = readable(textOf(value));
    if (status != TCL_OK) run.look("a loop ends before it has visited all of " + shown);
    Variables const before = readVariables(run.interp());
    run.log = &second;
    ++run.out().muted;
    int const again = runOnce(run, variable, value, body);
    --run.out().muted;
    run.log = outer;
    bool const isSame = again == status && first == second && readVariables(run.interp()) == before;
    if (!isSame) run.look("the passes of a loop over " + shown + " differ");
    if (outer != nullptr) outer->insert(outer->end(), first.begin(), first.end());
    return TCL_OK;
}

int loopThrough(Run& run, Tcl_Obj* variable, Tcl_Obj* list, Tcl_Obj* body) {
    int size = 0;
    Tcl_Obj** words = nullptr;
    if (Tcl_ListObjGetElements(run.interp(), list, &size, &words) != TCL_OK) return TCL_ERROR;
    std::vector<Value> const values(words, words + size);
    for (Value const& value : values) {
        int const status = (isExtent(value.get()) ? runTwice : runOnce)(run, variable, value.get(), body);
        if (status == TCL_BREAK) break;
        if (status != TCL_OK) return status;
    }
    Tcl_ResetResult(run.interp());
    return TCL_OK;
}

int foreachCommand(ClientData data, Tcl_Interp* interp, int objc, Tcl_Obj* const objv[]) noexcept {
    auto const* replaced = static_cast<Replaced const*>(data);
    Run& run = *replaced->run;
    bool isKnown = true;
    for (int i = 2; i < objc - 1; i += 2) isKnown = isKnown && !holdsExtent(textOf(objv[i]));
    if (isKnown || isLookingOn())
        return replaced->original.objProc(replaced->original.objClientData, interp, objc, objv);
    int variables = 0;
    bool const isList = Tcl_ListObjLength(nullptr, objv[1], &variables) == TCL_OK;
    if (objc != 4 || !isList || variables != 1) run.look("\"foreach\" goes through " + readable(textOf(objv[2])));
    Value const variable(newText(textOf(objv[1])));
    Tcl_Obj* name = nullptr;
    Tcl_ListObjIndex(nullptr, variable.get(), 0, &name);
    Value const held(name);
    return loopThrough(run, held.get(), objv[2], objv[3]);
}

}  // namespace

bool isLookingOn() {
    return onlookers > 0;
}

void replaceCommand(Run& run, char const* name, Tcl_ObjCmdProc* procedure) {
    Tcl_CmdInfo info{};
    if (Tcl_GetCommandInfo(run.interp(), name, &info) == 0) return;
    auto* const replaced = new Replaced{&run, info};
    info.objProc = procedure;
    info.objClientData = replaced;
    Tcl_SetCommandInfo(run.interp(), name, &info);
}

void replaceLoops(Run& run) {
    replaceCommand(run, "::foreach", foreachCommand);
}

}  // namespace tool::sdc
