#include "run.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "comments.h"
#include "interpreter.h"
#include "looks.h"
#include "source_file.h"

namespace tool::sdc {

namespace {

/// Owns the words of a command.
class OwnedWords {
public:
    OwnedWords() = default;
    OwnedWords(OwnedWords const&) = delete;
    OwnedWords& operator=(OwnedWords const&) = delete;
    ~OwnedWords() {
        for (Tcl_Obj* word : all) Tcl_DecrRefCount(word);
    }
    std::vector<Tcl_Obj*> all;
};

/// Owns what Tcl has parsed.
struct Parse : Tcl_Parse {
    Parse() : Tcl_Parse() {}
    ~Parse() { Tcl_FreeParse(this); }
    Parse(Parse const&) = delete;
    Parse& operator=(Parse const&) = delete;
};

std::size_t lineFeeds(char const* from, char const* to) {
    return static_cast<std::size_t>(std::count(from, to, '\n'));
}

std::string directoryOf(std::string const& path) {
    return path.substr(0, path.rfind('/') + 1);
}

/// Returns the end of a command that Tcl cannot read: the end of its line, or of the whole text if something is not
/// closed.
char const* endOfBroken(Tcl_Parse const& parse, char const* end) {
    if (parse.incomplete != 0) return end;
    char const* at = parse.term;
    while (at < end && *at != '\n') at += *at == '\\' && at + 1 < end ? 2 : 1;
    return at;
}

/// Returns the code set by `return -code`.
int returnCode(Tcl_Interp* interp) {
    Value const options(Tcl_GetReturnOptions(interp, TCL_RETURN));
    Value const key(newText("-code"));
    Tcl_Obj* value = nullptr;
    int code = TCL_OK;
    if (Tcl_DictObjGet(nullptr, options.get(), key.get(), &value) == TCL_OK && value != nullptr) {
        Tcl_GetIntFromObj(nullptr, value, &code);
    }
    return code;
}

constexpr int deepest = 500;

/// Returns the end of the line in which the brackets of a command are nested too deeply for Tcl; null if there is none.
char const* endOfDeep(char const* at, char const* end) {
    int depth = 0;
    for (; at < end && (*at != '\n' || depth > 0); ++at) {
        if (*at == '\\')
            ++at;
        else if (*at == '[' && ++depth > deepest)
            return std::find(at, end, '\n');
        else if (*at == ']' && depth > 0)
            --depth;
    }
    return nullptr;
}

/// Returns whether the brackets in a text are nested so deeply that its commands need a check.
bool isDeep(std::string const& text) {
    int depth = 0;
    for (char c : text) {
        if (c == '[' && ++depth > deepest) return true;
        if (c == ']' && depth > 0) --depth;
    }
    return false;
}

}  // namespace

Run::Run(Request const& request, Outbox& out, Plan plan)
    : request_(request), out_(out), plan_(std::move(plan)), interp_(makeInterpreter()), unit_(request.unit) {
    addCommands(*this);
    onExtentText([this] { extentAsked(); });
    if (plan_.event != Event::none) ++out_.muted;
}

void Run::runFiles() {
    // Within a command of Tcl, `return` ends the file, not the command that sources it.
    constexpr char const* name = "toveng_files";
    auto const runInCommand = [](ClientData data, Tcl_Interp* interp, int, Tcl_Obj* const[]) noexcept {
        Tcl_DeleteCommand(interp, name);
        static_cast<Run*>(data)->runInCommand();
        return TCL_OK;
    };
    Tcl_CreateObjCommand(interp_, name, runInCommand, this, nullptr);
    Tcl_Eval(interp_, name);
}

void Run::runInCommand() {
    for (auto const& [name, value] : request_.defines) {
        Tcl_SetVar2Ex(interp_, fromBytes(name).c_str(), nullptr, newText(fromBytes(value)), TCL_GLOBAL_ONLY);
    }
    for (SourceFile const& file : request_.files) {
        runText({file.name, file.path, directoryOf(file.name), 0}, file.text);
    }
}

int Run::source(std::string const& path) {
    std::vector<std::string> open;
    for (File const& file : files_) open.push_back(file.path);
    bool const isRelative = path.empty() || path[0] != '/';
    std::string const base = isRelative ? directoryOf(files_.back().path) : std::string();
    std::string error;
    std::optional<SourcedFile> file = readSource(base + path, request_.roots, open, error);
    if (!file) {
        Tcl_SetObjResult(interp_, newText(fromBytes(path + ": " + error)));
        return TCL_ERROR;
    }
    std::string const name = (isRelative ? files_.back().directory : std::string()) + path;
    runText({name, file->path, directoryOf(name), 0}, file->text);
    Tcl_ResetResult(interp_);
    return TCL_OK;
}

void Run::runText(File file, std::string const& bytes) {
    files_.push_back(std::move(file));
    out_.put(Record::enterFile, files_.back().name);
    Statement* const outer = statement_;
    bool const isPlain = std::none_of(bytes.begin(), bytes.end(), [](char c) { return (c & '\x80') != 0; });
    std::string const converted = isPlain ? std::string() : fromBytes(bytes);
    std::string const& text = isPlain ? bytes : converted;

    bool const mayBeDeep = isDeep(text);
    char const* at = text.data();
    char const* const end = at + text.size();
    std::size_t line = 1;
    bool startsInLine = false;
    while (at < end) {
        Parse parse;
        char const* const deepEnd = mayBeDeep ? endOfDeep(at, end) : nullptr;
        bool const isParsed =
            deepEnd == nullptr && Tcl_ParseCommand(interp_, at, static_cast<int>(end - at), 0, &parse) == TCL_OK;
        if (deepEnd != nullptr) Tcl_SetObjResult(interp_, newText("too many nested brackets"));
        std::string const error = isParsed ? std::string() : bytesOf(Tcl_GetObjResult(interp_));
        char const* const start = parse.commandStart == nullptr ? at : parse.commandStart;
        char const* next = isParsed ? start + parse.commandSize : deepEnd;
        if (next == nullptr) next = endOfBroken(parse, end);
        while (!isParsed && next > start && (next[-1] == '\n' || next[-1] == ' ')) --next;
        bool const endsInSemicolon = isParsed && parse.commandSize > 0 && parse.term == next - 1 && *parse.term == ';';
        std::string_view const between(at, static_cast<std::size_t>(start - at));
        if (parse.commentSize > 0) keepComments(between, startsInLine);
        line += lineFeeds(at, start);
        if (!isParsed || parse.numWords > 0) {
            bool const hasEnd = isParsed && parse.commandSize > 0 && parse.term == next - 1;
            Statement statement;
            statement.text = {start, static_cast<std::size_t>(next - start - (hasEnd ? 1 : 0))};
            if (endsInSemicolon) statement.text = statement.text.substr(0, statement.text.find_last_not_of(" \t") + 1);
            statement.isFirstInLine = !startsInLine || between.find('\n') != std::string_view::npos;
            int const status =
                runStatement(statement, isParsed ? &parse : nullptr, static_cast<std::uint32_t>(line), error);
            if (status == TCL_RETURN) break;
        }
        line += lineFeeds(start, next);
        bool const goesOn = startsInLine && between.find('\n') == std::string_view::npos && parse.numWords == 0;
        startsInLine = endsInSemicolon || (goesOn && next == start);
        at = std::max(next, at + (next == at ? 1 : 0));
    }
    statement_ = outer;
    out_.put(Record::leaveFile);
    files_.pop_back();
}

void Run::keepComments(std::string_view text, bool startsInLine) {
    out_.put(Record::kept, commentsIn(toBytes(text), startsInLine));
}

int Run::runStatement(Statement& statement, Tcl_Parse const* parse, std::uint32_t line, std::string const& parseError) {
    std::uint64_t const command = ++commands_;
    std::string message;
    bool const isSkipped = followPlan(command, message);
    std::uint64_t const outerCommand = out_.shared().command;
    if (plan_.event == Event::none) out_.shared().command = command;
    files_.back().command = command;
    Statement* const outer = statement_;
    statement_ = &statement;

    out_.putBegin(line, toBytes(statement.text));
    int status = TCL_ERROR;
    if (isSkipped) {
        startTrace();
        forgetVariables(interp_, statement.text);
        Tcl_SetObjResult(interp_, newText(fromBytes(message)));
    } else if (parse == nullptr) {
        Tcl_SetObjResult(interp_, newText(fromBytes(parseError)));
    } else {
        status = evaluate(statement, *parse);
    }
    status = finishStatement(statement, status);
    out_.put(Record::end);
    statement_ = outer;
    if (plan_.event == Event::none) out_.shared().command = outerCommand;
    return status;
}

std::string Run::commentOf(Statement const& statement) {
    std::string text = toBytes(statement.text);
    if (!statement.isFirstInLine) std::replace(text.begin(), text.end(), '\n', ' ');
    return commented(text);
}

int Run::evaluate(Statement& statement, Tcl_Parse const& parse) {
    OwnedWords words;
    statement.isSubstituting = true;
    if (!substitute(parse, words.all)) return TCL_ERROR;
    statement.isSubstituting = false;
    if (words.all.empty()) return TCL_OK;
    statement.word = words.all[0];
    statement.name = textOf(statement.word);
    // The calls in the brackets of a command are part of its own comment, if it has one.
    auto const keepNested = [&] {
        if (!statement.nested.empty()) keep(std::exchange(statement.nested, {}));
    };
    auto const isOurs = [&] {
        return isCall(statement.name) || Tcl_FindCommand(interp_, statement.name.data(), nullptr, 0) == nullptr;
    };
    if (!statement.nested.empty() && !isOurs()) keepNested();
    int const status = Tcl_EvalObjv(interp_, static_cast<int>(words.all.size()), words.all.data(), 0);
    if (!statement.isCommented) keepNested();
    statement.word = nullptr;
    return status;
}

bool Run::substitute(Tcl_Parse const& parse, std::vector<Tcl_Obj*>& words) {
    Tcl_Token* token = parse.tokenPtr;
    for (int i = 0; i < parse.numWords; ++i, token += token->numComponents + 1) {
        Tcl_Obj* word = nullptr;
        if (token->type == TCL_TOKEN_SIMPLE_WORD) {
            word = newText({token[1].start, static_cast<std::size_t>(token[1].size)});
        } else {
            if (Tcl_EvalTokensStandard(interp_, token + 1, token->numComponents) != TCL_OK) return false;
            word = Tcl_GetObjResult(interp_);
        }
        words.push_back(word);
        Tcl_IncrRefCount(word);
        if (token->type != TCL_TOKEN_EXPAND_WORD) continue;
        Value const list(word);
        int size = 0;
        Tcl_Obj** elements = nullptr;
        if (Tcl_ListObjGetElements(interp_, word, &size, &elements) != TCL_OK) return false;
        words.pop_back();
        Tcl_DecrRefCount(word);
        for (int k = 0; k < size; ++k) {
            words.push_back(elements[k]);
            Tcl_IncrRefCount(elements[k]);
        }
    }
    return true;
}

int Run::finishStatement(Statement& statement, int status) {
    if (status == TCL_BREAK || status == TCL_CONTINUE) {
        std::string const word = status == TCL_BREAK ? "break" : "continue";
        Tcl_SetObjResult(interp_, newText("invoked \"" + word + "\" outside of a loop"));
        status = TCL_ERROR;
    }
    bool const endsFile = status == TCL_RETURN;
    if (endsFile) status = returnCode(interp_);
    if (status == TCL_ERROR) {
        if (!statement.isCommented) keep(commentOf(statement));
        std::string const message = readable(textOf(Tcl_GetObjResult(interp_)));
        std::string const text = toBytes(statement.text.substr(0, statement.text.find_first_of(" \t\n;")));
        out_.putFinding(Code::tclError, text, message);
    }
    if (!isTracing_ && silentExtents() > 0) {
        // A value of unknown extent has been stored: from now on each command is checked.
        if (!isStraight()) leave(Event::trace, {});
        startTrace();
    }
    return endsFile ? TCL_RETURN : TCL_OK;
}

void Run::startTrace() {
    if (isTracing_) return;
    isTracing_ = true;
    traceLooks(*this);
}

void Run::extentAsked() {
    if (isTracing_) return;
    if (!isStraight()) leave(Event::trace, {});
    startTrace();
}

Tcl_Obj* Run::extent(Extent extent) {
    if (!isTracing_ && !extent.objects.empty() && !isStraight()) leave(Event::trace, {});
    return newExtent(std::move(extent));
}

bool Run::isStraight() const {
    return statement_ != nullptr && isStraightCommand(interp_, statement_->text, statement_->isSubstituting);
}

}  // namespace tool::sdc
