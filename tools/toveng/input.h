#pragma once

#include <cstdio>
#include <list>
#include <memory>
#include <string>
#include <utility>

#include "tov/design/design.h"
#include "tov/progress.h"
#include "tov/tov.h"

namespace tool {

/// What a file holds, by its first character and its NUL bytes.
enum class Content { dump, constraints, binary };

/// A file to be read, by whatever name. What is no regular file, a pipe for one, is copied to a file without a name.
class Input {
public:
    /// Opens a file of constraints, "-" is standard input, or a dump. Trouble if there is none, or something else in
    /// it.
    Input(std::string const& name, Content content);

    /// The name that the user gave.
    std::string const& name() const { return name_; }
    /// A path that leads to the content.
    char const* path() const { return path_.c_str(); }

private:
    std::string name_;
    std::string path_;
    std::shared_ptr<std::FILE> copy_;
};

/// Draws a bar on standard error for what is large, if that is a terminal; empty else.
kiri::tov::TovProgress progressBar();

/// Load what the file holds; Trouble unless it was read whole.
void read(kiri::tov::TOV& document, Input const& input, kiri::tov::TovProgress const& progress);
void read(kiri::tov::TovDesign& design, std::string const& name);

/// Makes an object that stays until the process ends: to free millions of parts takes as long as to read them.
template <class T, class... Args>
T& keep(Args&&... args) {
    static auto* const kept = new std::list<T>;
    return kept->emplace_back(std::forward<Args>(args)...);
}

}  // namespace tool
