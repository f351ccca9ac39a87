// A whole constraint file: loaded, checked, saved, and loaded again.

#include <algorithm>

#include "fuzz/settle.h"
#include "tov/names/name_check.h"
#include "tov/tov.h"

namespace {

using namespace kiri::tov;

// The check finds where a load ends.
void requireChecked(std::string const& path, bool loads) {
    bool ends = false;
    auto const visit = [&ends](TovFinding const& finding, std::string const& line, auto const&) {
        std::string const message = findingMessage(finding, line);
        bool const isLine = std::none_of(message.begin(), message.end(), [](char c) { return c >= 0 && c < ' '; });
        fuzz::require(isLine && !message.empty() && message.size() <= 1000, "a message is one line", line, message);
        ends = finding.kind == TOVFINDING_ENDS_LOAD;
        return true;
    };
    fuzz::require(checkTovFile(path.c_str(), TovCheckOptions(), visit), "an existing file is checked");
    fuzz::require(ends != loads, "the check finds what ends the load");
}

// A file that does not change in a load and a save has no losses.
void requireNothingLost(std::string const& text) {
    std::vector<TovFinding> findings;
    checkTovFile(fuzz::MemoryFile(text).path().c_str(), findings);
    for (TovFinding const& finding : findings) {
        bool const isKept = finding.kind == TOVFINDING_UNKNOWN_COMMAND || finding.kind == TOVFINDING_MISTAKEN_WORD;
        fuzz::require(isKept, "a file that stays as it is has no findings", text, finding.text);
    }
}

}  // namespace

void fuzz::run(std::string const& input) {
    TOV document;
    fuzz::MemoryFile const file(input);
    try {
        fuzz::require(document.load(file.path().c_str()), "an existing file loads");
    } catch (std::out_of_range const&) {
        return requireChecked(file.path(), false);
    }
    requireChecked(file.path(), true);
    std::string const text = document.toSaveString();
    fuzz::require(document.toSaveString() == text, "saving changes nothing", text);
    fuzz::requireSettled(text, [](std::string const& from) {
        std::string const saved = fuzz::savedAgain(from);
        if (saved == from) requireNothingLost(from);
        return saved;
    });
}
