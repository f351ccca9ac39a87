#pragma once

#include <tcl.h>

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "call.h"
#include "outbox.h"
#include "references.h"

namespace tool::sdc {

/// A user's file, read by the parent.
struct SourceFile {
    std::string name;  ///< as the user passed it
    std::string path;  ///< absolute
    std::string text;
};

/// What to import.
struct Request {
    std::vector<SourceFile> files;
    std::vector<std::pair<std::string, std::string>> defines;
    std::vector<std::string> roots;  ///< real paths of the folders from which `source` may read
    TimeUnit unit;
    double limit = 60;                               ///< seconds
    std::uint64_t memory = std::uint64_t{2} << 30U;  ///< bytes of the child's address space
    std::set<std::string> drop;
};

/// Why a process stops at a command of a file: another process continues from a copy of the state before the command.
enum class Event : int {
    none,
    skip,   ///< the command does not run
    trace,  ///< the command runs, and every command in it is checked
};

/// Where the next event is. A script always runs in the same way, so a process can know the next event in advance.
struct Plan {
    Event event = Event::none;
    std::uint64_t command = 0;  ///< the number of the command, counted as the files run
    std::string message;
};

/// Runs files as one script in one interpreter.
class Run {
public:
    Run(Request const& request, Outbox& out, Plan plan);
    Run(Run const&) = delete;
    Run& operator=(Run const&) = delete;

    void runFiles();

    // For the commands of the script.

    Tcl_Interp* interp() const { return interp_; }
    Request const& request() const { return request_; }
    /// A call of one of the nine commands.
    int call(Command command, int objc, Tcl_Obj* const objv[]);
    /// An unknown command.
    int other(int objc, Tcl_Obj* const objv[]);
    /// Reads a file with `source`.
    int source(std::string const& path);
    /// The path of the current file.
    std::string const& scriptPath() const { return files_.back().path; }

    /// Ends the current command of the file, because it depends on the design.
    [[noreturn]] void look(std::string const& what);
    /// Ends the current command of the file for another reason.
    [[noreturn]] void refuse(std::string const& why);
    /// Creates the value of a query of unknown extent.
    Tcl_Obj* extent(Extent extent);
    /// Returns whether every command is checked.
    bool isTracing() const { return isTracing_; }

    /// While a loop runs its body a second time, its calls are compared instead of written.
    std::vector<std::string>* log = nullptr;
    Outbox& out() { return out_; }

private:
    struct File {
        std::string name;
        std::string path;
        std::string directory;  ///< of the name; empty or with a slash at its end
        std::uint64_t command;  ///< that runs
    };
    /// A command of a file.
    struct Statement {
        std::string_view text;
        bool isFirstInLine;
        Tcl_Obj* word = nullptr;      ///< its first word
        std::string_view name;        ///< likewise
        bool isCommented = false;     ///< the comment is written
        bool isSubstituting = false;  ///< the words are being made
        std::string nested;           ///< comments of calls in its brackets
    };

    void runInCommand();
    void runText(File file, std::string const& bytes);
    int runStatement(Statement& statement, Tcl_Parse const* parse, std::uint32_t line, std::string const& parseError);
    static std::string commentOf(Statement const& statement);
    int evaluate(Statement& statement, Tcl_Parse const& parse);
    bool substitute(Tcl_Parse const& parse, std::vector<Tcl_Obj*>& words);
    int finishStatement(Statement& statement, int status);
    bool followPlan(std::uint64_t command, std::string& message);
    void keepComments(std::string_view text, bool startsInLine);
    void keep(int objc, Tcl_Obj* const objv[]);
    void keep(std::string const& comment);
    void takeUnit(int objc, Tcl_Obj* const objv[]);
    void notice(char const* word, int objc, Tcl_Obj* const objv[]);
    bool isStraight() const;
    void extentAsked();
    void startTrace();
    [[noreturn]] void leave(Event event, std::string const& message);
    bool isDirect(Tcl_Obj* word) const { return statement_ != nullptr && word == statement_->word; }

    Request const& request_;
    Outbox& out_;
    Plan plan_;
    Tcl_Interp* interp_;
    TimeUnit unit_;
    std::string hierarchy_;  // the command that makes names relative; empty if there is none
    std::string separator_;  // likewise
    std::vector<File> files_;
    Statement* statement_ = nullptr;
    std::uint64_t commands_ = 0;
    bool isTracing_ = false;
};

}  // namespace tool::sdc
