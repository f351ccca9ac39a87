#include "document.h"

#include <QStringList>
#include <fstream>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "tov/make_command.h"

using namespace kiri::tov;

namespace {

constexpr char const* whiteSpace = " \t\n\r\v\f";

class CommentLine : public TovCmd {
public:
    explicit CommentLine(std::string text) : text_(std::move(text)) {}
    std::string toSaveString(TOV*) override { return text_; }

private:
    std::string text_;
};

}  // namespace

Kind const kinds[kindCount] = {
    {"Clocks", "create_clock -period 10 -name clock"},
    {"Generated clocks", "create_generated_clock -divide_by 2 -name clock"},
    {"Clock groups", "set_clock_groups -asynchronous"},
    {"Input delays", "set_input_delay 0"},
    {"Output delays", "set_output_delay 0"},
    {"Maximum delays", "set_max_delay 0"},
    {"Minimum delays", "set_min_delay 0"},
    {"Multicycle paths", "set_multicycle_path 2"},
    {"False paths", "set_false_path"},
    {"Attributes", "#attribute port name attribute value type"},
    {"Comments and unknown lines", "# "},
    {"Comments of attributes", "# "},
};

QString toText(std::string const& bytes) {
    QByteArray const raw = QByteArray::fromStdString(bytes);
    QString text = QString::fromUtf8(raw);
    return text.toUtf8() == raw ? text : QString::fromLatin1(raw);
}

std::string toBytes(QString text, std::string const& replaced) {
    for (QChar const end : {QChar('\n'), QChar('\r'), QChar(QChar::Null)}) text.replace(end, ' ');
    bool const wasLatin1 = QString::fromUtf8(replaced.c_str()).toUtf8().toStdString() != replaced;
    std::string latin1 = text.toLatin1().toStdString();
    return wasLatin1 && toText(latin1) == text ? latin1 : text.toUtf8().toStdString();
}

std::unique_ptr<TovCmd> readLine(std::string const& line, int& kind) {
    kind = -1;
    std::size_t const begin = line.find_first_not_of(whiteSpace);
    if (begin == std::string::npos) return nullptr;
    try {
        TOVCMD_TYPE list = TOVCMD_NONE;
        std::unique_ptr<TovCmd> cmd = makeCommand(line, &list);
        if (cmd) kind = list - TOVCMD_CLOCK;
        std::string text = line.substr(begin, line.find_last_not_of(whiteSpace) + 1 - begin);
        if (cmd || text.rfind("#attribute", 0) == 0) return cmd;
        kind = commentKind;
        return std::make_unique<CommentLine>(std::move(text));
    } catch (std::out_of_range const&) {
        return nullptr;  // no load gets beyond this line
    }
}

bool isLoss(TovFinding const& finding) {
    return finding.kind != TOVFINDING_UNKNOWN_COMMAND && finding.kind != TOVFINDING_MISSING_NAME;
}

QString sentenceOf(TovFinding const& finding) {
    return QString("%1: %2").arg(QString(findingCode(finding.kind)).replace('-', ' '), toText(finding.text));
}

Document::Document(std::unique_ptr<TOV> tov, TovDesignNames const* names) : tov_(std::move(tov)) {
    takeComments(commentKind, tov_->sdcCommentText);
    takeComments(commentKind + 1, tov_->attributeCommentText);
    for (int kind = 0; kind < kindCount; ++kind) {
        List& list = listOf(kind);
        rows_[kind].reserve(list.size());
        for (auto cmd = list.begin(); cmd != list.end(); ++cmd) rows_[kind].push_back({cmd, count(kind)});
    }
    if (names != nullptr) names_ = join(*names);
}

Document::~Document() {
    for (List& list : comments_) {
        for (TovCmd* line : list) delete line;
    }
}

