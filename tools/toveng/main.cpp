// toveng: checks, compares and formats timing constraints, and finds what they refer to in a design.
//
// Exit status: 0 if all is well, 1 if there is something to report, 2 for wrong usage or a file that cannot be read.

#include <fcntl.h>
#include <unistd.h>

#include <QCommandLineParser>
#include <algorithm>
#include <csignal>
#include <exception>
#include <new>

#include "command.h"
#include "text.h"
#include "tov/version.h"

using namespace tool;

namespace {

struct Command {
    char const* name;
    int (*run)(Arguments const&);
    int least;  // of the words that are not options
    int most;
    char const* usage;
    char const* summary;
};

constexpr int any = 1 << 30;

constexpr Command commands[] = {
    {"check", check, 1, any, "[OPTION...] FILE...",
     "Reports what is wrong in constraint files, what a load and a save would lose, and missing names."},
    {"coverage", coverage, 1, any, "--design DUMP [OPTION...] FILE...",
     "Reports which parts of the design the constraints cover, and which they miss."},
    {"diff", diff, 2, 2, "[OPTION...] OLD NEW", "Reports how two constraint files differ in meaning."},
    {"objects", objects, 1, any, "--design DUMP [OPTION...] WORD...",
     "Lists the objects of the design that words match."},
    {"format", format, 1, 1, "[OPTION...] FILE [-o OUT]", "Rewrites a constraint file as a save writes it."},
    {"serve", serve, 0, 0, "[OPTION...]", "Checks constraint files in an editor, as a language server."},
    {"import", import, 1, any, "[OPTION...] [-o OUT] FILE...", "Runs SDC, which is Tcl, and writes a constraint file."},
};

enum class Times { once, several };

struct Option {
    char const* commands;  // that have it
    char const* name;
    char const* value;  // the name of its value; empty if it takes none
    char const* text;
    Times times = Times::once;
};

constexpr Option options[] = {
    {"check coverage objects serve", "design", "DUMP", "the dump of the constrained design"},
    {"check objects serve", "match", "HOW", "how words match the levels of a name: levels, local or flat"},
    {"check", "each", "", "check each file by itself, not all as one set"},
    {"check serve", "select", "CODE,...", "report only findings with these codes", Times::several},
    {"check serve", "ignore", "CODE,...", "leave out findings with these codes", Times::several},
    {"check", "baseline", "FILE", "leave out the findings of an earlier JSON report"},
    {"check", "all", "", "report each finding, even if many have the same cause"},
    {"check", "format", "FORMAT", "the format of the findings: text, json or sarif"},
    {"coverage diff objects", "format", "FORMAT", "the format of the result: text or json"},
    {"check", "color", "WHEN", "colours: auto, always or never"},
    {"check", "max", "N", "print only the first N findings"},
    {"objects", "type", "TYPE", "match only objects of one type: port, pin, net, cell or clock"},
    {"objects", "constraints", "FILE", "also list the commands of the file that refer to each object", Times::several},
    {"format", "check", "", "write nothing: status 1 if the file would change"},
    {"format", "lossy", "", "format even if something would be lost"},
    {"serve", "log", "FILE", "log the messages to this file"},
    {"serve", "stdio", "", "use standard input and output (always the case)"},
    {"format", "o", "OUT", "write to this file instead of replacing the input"},
    {"import", "define", "NAME=VALUE", "set a global variable before the first file", Times::several},
    {"import", "root", "DIR", "the folder that source may read from, instead of the folders of the files"},
    {"import", "time-unit", "UNIT", "the time unit before set_units, such as ns, ps or 10ps"},
    {"import", "limit", "SECONDS", "the time limit of the run (default: 60)"},
    {"import", "drop", "OPTION,...", "write calls without these options, such as add_delay or setup", Times::several},
    {"import", "format", "FORMAT", "the format of the findings: text or json"},
    {"import", "o", "OUT", "write to this file instead of standard output"},
};

bool isOf(Option const& option, Command const& command) {
    return std::string(option.commands).find(command.name) != std::string::npos;
}

std::string dashed(char const* name) {
    return (name[1] == '\0' ? "-" : "--") + std::string(name);
}

void printOption(std::string const& name, char const* text) {
    print("  " + QByteArray(name.c_str()).leftJustified(21).toStdString() + " " + text + "\n");
}

void printHelp(Command const& command) {
    print(std::string("Usage: toveng ") + command.name + " " + command.usage + "\n\n" + command.summary + "\n\n");
    for (Option const& option : options) {
        if (!isOf(option, command)) continue;
        printOption(dashed(option.name) + (*option.value == '\0' ? "" : " ") + option.value, option.text);
    }
    printOption("-h, --help", "show this text");
    printOption("-v, --version", "show the version");
}

void printHelp() {
    print("Usage: toveng COMMAND [ARGUMENT...]\n\nWorks on timing constraints and on design dumps.\n\n");
    for (Command const& command : commands) printOption(command.name, command.summary);
    print("\ntoveng COMMAND --help shows the options of a command; the manual page is toveng(1).\n");
}

int printVersion() {
    print(std::string("toveng ") + kiri::tov::versionText() + "\n");
    return 0;
}

// Each byte of an argument is one character of the QString: nothing is lost, whatever the locale is.
int run(Command const& command, QStringList const& arguments) {
    QCommandLineParser parser;
    parser.addOption({{"h", "help"}, {}});
    parser.addOption({{"v", "version"}, {}});
    for (Option const& option : options) {
        if (isOf(option, command)) parser.addOption({option.name, {}, option.value});
    }
    auto const usageTrouble = [&](std::string const& what) {
        return Trouble(std::string(command.name) + ": " + what + "; see toveng " + command.name + " --help");
    };
    if (!parser.parse(arguments)) throw usageTrouble(parser.errorText().chopped(1).toLatin1().toStdString());
    if (parser.isSet("help")) return printHelp(command), 0;
    if (parser.isSet("version")) return printVersion();
    for (Option const& option : options) {
        bool const isRepeated = isOf(option, command) && parser.optionNames().count(option.name) > 1;
        if (isRepeated && option.times == Times::once) throw usageTrouble(dashed(option.name) + " is given twice");
    }
    auto const words = parser.positionalArguments().size();
    if (words < command.least || words > command.most) {
        throw usageTrouble("usage: toveng " + std::string(command.name) + " " + command.usage);
    }
    if (std::string(command.usage).find("--design") == 0 && !parser.isSet("design")) {
        throw usageTrouble("--design is required");
    }
    return command.run(Arguments(parser));
}

int run(int argc, char** argv) {
    std::string const name = argc > 1 ? argv[1] : "";
    if (name == "-h" || name == "--help") return printHelp(), 0;
    if (name == "-v" || name == "--version") return printVersion();
    QStringList arguments;
    for (int i = 1; i < argc; ++i) arguments.append(QString::fromLatin1(argv[i]));
    for (Command const& command : commands) {
        if (name == command.name) return run(command, arguments);
    }
    throw Trouble((name.empty() ? "a command is required" : "unknown command '" + name + "'") + "; see toveng --help");
}

std::vector<std::string> bytesOf(QStringList const& list) {
    std::vector<std::string> words;
    for (QString const& word : list) words.push_back(word.toLatin1().toStdString());
    return words;
}

// An opened file must not get the descriptor of a closed stream: printed text would go to the file.
void openStreams() {
    for (int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) < 0)
            static_cast<void>(::open("/dev/null", stream == STDIN_FILENO ? O_RDONLY : O_WRONLY));
    }
}

}  // namespace

std::vector<std::string> Arguments::values(char const* option) const {
    return bytesOf(parser_.values(option));
}

std::vector<std::string> Arguments::words() const {
    return bytesOf(parser_.positionalArguments());
}

std::size_t Arguments::choose(char const* option, std::initializer_list<char const*> choices) const {
    if (!has(option)) return 0;
    auto const chosen = std::find(choices.begin(), choices.end(), value(option));
    if (chosen != choices.end()) return static_cast<std::size_t>(chosen - choices.begin());
    std::string known;
    for (char const* choice : choices) known.append(known.empty() ? "" : ", ").append(choice);
    throw Trouble("unknown " + std::string(option) + " '" + value(option) + "'; the choices are " + known);
}

int main(int argc, char** argv) {
    openStreams();
    std::signal(SIGPIPE, SIG_DFL);  // the reader of the output may exit; the parent may have ignored the signal
    try {
        int const status = run(argc, argv);
        flushOutput();
        return status;
    } catch (std::bad_alloc const&) {
        complain("toveng: out of memory");
    } catch (std::exception const& error) {
        complain(std::string("toveng: ") + error.what());
    }
    return 2;
}
