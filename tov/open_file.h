#pragma once

#include <fcntl.h>

#include <cerrno>

namespace kiri::tov {

/// Opens a file that no other program inherits; -1, and the reason in errno, if that fails. A null path names nothing.
inline int openFile(char const* path, int flags) {
    if (path == nullptr) return -1;
    int fd = -1;
    do {
        fd = ::open(path, flags | O_CLOEXEC, 0666);
    } while (fd < 0 && errno == EINTR);
    return fd;
}

}  // namespace kiri::tov