Document::List& Document::listOf(int kind) {
    if (kind >= commandKinds) return comments_[kind - commandKinds];
    return *tov_->getTovCmdList(static_cast<TOVCMD_TYPE>(kind + TOVCMD_CLOCK));
}

void Document::takeComments(int kind, std::string const& text) {
    for (std::size_t begin = 0, end = 0; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1) {
        TovCmd*& line = listOf(kind).emplace_back(nullptr);
        line = new CommentLine(text.substr(begin, end - begin));
    }
}

QString Document::text(Place at) const {
    return toText(isDraft(at) ? command(at).note : savedLine(at));
}

// Report to the document's names which commands leave and come.
void Document::leaves(int kind, TovCmd& cmd) {
    if (names_ && kind < commandKinds) names_->remove(cmd);
}

void Document::comes(int kind, TovCmd& cmd) {
    if (names_ && kind < commandKinds) names_->add(cmd);
}

// A change of a clock's definition may change what is to be said about every other command.
void Document::changed(int kind) {
    if (names_ && kind <= TOVCMD_GENCLOCK - TOVCMD_CLOCK) forgetRemarks();
}

Document::Commands Document::take(int kind, std::vector<int> const& rows) {
    Commands taken;
    taken.reserve(rows.size());
    std::vector<Row>& all = rows_[kind];
    std::size_t kept = rows.empty() ? all.size() : static_cast<std::size_t>(rows.front());
    for (std::size_t i = kept; i < all.size(); ++i) {
        if (taken.size() < rows.size() && static_cast<std::size_t>(rows[taken.size()]) == i) {
            leaves(kind, **all[i].at);
            forgetRemark(all[i]);
            taken.emplace_back(*all[i].at);
            listOf(kind).erase(all[i].at);
        } else {
            all[kept++] = all[i];
        }
    }
    all.resize(kept);
    changed(kind);
    return taken;
}

void Document::insert(int kind, std::vector<int> const& rows, Commands cmds) {
    List& list = listOf(kind);
    std::vector<Row>& all = rows_[kind];
    std::vector<Row> merged;
    merged.reserve(all.size() + rows.size());
    std::size_t old = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        while (merged.size() < static_cast<std::size_t>(rows[i])) merged.push_back(all[old++]);
        auto const at = list.insert(old < all.size() ? all[old].at : list.end(), cmds[i].get());
        merged.push_back({at, -1});
        comes(kind, *cmds[i].release());
    }
    merged.insert(merged.end(), all.begin() + static_cast<std::ptrdiff_t>(old), all.end());
    all.swap(merged);
    changed(kind);
}

void Document::exchange(Place at, std::unique_ptr<TovCmd>& cmd) {
    leaves(at.kind, command(at));
    cmd.reset(std::exchange(*row(at).at, cmd.release()));
    comes(at.kind, command(at));
    forgetRemark(row(at));
    changed(at.kind);
}

void Document::exchangeState(Place at, bool& enabled, std::string& draft) {
    leaves(at.kind, command(at));
    std::swap(command(at).enabled, enabled);
    std::swap(command(at).note, draft);
    comes(at.kind, command(at));
    forgetRemark(row(at));
    changed(at.kind);
}

std::optional<Document::Place> Document::search(Place from, bool backwards,
                                                std::function<bool(Place)> const& wanted) const {
    int const step = backwards ? -1 : 1;
    Place at = {from.kind, backwards ? from.row - 1 : from.row};
    for (int visited = 0; visited <= kindCount; ++visited) {
        for (; at.row >= 0 && at.row < count(at.kind); at.row += step) {
            if (wanted(at)) return at;
        }
        at.kind = (at.kind + step + kindCount) % kindCount;
        at.row = backwards ? count(at.kind) - 1 : 0;
    }
    return std::nullopt;
}

std::optional<Document::Place> Document::placeOf(TovCmd const& cmd) const {
    return search({0, 0}, false, [&](Place at) { return &command(at) == &cmd; });
}

