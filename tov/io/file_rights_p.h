#pragma once

#include <sys/stat.h>

#include <string>
#include <vector>

#include "tov/io/file_p.h"

namespace kiri::tov::impl_detail {

/// The rights of a file: owner, group, permission bits, access list and other extended attributes.
class FileRights {
public:
    /// Reads the rights of the file at `path`, whose status is `status`.
    Result read(std::string const& path, struct stat const& status);

    /// Sets the rights of a file that the process has created. The file never gets a right that is not among them: if
    /// the group cannot be set, the new group gets only what both the old group and all others had.
    Result giveTo(File const& file) const;

private:
    struct Attribute {
        std::string name;
        std::string value;
    };

    bool hasAccessList() const;

    struct stat status_ {};
    std::vector<Attribute> attributes_;
};

}  // namespace kiri::tov::impl_detail
