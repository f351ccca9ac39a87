// A program written for 1.1.0: its own functions for the library's types have names that the library has used since. If
// a header of 1.1.0 declares such a name today, the call is qualified; all others compile unchanged.
#include <cstdio>
#include <string>

#include "tov/check.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"
#include "tov/make_command.h"
#include "tov/tov.h"
#include "tov/version.h"

using namespace kiri::tov;

char const* titleOf(TovFindingKind kind) {
    return kind == TOVFINDING_LOST_WORD ? "lost word" : "";
}
char const* keywordOf(TOVCMD_TYPE list) {
    return list == TOVCMD_CLOCK ? "create_clock" : "";
}
TovCmd& addCommand(TOV& document, TOVCMD_TYPE list, std::unique_ptr<TovCmd> cmd) {
    document.getTovCmdList(list)->push_back(cmd.get());
    return *cmd.release();
}
template <typename Visit>
void forEachCommand(TOV& document, Visit const& visit) {
    for (TovCmd* cmd : *document.getTovCmdList(TOVCMD_CLOCK)) visit(TOVCMD_CLOCK, *cmd);
}
std::string definedClock(TovCmd& cmd) {
    return dynamic_cast<TovCmdClockDef&>(cmd).clockName;
}

int main() {
    TOV document;
    addCommand(document, TOVCMD_CLOCK, makeCommand("create_clock -name c"));
    forEachCommand(document, [](TOVCMD_TYPE list, TovCmd& cmd) {
        std::printf("%s %s\n", keywordOf(list), ::definedClock(cmd).c_str());
    });
    for (TovFinding const& finding : checkTovLine("set_false_path -from a -setup")) std::puts(titleOf(finding.kind));
}
