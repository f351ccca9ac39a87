#include "tov/names/name_check.h"

#include <optional>
#include <utility>

#include "tov/check/line_checker_p.h"
#include "tov/constraint_line_p.h"
#include "tov/io/error_text_p.h"
#include "tov/io/file_p.h"
#include "tov/io/line_reader_p.h"
#include "tov/names/document_clocks_p.h"
#include "tov/names/questions_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

/// Finds the missing names in the commands of a file.
class MissingNames {
public:
    MissingNames(TovDesignNames const& names, TovNameMatch match) : names_(names), match_(match) {}

    /// Adds the clocks that a file defines, up to a line that ends the load.
    void readClocks(LineReader lines) {
        for (std::string_view text; lines.next(text);) {
            ConstraintLine const line(text);
            if (line.kind == nullptr) continue;
            if (line.kind->list != TOVCMD_CLOCK && line.kind->list != TOVCMD_GENCLOCK) continue;
            std::unique_ptr<TovCmd> cmd;
            if (!line.makeCommand(cmd).ok()) return;
            clocks_.addForGood(*cmd);
        }
    }

    /// Returns the missing uses of an enabled command; valid until the next call.
    std::vector<TovNameUse> const& in(TovCmd& cmd) {
        missing_.clear();
        if (!cmd.enabled) return missing_;
        for (ReferenceWord const& word : referenceWords(cmd, match_)) {
            if (holdsVariable(word.text)) continue;
            Questions::Question const question = Questions::of(word);
            if (isFound(questions_.put(question))) continue;
            missing_.push_back({&cmd, word.role, word.type, std::string(word.text), question.match});
        }
        return missing_;
    }

private:
    bool isFound(Questions::Id id) {
        bool const isNew = questions_.answer(id) == Questions::Answer::unknown;
        if (isNew && !questions_.isFoundIn(names_, id)) {
            Questions::Question const question = questions_[id];
            bool const isClock = question.mayBeClock() && clocks_.has(std::string(question.word));
            if (isClock) questions_.setAnswer(id, Questions::Answer::found);
        }
        return questions_.answer(id) == Questions::Answer::found;
    }

    TovDesignNames const& names_;
    TovNameMatch match_;
    DocumentClocks clocks_;
    Questions questions_;
    std::vector<TovNameUse> missing_;
};

/// Finds the findings of a file line by line.
class FileCheck {
public:
    FileCheck(std::optional<MissingNames>& names, TovFindingVisitor const& visit) : names_(names), visit_(visit) {}

    /// Returns false if the line is the last one: it ends the load, or the visitor stops the check.
    bool check(std::string_view line) {
        findings_.clear();
        bool const goesOn = checker_.check(line, findings_);
        for (TovFinding const& finding : findings_) {
            if (!visit(finding, line, {})) return false;
        }
        if (!goesOn || !names_ || checker_.command() == nullptr) return goesOn;
        std::vector<TovNameUse> const& missing = names_->in(*checker_.command());
        if (missing.empty()) return true;
        std::string words;
        for (TovNameUse const& use : missing) words.append(words.empty() ? "" : " ").append(use.word);
        return visit({checker_.number(), TOVFINDING_MISSING_NAME, std::move(words)}, line, missing);
    }

    bool isStopped() const { return stopped_; }

private:
    bool visit(TovFinding const& finding, std::string_view line, std::vector<TovNameUse> const& missing) {
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        stopped_ = !visit_(finding, std::string(line), missing);
        return !stopped_;
    }

    std::optional<MissingNames>& names_;
    TovFindingVisitor const& visit_;
    LineChecker checker_;
    std::vector<TovFinding> findings_;
    bool stopped_ = false;
};

// Reads a file to its end, or until reading fails.
Result readAll(File const& file, std::string& text) {
    constexpr std::size_t chunk = std::size_t{64} * 1024;
    for (std::size_t size = 0;; size = text.size()) {
        text.resize(size + chunk);
        std::size_t got = 0;
        Result result = readSome(file, text.data() + size, chunk, got);
        text.resize(size + got);
        if (got == 0) return result;
    }
}

constexpr std::pair<taDciObjTyp, char const*> typeNames[] = {
    {taDciObjPort, "port"}, {taDciObjSourcePort, "port"}, {taDciObjPin, "pin"},   {taDciObjPin2, "pin"},
    {taDciObjNet, "net"},   {taDciObjSourceNet, "net"},   {taDciObjCell, "cell"}, {taDciObjClock, "clock"},
};

char const* nameOf(taDciObjTyp type) {
    for (auto const& [known, name] : typeNames) {
        if (known == type) return name;
    }
    return "object";
}

/// Checks the lines of an open file. Fails if it does not reach the end.
Result checkLines(File const& file, TovCheckOptions const& options, TovFindingVisitor const& visit) {
    Result result;
    std::optional<MissingNames> names;
    std::optional<std::string> text;
    if (options.names != nullptr) {
        names.emplace(*options.names, options.match);
        if (!rewind(file)) result = readAll(file, text.emplace());
        names->readClocks(text ? LineReader(*text) : LineReader(file));
        if (!text) rewind(file);
    }
    ProgressMeter meter(options.progress, bytesLeft(file));
    LineReader lines = text ? LineReader(*text, &meter) : LineReader(file, &meter);
    FileCheck checker(names, visit);
    bool goesOn = true;
    for (std::string_view line; goesOn && lines.next(line);) goesOn = checker.check(line);
    if (result.ok()) result = lines.takeResult();
    if (goesOn && result.ok() && !meter.stopped()) meter.finish();
    meter.rethrow();
    if (meter.stopped()) return stoppedLoad();
    if (checker.isStopped()) return {failureStopped, "The caller stopped the check"};
    return result;
}

}  // namespace

bool checkTovFile(char const* path, TovCheckOptions const& options, TovFindingVisitor const& visit,
                  std::string* error) {
    File file;
    Result result = openForReading(path, file);
    if (result.ok()) result = checkLines(file, options, visit);
    if (error != nullptr) *error = result.message();
    return result.ok();
}

bool checkTovFile(char const* path, TovCheckOptions const& options, std::vector<TovFinding>& findings,
                  std::string* error) {
    std::vector<TovFinding> found;
    auto const keep = [&found](TovFinding const& finding, std::string const&, std::vector<TovNameUse> const&) {
        found.push_back(finding);
        return true;
    };
    bool const isWhole = checkTovFile(path, options, keep, error);
    findings.swap(found);
    return isWhole;
}

std::string missingMessage(TovNameUse const& missing, TovDesignNames const& names) {
    std::string const nearest = names.nearest(missing.type, missing.word);
    std::string const message = missingMessage(missing);
    // A local match does not find a whole path, which is its own nearest name.
    bool const isNear = !nearest.empty() && nearest != missing.word;
    return isNear ? message + errorText("; did you mean " + quoted(nearest) + "?") : message;
}

std::string missingMessage(TovNameUse const& missing) {
    return errorText("no such " + std::string(nameOf(missing.type)) + ": " + quoted(missing.word));
}

}  // namespace kiri::tov
