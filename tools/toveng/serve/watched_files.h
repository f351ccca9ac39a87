#pragma once

#include <QJsonArray>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tool::lsp {

/// The files to watch for changes.
class WatchedFiles {
public:
    /// Replaces the files. Their current state does not count as a change.
    void set(std::vector<std::string> paths);
    std::vector<std::string> paths() const;

    /// Sets whether the client watches the files from now on.
    void setWatchedByClient(bool watched) { byClient_ = watched; }
    /// Whether poll() must be called.
    bool isWatching() const { return !byClient_ && !files_.empty(); }

    /// Calls `changed` with each file that has changed, once it has not changed since the last call.
    void poll(std::function<void(std::string const& path)> const& changed);

    /// Returns the watchers to request from a client; empty if a path cannot be expressed as a pattern.
    QJsonArray watchers(bool withBasePaths) const;

private:
    struct Signature {
        std::uint64_t device = 0;
        std::uint64_t node = 0;
        std::int64_t size = -1;
        std::int64_t seconds = 0;
        std::int64_t nanoseconds = 0;

        bool operator==(Signature const& other) const;
    };
    struct File {
        std::string path;
        Signature known;
        Signature seen;
    };

    static Signature signatureOf(std::string const& path);

    std::vector<File> files_;
    bool byClient_ = false;
};

}  // namespace tool::lsp
