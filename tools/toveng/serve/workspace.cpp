#include "serve/workspace.h"

#include <QUrl>

namespace tool::lsp {

Client Client::of(QJsonObject const& params) {
    QJsonValue const can = params.value("capabilities");
    auto const isTrue = [&](std::initializer_list<char const*> fields) { return at(can, fields).toBool(); };
    Client client;
    if (at(can, {"general", "positionEncodings"}).toArray().contains("utf-8")) client.encoding = Encoding::utf8;
    client.readsMarkdown = at(can, {"textDocument", "hover", "contentFormat"}).toArray().contains("markdown");
    client.nestsSymbols = isTrue({"textDocument", "documentSymbol", "hierarchicalDocumentSymbolSupport"});
    client.versionsEdits = isTrue({"workspace", "workspaceEdit", "documentChanges"});
    client.hasSettings = isTrue({"workspace", "configuration"});
    client.reportsSettings = isTrue({"workspace", "didChangeConfiguration", "dynamicRegistration"});
    client.watchesFiles = isTrue({"workspace", "didChangeWatchedFiles", "dynamicRegistration"});
    client.knowsBasePaths = isTrue({"workspace", "didChangeWatchedFiles", "relativePatternSupport"});
    client.showsProgress = isTrue({"window", "workDoneProgress"});
    return client;
}

OpenDocument& Workspace::documentIn(QJsonObject const& params) const {
    QString const uri = textIn(objectIn(params, "textDocument"), "uri");
    auto const found = documents.find(uri);
    if (found == documents.end()) throw RpcError{ErrorCode::invalidParams, "the document is not open: " + uri};
    return *found->second;
}

Place Workspace::placeIn(OpenDocument const& document, QJsonObject const& position) const {
    auto const line = numberIn(position, "line");  // first, so that an error names it
    std::optional<Place> const place = document.text.placeAt(line, numberIn(position, "character"), client.encoding);
    if (!place) throw RpcError{ErrorCode::invalidParams, "the position is beyond the last line"};
    return *place;
}

DocumentAnalysis& Workspace::analysisOf(OpenDocument& document) const {
    if (document.analysis != nullptr) return *document.analysis;
    Rules rules;
    rules.isDesignPending = isDesignSet && design == nullptr;
    rules.match = match;
    rules.codes = codes;
    rules.documentName = document.path.empty() ? document.uri.toStdString() : document.path;
    if (design != nullptr) {
        rules.names = &design->names();
        rules.nearest = [cache = nearNames, names = rules.names](taDciObjTyp type, std::string const& word) {
            return cache->nearest(*names, type, word);
        };
    }
    // The document replaces its file among the files of the set; otherwise it comes last.
    std::vector<FileText>* texts = &rules.filesBefore;
    for (SetFile const& file : files) {
        if (file.path == document.path) {
            texts = &rules.filesAfter;
        } else {
            texts->push_back({file.name, file.isRead ? &file.lines : nullptr});
        }
    }
    document.analysis = std::make_unique<DocumentAnalysis>(document.text, std::move(rules));
    return *document.analysis;
}

QJsonObject Workspace::edit(OpenDocument const& document, QJsonArray const& edits) const {
    if (!client.versionsEdits) return {{"changes", QJsonObject{{document.uri, edits}}}};
    QJsonValue const version = document.version ? QJsonValue(*document.version) : QJsonValue();
    QJsonObject const target{{"uri", document.uri}, {"version", version}};
    return {{"documentChanges", QJsonArray{QJsonObject{{"textDocument", target}, {"edits", edits}}}}};
}

std::string pathOf(QString const& uri) {
    QUrl const url(uri);
    return url.isLocalFile() ? url.toLocalFile().toUtf8().toStdString() : std::string();
}

QString uriOf(std::string const& path) {
    return QString::fromUtf8(QUrl::fromLocalFile(QString::fromStdString(path)).toEncoded());
}

}  // namespace tool::lsp
