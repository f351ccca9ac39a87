#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tov/progress.h"
#include "tov/tov.h"

namespace tool {

/// The kind of content, determined by the first character and NUL bytes.
enum class Content { dump, constraints, binary, any };

/// A file to read. Anything but a regular file, such as a pipe, is first copied to an unnamed file.
class Input {
public:
    /// Opens a constraint file ("-" is standard input), a dump, or a file with any content. Throws Trouble if it does
    /// not exist or contains something else.
    Input(std::string const& name, Content content);

    /// The name that the user passed.
    std::string const& name() const { return name_; }
    /// A path that leads to the content.
    char const* path() const { return path_.c_str(); }
    /// In bytes.
    std::uint64_t size() const { return size_; }

private:
    std::string name_;
    std::string path_;
    std::uint64_t size_ = 0;
    std::shared_ptr<std::FILE> copy_;
};

/// Returns a function that draws a bar on standard error for large files; empty if that is not a terminal.
kiri::tov::TovProgress progressBar();

/// Shows the progress of a long run: a bar on standard error if that is a terminal, after the first second.
class SlowProgress {
public:
    explicit SlowProgress(std::uint64_t size);
    ~SlowProgress();
    SlowProgress(SlowProgress const&) = delete;
    SlowProgress& operator=(SlowProgress const&) = delete;

    void add(std::uint64_t done);
    /// Erases the bar before other text is printed.
    void clear();

private:
    std::uint64_t size_;
    std::uint64_t done_ = 0;
    std::chrono::steady_clock::time_point next_;
    bool isTerminal_;
    bool isShown_ = false;
};

/// Loads the content of the file; throws Trouble unless it was read completely.
void read(kiri::tov::TOV& document, Input const& input, kiri::tov::TovProgress const& progress);

/// Appends the content of files to a document; throws Trouble unless each was read completely.
void readAll(kiri::tov::TOV& document, std::vector<std::string> const& names);

/// Makes an object that is never destroyed: freeing millions of parts takes as long as reading them.
template <class T, class... Args>
T& keep(Args&&... args) {
    static auto* const kept = new std::list<T>;
    return kept->emplace_back(std::forward<Args>(args)...);
}

}  // namespace tool
