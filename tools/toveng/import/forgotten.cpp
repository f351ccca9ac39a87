#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "looks.h"
#include "references.h"

// Finds the variables that a command would set from its text, because the command does not run.

namespace tool::sdc {

namespace {

/// A command that sets variables: every `step`-th word from `first` on, at most `most`.
struct Setter {
    std::string_view command;
    std::size_t first, step, most;
};

constexpr std::size_t any = 1000;
constexpr Setter setters[] = {
    {"set", 1, 1, 1},
    {"lappend", 1, 1, 1},
    {"append", 1, 1, 1},
    {"incr", 1, 1, 1},
    {"lset", 1, 1, 1},
    {"array", 2, 1, 1},
    {"dict", 2, 1, 1},
    {"append_to_collection", 1, 1, 1},
    {"foreach", 1, 2, any},
    {"lmap", 1, 2, any},
    {"foreach_in_collection", 1, 1, 1},
    {"lassign", 2, 1, any},
    {"catch", 2, 1, 2},
    {"scan", 3, 1, any},
    {"regexp", 3, 1, any},
    {"regsub", 4, 1, any},
    {"unset", 1, 1, any},
    {"gets", 2, 1, 1},
    {"variable", 1, 2, any},
};

class Finder {
public:
    explicit Finder(Tcl_Interp* interp) : interp_(interp) {}

    std::set<std::string> names;

    void read(std::string_view text, int depth = 0) {
        constexpr int deepest = 50;
        if (depth > deepest) return;
        while (!text.empty()) {
            Tcl_Parse parse{};
            if (Tcl_ParseCommand(nullptr, text.data(), static_cast<int>(text.size()), 0, &parse) != TCL_OK) return;
            readCommand(parse, depth);
            char const* const next = parse.commandStart + parse.commandSize;
            auto const used = static_cast<std::size_t>(next - text.data());
            Tcl_FreeParse(&parse);
            if (used == 0) return;
            text.remove_prefix(std::min(used, text.size()));
        }
    }

private:
    /// Returns the text of a word without its braces or quotes.
    static std::string_view contentOf(Tcl_Token const& word) {
        std::string_view const text(word.start, static_cast<std::size_t>(word.size));
        bool const isEnclosed = text.size() >= 2 && ((text.front() == '{' && text.back() == '}') ||
                                                     (text.front() == '"' && text.back() == '"'));
        return isEnclosed ? text.substr(1, text.size() - 2) : text;
    }

    void readCommand(Tcl_Parse const& parse, int depth) {
        std::vector<std::string_view> words;
        Tcl_Token const* token = parse.tokenPtr;
        for (int i = 0; i < parse.numWords; ++i, token += token->numComponents + 1) {
            words.push_back(contentOf(*token));
            if (*token->start == '{' && words.front() != "proc") read(words.back(), depth + 1);
        }
        for (int i = 0; i < parse.numTokens; ++i) {
            Tcl_Token const& part = parse.tokenPtr[i];
            if (part.type == TCL_TOKEN_COMMAND)
                read({part.start + 1, static_cast<std::size_t>(part.size) - 2}, depth + 1);
        }
        if (!words.empty()) readSetter(words);
    }

    void readSetter(std::vector<std::string_view> const& words) {
        std::string_view name = words.front();
        if (name.substr(0, 2) == "::") name.remove_prefix(2);
        if (name == "set" && words.size() < 3) return;
        for (Setter const& setter : setters) {
            if (setter.command != name) continue;
            std::size_t const end = std::min(words.size(), setter.first + setter.step * setter.most);
            bool const hasBody = name == "foreach" || name == "lmap";
            for (std::size_t i = setter.first; i < end - (hasBody ? 1 : 0); i += setter.step) addNames(words[i]);
            return;
        }
        readProcedure(std::string(name));
    }

