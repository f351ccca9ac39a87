#include "source_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace tool::sdc {

namespace {

class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;
    int number() const { return number_; }

private:
    int number_;
};

bool isBelow(std::string const& path, std::string const& root) {
    if (root == "/") return true;
    return path.size() > root.size() && path.compare(0, root.size(), root) == 0 && path[root.size()] == '/';
}

std::string content(int file, std::string& error) {
    std::string text;
    std::string block(65536, '\0');
    for (;;) {
        ssize_t const size = ::read(file, block.data(), block.size());
        if (size == 0) return text;
        if (size > 0)
            text.append(block, 0, static_cast<std::size_t>(size));
        else if (errno != EINTR) {
            error = std::strerror(errno);
            return {};
        }
    }
}

bool isDump(std::string const& text) {
    constexpr std::string_view marksAndSpace("\xef\xbb\xbf\xfe\xff \t\n\r\v\f\0", 12);
    std::size_t const first = text.find_first_not_of(marksAndSpace);
    return first != std::string::npos && text[first] == '<';
}

}  // namespace

std::optional<SourcedFile> readSource(std::string const& path, std::vector<std::string> const& roots,
                                      std::vector<std::string> const& open, std::string& error) {
    // Check the path without opening the file: opening a device or a pipe can have side effects.
    Descriptor const place(path.find('\0') == std::string::npos ? ::open(path.c_str(), O_PATH | O_CLOEXEC) : -1);
    if (place.number() < 0) {
        error = path.find('\0') == std::string::npos ? std::strerror(errno) : "no such file";
        return {};
    }
    std::string const link = "/proc/self/fd/" + std::to_string(place.number());
    std::string real(PATH_MAX, '\0');
    ssize_t const size = ::readlink(link.c_str(), real.data(), real.size());
    real.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    struct stat status {};
    if (std::none_of(roots.begin(), roots.end(), [&](auto const& root) { return isBelow(real, root); })) {
        error = "outside the folders that source may read";
    } else if (::fstat(place.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        error = "not a regular file";
    } else if (std::find(open.begin(), open.end(), real) != open.end()) {
        error = "being read already";
    }
    if (!error.empty()) return {};
    Descriptor const file(::open(link.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.number() < 0) {
        error = std::strerror(errno);
        return {};
    }
    std::string text = content(file.number(), error);
    if (!error.empty()) return {};
    if (isDump(text))
        error = "a design dump";
    else if (text.find('\0') != std::string::npos)
        error = "a binary file";
    if (!error.empty()) return {};
    return SourcedFile{real, normalised(std::move(text))};
}

std::string normalised(std::string text) {
    constexpr std::string_view mark = "\xef\xbb\xbf";
    if (text.compare(0, mark.size(), mark) == 0) text.erase(0, mark.size());
    std::size_t size = std::min(text.find('\r'), text.size());
    for (std::size_t i = size; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
        text[size++] = text[i];
    }
    text.resize(size);
    return text;
}

std::string realPath(std::string const& path) {
    std::unique_ptr<char, void (*)(void*)> const real(::realpath(path.c_str(), nullptr), &std::free);
    return real == nullptr ? std::string() : std::string(real.get());
}

}  // namespace tool::sdc
