#include "serve/server.h"

#include <QJsonDocument>
#include <exception>
#include <new>
#include <utility>

#include "serve/features.h"
#include "tov/version.h"

namespace tool::lsp {

namespace {

QJsonObject capabilities(Client const& client) {
    constexpr int incremental = 2;
    return {
        {"positionEncoding", client.encoding == Encoding::utf8 ? "utf-8" : "utf-16"},
        {"textDocumentSync", QJsonObject{{"openClose", true}, {"change", incremental}, {"save", true}}},
        {"hoverProvider", true},
        {"completionProvider", QJsonObject{{"triggerCharacters", QJsonArray{"-", "[", "{", "/"}}}},
        {"definitionProvider", true},
        {"referencesProvider", true},
        {"documentHighlightProvider", true},
        {"documentSymbolProvider", true},
        {"renameProvider", QJsonObject{{"prepareProvider", true}}},
        {"codeActionProvider", QJsonObject{{"codeActionKinds", QJsonArray{"quickfix", "refactor.rewrite"}}}},
    };
}

bool isId(QJsonValue const& id) {
    return id.isString() || id.isDouble();
}

QJsonObject paramsOf(QJsonValue const& params) {
    if (params.isObject() || params.isUndefined() || params.isNull()) return params.toObject();
    throw RpcError{ErrorCode::invalidParams, "'params' must be an object"};
}

}  // namespace

Server::NotificationRow const Server::notifications[] = {
    {"initialized", &Server::initialized},
    {"textDocument/didOpen", &Server::open},
    {"textDocument/didChange", &Server::change},
    {"textDocument/didClose", &Server::close},
    {"textDocument/didSave", &Server::ignore},
    {"workspace/didChangeConfiguration", &Server::changeConfiguration},
    {"workspace/didChangeWatchedFiles", &Server::changeWatchedFiles},
};

Server::Server(Outside outside, Settings commandLine, std::string folder)
    : outside_(std::move(outside)), folder_(std::move(folder)) {
    layers_.set(SettingLayers::commandLine, std::move(commandLine));
}

void Server::handle(Event const& event) {
    if (auto const* const incoming = std::get_if<Incoming>(&event)) return handleMessage(*incoming);
    if (auto const* const design = std::get_if<DesignEvent>(&event)) return handleDesign(*design);
    hasEnded_ = true;
}

void Server::handleMessage(Incoming const& incoming) {
    if (incoming.form == Incoming::Form::broken) {
        return send(errorResponse({}, {ErrorCode::parseError, "not a message: the header or the JSON is broken"}));
    }
    QJsonObject const& message = incoming.message;
    QJsonValue const id = message.value("id");
    QJsonValue const method = message.value("method");
    bool const isResponse = method.isUndefined() && (message.contains("result") || message.contains("error"));
    if (isResponse) return handleResponse(message);
    if (!method.isString() || (message.contains("id") && !isId(id))) {
        return send(errorResponse(isId(id) ? id : QJsonValue(), {ErrorCode::invalidRequest, "not a request"}));
    }
    if (isId(id)) return handleRequest(id, method.toString(), message, incoming.isCancelled);
    handleNotification(method.toString(), message.value("params"));
}

void Server::handleRequest(QJsonValue const& id, QString const& method, QJsonObject const& message, bool isCancelled) {
    try {
        if (isCancelled) throw RpcError{ErrorCode::requestCancelled, "cancelled"};
        QJsonValue const result = answer(method, message.value("params"));
        send(response(id, result));
    } catch (RpcError const& error) {
        send(errorResponse(id, error));
    } catch (std::bad_alloc const&) {
        send(errorResponse(id, {ErrorCode::internalError, "out of memory"}));
    }
}

QJsonValue Server::answer(QString const& method, QJsonValue const& params) {
    if (state_ == State::created) {
        if (method == "initialize") return initialize(paramsOf(params));
        throw RpcError{ErrorCode::serverNotInitialized, "the first request must be 'initialize'"};
    }
    if (state_ == State::shutDown) throw RpcError{ErrorCode::invalidRequest, "the server was shut down"};
    if (method == "initialize") throw RpcError{ErrorCode::invalidRequest, "the server is initialized"};
    if (method == "shutdown") {
        state_ = State::shutDown;
        return {};
    }
    Feature const feature = findFeature(method);
    if (feature == nullptr) throw RpcError{ErrorCode::methodNotFound, "unknown method: " + method};
    return feature(workspace_, paramsOf(params));
}

void Server::handleNotification(QString const& method, QJsonValue const& params) {
    if (method == "exit") {
        hasEnded_ = true;
        return;
    }
    if (state_ != State::initialized) return;
    for (NotificationRow const& row : notifications) {
        if (method != QLatin1String(row.method)) continue;
        try {
            (this->*row.run)(paramsOf(params));
        } catch (RpcError const& error) {
            outside_.complain("toveng: serve: " + method.toStdString() + ": " + error.message.toStdString());
        }
    }
}

void Server::handleResponse(QJsonObject const& message) {
    QJsonValue const id = message.value("id");
    auto const found = asked_.find(id.isDouble() ? wholeNumber(id) : -1);
    if (found == asked_.end()) return;
    Answered const answered = std::move(found->second);
    asked_.erase(found);
    if (answered) answered(message.value("result"), message.contains("error"));
}

void Server::send(QJsonObject const& message) {
    outside_.send(QJsonDocument(message).toJson(QJsonDocument::Compact));
}

void Server::ask(char const* method, QJsonValue const& params, Answered answered) {
    asked_[++lastRequest_] = std::move(answered);
    send(request(lastRequest_, method, params));
}

QJsonObject Server::initialize(QJsonObject const& params) {
    state_ = State::initialized;
    workspace_.client = Client::of(params);
    QJsonValue const folder = params.value("workspaceFolders").toArray().at(0).toObject().value("uri");
    std::string const root = pathOf(folder.isString() ? folder.toString() : params.value("rootUri").toString());
    QString const rootPath = params.value("rootPath").toString();
    if (!root.empty()) {
        folder_ = root;
    } else if (!rootPath.isEmpty()) {
        folder_ = rootPath.toStdString();
    }
    layers_.set(SettingLayers::initialization, params.value("initializationOptions"));
    return {{"capabilities", capabilities(workspace_.client)},
            {"serverInfo", QJsonObject{{"name", "toveng"}, {"version", kiri::tov::versionText()}}}};
}

}  // namespace tool::lsp
