#include "set_check.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "analysis/words.h"
#include "text.h"
#include "tov/make_command.h"

using namespace kiri::tov;

namespace tool {

namespace {

std::string utf8(std::string const& bytes) {
    return toText(bytes).toStdString();
}

NearNames::Search searchIn(Design const* design) {
    if (design == nullptr) return {};
    return [design](taDciObjTyp type, std::string const& word) { return design->names->nearest(type, word); };
}

std::string savedLine(std::string const& line) {
    std::unique_ptr<TovCmd> const cmd = makeCommand(line);
    return cmd == nullptr ? line : cmd->toSaveString(nullptr);
}

}  // namespace

SetCheck::SetCheck(CheckOptions const& options, Design const* design, Report& report, CheckCounts& counts)
    : options_(options),
      report_(report),
      counts_(counts),
      judge_(design == nullptr ? nullptr : design->names.get(), options.match),
      set_(design != nullptr),
      near_(set_.clocks(), searchIn(design)) {}

void SetCheck::read(Input const& input, SlowProgress& progress) {
    files_.push_back({input, spots_.size()});
    File& file = files_.back();
    std::uint64_t done = 0;
    try {
        FileLines lines(input);
        StatementScanner scanner(lines);
        std::string_view line;
        bool isWhole = true;
        for (std::size_t at = 0; isWhole && lines.get(at, line);) {
            Statement const statement = scanner.at(at);
            Judgement const judgement = judge_.judge(statement, lines, Detail::codes);
            add(statement, judgement, file);
            isWhole = !judgement.endsLoad;
            at = statement.end();
            lines.forgetBefore(at);
            constexpr std::uint64_t step = 65536;
            if (lines.bytesRead() - done >= step)
                progress.add(lines.bytesRead() - std::exchange(done, lines.bytesRead()));
        }
        if (!isWhole) set_.setCut();
    } catch (Trouble const& trouble) {
        progress.clear();
        report_.addTrouble(trouble.what());
        set_.setCut();
    }
    progress.add(input.size() - std::min(done, input.size()));
    file.end = spots_.size();
}

void SetCheck::add(Statement const& statement, Judgement const& judgement, File& file) {
    Facts const& facts = judgement.facts;
    bool const hasFindings = !judgement.findings.empty();
    if (!hasFindings && !facts.isCompared && facts.missing.empty() && facts.clocks.empty() && !facts.hidesClocks)
        return;
    spots_.push_back({static_cast<std::uint32_t>(statement.first), static_cast<std::uint32_t>(statement.count),
                      statement.kind, statement.isOpen, hasFindings,
                      judgement.findings.size() == 1 && Folding::isByWords(judgement.findings[0].code)});
    set_.append(facts);
    for (Finding const& finding : judgement.findings) {
        file.folding.add(finding.code, finding.text, finding.line + 1, statement.end());
    }
}

void SetCheck::tell() {
    set_.update();
    std::size_t first = 0;
    for (File& file : files_) {
        if (options_.baseline != nullptr && options_.isFolded) {
            applyBaseline(file, Code::unknownCommand);
            applyBaseline(file, Code::continuedLine);
        }
        try {
            tell(file, first);
        } catch (Trouble const& trouble) {
            report_.addTrouble(trouble.what());
        }
        first = file.end;
    }
}

// Drops the first words that are in the baseline from the findings that are folded by them.
void SetCheck::applyBaseline(File& file, Code code) {
    Cause const* const cause = file.folding.causeOf(code, {});
    if (cause == nullptr || !options_.codes.has(code)) return;
    std::string const name = utf8(file.input.name());
    std::set<std::string> const& known = options_.baseline->wordsOf(name, code);
    std::set<std::string> dropped;
    for (Cause::Word const& word : cause->words) {
        if (known.count(utf8(word.text)) == 0) continue;
        options_.baseline->takeWord(name, code, utf8(word.text));
        dropped.insert(word.text);
    }
    file.folding.drop(code, dropped);
    if (cause->words.empty()) ++counts_.leftOut;
}

// Whether the line is the first one of the findings that are folded by the first words of commands.
bool SetCheck::beginsCause(File const& file, std::size_t line) {
    for (Code code : {Code::unknownCommand, Code::continuedLine}) {
        Cause const* const cause = file.folding.causeOf(code, {});
        if (cause != nullptr && cause->line == line) return true;
    }
    return false;
}

void SetCheck::tell(File& file, std::size_t first) {
    std::optional<FileLines> lines;
    for (std::size_t place = first; place < file.end; ++place) {
        Spot const& spot = spots_[place];
        bool const isTold =
            spot.hasFindings && !(spot.isFirstWord && options_.isFolded && !beginsCause(file, spot.line + 1));
        if (!isTold && set_.findingsOf(place).empty()) continue;
        if (!lines) lines.emplace(file.input);
        tell(file, place, *lines);
    }
}

void SetCheck::tell(File& file, std::size_t place, FileLines& lines) {
    Spot const& spot = spots_[place];
    Statement const statement{spot.line, spot.count, spot.kind, spot.isOpen};
    lines.forgetBefore(statement.first);
    std::vector<Finding> findings;
    if (spot.hasFindings) findings = judge_.judge(statement, lines, Detail::messages).findings;
    std::vector<SetFinding> const others = set_.findingsOf(place);
    for (SetFinding const& other : others) {
        std::string_view line;
        lines.get(statement.first, line);
        std::string text;
        for (MissingWord const& word : other.words) addWord(text, word.text);
        if (other.code != Code::missingName) text = savedLine(std::string(line));
        auto const [otherFile, otherLine] = lineOf(other.other);
        std::string message = messageOf(other, set_, place, otherFile + ":" + std::to_string(otherLine), near_);
        findings.push_back({statement.first, other.code, std::move(text), std::move(message)});
    }
    std::stable_sort(findings.begin(), findings.end(), [](Finding const& a, Finding const& b) {
        return std::tie(a.line, a.code) < std::tie(b.line, b.code);
    });
    for (Finding const& finding : findings) tell(file, finding, others, lines);
}

void SetCheck::tell(File& file, Finding const& finding, std::vector<SetFinding> const& others, FileLines& lines) {
    bool const isAlwaysTold = finding.code == Code::endsLoad;
    if (!isAlwaysTold && !options_.codes.has(finding.code)) return;
    Rule const& rule = ruleOf(finding.code);
    Told told{file.input.name(), finding.line + 1, rule.name, finding.text, finding.message};
    told.severity = rule.severity;
    Cause const* const cause = options_.isFolded ? file.folding.causeOf(finding.code, finding.text) : nullptr;
    if (cause != nullptr) {
        if (cause->line != told.line) return;
        told.count = cause->count;
        told.message = foldedMessage(finding.code, *cause, finding.message);
        told.text.clear();
        for (Cause::Word const& word : cause->words) addWord(told.text, word.text);
    }
    if (!isAlwaysTold && isInBaseline(told.file, finding.code, told.text, told.count > 1)) return;
    for (SetFinding const& other : others) {
        if (other.code == finding.code && other.words.empty()) {
            std::tie(told.relatedFile, told.relatedLine) = lineOf(other.other);
        }
    }
    std::string_view source;
    lines.get(finding.line, source);
    told.source = source;
    report_.add(told);
    counts_.add(finding.code);
}

bool SetCheck::isInBaseline(std::string const& file, Code code, std::string const& text, bool isFolded) {
    if (options_.baseline == nullptr) return false;
    bool isKnown = false;
    if (!Folding::isByWords(code)) {
        isKnown = options_.baseline->take(utf8(file), code, utf8(text), isFolded);
    } else if (!options_.isFolded) {
        isKnown = options_.baseline->wordsOf(utf8(file), code).count(utf8(text)) > 0;
        if (isKnown) options_.baseline->takeWord(utf8(file), code, utf8(text));
    }
    if (isKnown) ++counts_.leftOut;
    return isKnown;
}

std::pair<std::string, std::size_t> SetCheck::lineOf(std::size_t place) const {
    auto const file = std::find_if(files_.begin(), files_.end(), [place](File const& f) { return place < f.end; });
    return {file->input.name(), spots_[place].line + std::size_t{1}};
}

}  // namespace tool
