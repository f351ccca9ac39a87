#include <fstream>
#include <iterator>

#include "command.h"
#include "input.h"
#include "report.h"
#include "text.h"
#include "tov/names/name_check.h"

using namespace kiri::tov;

namespace tool {

namespace {

constexpr std::size_t findingsShown = 100;

// Prints what would be lost, and returns the number of findings.
std::size_t printLosses(Input const& input) {
    std::size_t losses = 0;
    std::string error;
    auto const visit = [&](TovFinding const& finding, std::string const& line, std::vector<TovNameUse> const&) {
        if (finding.kind == TOVFINDING_UNKNOWN_COMMAND || ++losses > findingsShown) return true;
        printFinding(stderr, {input.name(), finding.line, findingCode(finding.kind), finding.text,
                              findingMessage(finding, line)});
        return true;
    };
    if (!checkTovFile(input.path(), TovCheckOptions(), visit, &error)) throw Trouble(input.name() + ": " + error);
    return losses;
}

std::string contentOf(Input const& input) {
    std::ifstream file(input.path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int format(Arguments const& arguments) {
    Input const input(arguments.words().front(), Content::constraints);
    if (!arguments.has("lossy")) {
        std::size_t const losses = printLosses(input);
        if (losses > 0) {
            complain("toveng: " + input.name() + ": not formatted, " + std::to_string(losses) +
                     " findings; --lossy formats it anyway");
            return 1;
        }
    }
    TOV& document = keep<TOV>();
    read(document, input, progressBar());
    std::string const text = document.toSaveString();
    bool const isSame = contentOf(input) == text;
    if (arguments.has("check")) {
        if (!isSame) complain("toveng: " + input.name() + ": would change");
        return isSame ? 0 : 1;
    }
    std::string const out = arguments.has("o") ? arguments.value("o") : input.name();
    if (out == "-") return print(text), 0;
    if (isSame && out == input.name()) return 0;
    std::string error;
    if (!document.saveAtomically(out.c_str(), &error)) throw Trouble(error);
    return 0;
}

}  // namespace tool
