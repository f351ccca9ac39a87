#include "findings.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <utility>

#include "text.h"
#include "tov/edit.h"
#include "tov/make_command.h"

using namespace kiri::tov;

namespace tool {

Code const codes[codeCount] = {
    {TOVFINDING_DROPPED_LINE, "dropped-line", "An attribute line without five texts: a save drops it."},
    {TOVFINDING_UNKNOWN_COMMAND, "unknown-command",
     "No command of the file format: a save keeps the line as a comment."},
    {TOVFINDING_LOST_WORD, "lost-word", "A word that a save does not write."},
    {TOVFINDING_CHANGED_VALUE, "changed-value", "A value that a save writes as another one, or adds."},
    {TOVFINDING_MISTAKEN_WORD, "mistaken-word", "A word that is taken for something else."},
    {TOVFINDING_ENDS_LOAD, "ends-load", "A line that ends the load: nothing after it is read."},
    {TOVFINDING_UNSTABLE_LINE, "unstable-line", "A line that is something else once it is saved and read again."},
    {TOVFINDING_MISSING_NAME, "missing-name", "A name that stands for nothing in the design."},
};

Design::Design(std::string const& dump) {
    Input const input(dump, Content::dump);
    std::string error;
    if (!design.load(input.path(), progressBar(), &error) || !error.empty()) {
        throw Trouble(dump + ": not read whole: " + error);
    }
    names = std::make_unique<TovDesignNames const>(design, progressBar());
}

namespace {

/// Calls `visit` with each line of a file until that returns false.
void forEachLine(Input const& input, std::function<bool(std::string const& line)> const& visit) {
    std::ifstream file(input.path(), std::ios::binary);
    for (std::string line; std::getline(file, line);) {
        if (!visit(line)) return;
    }
    if (!file.is_open() || file.bad()) throw Trouble(input.name() + ": " + std::strerror(errno));
}

// A clock may be used before it is defined.
void readClocks(TOV& clocks, Input const& input) {
    forEachLine(input, [&](std::string const& line) {
        if (line.find("create_") == std::string::npos) return true;
        TOVCMD_TYPE list = TOVCMD_NONE;
        try {
            std::unique_ptr<TovCmd> cmd = makeCommand(line, &list);
            if (list == TOVCMD_CLOCK || list == TOVCMD_GENCLOCK) addCommand(clocks, list, std::move(cmd));
        } catch (std::out_of_range const&) {
            return false;  // the load ends here
        }
        return true;
    });
}

}  // namespace

void forEachFinding(Input const& input, Design const* design, TovNameMatch match, FindingVisitor const& visit) {
    TOV clocks;
    std::unique_ptr<TovDocumentNames const> names;
    if (design != nullptr) {
        readClocks(clocks, input);
        names = std::make_unique<TovDocumentNames const>(clocks, *design->names, match);
    }
    std::vector<TovNameUse> missing;
    std::size_t number = 0;
    forEachLine(input, [&](std::string const& line) {
        ++number;
        for (TovFinding& finding : checkTovLine(line)) {
            finding.line = number;
            visit(finding, line, missing);
            if (finding.kind == TOVFINDING_ENDS_LOAD) return false;
        }
        if (names == nullptr) return true;
        std::unique_ptr<TovCmd> const cmd = makeCommand(line);
        if (cmd == nullptr || !cmd->enabled) return true;
        missing = names->missingIn(*cmd);
        std::string words;
        for (TovNameUse const& use : missing) words.append(words.empty() ? "" : " ").append(use.word);
        if (!missing.empty()) visit({number, TOVFINDING_MISSING_NAME, words}, line, missing);
        missing.clear();
        return true;
    });
}

}  // namespace tool
