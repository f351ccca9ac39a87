#include "command.h"
#include "report.h"
#include "text.h"

using namespace kiri::tov;

namespace tool {

namespace {

constexpr std::size_t findingsShown = 100;

bool isLoss(TovFindingKind kind) {
    return kind != TOVFINDING_UNKNOWN_COMMAND && kind != TOVFINDING_MISSING_NAME;
}

// Prints what would be lost, and returns how much it is.
std::size_t printLosses(Input const& input) {
    std::size_t losses = 0;
    forEachFinding(input, nullptr, TOVMATCH_LEVELS, [&](TovFinding const& finding, Place const& place) {
        if (!isLoss(finding.kind) || ++losses > findingsShown) return;
        printFinding(stderr, input.name(), finding, messageOf(finding, place.line));
    });
    return losses;
}

bool holds(Input const& input, std::string const& text) {
    if (input.size() != text.size()) return false;
    std::rewind(input.file());
    std::string content(text.size(), '\0');
    return std::fread(content.data(), 1, content.size(), input.file()) == content.size() && content == text;
}

}  // namespace

int format(Arguments const& arguments) {
    Input const input = Input::constraints(arguments.words().front());
    if (!arguments.has("lossy")) {
        std::size_t const losses = printLosses(input);
        if (losses > 0) {
            complain("toveng: " + input.name() + ": not formatted, " + std::to_string(losses) +
                     " findings; --lossy formats it all the same");
            return 1;
        }
    }
    TOV& document = keep<TOV>();
    read(document, input, progressBar());
    std::string const text = document.toSaveString();
    bool const isSame = holds(input, text);
    if (arguments.has("check")) {
        if (!isSame) complain("toveng: " + input.name() + ": would change");
        return isSame ? 0 : 1;
    }
    std::string const out = arguments.has("o") ? arguments.value("o") : input.name();
    if (out == "-") return print(text), 0;
    if (isSame && out == input.name()) return 0;
    std::string error;
    if (!document.saveAtomically(out.c_str(), &error)) throw Trouble(out + ": " + error);
    return 0;
}

}  // namespace tool
