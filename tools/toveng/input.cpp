#include "input.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
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

using File = std::shared_ptr<std::FILE>;

File opened(std::FILE* file, std::string const& name) {
    if (file == nullptr) fail(name, std::strerror(errno));
    return {file, &std::fclose};
}

// Reads a file up to the block that shows what it contains, or to its end, and writes it to `copy`, unless that is
// null.
Content classify(std::FILE* file, std::FILE* copy, std::string const& name) {
    constexpr std::string_view marksAndSpace("\xef\xbb\xbf\xfe\xff \t\n\r\v\f\0", 12);
    Content content = Content::constraints;
    bool started = false;
    std::array<char, 65536> buffer{};
    for (std::size_t size = 1; size > 0 && content != Content::binary && (copy || content != Content::dump);) {
        size = std::fread(buffer.data(), 1, buffer.size(), file);
        std::string_view const block(buffer.data(), size);
        std::size_t const first = started ? 0 : std::min(block.find_first_not_of(marksAndSpace), size);
        if (!started && first < size && block[first] == '<') content = Content::dump;
        started = first < size;
        bool const hasNul = block.find('\0') != std::string_view::npos;
        if (content == Content::constraints && hasNul) content = Content::binary;
        bool const isCopied = copy == nullptr || std::fwrite(block.data(), 1, size, copy) == size;
        if (!isCopied || std::ferror(file) != 0) fail(name, std::strerror(errno));
    }
    return content;
}

void drawBar(int percent) {
    constexpr char const* bar = "##################################################";
    std::fprintf(stderr, "\r[%-50.*s] %3d %%", percent / 2, bar, percent);
}

void eraseBar() {
    std::fputs("\r\033[K", stderr);
}

}  // namespace

Input::Input(std::string const& name, Content content) : name_(name), path_(name) {
    bool const isStandardInput = name == "-" && content == Content::constraints;
    File const file = opened(isStandardInput ? ::fdopen(::dup(0), "rb") : std::fopen(name.c_str(), "rb"), name);
    struct stat status {};
    if (::fstat(::fileno(file.get()), &status) != 0) fail(name, std::strerror(errno));
    if (S_ISDIR(status.st_mode)) fail(name, std::strerror(EISDIR));
    if (isStandardInput || !S_ISREG(status.st_mode)) copy_ = opened(std::tmpfile(), "temporary file");
    Content const found = classify(file.get(), copy_.get(), name);
    size_ = static_cast<std::uint64_t>(std::max<off_t>(::ftello(file.get()), 0));
    bool const fits = content == Content::any || found == content;
    if (content == Content::dump && !fits) fail(name, "not a design dump: it does not begin with '<'");
    if (found == Content::dump && !fits) fail(name, "a design dump, not a constraint file");
    if (!fits) fail(name, "not a constraint file: it contains NUL bytes");
    if (copy_ == nullptr) return;
    if (std::fflush(copy_.get()) != 0) fail("temporary file", std::strerror(errno));
    path_ = "/proc/self/fd/" + std::to_string(::fileno(copy_.get()));
}

kiri::tov::TovProgress progressBar() {
    constexpr std::uint64_t large = 10'000'000;
    if (::isatty(STDERR_FILENO) == 0) return {};
    return [shown = -1](std::uint64_t done, std::uint64_t size) mutable {
        if (size < large) return true;
        int const percent = static_cast<int>(done * 100 / size);
        if (percent == shown) return true;
        shown = percent;
        drawBar(percent);
        if (done == size) eraseBar();  // erase a full bar
        return true;
    };
}

SlowProgress::SlowProgress(std::uint64_t size)
    : size_(size),
      next_(std::chrono::steady_clock::now() + std::chrono::seconds(1)),
      isTerminal_(::isatty(STDERR_FILENO) != 0) {}

SlowProgress::~SlowProgress() {
    clear();
}

void SlowProgress::add(std::uint64_t done) {
    done_ += done;
    if (!isTerminal_ || size_ == 0) return;
    auto const now = std::chrono::steady_clock::now();
    if (now < next_) return;
    next_ = now + std::chrono::milliseconds(100);
    isShown_ = true;
    drawBar(static_cast<int>(std::min(done_, size_) * 100 / size_));
}

void SlowProgress::clear() {
    if (isShown_) eraseBar();
    isShown_ = false;
}

void read(kiri::tov::TOV& document, Input const& input, kiri::tov::TovProgress const& progress) {
    std::string error;
    if (!document.read(input.path(), progress, &error)) fail(input.name(), error);
}

void readAll(kiri::tov::TOV& document, std::vector<std::string> const& names) {
    for (std::string const& name : names) {
        kiri::tov::TOV& next = keep<kiri::tov::TOV>();
        read(next, Input(name, Content::constraints), progressBar());
        for (int list = kiri::tov::TOVCMD_CLOCK; list <= kiri::tov::TOVCMD_ATTRIBUTE; ++list) {
            auto const kind = static_cast<kiri::tov::TOVCMD_TYPE>(list);
            auto& commands = *document.getTovCmdList(kind);
            commands.splice(commands.end(), *next.getTovCmdList(kind));
        }
    }
}

}  // namespace tool
