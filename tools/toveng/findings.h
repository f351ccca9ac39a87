#pragma once

#include <functional>
#include <string>
#include <vector>

#include "input.h"
#include "tov/check.h"
#include "tov/design/design.h"
#include "tov/names/document_names.h"

namespace tool {

/// A kind of finding as a user sees it.
struct Code {
    kiri::tov::TovFindingKind kind;
    char const* name;
    char const* text;
};

constexpr std::size_t codeCount = 8;

/// How many near names to look for: each search goes through all names of the design.
constexpr int suggestionsAtMost = 100;

/// The codes; that of a kind is at the kind's number minus 1.
extern Code const codes[codeCount];

inline Code const& codeOf(kiri::tov::TovFindingKind kind) {
    return codes[kind - 1];
}

/// A design, ready for questions.
struct Design {
    /// Loads the dump; Trouble unless it was read whole.
    explicit Design(std::string const& dump);

    kiri::tov::TovDesign design;
    std::unique_ptr<kiri::tov::TovDesignNames const> names;
};

/// Takes a finding, its line, and the uses that a TOVFINDING_MISSING_NAME reports.
using FindingVisitor = std::function<void(kiri::tov::TovFinding const& finding, std::string const& line,
                                          std::vector<kiri::tov::TovNameUse> const& missing)>;

/// Calls `visit` with each finding of a file, see checkTovFile, and keeps none of them. `design` may be null.
void forEachFinding(Input const& input, Design const* design, kiri::tov::TovNameMatch match,
                    FindingVisitor const& visit);

/// Prints `FILE:LINE: warning: MESSAGE [CODE]` to a stream.
void printFinding(std::FILE* out, std::string const& file, kiri::tov::TovFinding const& finding,
                  std::string const& message);

/// "no such port: `a`; did you mean `b`?" Looks for a near name while `suggestions` is not 0, and counts it down.
std::string missingMessage(taDciObjTyp type, std::string const& word, kiri::tov::TovDesignNames const& names,
                           int& suggestions);

/// "port", "pin", "net", "cell" or "clock"; "object" for any other type.
char const* titleOf(taDciObjTyp type);

}  // namespace tool
