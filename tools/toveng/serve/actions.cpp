// What a client may do to the command at a place.

#include <QJsonArray>

#include "serve/features.h"
#include "serve/line_edits.h"

namespace tool::lsp {

namespace {

constexpr char const* rewriteKind = "refactor.rewrite";

/// Collects the actions of the kinds that the client asks for.
class Actions {
public:
    Actions(Workspace const& workspace, OpenDocument const& document, QJsonArray only)
        : workspace_(workspace), document_(document), only_(std::move(only)) {}

    /// Whether a kind is asked for, by itself or by one that it belongs to.
    bool wants(QString const& kind) const {
        if (only_.isEmpty()) return true;
        for (QJsonValue const& wanted : only_) {
            QString const name = wanted.toString();
            if (name.isEmpty() || kind == name || kind.startsWith(name + ".")) return true;
        }
        return false;
    }

    void add(QString const& title, char const* kind, QJsonObject const& range, QString const& text) {
        if (!wants(kind)) return;
        QJsonArray const edits{QJsonObject{{"range", range}, {"newText", text}}};
        actions_.append(QJsonObject{{"title", title}, {"kind", kind}, {"edit", workspace_.edit(document_, edits)}});
    }

    QJsonArray const& list() const { return actions_; }

private:
    Workspace const& workspace_;
    OpenDocument const& document_;
    QJsonArray only_;
    QJsonArray actions_;
};

void addLineEdits(Actions& actions, Workspace const& workspace, OpenDocument const& document, std::size_t number) {
    std::string_view const line = document.text.line(number);
    QJsonObject const range = document.text.lineRange(number, workspace.client.encoding);
    auto const add = [&](QString const& title, std::optional<std::string> const& text) {
        if (text) actions.add(title, rewriteKind, range, QString::fromStdString(*text));
    };
    bool isOn = false;
    std::optional<std::string> const switched = withOtherState(line, isOn);
    add("Write one command for each object", oneForEachObject(line));
    add(isOn ? "Disable the command" : "Enable the command", switched);
    add("Write the line as a save does", asSaved(line));
}

}  // namespace

QJsonValue codeAction(Workspace const& workspace, QJsonObject const& params) {
    OpenDocument const& document = workspace.documentIn(params);
    Place const place = workspace.placeIn(document, objectIn(objectIn(params, "range"), "start"));
    workspace.placeIn(document, objectIn(objectIn(params, "range"), "end"));
    Actions actions(workspace, document, at(params, {"context", "only"}).toArray());
    addLineEdits(actions, workspace, document, place.line);
    return actions.list();
}

}  // namespace tool::lsp
