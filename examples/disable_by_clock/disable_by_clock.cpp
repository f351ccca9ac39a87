// Disables every command of a constraint file that refers to a clock, and saves the file under another name. A
// generated clock whose definition is disabled no longer exists either, so the commands that refer to it are disabled,
// too.
//
//   disable_by_clock FILE CLOCK OUT

#include <algorithm>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"
#include "tov/design/design.h"
#include "tov/edit.h"
#include "tov/names/design_names.h"
#include "tov/names/document_names.h"
#include "tov/tov.h"

using namespace kiri::tov;

namespace {

// Decides which commands refer to a clock. In a document that defines only this clock, joined with an empty design, a
// word matches the clock or nothing: the library judges "clk", {clk_b clk_a} and [get_clocks clk_*] alike.
class ClockReferences {
public:
    explicit ClockReferences(std::string const& clock) {
        addCommand(document_, TOVCMD_CLOCK, std::make_unique<TovCmdClockDef>(1.0F, clock.c_str(), nullptr));
        join_ = std::make_unique<TovDocumentNames>(document_, names_);
    }

    bool isIn(TovCmd& cmd) const { return count(join_->usesIn(cmd)) > count(join_->missingIn(cmd)); }

private:
    // Lists without a role (the targets of a clock, the objects of a delay) do not use clocks.
    static std::ptrdiff_t count(std::vector<TovNameUse> const& uses) {
        return std::count_if(uses.begin(), uses.end(), [](TovNameUse const& use) { return *use.role != '\0'; });
    }

    TovDesign const design_;
    TovDesignNames const names_{design_};
    TOV document_;
    std::unique_ptr<TovDocumentNames> join_;
};

// Disables the commands that refer to the clocks, and adds the clocks that this removes to the list.
int disableAll(TOV& document, std::vector<std::string> clocks) {
    int count = 0;
    for (std::size_t i = 0; i < clocks.size(); ++i) {
        std::string const clock = clocks[i];
        ClockReferences const references(clock);
        forEachCommand(document, [&](TOVCMD_TYPE, TovCmd& cmd) {
            std::string const defined = definedClock(cmd);
            bool const defines = !defined.empty() && defined == clock;
            if (!cmd.enabled || (!defines && !references.isIn(cmd))) return;
            cmd.enabled = false;
            ++count;
            std::puts(cmd.toSaveString(&document).c_str());
            bool const isNew = std::find(clocks.begin(), clocks.end(), defined) == clocks.end();
            if (!defined.empty() && isNew) clocks.push_back(defined);
        });
    }
    return count;
}

int disable(char const* path, std::string const& clock, char const* out) {
    TOV document;
    std::string error;
    if (!document.read(path, {}, &error)) {
        std::fprintf(stderr, "%s: %s\n", path, error.c_str());
        return 1;
    }
    int const count = disableAll(document, {clock});
    if (!document.saveAtomically(out, &error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    std::printf("disabled %d commands that refer to %s\n", count, clock.c_str());
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: disable_by_clock FILE CLOCK OUT\n");
        return 2;
    }
    try {
        return disable(argv[1], argv[2], argv[3]);
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s: %s\n", argv[1], error.what());
        return 1;
    }
}