// The commands of a file are numbered as a load does; comments, in which a load leaves out the headers, are found by
// their text.
std::optional<Document::Place> Document::placeOfLine(std::string const& path, std::size_t line) const {
    std::ifstream file(path);
    int kind = -1;
    int numbers[kindCount] = {};
    std::string text;
    std::unique_ptr<TovCmd> cmd;
    for (std::size_t i = 0; i < line && std::getline(file, text); ++i) {
        cmd = readLine(text.substr(0, text.find('\0')), kind);
        if (kind >= 0) ++numbers[kind];
    }
    if (!cmd) return std::nullopt;
    std::string const wanted = cmd->toSaveString(nullptr);
    return search({kind, 0}, false, [&](Place at) {
        if (kind == commentKind) return at.kind >= commentKind && savedLine(at) == wanted;
        return at.kind == kind && row(at).original == numbers[kind] - 1;
    });
}

// The join keeps what it has looked up: after one question for all names, a remark costs no look-up.
Document::Join Document::join(TovDesignNames const& names) const {
    auto join = std::make_unique<TovDocumentNames>(*tov_, names);
    static_cast<void>(join->missing());
    return join;
}

void Document::setNames(Join names) {
    names_ = std::move(names);
    forgetRemarks();
}

std::vector<TovCmd*> Document::commandsOf(TovNode const& node) const {
    return names_ ? names_->commandsOf(node) : std::vector<TovCmd*>();
}

QString Document::remarkOn(std::string const& line, int kind, TovCmd* cmd) const {
    QStringList remarks;
    if (cmd == nullptr) remarks << QString("not a line of \"%1\" yet").arg(kinds[kind].title);
    for (TovFinding const& finding : checkTovLine(line)) remarks << sentenceOf(finding);
    if (cmd != nullptr && cmd->enabled && names_ && kind < commandKinds) {
        for (TovNameUse const& use : names_->missingIn(*cmd))
            remarks << sentenceOf({0, TOVFINDING_MISSING_NAME, use.word});
    }
    return remarks.join("; ");
}

QString Document::remarkOn(QString const& text, int kind) const {
    std::string const line = toBytes(text);
    int found = -1;
    std::unique_ptr<TovCmd> const cmd = readLine(line, found);
    return remarkOn(line, kind, found == std::min(kind, commentKind) ? cmd.get() : nullptr);
}

QString Document::remark(Place at) const {
    return row(at).remark > none ? remarks_[static_cast<std::size_t>(row(at).remark - 1)] : QString();
}

void Document::makeRemark(Place at) {
    QString text = isDraft(at) ? remarkOn(this->text(at), at.kind) : remarkOn(savedLine(at), at.kind, &command(at));
    forgetRemark(row(at));
    row(at).remark = none;
    if (text.isEmpty()) return;
    remarks_.push_back(std::move(text));
    row(at).remark = static_cast<std::int32_t>(remarks_.size());
    ++remarkCount_;
}

void Document::forgetRemark(Row& row) {
    if (row.remark > none) --remarkCount_;
    row.remark = unknown;
}

void Document::forgetRemarks() {
    for (auto& rows : rows_) {
        for (Row& row : rows) row.remark = unknown;
    }
    remarks_.clear();
    remarkCount_ = 0;
}

bool Document::save(std::string const& path, std::string& error) {
    std::string* const texts[] = {&tov_->sdcCommentText, &tov_->attributeCommentText};
    for (int i = 0; i < kindCount - commandKinds; ++i) {
        texts[i]->clear();
        for (TovCmd* line : comments_[i]) *texts[i] += line->toSaveString(nullptr) + '\n';
    }
    if (!tov_->saveAtomically(path.c_str(), &error)) return false;
    for (auto& rows : rows_) {
        for (std::size_t i = 0; i < rows.size(); ++i) rows[i].original = static_cast<std::int32_t>(i);
    }
    return true;
}
