#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "serve/channel.h"
#include "serve/design_loader.h"
#include "serve/framing.h"
#include "serve/server.h"
#include "serve/transport.h"

namespace conversation {

/// A server in this process, and the client that talks to it.
class Conversation {
public:
    explicit Conversation(std::string const& folder, tool::lsp::Settings const& settings = {})
        : loader_([this](tool::lsp::DesignEvent event) { channel_.push({tool::lsp::Event(std::move(event))}); }),
          server_({[this](QByteArray const& message) { sent_.push_back(QJsonDocument::fromJson(message).object()); },
                   [this](std::string const& line) { complaints_.push_back(line); },
                   [this](int number, std::string path) {
                       isLoading_ = number != 0;
                       number == 0 ? loader_.stop() : loader_.load(number, std::move(path));
                   },
                   [this](tool::lsp::DesignPtr design) { loader_.dispose(std::move(design)); }},
                  settings, folder) {}

    /// Sends bytes unchanged and all at once, and lets the server work until it has nothing to do.
    void send(std::string_view bytes) {
        framer_.append(bytes);
        std::vector<tool::lsp::Event> events = messagesIn(framer_, log_);
        if (!events.empty()) channel_.push(std::move(events));
        work();
    }

    static std::string framed(QJsonObject const& message) {
        std::string const body = QJsonDocument(message).toJson(QJsonDocument::Compact).toStdString();
        return "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    }

    void notify(char const* method, QJsonObject const& params) {
        send(framed({{"jsonrpc", "2.0"}, {"method", method}, {"params", params}}));
    }

    /// Sends a request and returns its answer, the whole message.
    QJsonObject request(QString const& method, QJsonObject const& params) {
        int const id = ++lastId_;
        send(framed({{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", params}}));
        for (auto message = sent_.begin(); message != sent_.end(); ++message) {
            if (message->contains("method") || message->value("id") != id) continue;
            QJsonObject answer = *message;
            sent_.erase(message);
            return answer;
        }
        return {};
    }

    void open(QString const& uri, std::string const& text, int version = 1) {
        notify("textDocument/didOpen", {{"textDocument", QJsonObject{{"uri", uri},
                                                                     {"languageId", "toveng"},
                                                                     {"version", version},
                                                                     {"text", QString::fromStdString(text)}}}});
    }

    void change(QString const& uri, int version, QJsonArray const& changes) {
        notify("textDocument/didChange",
               {{"textDocument", QJsonObject{{"uri", uri}, {"version", version}}}, {"contentChanges", changes}});
    }

    /// Waits until the design has been loaded. Until then, no event of the load is delivered.
    void waitForDesign() {
        for (tool::lsp::Event const& event : std::exchange(held_, {})) handle(event);
        while (isLoading_) handle(channel_.take(std::chrono::seconds(60)));
        work();
    }

    void tick() {
        if (server_.isWatching()) server_.tick();
        work();
    }

    /// Returns and clears what the server has sent since the last call.
    std::vector<QJsonObject> take() { return std::exchange(sent_, {}); }
    std::vector<std::string> takeComplaints() { return std::exchange(complaints_, {}); }
    tool::lsp::Server& server() { return server_; }

private:
    void handle(std::optional<tool::lsp::Event> const& event) {
        if (!event) {
            isLoading_ = false;  // too late: the missing messages fail the test
            return;
        }
        auto const* const design = std::get_if<tool::lsp::DesignEvent>(&*event);
        if (design != nullptr && design->percent == 100 && (design->design != nullptr || !design->error.empty())) {
            isLoading_ = false;
        }
        server_.handle(*event);
    }

    void work() {
        while (std::optional<tool::lsp::Event> event = channel_.take({})) {
            bool const isMessage = std::holds_alternative<tool::lsp::Incoming>(*event);
            isMessage ? handle(event) : held_.push_back(std::move(*event));
        }
        server_.settle();
    }

    tool::lsp::Log log_{""};
    tool::lsp::Channel channel_;
    tool::lsp::Framer framer_;
    std::vector<QJsonObject> sent_;
    std::vector<std::string> complaints_;
    std::deque<tool::lsp::Event> held_;  // of the design: they are delivered when the test waits for them
    bool isLoading_ = false;
    int lastId_ = 0;
    tool::lsp::DesignLoader loader_;
    tool::lsp::Server server_;
};

}  // namespace conversation