    /// The words of a list of variables; a "$" in a name is replaced by the current value.
    void addNames(std::string_view text) {
        Value const list(newText(text));
        int size = 0;
        Tcl_Obj** elements = nullptr;
        if (Tcl_ListObjGetElements(nullptr, list.get(), &size, &elements) != TCL_OK) return;
        for (int i = 0; i < size; ++i) {
            Tcl_Obj* const name = Tcl_SubstObj(interp_, elements[i], TCL_SUBST_VARIABLES);
            if (name == nullptr) {
                names.insert(std::string(textOf(elements[i]).substr(0, textOf(elements[i]).find('('))));
                continue;
            }
            Value const held(name);
            if (isGlobal(std::string(textOf(name)))) names.insert(std::string(textOf(name)));
        }
    }

    /// In a procedure, only what it declares as global.
    void readProcedure(std::string const& name) {
        if (!procedures_.insert(name).second) return;
        Value const command(Tcl_NewListObj(0, nullptr));
        for (char const* word : {"::info", "body", name.c_str()}) {
            Tcl_ListObjAppendElement(nullptr, command.get(), Tcl_NewStringObj(word, -1));
        }
        if (Tcl_EvalObjEx(interp_, command.get(), TCL_EVAL_GLOBAL) != TCL_OK) return;
        std::string const body(textOf(Tcl_GetObjResult(interp_)));
        Finder inner(interp_);
        inner.procedures_ = procedures_;
        inner.isProcedure_ = true;
        inner.findGlobals(body);
        inner.read(body);
        names.insert(inner.names.begin(), inner.names.end());
        procedures_.insert(inner.procedures_.begin(), inner.procedures_.end());
    }

    void findGlobals(std::string const& body) {
        constexpr std::string_view word = "global";
        for (std::size_t i = body.find(word); i != std::string::npos; i = body.find(word, i + 1)) {
            std::size_t at = i + word.size();
            std::size_t const end = std::min(body.find_first_of(";\n", at), body.size());
            while (at < end) {
                std::size_t const start = std::min(body.find_first_not_of(" \t", at), end);
                at = std::min(body.find_first_of(" \t", start), end);
                if (at > start) globals_.insert(body.substr(start, at - start));
            }
        }
    }

    bool isGlobal(std::string const& name) const {
        if (!isProcedure_ || name.compare(0, 2, "::") == 0) return true;
        return globals_.count(name.substr(0, name.find('('))) > 0;
    }

    Tcl_Interp* interp_;
    bool isProcedure_ = false;
    std::set<std::string> globals_;
    std::set<std::string> procedures_;
};

void forgetArray(Tcl_Interp* interp, std::string const& name, Tcl_Obj* nothing) {
    Value const command(Tcl_NewListObj(0, nullptr));
    for (char const* word : {"::array", "names", name.c_str()}) {
        Tcl_ListObjAppendElement(nullptr, command.get(), Tcl_NewStringObj(word, -1));
    }
    if (Tcl_EvalObjEx(interp, command.get(), TCL_EVAL_GLOBAL) != TCL_OK) return;
    Value const names(Tcl_GetObjResult(interp));
    int size = 0;
    Tcl_Obj** elements = nullptr;
    if (Tcl_ListObjGetElements(nullptr, names.get(), &size, &elements) != TCL_OK) return;
    for (int i = 0; i < size; ++i) {
        Tcl_SetVar2Ex(interp, name.c_str(), Tcl_GetString(elements[i]), nothing, TCL_GLOBAL_ONLY);
    }
}

}  // namespace

void forgetVariables(Tcl_Interp* interp, std::string_view text) {
    Finder finder(interp);
    finder.read(text);
    for (std::string const& name : finder.names) {
        Value const nothing(newExtent({"$" + toBytes(name), {}, {}}));
        if (Tcl_SetVar2Ex(interp, name.c_str(), nullptr, nothing.get(), TCL_GLOBAL_ONLY) == nullptr) {
            forgetArray(interp, name, nothing.get());
        }
    }
    Tcl_ResetResult(interp);
}

}  // namespace tool::sdc
