#include <fstream>
#include <string>
#include <string_view>

#include "tov/cmd_list.h"
#include "tov/fetch_ahead.h"
#include "tov/tov.h"

namespace kiri::tov {

namespace {

constexpr std::string_view sdcHeader =
    "################################################\n"
    "# This section describes SDC language elements for timing-driven\n"
    "# synthesis that are supported by the Morrow Compiler (MRC).\n"
    "#\n"
    "# The constraints here will be translated to corresponding\n"
    "# timing Preference (Preferences are implementation constraints\n"
    "# for assigning design logic to physical resources) for back-end flow.\n"
    "################################################\n";

constexpr std::string_view attributeHeader =
    "################################################\n"
    "# This section describes the HDL Attributes that are supported\n"
    "# by the Morrow Compiler (MRC).\n"
    "#\n"
    "# These attributes are directly interpreted by the engine and\n"
    "# influence the optimization or structure of the output netlist.\n"
    "################################################\n";

// Appends the lines of a list's commands. A command that gives no text gives no line.
void appendLines(std::string& text, std::list<TovCmd*> const& cmds, TOV* document) {
    forEachFetched<fetchedOfCommand>(cmds, [&text, document](TovCmd* cmd) {
        if (cmd == nullptr) return;
        std::string const line = cmd->toSaveString(document);
        if (!line.empty()) text.append(line).append("\n");
    });
}

}  // namespace

std::string TOV::sdcComments() const {
    return std::string(sdcHeader);
}

std::string TOV::attributeComments() const {
    return std::string(attributeHeader);
}

std::string TOV::toSaveString() {
    constexpr std::size_t usualLineSize = 100;
    std::size_t lines = 0;
    for (std::list<TovCmd*> const& list : cmdLists_) lines += list.size();
    std::string text;
    text.reserve(lines * usualLineSize + sdcCommentText.size() + attributeCommentText.size() + 1000);
    text.append(sdcHeader).append("\n");
    for (int kind = TOVCMD_CLOCK; kind <= TOVCMD_FALSEPATH; ++kind) {
        appendLines(text, *getTovCmdList(static_cast<TOVCMD_TYPE>(kind)), this);
    }
    text += sdcCommentText;
    text.append("\n").append(attributeHeader).append("\n");
    appendLines(text, *getTovCmdList(TOVCMD_ATTRIBUTE), this);
    text += attributeCommentText;
    return text;
}

bool TOV::save(char const* path) {
    if (path == nullptr) return false;
    std::string const text = toSaveString();
    // The stream gets its buffer here: it would else allocate one after it has truncated the file.
    char buffer[4096];
    std::ofstream file;
    file.rdbuf()->pubsetbuf(buffer, sizeof buffer);
    file.open(path, std::ios::trunc);
    if (!file.is_open()) return false;
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    return true;
}

}  // namespace kiri::tov
