#pragma once

#include <sys/types.h>

#include <string_view>

#include "tov/io/file_p.h"

namespace kiri::tov::impl_detail {

/// A new file that replaces another one in its folder, or is deleted with the object. Where a function fails, the
/// reason is in errno.
class TemporaryFile {
public:
    /// A file without a name leaves nothing behind when the process is killed; not every system has it.
    enum Kind { unnamed, named };

    /// `folder` is open and outlives the file.
    TemporaryFile(Kind kind, File const& folder, mode_t mode);
    ~TemporaryFile();
    TemporaryFile(TemporaryFile const&) = delete;
    TemporaryFile& operator=(TemporaryFile const&) = delete;

    /// Returns false if the file could not be made.
    bool isOpen() const { return file_.isOpen(); }
    File const& file() const { return file_; }

    /// Appends a text; beyond the size limit of the process that fails and raises no signal.
    bool write(std::string_view text);

    /// Links an unnamed file to the name that rename() needs. Returns false where the system cannot.
    bool giveName();

    /// Replaces the file `name` of the folder, or makes it.
    bool rename(char const* name);

private:
    template <class Make>
    int makeName(Make make);

    File const& folder_;
    char name_[32] = {};  // ".tov-" and 16 hexadecimal digits; empty for a file without a name
    File file_;
};

}  // namespace kiri::tov::impl_detail
