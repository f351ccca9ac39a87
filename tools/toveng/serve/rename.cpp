// Renames a clock in its definitions and its uses in the document.

#include <QJsonArray>
#include <algorithm>

#include "serve/features.h"
#include "serve/uses.h"

namespace tool::lsp {

namespace {

[[noreturn]] void refuse(QString const& reason) {
    throw RpcError{ErrorCode::requestFailed, reason};
}

QString quoted(std::string_view text) {
    return "'" + QString::fromUtf8(text.data(), static_cast<int>(text.size())) + "'";
}

// Returns the clock at a place that may be renamed; otherwise refuses with the reason.
Subject renamable(Workspace const& workspace, OpenDocument const& document, QJsonObject const& params) {
    Place const place = workspace.placeIn(document, objectIn(params, "position"));
    std::optional<Subject> subject = Subject::at(workspace, document, place);
    if (!subject || !subject->isClock()) refuse("Only clocks can be renamed.");
    QString const name = quoted(subject->text());
    if (subject->use().isPattern) refuse(name + " is a pattern; rename the clock where its name is written.");
    if (subject->clocks().empty()) refuse("No command of this document defines the clock " + name + ".");
    for (ClockDefinition const& clock : subject->clocks()) {
        if (!clock.hasName) refuse("The clock " + name + " has no -name; its name is that of its target.");
    }
    return std::move(*subject);
}

void refuseUnlessFree(Workspace const& workspace, OpenDocument const& document, std::string const& name) {
    bool const isPlain = !name.empty() && std::string_view("-$@#").find(name.front()) == std::string_view::npos &&
                         std::all_of(name.begin(), name.end(), [](char c) {
                             return static_cast<unsigned char>(c) > ' ' && c != 0x7f &&
                                    std::string_view("{}[]\"\\*?;$").find(c) == std::string_view::npos;
                         });
    if (!isPlain) refuse(quoted(name) + " cannot be the name of a clock.");
    auto const isTaken = [&](std::vector<ClockDefinition> const& clocks) {
        return std::any_of(clocks.begin(), clocks.end(),
                           [&](auto const& clock) { return standsFor(name, clock.name); });
    };
    std::vector<SetFile const*> const files = filesBeside(workspace, document);
    bool const isInFile = std::any_of(files.begin(), files.end(), [&](auto* file) { return isTaken(clocksIn(*file)); });
    bool const isInDesign = workspace.design != nullptr && workspace.design->names().has(taDciObjClock, name);
    if (isTaken(clocksIn(document.text)) || isInFile || isInDesign) {
        refuse("Another clock already has the name " + quoted(name) + ".");
    }
}

}  // namespace

QJsonValue prepareRename(Workspace const& workspace, QJsonObject const& params) {
    OpenDocument const& document = workspace.documentIn(params);
    Subject const subject = renamable(workspace, document, params);
    Use const& use = subject.use();
    return QJsonObject{{"range", workspace.range(document, {use.line, use.begin}, {use.line, use.end})},
                       {"placeholder", QString::fromStdString(subject.text())}};
}

QJsonValue rename(Workspace const& workspace, QJsonObject const& params) {
    OpenDocument const& document = workspace.documentIn(params);
    QString const newName = textIn(params, "newName");
    Subject const subject = renamable(workspace, document, params);
    std::string const name = newName.toStdString();
    QJsonArray edits;
    if (name != subject.text()) refuseUnlessFree(workspace, document, name);
    for (Use const& use : subject.uses()) {
        if (use.isPattern) {
            refuse(QString("A pattern in line %1 matches the clock.").arg(use.line + 1));
        }
        edits.append(QJsonObject{{"range", workspace.range(document, {use.line, use.begin}, {use.line, use.end})},
                                 {"newText", newName}});
    }
    return workspace.edit(document, edits);
}

}  // namespace tool::lsp
