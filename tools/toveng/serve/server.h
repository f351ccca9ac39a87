#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "serve/channel.h"
#include "serve/settings.h"
#include "serve/watched_files.h"
#include "serve/workspace.h"

namespace tool::lsp {

/// The effects of a server on its environment.
struct Outside {
    std::function<void(QByteArray const& message)> send;           ///< to the client
    std::function<void(std::string const& line)> complain;         ///< on standard error
    std::function<void(int number, std::string path)> loadDesign;  ///< number 0 stops loading
    std::function<void(DesignPtr design)> disposeDesign;
};

/// A language server: receives messages and answers them. Used by one thread.
class Server {
public:
    /// Paths are relative to `folder` unless the client has a workspace.
    Server(Outside outside, Settings commandLine, std::string folder);

    /// Handles an event. settle() publishes the changes.
    void handle(Event const& event);
    /// Publishes the changes. Call it when no more events wait, or from time to time.
    void settle();
    /// Call it a few times a second while isWatching().
    void tick();
    bool isWatching() const { return watched_.isWatching() || isPulling_; }

    bool hasEnded() const { return hasEnded_; }
    /// Returns 0 if the client shut the server down before the end.
    int status() const { return state_ == State::shutDown ? 0 : 1; }

private:
    enum class State { created, initialized, shutDown };
    using Params = QJsonObject const&;
    struct NotificationRow {
        char const* method;
        void (Server::*run)(Params params);
    };
    using Answered = std::function<void(QJsonValue const& result, bool isError)>;

    // Messages
    void handleMessage(Incoming const& incoming);
    void handleRequest(QJsonValue const& id, QString const& method, QJsonObject const& message, bool isCancelled);
    QJsonValue answer(QString const& method, QJsonValue const& params);
    void handleNotification(QString const& method, QJsonValue const& params);
    void handleResponse(QJsonObject const& message);
    void send(QJsonObject const& message);
    void notify(char const* method, QJsonValue const& params) { send(notification(method, params)); }
    void ask(char const* method, QJsonValue const& params, Answered answered);
    QJsonObject initialize(QJsonObject const& params);

    // Notifications
    void initialized(Params params);
    void open(Params params);
    void change(Params params);
    void close(Params params);
    void changeConfiguration(Params params);
    void changeWatchedFiles(Params params);
    void ignore(Params) {}
    void applyChange(OpenDocument& document, QJsonValue const& change);
    static void apply(OpenDocument& document, Splice const& splice);

    // Settings
    void pullSettings();
    void applySettings();
    void readFiles(QStringList& problems);
    std::string absolute(QString const& path) const;
    void showProblems(QStringList const& problems);
    void judgeAnew();

    // The design
    void startDesign();
    void loadDesign();
    void handleDesign(DesignEvent const& event);
    void startProgress();
    void showProgress(int percent);
    void endProgress();
    QString progressToken() const;
    void sendProgress(char const* kind, QJsonObject value);
    void watchFiles();
    QString registrationId() const;
    void registerFor(QString const& id, char const* method, QJsonObject const& options, Answered answered);
    void fileChanged(std::string const& path);

    static NotificationRow const notifications[];

    Outside outside_;
    State state_ = State::created;
    bool hasEnded_ = false;
    bool isActive_ = false;  ///< the settings are in force
    std::string folder_;
    Workspace workspace_;
    SettingLayers layers_;
    Settings settings_;
    QStringList shownProblems_;

    std::int64_t lastRequest_ = 0;
    std::map<std::int64_t, Answered> asked_;
    bool isPulling_ = false;  ///< the client has not sent its settings yet
    std::chrono::steady_clock::time_point pullEnds_;

    std::int64_t lastPull_ = 0;

    std::string designPath_;
    int designNumber_ = 0;
    struct {
        int number = 0;
        int percent = 0;
        bool isShown = false;  ///< the client shows it
    } progress_;
    WatchedFiles watched_;
    int registration_ = 0;  ///< registration of the watched files with the client; 0: none
    int lastRegistration_ = 0;
};

}  // namespace tool::lsp
