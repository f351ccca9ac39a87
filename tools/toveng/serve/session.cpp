// Settings, and the files that they name.

#include <QDir>
#include <algorithm>
#include <exception>
#include <utility>

#include "file_lines.h"
#include "input.h"
#include "serve/server.h"
#include "text.h"

namespace tool::lsp {

namespace {

constexpr int errorMessage = 1;
constexpr int warningMessage = 2;
constexpr std::chrono::seconds patienceForSettings{2};

// Files of other tools may be Latin-1.
std::vector<std::string> linesOf(tool::Input const& input) {
    FileLines file(input);
    std::vector<std::string> lines;
    for (std::string_view line; file.get(lines.size(), line); file.forgetBefore(lines.size())) {
        lines.push_back(toText(line).toStdString());
    }
    return lines;
}

}  // namespace

void Server::initialized(Params) {
    if (workspace_.client.reportsSettings) {
        constexpr char const* method = "workspace/didChangeConfiguration";
        registerFor("toveng/settings", method, QJsonObject{{"section", "toveng"}}, {});
    }
    if (workspace_.client.hasSettings) pullSettings();
    applySettings();
}

void Server::changeConfiguration(Params params) {
    layers_.set(SettingLayers::pushed, params.value("settings"));
    if (workspace_.client.hasSettings) pullSettings();
    applySettings();
}

void Server::pullSettings() {
    isPulling_ = true;
    pullEnds_ = std::chrono::steady_clock::now() + patienceForSettings;
    QJsonObject const params{{"items", QJsonArray{QJsonObject{{"section", "toveng"}}}}};
    ask("workspace/configuration", params, [this, number = lastRequest_ + 1](QJsonValue const& result, bool isError) {
        if (number == lastPull_) isPulling_ = false;  // otherwise another answer will come
        if (!isError) layers_.set(SettingLayers::pulled, result.toArray().at(0));
        applySettings();
    });
    lastPull_ = lastRequest_;
}

std::string Server::absolute(QString const& path) const {
    return QDir::cleanPath(QDir(QString::fromStdString(folder_)).filePath(path)).toStdString();
}

// Do not load the design before the client's answer, which may name another one.
void Server::applySettings() {
    isActive_ = true;
    settings_ = layers_.merged();
    QStringList problems = layers_.problems();
    workspace_.match = settings_.match.value_or(kiri::tov::TOVMATCH_LEVELS);
    workspace_.codes = settings_.codes();
    workspace_.isDesignSet = !settings_.design.value_or(QString()).isEmpty();
    readFiles(problems);
    showProblems(problems);
    if (!isPulling_) startDesign();
}

void Server::readFiles(QStringList& problems) {
    judgeAnew();  // the documents refer to the files
    workspace_.files.clear();
    for (QString const& name : settings_.files.value_or(QStringList())) {
        SetFile file{absolute(name), name.toStdString(), {}};
        try {
            file.lines = linesOf(tool::Input(file.path, Content::constraints));
            file.isRead = true;
        } catch (Trouble const& trouble) {
            problems.append(QString::fromStdString(trouble.what()));
        }
        workspace_.files.push_back(std::move(file));
    }
    watchFiles();
}

void Server::showProblems(QStringList const& problems) {
    for (QString const& problem : problems) {
        if (shownProblems_.contains(problem)) continue;
        notify("window/showMessage", QJsonObject{{"type", warningMessage}, {"message", problem}});
    }
    shownProblems_ = problems;
}

void Server::startDesign() {
    QString const name = settings_.design.value_or(QString());
    std::string const path = name.isEmpty() ? "" : absolute(name);
    if (path == designPath_) return;
    designPath_ = path;
    judgeAnew();  // the documents refer to the design
    outside_.disposeDesign(std::exchange(workspace_.design, nullptr));
    watchFiles();
    loadDesign();
}

void Server::loadDesign() {
    ++designNumber_;
    outside_.loadDesign(designPath_.empty() ? 0 : designNumber_, designPath_);
    endProgress();
    if (!designPath_.empty()) startProgress();
}

void Server::handleDesign(DesignEvent const& event) {
    if (event.number != designNumber_ || designPath_.empty()) return;
    showProgress(event.percent);
    if (event.percent < 100) return;
    if (event.design == nullptr) {
        notify("window/showMessage", QJsonObject{{"type", errorMessage}, {"message", toText(event.error)}});
        return;
    }
    judgeAnew();  // the documents refer to the previous design
    workspace_.nearNames = std::make_shared<NearNameCache>();
    outside_.disposeDesign(std::exchange(workspace_.design, event.design));
}

// The client creates the progress token first. Even if the design is loaded by then, its progress begins and ends.
void Server::startProgress() {
    if (!workspace_.client.showsProgress) return;
    progress_ = {designNumber_, 0, false};
    ask("window/workDoneProgress/create", QJsonObject{{"token", progressToken()}},
        [this, number = designNumber_](QJsonValue const&, bool isError) {
            if (number != progress_.number || isError) return;
            progress_.isShown = true;
            sendProgress("begin", {{"title", "Loading the design"}, {"percentage", 0}});
            if (progress_.percent >= 100) endProgress();
        });
}

void Server::showProgress(int percent) {
    progress_.percent = percent;
    if (!progress_.isShown) return;
    if (percent >= 100) return endProgress();
    sendProgress("report", {{"percentage", percent}});
}

void Server::endProgress() {
    if (progress_.isShown) sendProgress("end", {});
    progress_.isShown = false;
}

QString Server::progressToken() const {
    return QString("toveng/design/%1").arg(progress_.number);
}

void Server::sendProgress(char const* kind, QJsonObject value) {
    value.insert("kind", kind);
    notify("$/progress", QJsonObject{{"token", progressToken()}, {"value", value}});
}

void Server::watchFiles() {
    std::vector<std::string> paths;
    if (!designPath_.empty()) paths.push_back(designPath_);
    for (SetFile const& file : workspace_.files) paths.push_back(file.path);
    if (paths == watched_.paths()) return;
    watched_.set(std::move(paths));
    watched_.setWatchedByClient(false);
    if (!workspace_.client.watchesFiles) return;
    constexpr char const* method = "workspace/didChangeWatchedFiles";
    if (registration_ > 0) {
        QJsonObject const old{{"id", registrationId()}, {"method", method}};
        // The name is misspelt in the protocol.
        ask("client/unregisterCapability", QJsonObject{{"unregisterations", QJsonArray{old}}}, {});
        registration_ = 0;
    }
    QJsonArray const watchers = watched_.watchers(workspace_.client.knowsBasePaths);
    if (watchers.isEmpty()) return;
    registration_ = ++lastRegistration_;
    registerFor(registrationId(), method, QJsonObject{{"watchers", watchers}},
                [this, number = registration_](QJsonValue const&, bool isError) {
                    if (number == registration_) watched_.setWatchedByClient(!isError);
                });
}

void Server::registerFor(QString const& id, char const* method, QJsonObject const& options, Answered answered) {
    QJsonObject const added{{"id", id}, {"method", method}, {"registerOptions", options}};
    ask("client/registerCapability", QJsonObject{{"registrations", QJsonArray{added}}}, std::move(answered));
}

QString Server::registrationId() const {
    return QString("toveng/files/%1").arg(registration_);
}

void Server::changeWatchedFiles(Params params) {
    for (QJsonValue const change : arrayIn(params, "changes")) fileChanged(pathOf(textIn(change.toObject(), "uri")));
}

void Server::tick() {
    watched_.poll([this](std::string const& path) { fileChanged(path); });
    if (isPulling_ && std::chrono::steady_clock::now() > pullEnds_) {
        isPulling_ = false;
        startDesign();
    }
}

void Server::fileChanged(std::string const& path) {
    if (path == designPath_) return loadDesign();
    auto const& files = workspace_.files;
    if (std::any_of(files.begin(), files.end(), [&](SetFile const& file) { return file.path == path; })) {
        applySettings();
    }
}

}  // namespace tool::lsp
