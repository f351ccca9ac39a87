#pragma once

#include <QJsonArray>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tool::lsp {

/// Files whose changes count.
class WatchedFiles {
public:
    /// Replaces the files. Their present state does not count as a change.
    void set(std::vector<std::string> paths);
    std::vector<std::string> paths() const;

    /// The client watches the files from now on, or does not.
    void setWatchedByClient(bool watched) { byClient_ = watched; }
    /// Whether poll() must be called.
    bool isWatching() const { return !byClient_ && !files_.empty(); }

    /// Calls `changed` with each file that has changed, once it has stayed as it is since the last call.
    void poll(std::function<void(std::string const& path)> const& changed);

    /// Returns the watchers that a client is asked for; empty where a path cannot be put as a pattern.
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
