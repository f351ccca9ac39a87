// The notifications of a client about its documents.

#include <utility>

#include "serve/diagnostics.h"
#include "serve/server.h"

namespace tool::lsp {

namespace {

std::optional<qint64> versionIn(QJsonObject const& document) {
    QJsonValue const version = document.value("version");
    if (version.isDouble()) return wholeNumber(version);
    if (version.isUndefined() || version.isNull()) return {};
    throw RpcError{ErrorCode::invalidParams, "'version' must be a number"};
}

}  // namespace

void Server::open(Params params) {
    if (!isActive_) applySettings();  // a client that leaves out "initialized"
    QJsonObject const item = objectIn(params, "textDocument");
    QString const uri = textIn(item, "uri");
    std::string const text = textIn(item, "text").toStdString();
    std::optional<qint64> const version = versionIn(item);
    std::unique_ptr<OpenDocument>& document = workspace_.documents[uri];
    if (document == nullptr) {
        document = std::make_unique<OpenDocument>();
        document->uri = uri;
        document->path = pathOf(uri);
    } else {
        outside_.complain("toveng: serve: the document was open: " + uri.toStdString());
    }
    document->version = version;
    document->analysis = nullptr;
    document->text.replaceAll(text);
    document->isDirty = true;
}

void Server::change(Params params) {
    OpenDocument& document = workspace_.documentIn(params);
    std::optional<qint64> const version = versionIn(objectIn(params, "textDocument"));
    for (QJsonValue const change : arrayIn(params, "contentChanges")) {
        try {
            applyChange(document, change);
        } catch (RpcError const& error) {
            outside_.complain("toveng: serve: textDocument/didChange: left out: " + error.message.toStdString());
        }
    }
    document.version = version;
    document.isDirty = true;
}

void Server::applyChange(OpenDocument& document, QJsonValue const& change) {
    QJsonObject const object = change.toObject();
    std::string const text = textIn(object, "text").toStdString();
    if (object.value("range").isUndefined()) {
        return apply(document, document.text.replaceAll(text));
    }
    QJsonObject const range = objectIn(object, "range");
    Place const start = workspace_.placeIn(document, objectIn(range, "start"));
    Place const end = workspace_.placeIn(document, objectIn(range, "end"));
    if (end < start) throw RpcError{ErrorCode::invalidParams, "the range ends before it starts"};
    apply(document, document.text.replace(start, end, text));
}

void Server::apply(OpenDocument& document, Splice const& splice) {
    if (document.analysis != nullptr) document.analysis->apply(splice);
}

void Server::close(Params params) {
    QString const uri = workspace_.documentIn(params).uri;
    workspace_.documents.erase(uri);
    notify("textDocument/publishDiagnostics", QJsonObject{{"uri", uri}, {"diagnostics", QJsonArray()}});
}

void Server::settle() {
    for (auto const& [uri, document] : workspace_.documents) {
        if (!std::exchange(document->isDirty, false)) continue;
        workspace_.analysisOf(*document);
        outside_.send(publishedDiagnostics(workspace_, *document));
    }
}

void Server::judgeAnew() {
    for (auto const& [uri, document] : workspace_.documents) {
        document->analysis = nullptr;
        document->isDirty = true;
    }
}

}  // namespace tool::lsp
