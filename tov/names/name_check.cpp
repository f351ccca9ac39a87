#include "tov/names/name_check.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <optional>
#include <utility>

#include "tov/io/error_text_p.h"
#include "tov/io/file_p.h"
#include "tov/io/line_reader_p.h"
#include "tov/line_checker_p.h"
#include "tov/names/document_clocks.h"
#include "tov/names/questions.h"
#include "tov/names/reference_words.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

/// Finds the names of a file that are missing. Judges clocks at the end of the file, as later lines may define them.
class NameChecker {
public:
    NameChecker(TovDesignNames const& names, TovNameMatch match) : names_(names), match_(match) {}

    void check(std::size_t line, TovCmd& cmd) {
        clocks_.addForGood(cmd);
        if (!cmd.enabled) return;
        for (ReferenceWord const& word : referenceWords(cmd)) {
            if (holdsVariable(word.text)) continue;
            Questions::Id const id = questions_.put(Questions::of(word, match_));
            if (!questions_.isFoundIn(names_, id)) suspects_.push_back({line, id});
        }
    }

    /// Adds what is missing to the findings, which are in the order of the lines.
    void addTo(std::vector<TovFinding>& findings) {
        for (Questions::Id id = 0; id < questions_.size(); ++id) {
            Questions::Question const question = questions_[id];
            bool const isClock = questions_.answer(id) == Questions::Answer::missing && question.mayBeClock() &&
                                 clocks_.has(std::string(question.word));
            if (isClock) questions_.setAnswer(id, Questions::Answer::found);
        }
        std::vector<TovFinding> missing;
        for (auto const& [line, id] : suspects_) {
            if (questions_.answer(id) == Questions::Answer::found) continue;
            bool const isFirst = missing.empty() || missing.back().line != line;
            if (isFirst) missing.push_back({line, TOVFINDING_MISSING_NAME, ""});
            std::string& text = missing.back().text;
            if (!isFirst) text += ' ';
            text += questions_[id].word;
        }
        std::vector<TovFinding> all;
        all.reserve(findings.size() + missing.size());
        auto const moved = [](auto at) { return std::make_move_iterator(at); };
        std::merge(moved(findings.begin()), moved(findings.end()), moved(missing.begin()), moved(missing.end()),
                   std::back_inserter(all), [](TovFinding const& a, TovFinding const& b) { return a.line < b.line; });
        findings.swap(all);
    }

private:
    struct Suspect {
        std::size_t line;
        Questions::Id question;
    };

    TovDesignNames const& names_;
    TovNameMatch match_;
    DocumentClocks clocks_;
    Questions questions_;
    std::vector<Suspect> suspects_;  // what the design lacks
};

}  // namespace

bool checkTovFile(char const* path, TovCheckOptions const& options, std::vector<TovFinding>& findings,
                  std::string* error) {
    std::vector<TovFinding> found;
    std::string problem;
    std::optional<NameChecker> names;
    if (options.names != nullptr) names.emplace(*options.names, options.match);
    File const file = openForReading(path);
    if (!file.isOpen()) problem = systemText(errno);
    ProgressMeter meter(options.progress, file.isOpen() ? bytesLeft(file) : 0);
    LineReader lines(file, &meter);
    LineChecker checker;
    bool goesOn = file.isOpen();
    for (std::string_view line; goesOn && lines.next(line);) {
        goesOn = checker.check(line, found);
        if (names && goesOn && checker.command() != nullptr) names->check(checker.number(), *checker.command());
    }
    if (names) names->addTo(found);
    if (lines.error() != 0) problem = systemText(lines.error());
    if (goesOn && problem.empty() && !meter.stopped()) meter.finish();
    meter.rethrow();
    if (meter.stopped()) problem = stoppedText;
    bool const isWhole = problem.empty();
    if (error != nullptr) error->swap(problem);
    findings.swap(found);
    return isWhole;
}

}  // namespace kiri::tov
