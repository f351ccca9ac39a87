#include "tov/output_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace kiri::tov {

namespace {

int openForWriting(char const* path) {
    if (path == nullptr) return -1;
    int fd = -1;
    do {
        fd = ::open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    } while (fd < 0 && errno == EINTR);
    return fd;
}

}  // namespace

OutputFile::OutputFile(char const* path) : fd_(openForWriting(path)) {}

OutputFile::~OutputFile() {
    if (fd_ >= 0) ::close(fd_);
}

bool OutputFile::write(std::string_view text) {
    while (!text.empty()) {
        ssize_t const written = ::write(fd_, text.data(), text.size());
        if (written < 0 && errno != EINTR) return false;
        if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace kiri::tov
