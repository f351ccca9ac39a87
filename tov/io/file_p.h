#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "tov/base/result_p.h"

namespace kiri::tov::impl_detail {

/// Owns an open file descriptor and closes it, once.
class File {
public:
    File() = default;
    /// Takes over `descriptor`; a negative one means that no file is open.
    explicit File(int descriptor) : descriptor_(descriptor) {}
    File(File&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    File& operator=(File&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~File();

    bool isOpen() const { return descriptor_ >= 0; }
    int descriptor() const { return descriptor_; }

private:
    int descriptor_ = -1;
};

// The bytes of a path are passed to the system unchanged, whatever the locale is. A null path is a missing file
// (ENOENT). No other program inherits an open file. If a function fails, its result has the errno value.

/// Returns whether something exists at `path`.
bool exists(char const* path);

/// Opens a file with the flags of open(2).
Result openFile(char const* path, int flags, File& file);

/// Opens a file for reading; refuses a directory (EISDIR).
Result openForReading(char const* path, File& file);

/// Opens a file for writing: creates it if it does not exist, and truncates it if it does.
Result openForWriting(char const* path, File& file);

/// Reads up to `size` bytes; `got` is 0 at the end of the file.
Result readSome(File const& file, char* to, std::size_t size, std::size_t& got);

/// Goes back to the start of a file, to read it again. Returns false for anything but a regular file.
bool rewind(File const& file);

/// Writes all of `text`.
Result writeAll(File const& file, std::string_view text);

/// Returns the number of bytes from the read position to the current end of the file; 0 for a file without a size, such
/// as a pipe.
std::uint64_t bytesLeft(File const& file);

}  // namespace kiri::tov::impl_detail
