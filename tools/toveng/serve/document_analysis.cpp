#include "serve/document_analysis.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

#include "analysis/words.h"

using namespace kiri::tov;

namespace tool::lsp {

namespace {

/// The lines of the text as a file: a line feed at the end does not begin another line.
class TextLines : public Lines {
public:
    explicit TextLines(Text const& text) : text_(text) {}

    bool get(std::size_t index, std::string_view& line) override {
        if (index >= text_.lineCount()) return false;
        line = text_.line(index);
        return !line.empty() || index + 1 < text_.lineCount();
    }

private:
    Text const& text_;
};

template <class T>
void replacePart(std::vector<T>& all, std::size_t first, std::size_t last, std::vector<T>& others) {
    std::size_t const shared = std::min(last - first, others.size());
    auto const at = all.begin() + static_cast<std::ptrdiff_t>(first);
    auto const middle = others.begin() + static_cast<std::ptrdiff_t>(shared);
    auto const after = std::move(others.begin(), middle, at);
    if (shared < last - first) all.erase(after, all.begin() + static_cast<std::ptrdiff_t>(last));
    all.insert(all.begin() + static_cast<std::ptrdiff_t>(first + shared), std::make_move_iterator(middle),
               std::make_move_iterator(others.end()));
}

}  // namespace

DocumentAnalysis::DocumentAnalysis(Text const& text, Rules rules)
    : text_(text), rules_(std::move(rules)), judge_(rules_.names, rules_.match), set_(rules_.names != nullptr) {
    addFiles(rules_.filesBefore);
    offset_ = set_.size();
    apply({0, 0, text.lineCount()});
    addFiles(rules_.filesAfter);
}

void DocumentAnalysis::addFiles(std::vector<FileText> const& files) {
    for (FileText const& file : files) {
        if (file.lines == nullptr) {  // it cannot be read
            isFileCut_ = true;
            continue;
        }
        LinesInMemory lines(*file.lines);
        StatementScanner scanner(lines);
        bool endsLoad = false;
        for (std::size_t line = 0; !endsLoad && line < file.lines->size();) {
            Statement const statement = scanner.at(line);
            Judgement const judgement = judge_.judge(statement, lines, Detail::codes);
            set_.append(judgement.facts);
            fileStatements_.push_back({&file.name, line});
            endsLoad = judgement.endsLoad;
            line = statement.end();
        }
        isFileCut_ = isFileCut_ || endsLoad;
    }
    set_.setCut(isCut_ || isFileCut_);
}

DocumentAnalysis::Record DocumentAnalysis::judge(Lines& lines, Statement const& statement, Facts& facts,
                                                 bool& endsLoad) const {
    Judgement judgement = judge_.judge(statement, lines, Detail::messages);
    facts = std::move(judgement.facts);
    endsLoad = judgement.endsLoad;
    Record record;
    if (judgement.findings.empty()) return record;
    record.own = std::make_unique<Own>(Own{statement.first, {}});
    for (Finding& finding : judgement.findings) {
        record.own->problems.push_back(
            {finding.line - statement.first, finding.code, std::move(finding.text), std::move(finding.message)});
    }
    return record;
}

// Commands that are left open before the edit usually stay open in the same lines.
std::size_t DocumentAnalysis::firstChanged(StatementScanner& scanner, std::size_t line) const {
    std::size_t first = firstTouched(statements_, line);
    for (; first + 1 < statements_.size() && statements_[first].end() <= line; ++first) {
        Statement const& old = statements_[first];
        if (!old.isOpen) continue;
        Statement const now = scanner.at(old.first);
        if (!now.isOpen || now.count != old.count) break;
    }
    return first;
}

// Scans from the first statement that the edit affects up to an old one that begins where the next one would.
void DocumentAnalysis::apply(Splice const& splice) {
    TextLines lines(text_);
    StatementScanner scanner(lines);
    std::size_t const first = firstChanged(scanner, splice.first);
    std::size_t line = statements_.empty() ? 0 : statements_[first].first;
    std::size_t const removedEnd = splice.first + splice.removed;
    auto const moved = [&](std::size_t old) { return old - splice.removed + splice.added; };
    std::size_t last = first;
    std::vector<Statement> statements;
    std::vector<Record> records;
    std::vector<Facts> facts;
    bool endsLoad = false;
    for (; !endsLoad && line < text_.lineCount(); line = statements.back().end()) {
        auto const isBefore = [&](Statement const& old) { return old.first < removedEnd || moved(old.first) < line; };
        while (last < statements_.size() && isBefore(statements_[last])) ++last;
        if (last < statements_.size() && moved(statements_[last].first) == line) break;
        statements.push_back(scanner.at(line));
        records.push_back(judge(lines, statements.back(), facts.emplace_back(), endsLoad));
    }
    bool const reachesOld = !endsLoad && line < text_.lineCount();
    if (!reachesOld) last = statements_.size();
    isCut_ = endsLoad || (isCut_ && reachesOld);
    bool const isMoved = splice.added != splice.removed;
    for (std::size_t i = last; isMoved && i < statements_.size(); ++i)
        statements_[i].first = moved(statements_[i].first);
    set_.replace(offset_ + first, last - first, facts);
    replacePart(statements_, first, last, statements);
    replacePart(records_, first, last, records);
    set_.setCut(isCut_ || isFileCut_);
}

void DocumentAnalysis::refresh() {
    for (std::size_t place : set_.takeTouched()) {
        if (place < offset_ || place - offset_ >= statements_.size()) continue;
        records_[place - offset_].hasOthers = !set_.findingsOf(place).empty();
    }
}

bool DocumentAnalysis::isTold(Code code) const {
    bool const isOfNames = code == Code::missingName || code == Code::undefinedClock;
    if (isOfNames && rules_.isDesignPending) return false;
    return code == Code::endsLoad || rules_.codes.has(code);
}

// Findings between statements name lines, which move, so they are created again.
std::vector<Problem> DocumentAnalysis::problemsOf(std::size_t index, NearNames& near) {
    Record& record = records_[index];
    Statement const& statement = statements_[index];
    if (record.own != nullptr && statement.goesOn() && record.own->first != statement.first) {
        TextLines lines(text_);
        Facts facts;
        bool endsLoad = false;
        record.own = judge(lines, statement, facts, endsLoad).own;
    }
    std::vector<Problem> problems;
    if (record.own != nullptr) problems = record.own->problems;
    std::vector<SetFinding> others;
    if (record.hasOthers) others = set_.findingsOf(offset_ + index);
    for (SetFinding& other : others) {
        std::string text;
        for (MissingWord const& word : other.words) addWord(text, word.text);
        std::string message = messageOf(other, set_, offset_ + index, placeOf(other.other), near);
        problems.push_back({0, other.code, std::move(text), std::move(message), std::move(other.words)});
    }
    std::stable_sort(problems.begin(), problems.end(), [](Problem const& a, Problem const& b) {
        return std::tie(a.line, a.code) < std::tie(b.line, b.code);
    });
    auto const isSilent = [this](Problem const& problem) { return !isTold(problem.code); };
    problems.erase(std::remove_if(problems.begin(), problems.end(), isSilent), problems.end());
    for (Problem& problem : problems) problem.line += statement.first;
    return problems;
}

std::string DocumentAnalysis::placeOf(std::size_t place) const {
    if (place >= offset_ && place - offset_ < statements_.size()) {
        return rules_.documentName + ":" + std::to_string(statements_[place - offset_].first + 1);
    }
    std::size_t const index = place < offset_ ? place : place - statements_.size();
    if (index >= fileStatements_.size()) return {};
    return *fileStatements_[index].file + ":" + std::to_string(fileStatements_[index].line + 1);
}

void DocumentAnalysis::forEachProblem(Visitor const& visit) {
    refresh();
    NearNames near(set_.clocks(), rules_.nearest);
    for (std::size_t i = 0; i < records_.size(); ++i) {
        if (records_[i].own == nullptr && !records_[i].hasOthers) continue;
        for (Problem const& problem : problemsOf(i, near)) visit(problem);
    }
}

std::size_t DocumentAnalysis::indexAt(std::size_t line) const {
    auto const after = std::upper_bound(statements_.begin(), statements_.end(), line,
                                        [](std::size_t at, Statement const& s) { return at < s.first; });
    auto const index = static_cast<std::size_t>(after - statements_.begin());
    return index > 0 && line < statements_[index - 1].end() ? index - 1 : statements_.size();
}

Statement const* DocumentAnalysis::statementAt(std::size_t line) const {
    std::size_t const index = indexAt(line);
    return index < statements_.size() ? &statements_[index] : nullptr;
}

std::vector<Problem> DocumentAnalysis::problemsAt(std::size_t line) {
    refresh();
    std::size_t const index = indexAt(line);
    if (index == statements_.size()) return {};
    NearNames near(set_.clocks(), rules_.nearest);
    return problemsOf(index, near);
}

}  // namespace tool::lsp
