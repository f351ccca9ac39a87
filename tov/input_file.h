#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cstddef>

namespace kiri::tov {

/// A file opened for reading by its path's own bytes, whatever the process's locale; closed by the destructor.
class InputFile {
public:
    /// Opens `path`. A directory counts as a file that exists and cannot be opened.
    explicit InputFile(char const* path);
    ~InputFile() {
        if (fd_ >= 0) ::close(fd_);
    }
    InputFile(InputFile const&) = delete;
    InputFile& operator=(InputFile const&) = delete;

    /// Whether something exists at `path`; a null path names nothing.
    static bool exists(char const* path);

    bool isOpen() const { return fd_ >= 0; }
    int descriptor() const { return fd_; }

    /// Reads up to `size` bytes to `to`; 0 at the end of the file, -1 on an error.
    ssize_t read(char* to, std::size_t size);

    /// Bytes between the read position and the end as the file stands now; 0 where the file has no size.
    std::size_t remaining() const;

private:
    int fd_;
};

}  // namespace kiri::tov
