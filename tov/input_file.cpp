#include "tov/input_file.h"

#include <sys/stat.h>

#include <cerrno>

#include "tov/open_file.h"

namespace kiri::tov {

namespace {

int openForReading(char const* path) {
    int const fd = openFile(path, O_RDONLY);
    struct stat info {};
    if (fd >= 0 && (::fstat(fd, &info) != 0 || S_ISDIR(info.st_mode))) {
        ::close(fd);
        return -1;
    }
    return fd;
}

}  // namespace

InputFile::InputFile(char const* path) : fd_(openForReading(path)) {}

bool InputFile::exists(char const* path) {
    struct stat info {};
    return path != nullptr && ::stat(path, &info) == 0;
}

ssize_t InputFile::read(char* to, std::size_t size) {
    ssize_t got = 0;
    do {
        got = ::read(fd_, to, size);
    } while (got < 0 && errno == EINTR);
    return got;
}

std::size_t InputFile::remaining() const {
    struct stat info {};
    off_t const position = ::lseek(fd_, 0, SEEK_CUR);
    if (position < 0 || ::fstat(fd_, &info) != 0 || info.st_size <= position) return 0;
    return static_cast<std::size_t>(info.st_size - position);
}

}  // namespace kiri::tov
