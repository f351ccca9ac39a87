// The meaning of a word in a line.

#include <QStringList>
#include <algorithm>

#include "serve/features.h"
#include "serve/uses.h"
#include "text.h"

using namespace kiri::tov;

namespace tool::lsp {

namespace {

constexpr std::size_t shownAtMost = 10;

constexpr taDciObjTyp nodeTypes[] = {taDciObjPort, taDciObjPin, taDciObjNet, taDciObjCell, taDciObjClock};

/// The text of a hover, in the format that the client supports.
class Page {
public:
    explicit Page(bool isMarkdown) : isMarkdown_(isMarkdown) {}

    QString code(QString const& text) const { return isMarkdown_ ? "`" + text + "`" : text; }
    void add(QString const& line) {
        bool const isParagraph = isMarkdown_ && !lines_.isEmpty() && !line.startsWith("- ");
        lines_.append((isParagraph ? "\n" : "") + line);
    }
    void addList(QStringList const& entries, std::size_t all) {
        for (QString const& entry : entries) add("- " + code(entry));
        if (all > shownAtMost) add(QString("- and %1 more").arg(all - shownAtMost));
    }
    QJsonObject contents() const {
        return {{"kind", isMarkdown_ ? "markdown" : "plaintext"}, {"value", lines_.join("\n")}};
    }
    bool isEmpty() const { return lines_.isEmpty(); }

private:
    bool isMarkdown_;
    QStringList lines_;
};

QString plural(std::size_t count, std::string_view title) {
    return QString("%1 %2%3").arg(count).arg(toText(title), count == 1 ? "" : "s");
}

void addNodes(Page& page, Workspace const& workspace, Subject const& subject, TovNameMatch match) {
    bool isFound = false;
    for (taDciObjTyp type : nodeTypes) {
        bool const isAsked =
            subject.isClock() ? type == taDciObjClock : subject.type() == taDciObjName || subject.type() == type;
        if (!isAsked) continue;
        std::vector<TovNode const*> nodes;
        workspace.design->names().find(type, subject.text(), nodes, subject.isClock() ? TOVMATCH_FLAT : match);
        if (nodes.empty()) continue;
        isFound = true;
        QStringList names;
        for (std::size_t i = 0; i < std::min(nodes.size(), shownAtMost); ++i) {
            names.append(toText(workspace.design->names().nameOf(*nodes[i])));
        }
        page.add(QString("%1 of the design:").arg(plural(nodes.size(), typeTitle(type))));
        page.addList(names, nodes.size());
    }
    if (!isFound && !subject.isClock())
        page.add(QString("No such %1 in the design.").arg(toText(typeTitle(subject.type()))));
}

void addClocks(Page& page, Workspace const& workspace, OpenDocument const& document, Subject const& subject) {
    std::size_t shown = 0;
    for (ClockDefinition const& clock : subject.clocks()) {
        if (++shown > shownAtMost) break;
        page.add(QString("Clock %1, line %2%3:")
                     .arg(page.code(QString::fromStdString(clock.name)))
                     .arg(clock.line + 1)
                     .arg(clock.isEnabled ? "" : ", disabled"));
        page.add("- " + page.code(toText(document.text.line(clock.line)).trimmed()));
    }
    for (SetFile const* file : filesBeside(workspace, document)) {
        for (ClockDefinition const& clock : clocksIn(*file)) {
            if (!standsFor(subject.text(), clock.name) || ++shown > shownAtMost) continue;
            page.add(QString("Clock %1, %2:%3")
                         .arg(page.code(QString::fromStdString(clock.name)), QString::fromStdString(file->name))
                         .arg(clock.line + 1));
        }
    }
    if (shown == 0 && subject.nodes().empty()) page.add("No such clock.");
}

void addUses(Page& page, Subject const& subject) {
    QStringList lines;
    std::size_t count = 0;
    for (Use const& use : subject.uses()) {
        bool const isHere = use.line == subject.use().line && use.begin == subject.use().begin;
        if (isHere || use.isDefinition || ++count > shownAtMost) continue;
        lines.append(QString::number(use.line + 1));
    }
    if (count == 0) {
        page.add("Not used elsewhere in this document.");
        return;
    }
    lines.removeDuplicates();
    page.add(QString("Also used in line%1 %2%3.")
                 .arg(lines.size() == 1 ? "" : "s", lines.join(", "),
                      count > shownAtMost ? QString(" and %1 more places").arg(count - shownAtMost) : QString()));
}

void addWord(Page& page, LineWords const& line, Word const& word) {
    if (word.kind == WordKind::keyword) {
        CommandInfo const* const command = findCommand(word.text);
        if (command == nullptr) return;
        page.add(page.code(toText(command->keyword) + " " + toText(command->usage)));
        page.add(toText(command->meaning) + ".");
    }
    if (word.kind == WordKind::query) {
        if (QueryInfo const* const query = findQuery(word.text)) {
            page.add(page.code(toText(query->word)) + ": " + toText(query->meaning) + ".");
        }
    }
    if (word.kind != WordKind::option || line.command == nullptr) return;
    if (OptionInfo const* const option = findOption(*line.command, word.text)) {
        page.add(page.code(toText(option->name)) + ": " + toText(option->meaning) + ".");
    }
}

}  // namespace

QJsonValue hover(Workspace const& workspace, QJsonObject const& params) {
    OpenDocument const& document = workspace.documentIn(params);
    Place const place = workspace.placeIn(document, objectIn(params, "position"));
    LineWords const line = wordsOf(document.text.line(place.line));
    Word const* const word = line.at(place.byte);
    if (word == nullptr) return {};
    Page page(workspace.client.readsMarkdown);
    addWord(page, line, *word);
    if (std::optional<Subject> const subject = Subject::at(workspace, document, place)) {
        if (subject->isClock()) addClocks(page, workspace, document, *subject);
        if (workspace.design != nullptr && word->isJudged) {
            addNodes(page, workspace, *subject, word->isLocal ? TOVMATCH_LOCAL : workspace.match);
        }
        if (workspace.design == nullptr && !subject->isClock()) page.add("No design is loaded.");
        addUses(page, *subject);
    }
    if (page.isEmpty()) return {};
    return QJsonObject{{"contents", page.contents()},
                       {"range", workspace.range(document, {place.line, word->begin}, {place.line, word->end})}};
}

}  // namespace tool::lsp
