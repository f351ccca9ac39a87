// The program's reader of baselines: any bytes are a report or an error with a reason, and each finding of a report is
// found again as often as the report has it.

#include "baseline.h"
#include "fuzz/fuzz.h"
#include "text.h"

namespace {

// Only the findings in a report are found.
void takeAll(tool::Baseline& baseline, std::size_t most) {
    for (tool::Rule const& rule : tool::rules) {
        std::size_t taken = 0;
        while (taken <= most && baseline.take("a.tov", rule.code, "-setup", false)) ++taken;
        // A folded finding is found any number of times.
        bool const isFolded = taken > most;
        fuzz::require(isFolded || !baseline.take("a.tov", rule.code, "-setup", false), "a finding is taken once", "");
        for (std::string const& word : baseline.wordsOf("a.tov", rule.code))
            baseline.takeWord("a.tov", rule.code, word);
    }
}

}  // namespace

void fuzz::run(std::string const& input) {
    try {
        tool::Baseline baseline(QByteArray(input.data(), static_cast<int>(input.size())));
        std::size_t const before = baseline.gone({"a.tov"}, tool::CodeSet(true));
        fuzz::require(before <= input.size(), "no more findings than bytes", input);
        takeAll(baseline, input.size());
        fuzz::require(baseline.gone({"a.tov"}, tool::CodeSet(true)) <= before, "what is taken is not gone", input);
        fuzz::require(baseline.gone({}, tool::CodeSet(true)) == 0, "files that are not checked lose nothing", input);
    } catch (tool::Trouble const& trouble) {
        fuzz::require(*trouble.what() != '\0', "an error has a reason", input);
    }
}
