#include "input.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "text.h"

namespace tool {

namespace {

[[noreturn]] void fail(std::string const& name, std::string const& reason) {
    throw Trouble(name + ": " + reason);
}

/// Tells what a content is from its blocks.
class Classifier {
public:
    /// False once no further block can change the answer.
    bool read(std::string_view block) {
        if (!started_) {
            block = withoutSpace(withoutMark(block));
            started_ = !block.empty();
            if (started_ && block.front() == '<') content_ = Content::dump;
        }
        if (content_ == Content::text && block.find('\0') != std::string_view::npos) content_ = Content::binary;
        return content_ == Content::text;
    }

    Content content() const { return content_; }

private:
    std::string_view withoutMark(std::string_view block) {
        if (marked_) return block;
        marked_ = true;
        for (std::string_view mark : {"\xef\xbb\xbf", "\xff\xfe", "\xfe\xff"}) {
            if (block.substr(0, mark.size()) != mark) continue;
            isWide_ = mark.size() == 2;
            return block.substr(mark.size());
        }
        return block;
    }

    // In UTF-16 every other byte of plain text is 0.
    std::string_view withoutSpace(std::string_view block) const {
        std::size_t const start = block.find_first_not_of(std::string_view(" \t\n\r\v\f\0", isWide_ ? 7 : 6));
        return start == std::string_view::npos ? std::string_view() : block.substr(start);
    }

    Content content_ = Content::text;
    bool marked_ = false;
    bool isWide_ = false;
    bool started_ = false;
};

// Reads a file to its end or to the block that tells what it is, and writes it to `copy`, unless that is null.
Content classify(std::FILE* file, std::FILE* copy, std::string const& name) {
    Classifier classifier;
    std::array<char, 65536> block{};
    for (bool goOn = true; goOn;) {
        std::size_t const size = std::fread(block.data(), 1, block.size(), file);
        if (std::ferror(file) != 0) fail(name, std::strerror(errno));
        goOn = size > 0 && (classifier.read({block.data(), size}) || (copy && classifier.content() == Content::dump));
        if (copy != nullptr && std::fwrite(block.data(), 1, size, copy) != size) fail(name, std::strerror(errno));
    }
    return classifier.content();
}

}  // namespace

Input::Input(std::string const& name, bool isStandardInput)
    : name_(name), path_(name), file_(isStandardInput ? ::fdopen(::dup(0), "rb") : std::fopen(name.c_str(), "rb")) {
    struct stat status {};
    if (file_ == nullptr || ::fstat(::fileno(file_.get()), &status) != 0) fail(name, std::strerror(errno));
    if (S_ISDIR(status.st_mode)) fail(name, std::strerror(EISDIR));
    bool const isCopied = isStandardInput || !S_ISREG(status.st_mode);
    File copy(isCopied ? std::tmpfile() : nullptr);
    if (isCopied && copy == nullptr) fail("temporary file", std::strerror(errno));
    content_ = classify(file_.get(), copy.get(), name);
    if (isCopied) {
        if (std::fflush(copy.get()) != 0) fail("temporary file", std::strerror(errno));
        file_ = std::move(copy);
        path_ = "/proc/self/fd/" + std::to_string(::fileno(file_.get()));
        ::fstat(::fileno(file_.get()), &status);
    }
    size_ = static_cast<std::uint64_t>(status.st_size);
    std::rewind(file_.get());
}

Input Input::constraints(std::string const& name) {
    Input input(name, name == "-");
    if (input.content_ == Content::dump) fail(name, "a design dump where constraints belong");
    if (input.content_ == Content::binary) fail(name, "no constraint file: it holds NUL bytes");
    return input;
}

Input Input::dump(std::string const& name) {
    Input input(name, false);
    if (input.content_ != Content::dump) fail(name, "no design dump: it does not begin with '<'");
    return input;
}

kiri::tov::TovProgress progressBar() {
    constexpr std::uint64_t large = 10'000'000;
    if (::isatty(STDERR_FILENO) == 0) return {};
    return [shown = -1](std::uint64_t done, std::uint64_t size) mutable {
        if (size < large) return true;
        int const percent = static_cast<int>(done * 100 / size);
        if (percent == shown) return true;
        shown = percent;
        constexpr char const* bar = "##################################################";
        std::fprintf(stderr, "\r[%-50.*s] %3d %%", percent / 2, bar, percent);
        if (done == size) std::fputs("\r\033[K", stderr);  // a full bar goes
        return true;
    };
}

void read(kiri::tov::TOV& document, Input const& input, kiri::tov::TovProgress const& progress) {
    std::string error;
    if (!document.read(input.path(), progress, &error)) fail(input.name(), error);
}

void read(kiri::tov::TovDesign& design, std::string const& name) {
    Input const input = Input::dump(name);
    std::string error;
    if (!design.load(input.path(), progressBar(), &error) || !error.empty()) fail(name, "not read whole: " + error);
}

}  // namespace tool
