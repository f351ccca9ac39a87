#pragma once

#include <cstdio>
#include <list>
#include <memory>
#include <string>
#include <utility>

#include "tov/progress.h"
#include "tov/tov.h"

namespace tool {

/// The content of a file, by its first character and its NUL bytes.
enum class Content { dump, constraints, binary };

/// A file to read. Anything but a regular file, such as a pipe, is copied to a file without a name.
class Input {
public:
    /// Opens a file of constraints ("-" is standard input) or a dump. Throws Trouble if there is none, or if it holds
    /// something else.
    Input(std::string const& name, Content content);

    /// The name that the user passed.
    std::string const& name() const { return name_; }
    /// A path that leads to the content.
    char const* path() const { return path_.c_str(); }

private:
    std::string name_;
    std::string path_;
    std::shared_ptr<std::FILE> copy_;
};

/// Returns a function that draws a bar on standard error for large files; empty if that is no terminal.
kiri::tov::TovProgress progressBar();

/// Loads the content of the file; throws Trouble unless it was read whole.
void read(kiri::tov::TOV& document, Input const& input, kiri::tov::TovProgress const& progress);

/// Makes an object that lives until the process ends: freeing millions of parts takes as long as reading them.
template <class T, class... Args>
T& keep(Args&&... args) {
    static auto* const kept = new std::list<T>;
    return kept->emplace_back(std::forward<Args>(args)...);
}

}  // namespace tool
