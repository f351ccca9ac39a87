// Where clocks and objects are defined and used.

#include <QJsonArray>

#include "serve/features.h"
#include "serve/uses.h"

namespace tool::lsp {

namespace {

std::optional<Subject> subjectIn(Workspace const& workspace, QJsonObject const& params) {
    OpenDocument const& document = workspace.documentIn(params);
    return Subject::at(workspace, document, workspace.placeIn(document, objectIn(params, "position")));
}

QJsonObject rangeOf(Workspace const& workspace, OpenDocument const& document, Use const& use) {
    return workspace.range(document, {use.line, use.begin}, {use.line, use.end});
}

QJsonObject locationOf(Workspace const& workspace, OpenDocument const& document, Use const& use) {
    return {{"uri", document.uri}, {"range", rangeOf(workspace, document, use)}};
}

QJsonObject locationOf(Workspace const& workspace, SetFile const& file, ClockDefinition const& clock) {
    Text line;
    line.replaceAll(file.lines[clock.line]);
    QJsonObject range = line.range({0, clock.begin}, {0, clock.end}, workspace.client.encoding);
    for (char const* end : {"start", "end"}) {
        QJsonObject position = range.value(QLatin1String(end)).toObject();
        position.insert("line", static_cast<qint64>(clock.line));
        range.insert(QLatin1String(end), position);
    }
    return {{"uri", uriOf(file.path)}, {"range", range}};
}

QJsonArray clockLocations(Workspace const& workspace, OpenDocument const& document, Subject const& subject) {
    QJsonArray locations;
    for (ClockDefinition const& clock : subject.clocks()) {
        locations.append(locationOf(workspace, document, Use{clock.line, clock.begin, clock.end}));
    }
    for (SetFile const* file : filesBeside(workspace, document)) {
        for (ClockDefinition const& clock : clocksIn(*file)) {
            if (standsFor(subject.text(), clock.name)) locations.append(locationOf(workspace, *file, clock));
        }
    }
    return locations;
}

}  // namespace

QJsonValue definition(Workspace const& workspace, QJsonObject const& params) {
    OpenDocument const& document = workspace.documentIn(params);
    std::optional<Subject> const subject = subjectIn(workspace, params);
    if (!subject) return {};
    if (subject->isClock()) return clockLocations(workspace, document, *subject);
    std::vector<Use> const uses = subject->uses();
    if (uses.empty()) return QJsonArray();
    return QJsonArray{locationOf(workspace, document, uses.front())};
}

QJsonValue references(Workspace const& workspace, QJsonObject const& params) {
    OpenDocument const& document = workspace.documentIn(params);
    std::optional<Subject> const subject = subjectIn(workspace, params);
    if (!subject) return {};
    bool const withDefinitions = at(params, {"context", "includeDeclaration"}).toBool(true);
    QJsonArray locations;
    for (Use const& use : subject->uses()) {
        if (withDefinitions || !use.isDefinition) locations.append(locationOf(workspace, document, use));
    }
    return locations;
}

QJsonValue documentHighlight(Workspace const& workspace, QJsonObject const& params) {
    constexpr int read = 2;
    constexpr int write = 3;
    OpenDocument const& document = workspace.documentIn(params);
    std::optional<Subject> const subject = subjectIn(workspace, params);
    if (!subject) return {};
    QJsonArray highlights;
    for (Use const& use : subject->uses()) {
        highlights.append(
            QJsonObject{{"range", rangeOf(workspace, document, use)}, {"kind", use.isDefinition ? write : read}});
    }
    return highlights;
}

}  // namespace tool::lsp
