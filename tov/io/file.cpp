#include "tov/io/file_p.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tov/io/error_text_p.h"

namespace kiri::tov::impl_detail {

namespace {

/// Repeats a system call until no signal interrupts it.
template <class Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) result = call();
    return result;
}

}  // namespace

File::~File() {
    if (isOpen()) ::close(descriptor_);
}

bool exists(char const* path) {
    struct stat info {};
    return path != nullptr && ::stat(path, &info) == 0;
}

Result openFile(char const* path, int flags, File& file) {
    if (path == nullptr) return systemFailure(ENOENT);
    file = File(uninterrupted([&] { return ::open(path, flags | O_CLOEXEC, 0666); }));
    return file.isOpen() ? Result() : systemFailure(errno);
}

Result openForReading(char const* path, File& file) {
    File opened;
    Result result = openFile(path, O_RDONLY, opened);
    if (!result.ok()) return result;
    struct stat info {};
    if (::fstat(opened.descriptor(), &info) != 0) return systemFailure(errno);
    if (S_ISDIR(info.st_mode)) return systemFailure(EISDIR);
    file = std::move(opened);
    return result;
}

Result openForWriting(char const* path, File& file) {
    return openFile(path, O_WRONLY | O_CREAT | O_TRUNC, file);
}

Result readSome(File const& file, char* to, std::size_t size, std::size_t& got) {
    ssize_t const bytes = uninterrupted([&] { return ::read(file.descriptor(), to, size); });
    got = bytes < 0 ? 0 : static_cast<std::size_t>(bytes);
    return bytes < 0 ? systemFailure(errno) : Result();
}

bool rewind(File const& file) {
    struct stat info {};
    return ::fstat(file.descriptor(), &info) == 0 && S_ISREG(info.st_mode) &&
           ::lseek(file.descriptor(), 0, SEEK_SET) == 0;
}

Result writeAll(File const& file, std::string_view text) {
    while (!text.empty()) {
        ssize_t const written = uninterrupted([&] { return ::write(file.descriptor(), text.data(), text.size()); });
        if (written < 0) return systemFailure(errno);
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

std::uint64_t bytesLeft(File const& file) {
    struct stat info {};
    off_t const position = ::lseek(file.descriptor(), 0, SEEK_CUR);
    if (position < 0 || ::fstat(file.descriptor(), &info) != 0 || info.st_size <= position) return 0;
    return static_cast<std::uint64_t>(info.st_size - position);
}

}  // namespace kiri::tov::impl_detail
