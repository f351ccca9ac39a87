#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "interpreter.h"
#include "references.h"
#include "run.h"

// The subcommands of `file` that only compute with texts. None accesses the file system.

namespace tool::sdc {

namespace {

std::vector<std::string> split(std::string const& path) {
    std::vector<std::string> parts;
    if (!path.empty() && path[0] == '/') parts.emplace_back("/");
    for (std::size_t i = 0; i < path.size();) {
        std::size_t const end = std::min(path.find('/', i), path.size());
        if (end > i) parts.push_back(path.substr(i, end - i));
        i = end + 1;
    }
    return parts;
}

std::string join(std::vector<std::string> const& parts, std::size_t count) {
    std::string path;
    for (std::size_t i = 0; i < count; ++i) {
        if (!path.empty() && path.back() != '/') path += '/';
        path += parts[i];
    }
    return path;
}

std::string joinAll(std::vector<std::string> const& paths) {
    std::string path;
    for (std::string const& next : paths) {
        if (!next.empty() && next[0] == '/') path.clear();
        if (!path.empty() && path.back() != '/' && !next.empty()) path += '/';
        std::vector<std::string> const parts = split(next);
        path += join(parts, parts.size());
    }
    return path;
}

std::string dirname(std::string const& path) {
    std::vector<std::string> const parts = split(path);
    if (parts.size() == 1 && parts[0] == "/") return "/";
    return parts.size() < 2 ? "." : join(parts, parts.size() - 1);
}

std::string tail(std::string const& path) {
    std::vector<std::string> const parts = split(path);
    return parts.empty() || parts.back() == "/" ? std::string() : parts.back();
}

std::string extension(std::string const& path) {
    std::size_t const dot = path.rfind('.');
    std::size_t const slash = path.rfind('/');
    bool const isInName = dot != std::string::npos && (slash == std::string::npos || dot > slash);
    return isInName ? path.substr(dot) : std::string();
}

std::string rootname(std::string const& path) {
    return path.substr(0, path.size() - extension(path).size());
}

/// Removes "." and ".."; a relative path is relative to the file being read.
std::string normalize(std::string const& path) {
    std::vector<std::string> parts;
    for (std::string const& part : split(path)) {
        if (part == "..") {
            if (parts.size() > 1) parts.pop_back();
        } else if (part != ".") {
            parts.push_back(part);
        }
    }
    return join(parts, parts.size());
}

std::string pathtype(std::string const& path) {
    return !path.empty() && path[0] == '/' ? "absolute" : "relative";
}

std::string nativename(std::string const& path) {
    return path;
}

struct TextOperation {
    char const* name;
    std::string (*run)(std::string const& path);
};

constexpr TextOperation operations[] = {
    {"dirname", dirname},   {"extension", extension}, {"nativename", nativename},
    {"pathtype", pathtype}, {"rootname", rootname},   {"tail", tail},
};

int file(Run& run, int objc, Tcl_Obj* const objv[]) {
    if (objc < 2) return failure(run, "wrong # args: should be \"file subcommand ?arg ...?\"");
    std::string const name(textOf(objv[1]));
    std::vector<std::string> words;
    for (int i = 2; i < objc; ++i) words.emplace_back(textOf(objv[i]));
    auto const answer = [&](std::string const& text) { return Tcl_SetObjResult(run.interp(), newText(text)), TCL_OK; };
    if (name == "join" && !words.empty()) return answer(joinAll(words));
    if (name == "separator") return answer("/");
    if (name == "split" && words.size() == 1) {
        Tcl_Obj* const parts = Tcl_NewListObj(0, nullptr);
        for (std::string const& part : split(words[0])) Tcl_ListObjAppendElement(nullptr, parts, newText(part));
        Tcl_SetObjResult(run.interp(), parts);
        return TCL_OK;
    }
    if (name == "normalize" && words.size() == 1) {
        std::string const base = fromBytes(dirname(run.scriptPath()));
        return answer(normalize(joinAll({base, words[0]})));
    }
    for (TextOperation const& operation : operations) {
        if (name != operation.name) continue;
        if (words.size() != 1) return failure(run, "wrong # args: should be \"file " + name + " name\"");
        return answer(operation.run(words[0]));
    }
    return failure(run, "\"file " + name + "\" is not available: a constraint script can only compute");
}

}  // namespace

void addFileCommands(Run& run) {
    addCommand(run, "file", file);
}

}  // namespace tool::sdc
