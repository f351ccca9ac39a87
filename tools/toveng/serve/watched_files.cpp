#include "serve/watched_files.h"

#include <sys/stat.h>

#include <QFileInfo>
#include <QJsonObject>
#include <tuple>
#include <utility>

#include "serve/workspace.h"

namespace tool::lsp {

bool WatchedFiles::Signature::operator==(Signature const& other) const {
    auto const all = [](Signature const& s) { return std::tie(s.device, s.node, s.size, s.seconds, s.nanoseconds); };
    return all(*this) == all(other);
}

WatchedFiles::Signature WatchedFiles::signatureOf(std::string const& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return {};
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

void WatchedFiles::set(std::vector<std::string> paths) {
    files_.clear();
    for (std::string& path : paths) {
        Signature const now = signatureOf(path);
        files_.push_back({std::move(path), now, now});
    }
}

std::vector<std::string> WatchedFiles::paths() const {
    std::vector<std::string> paths;
    for (File const& file : files_) paths.push_back(file.path);
    return paths;
}

void WatchedFiles::poll(std::function<void(std::string const& path)> const& changed) {
    std::vector<std::string> paths;
    for (File& file : files_) {
        Signature const now = signatureOf(file.path);
        bool const isSettled = now == file.seen;
        file.seen = now;
        if (!isSettled || now == file.known) continue;
        file.known = now;
        paths.push_back(file.path);
    }
    for (std::string const& path : paths) changed(path);
}

QJsonArray WatchedFiles::watchers(bool withBasePaths) const {
    QJsonArray watchers;
    for (File const& file : files_) {
        QFileInfo const info(QString::fromStdString(file.path));
        QString const pattern = withBasePaths ? info.fileName() : info.filePath();
        for (QChar c : QString("*?[]{}")) {
            if (pattern.contains(c)) return {};
        }
        if (withBasePaths) {
            QJsonObject const relative{{"baseUri", uriOf(info.path().toStdString())}, {"pattern", pattern}};
            watchers.append(QJsonObject{{"globPattern", relative}});
        } else {
            watchers.append(QJsonObject{{"globPattern", pattern}});
        }
    }
    return watchers;
}

}  // namespace tool::lsp
