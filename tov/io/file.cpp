#include "tov/io/file_p.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace kiri::tov::impl_detail {

namespace {

/// Repeats a system call until no signal interrupts it.
template <class Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

// 0, or why an open file cannot be read.
int refusalOf(File const& file) {
    struct stat info {};
    if (::fstat(file.descriptor(), &info) != 0) return errno;
    return S_ISDIR(info.st_mode) ? EISDIR : 0;
}

}  // namespace

File::~File() {
    if (isOpen()) ::close(descriptor_);
}

bool exists(char const* path) {
    struct stat info {};
    return path != nullptr && ::stat(path, &info) == 0;
}

File openFile(char const* path, int flags) {
    if (path == nullptr) {
        errno = ENOENT;
        return {};
    }
    return File(uninterrupted([&] { return ::open(path, flags | O_CLOEXEC, 0666); }));
}

File openForReading(char const* path) {
    File file = openFile(path, O_RDONLY);
    int const error = file.isOpen() ? refusalOf(file) : 0;
    if (error == 0) return file;
    file = {};
    errno = error;
    return {};
}

File openForWriting(char const* path) {
    return openFile(path, O_WRONLY | O_CREAT | O_TRUNC);
}

ssize_t readSome(File const& file, char* to, std::size_t size) {
    return uninterrupted([&] { return ::read(file.descriptor(), to, size); });
}

bool rewind(File const& file) {
    struct stat info {};
    return ::fstat(file.descriptor(), &info) == 0 && S_ISREG(info.st_mode) &&
           ::lseek(file.descriptor(), 0, SEEK_SET) == 0;
}

bool writeAll(File const& file, std::string_view text) {
    while (!text.empty()) {
        ssize_t const written = uninterrupted([&] { return ::write(file.descriptor(), text.data(), text.size()); });
        if (written < 0) return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::uint64_t bytesLeft(File const& file) {
    struct stat info {};
    off_t const position = ::lseek(file.descriptor(), 0, SEEK_CUR);
    if (position < 0 || ::fstat(file.descriptor(), &info) != 0 || info.st_size <= position) return 0;
    return static_cast<std::uint64_t>(info.st_size - position);
}

}  // namespace kiri::tov::impl_detail
