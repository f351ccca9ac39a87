#include "looks.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "expression.h"
#include "interpreter.h"
#include "loops.h"
#include "references.h"
#include "run.h"

namespace tool::sdc {

namespace {

/// Commands of Tcl that store a value or pass it on.
constexpr std::string_view passing[] = {"apply",  "append",  "catch", "concat",  "error",   "eval",      "expr",
                                        "for",    "foreach", "if",    "lappend", "list",    "namespace", "proc",
                                        "return", "set",     "subst", "try",     "uplevel", "variable",  "while"};

/// Commands that look into a variable, and the word that names it.
struct VariableReader {
    std::string_view command;
    int word;
};
constexpr VariableReader readers[] = {{"incr", 1}, {"lset", 1}, {"dict", 2}};

/// Commands whose brackets and words need no check, in addition to those of SDC.
constexpr std::string_view straight[] = {"concat", "lappend", "list", "set"};

template <class Names>
bool isOneOf(Names const& names, std::string_view name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

std::string_view unqualified(std::string_view name) {
    return name.substr(0, 2) == "::" ? name.substr(2) : name;
}

std::string shown(std::string_view text) {
    constexpr std::size_t most = 200;
    std::string const whole = readable(text);
    return whole.size() <= most ? whole : whole.substr(0, most) + "...";
}

/// Returns whether a command is a procedure of the script.
bool isProcedure(Tcl_Interp* interp, Tcl_CmdInfo const& info) {
    static Tcl_ObjCmdProc* const procedure = [&] {
        Tcl_CmdInfo example{};
        Tcl_Eval(interp, "::proc ::tcl::toveng_example {} {}");
        Tcl_GetCommandInfo(interp, "::tcl::toveng_example", &example);
        Tcl_DeleteCommand(interp, "::tcl::toveng_example");
        return example.objProc;
    }();
    return info.objProc == procedure;
}

void checkReader(Run& run, std::string_view name, int objc, Tcl_Obj* const objv[]) {
    for (VariableReader const& reader : readers) {
        if (reader.command != name || reader.word >= objc) continue;
        Tcl_Obj* const value = Tcl_ObjGetVar2(run.interp(), objv[reader.word], nullptr, 0);
        if (value != nullptr && holdsExtent(textOf(value))) {
            run.look("\"" + std::string(name) + "\" looks into " + shown(textOf(value)));
        }
    }
}

void checkAppended(Run& run, int objc, Tcl_Obj* const objv[]) {
    Tcl_Obj* const before = Tcl_ObjGetVar2(run.interp(), objv[1], nullptr, 0);
    std::string text(before == nullptr ? std::string_view() : textOf(before));
    for (int i = 2; i < objc; ++i) text += textOf(objv[i]);
    if (!extentsAreElements(text)) run.look("a text joins " + shown(text));
}

int checkCommand(ClientData data, Tcl_Interp* interp, int, char const*, Tcl_Command token, int objc,
                 Tcl_Obj* const objv[]) noexcept {
    Run& run = *static_cast<Run*>(data);
    if (isLookingOn()) return TCL_OK;
    std::string_view const name = unqualified(textOf(objv[0]));
    checkReader(run, name, objc, objv);
    if (name == "append" && objc > 2) checkAppended(run, objc, objv);
    for (int i = 0; i < objc; ++i) {
        std::string_view const text = textOf(objv[i]);
        if (!holdsExtent(text)) continue;
        if (i == 0) run.look("a command is " + shown(text));
        if (name == "puts") continue;
        if (!extentsAreElements(text)) run.look("a text joins " + shown(text));
        Tcl_CmdInfo info{};
        if (isOwnCommand(token) || isOneOf(passing, name)) continue;
        if (Tcl_GetCommandInfoFromToken(token, &info) != 0 && isProcedure(interp, info)) continue;
        run.look("\"" + std::string(name) + "\" looks into " + shown(text));
    }
    return TCL_OK;
}

bool isStraightScript(Tcl_Interp* interp, std::string_view text, int depth, bool isSubstituting) {
    constexpr int deepest = 50;
    if (depth > deepest) return false;
    while (!text.empty()) {
        Tcl_Parse parse{};
        if (Tcl_ParseCommand(nullptr, text.data(), static_cast<int>(text.size()), 0, &parse) != TCL_OK) return false;
        bool isStraight = true;
        if (parse.numWords > 0 && !isSubstituting) {
            Tcl_Token const& word = parse.tokenPtr[0];
            std::string const name(word.start, static_cast<std::size_t>(word.size));
            Tcl_Command const command = Tcl_FindCommand(interp, name.c_str(), nullptr, TCL_GLOBAL_ONLY);
            bool const isIndexed = word.type == TCL_TOKEN_SIMPLE_WORD || name.find('$') == std::string::npos;
            isStraight = isIndexed && name != "foreach_in_collection" && name != "source" &&
                         (command == nullptr || isOwnCommand(command) || isOneOf(straight, unqualified(name)));
        }
        for (int i = 0; i < parse.numTokens && isStraight; ++i) {
            Tcl_Token const& token = parse.tokenPtr[i];
            if (token.type != TCL_TOKEN_COMMAND) continue;
            isStraight =
                isStraightScript(interp, {token.start + 1, static_cast<std::size_t>(token.size) - 2}, depth + 1, false);
        }
        char const* const next = parse.commandStart + parse.commandSize;
        auto const used = static_cast<std::size_t>(next - text.data());
        Tcl_FreeParse(&parse);
        if (!isStraight) return false;
        text.remove_prefix(std::min(used, text.size()));
        if (used == 0) break;
    }
    return true;
}

}  // namespace

void traceLooks(Run& run) {
    Tcl_CreateObjTrace(run.interp(), 0, 0, checkCommand, &run, nullptr);
    replaceExpressions(run);
    replaceLoops(run);
}

bool isStraightCommand(Tcl_Interp* interp, std::string_view text, bool isSubstituting) {
    return isStraightScript(interp, text, 0, isSubstituting);
}

}  // namespace tool::sdc
