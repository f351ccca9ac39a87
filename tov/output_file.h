#pragma once

#include <string_view>

namespace kiri::tov {

/// A file opened for writing; closed by the destructor. No other program inherits it.
class OutputFile {
public:
    /// Opens `path`, makes the file if there is none and empties it if there is one.
    explicit OutputFile(char const* path);
    /// Takes an open descriptor over.
    explicit OutputFile(int descriptor) : fd_(descriptor) {}
    ~OutputFile();
    OutputFile(OutputFile const&) = delete;
    OutputFile& operator=(OutputFile const&) = delete;

    bool isOpen() const { return fd_ >= 0; }
    int descriptor() const { return fd_; }

    /// Writes all of `text`. False, and the reason in errno, if the system does not take it.
    bool write(std::string_view text);

private:
    int fd_;
};

}  // namespace kiri::tov
