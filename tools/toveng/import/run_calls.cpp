#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "child.h"
#include "comments.h"
#include "run.h"

namespace tool::sdc {

namespace {

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

/// Returns whether a word is the index or range of bits: "3", "7:0", "*".
bool isIndex(std::string_view word) {
    if (word == "*") return true;
    std::size_t const colon = std::min(word.find(':'), word.size());
    auto const isNumber = [](std::string_view text) {
        return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    };
    return isNumber(word.substr(0, colon)) && (colon == word.size() || isNumber(word.substr(colon + 1)));
}

}  // namespace

int Run::call(Command command, int objc, Tcl_Obj* const objv[]) {
    Tcl_ResetResult(interp_);
    if (log != nullptr) log->push_back(commandText(objc, objv));
    try {
        if (!hierarchy_.empty()) throw NotHeld{hierarchy_, "names are relative to an instance"};
        if (!separator_.empty()) throw NotHeld{separator_, "levels of names are not separated by /"};
        Call const call = readCall(command, objc, objv, unit_, request_.drop);
        std::vector<std::string> rounded;
        out_.put(Record::lines, linesOf(call, rounded));
        for (std::string const& number : rounded) {
            out_.putFinding(Code::rounded, number,
                            "`" + number + "` is rounded: the format holds 32 bits and six decimals");
        }
        for (std::string const& option : call.dropped) {
            out_.putFinding(Code::droppedOption, option, "written without " + option);
        }
    } catch (NotHeld const& held) {
        keep(objc, objv);
        out_.putFinding(Code::notHeld, held.option, "kept as a comment for " + held.option + ": " + held.reason);
    }
    return TCL_OK;
}

int Run::other(int objc, Tcl_Obj* const objv[]) {
    Tcl_ResetResult(interp_);
    std::string const word = bytesOf(objv[0]);
    if (objc == 1 && isIndex(word)) {
        Tcl_SetObjResult(interp_, newText("[" + word + "]"));
        return TCL_OK;
    }
    if (log != nullptr) log->push_back(commandText(objc, objv));
    notice(word.c_str(), objc, objv);
    keep(objc, objv);
    bool const isUndone = startsWith(word, "remove_") || startsWith(word, "reset_") || startsWith(word, "unset_");
    std::string const shown = readable(textOf(objv[0]));
    if (isUndone) {
        out_.putFinding(Code::undone, shown, "`" + shown + "` is kept as a comment: what it undoes stays in the file");
    } else {
        out_.putFinding(Code::otherCommand, shown,
                        "`" + shown + "` is not a command of this format: it is kept as a comment");
    }
    // Nothing uses the result of a command of the file.
    if (!isDirect(objv[0])) Tcl_SetObjResult(interp_, extent({"[" + commandText(objc, objv) + "]", {}, {}}));
    return TCL_OK;
}

void Run::notice(char const* word, int objc, Tcl_Obj* const objv[]) {
    std::string_view const name = word;
    if (name == "set_units") takeUnit(objc, objv);
    if (name == "current_instance") hierarchy_ = objc > 1 ? word : "";
    if (name == "set_hierarchy_separator") separator_ = objc > 1 && textOf(objv[objc - 1]) != "/" ? word : "";
}

void Run::takeUnit(int objc, Tcl_Obj* const objv[]) {
    constexpr std::string_view option = "-time";
    for (int i = 1; i + 1 < objc; ++i) {
        std::string_view const word = textOf(objv[i]);
        if (word.size() < 2 || !startsWith(option, word)) continue;
        std::optional<TimeUnit> unit = timeUnitOf(bytesOf(objv[i + 1]));
        if (!unit) unit = TimeUnit{"unknown", 1, 0};
        unit_ = *unit;
        out_.put(Record::unit, unit_.name);
    }
}

void Run::keep(int objc, Tcl_Obj* const objv[]) {
    if (isDirect(objv[0])) {
        statement_->isCommented = true;
        if (statement_->isFirstInLine) return keep(commentOf(*statement_));
    }
    std::string comment = commented(commandText(objc, objv));
    if (statement_ != nullptr && statement_->isSubstituting)
        statement_->nested += comment;
    else
        keep(comment);
}

void Run::keep(std::string const& comment) {
    out_.put(Record::kept, comment);
}

void Run::look(std::string const& what) {
    leave(Event::skip, "depends on the design: " + what);
}

void Run::refuse(std::string const& why) {
    leave(Event::skip, why);
}

void Run::leave(Event event, std::string const& message) {
    // A process that repeats commands does what it did before: there is no new event.
    if (plan_.event != Event::none) ::_exit(exitLost);
    out_.muted = 0;
    out_.put(Record::undo);
    out_.flush();
    Shared& shared = out_.shared();
    shared.event = static_cast<int>(event);
    shared.message[message.copy(shared.message, sizeof shared.message - 1)] = '\0';
    ::_exit(exitEvent);
}

bool Run::followPlan(std::uint64_t command, std::string& message) {
    if (plan_.event == Event::none || plan_.command != command) return false;
    for (;;) {
        Event const event = plan_.event;
        message = plan_.message;
        if (event == Event::trace) startTrace();
        pid_t const worker = ::fork();
        if (worker < 0) ::_exit(exitLost);
        if (worker == 0) {
            limitWorker();
            --out_.muted;
            out_.resume();
            plan_ = {};
            return event == Event::skip;
        }
        exitUnlessEvent(worker, out_.shared());
        plan_ = {static_cast<Event>(out_.shared().event), out_.shared().command, out_.shared().message};
        if (plan_.command != command) return event == Event::skip;
    }
}

}  // namespace tool::sdc
