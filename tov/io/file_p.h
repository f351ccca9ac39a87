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

// A path's bytes go to the system as they are, whatever the locale is. A null path names nothing (ENOENT). No other
// program inherits an open file. Where a function
// fails, its result has the errno.

/// Returns whether something exists at `path`.
bool exists(char const* path);

/// Opens a file with the flags of open(2).
Result openFile(char const* path, int flags, File& file);

/// Opens a file for reading; refuses a directory (EISDIR).
Result openForReading(char const* path, File& file);

/// Opens a file for writing: makes it if there is none, and empties it if there is one.
Result openForWriting(char const* path, File& file);

/// Reads up to `size` bytes; `got` is 0 at the end of the file.
Result readSome(File const& file, char* to, std::size_t size, std::size_t& got);

/// Goes back to the start of a file, to read it again. False for anything but a regular file.
bool rewind(File const& file);

/// Writes all of `text`.
Result writeAll(File const& file, std::string_view text);

/// Bytes from the read position to the end as the file is now; 0 for a file without a size, such as a pipe.
std::uint64_t bytesLeft(File const& file);

}  // namespace kiri::tov::impl_detail
