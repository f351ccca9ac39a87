// The code actions for the command at a position.

#include <QJsonArray>
#include <utility>

#include "serve/features.h"
#include "serve/line_edits.h"
#include "serve/line_words.h"
#include "text.h"

namespace tool::lsp {

namespace {

constexpr char const* fixKind = "quickfix";
constexpr char const* rewriteKind = "refactor.rewrite";

/// Collects the actions of the kinds that the client asks for.
class Actions {
public:
    Actions(Workspace const& workspace, OpenDocument const& document, QJsonArray only)
        : workspace_(workspace), document_(document), only_(std::move(only)) {}

    /// Whether the client asks for a kind, or for one that includes it.
    bool wants(QString const& kind) const {
        if (only_.isEmpty()) return true;
        for (QJsonValue const wanted : only_) {
            QString const name = wanted.toString();
            if (name.isEmpty() || kind == name || kind.startsWith(name + ".")) return true;
        }
        return false;
    }

    void add(QString const& title, char const* kind, QJsonObject const& range, QString const& text) {
        add(title, kind, {QJsonObject{{"range", range}, {"newText", text}}});
    }
    void add(QString const& title, char const* kind, QJsonArray const& edits) {
        if (!wants(kind) || edits.isEmpty()) return;
        actions_.append(QJsonObject{{"title", title}, {"kind", kind}, {"edit", workspace_.edit(document_, edits)}});
    }

    QJsonArray const& list() const { return actions_; }

private:
    Workspace const& workspace_;
    OpenDocument const& document_;
    QJsonArray only_;
    QJsonArray actions_;
};

// Whether a word of the line is the one that matches nothing. The name of `a[1]` without braces is `a[1`.
bool isMissing(Word const& word, MissingWord const& missing) {
    taDciObjTyp const type = missing.isClock ? taDciObjClock : missing.type;
    if (word.kind != WordKind::name || typeTitle(word.type) != typeTitle(type)) return false;
    return word.text == missing.text || word.text == missing.text + "]";
}

// Replaces missing names with the nearest ones.
void addNearNames(Actions& actions, Workspace const& workspace, OpenDocument& document, Statement const& statement) {
    DocumentAnalysis& analysis = workspace.analysisOf(document);
    LineWords const words = wordsOf(document.text.line(statement.first));
    for (Problem const& problem : analysis.problemsAt(statement.first)) {
        for (MissingWord const& missing : problem.words) {
            std::string const nearest = analysis.nearestTo(missing);
            if (nearest.empty()) continue;
            QString const name = toText(nearest);
            QJsonArray edits;
            for (Word const& word : words.words) {
                if (!isMissing(word, missing)) continue;
                QJsonObject const range =
                    workspace.range(document, {statement.first, word.begin}, {statement.first, word.end});
                QString const text = needsBraces(nearest) && !word.isBraced ? "{" + name + "}" : name;
                edits.append(QJsonObject{{"range", range}, {"newText", text}});
            }
            actions.add("Write " + name, fixKind, edits);
        }
    }
}

void addJoin(Actions& actions, Workspace const& workspace, OpenDocument const& document, Statement const& statement) {
    if (statement.kind != Statement::Kind::command || statement.count < 2 || statement.isOpen) return;
    std::vector<std::string_view> lines;
    for (std::size_t i = statement.first; i < statement.end(); ++i) lines.push_back(document.text.line(i));
    Place const end{statement.end() - 1, lines.back().size()};
    actions.add("Join the lines of the command", fixKind, workspace.range(document, {statement.first, 0}, end),
                QString::fromStdString(joinedLines(lines)));
}

void addLineEdits(Actions& actions, Workspace const& workspace, OpenDocument const& document, std::size_t number) {
    std::string_view const line = document.text.line(number);
    QJsonObject const range = document.text.lineRange(number, workspace.client.encoding);
    // A save writes its own white space at the ends of a line.
    QJsonObject const whole = workspace.range(document, {number, 0}, {number, line.size()});
    auto const add = [&](QString const& title, QJsonObject const& where, std::optional<std::string> const& text) {
        if (text) actions.add(title, rewriteKind, where, QString::fromStdString(*text));
    };
    bool isOn = false;
    std::optional<std::string> const switched = withOtherState(line, isOn);
    add("Write one command for each object", range, oneForEachObject(line));
    add(isOn ? "Disable the command" : "Enable the command", range, switched);
    add("Write the line as a save does", whole, asSaved(line));
}

}  // namespace

QJsonValue codeAction(Workspace const& workspace, QJsonObject const& params) {
    OpenDocument& document = workspace.documentIn(params);
    Place const place = workspace.placeIn(document, objectIn(objectIn(params, "range"), "start"));
    workspace.placeIn(document, objectIn(objectIn(params, "range"), "end"));
    Actions actions(workspace, document, at(params, {"context", "only"}).toArray());
    Statement const* const statement = workspace.analysisOf(document).statementAt(place.line);
    if (statement != nullptr) {
        addNearNames(actions, workspace, document, *statement);
        addJoin(actions, workspace, document, *statement);
    }
    if (statement == nullptr || !statement->goesOn()) addLineEdits(actions, workspace, document, place.line);
    return actions.list();
}

}  // namespace tool::lsp
