#pragma once

#include <sys/types.h>

#include <string_view>

#include "tov/io/file_p.h"

namespace kiri::tov::impl_detail {

/// A new file that replaces another one in its folder, or is deleted when the object is destroyed.
class TemporaryFile {
public:
    /// A file without a name disappears if the process is killed; not every file system supports it.
    enum Kind { unnamed, named };

    /// `folder` must be open and outlive the file.
    explicit TemporaryFile(File const& folder) : folder_(folder) {}
    ~TemporaryFile();
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    /// Creates the file.
    Result open(Kind kind, mode_t mode);
    File const& file() const { return file_; }

    /// Appends a text; beyond the size limit of the process this fails and raises no signal.
    Result write(std::string_view text);

    /// Links an unnamed file to the name that rename() needs.
    Result giveName();

    /// Replaces or creates the file `name` in the folder.
    Result rename(char const* name);

private:
    template <class Make>
    int makeName(Make make);

    File const& folder_;
    char name_[32] = {};  // ".tov-" and 16 hexadecimal digits; empty for a file without a name
    File file_;
};

}  // namespace kiri::tov::impl_detail
