#pragma once

#include <cstdint>
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
enum class Content { dump, text, binary };

/// A file to be read, by whatever name. What is no regular file, a pipe for one, is copied to a file without a name.
class Input {
public:
    /// Opens a file of constraints; "-" is standard input. Trouble if there is none, or if it holds something else.
    static Input constraints(std::string const& name);
    /// The same of a design dump; "-" is a file like any other.
    static Input dump(std::string const& name);

    /// The name that the user gave.
    std::string const& name() const { return name_; }
    /// A path that leads to the content.
    char const* path() const { return path_.c_str(); }
    /// The content, from its start. The file belongs to the input.
    std::FILE* file() const { return file_.get(); }
    std::uint64_t size() const { return size_; }

private:
    Input(std::string const& name, bool isStandardInput);

    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    using File = std::unique_ptr<std::FILE, Close>;

    std::string name_;
    std::string path_;
    File file_;
    std::uint64_t size_ = 0;
    Content content_ = Content::text;
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
