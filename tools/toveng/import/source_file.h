#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tool::sdc {

/// A file that a script has named.
struct SourcedFile {
    std::string path;  ///< real: no link leads to it
    std::string text;
};

/// Reads a file of SDC: a regular file below one of `roots` (real paths) that is neither a dump nor binary nor one of
/// `open`. Returns nothing and says why otherwise.
std::optional<SourcedFile> readSource(std::string const& path, std::vector<std::string> const& roots,
                                      std::vector<std::string> const& open, std::string& error);

/// Returns a text with LF at the end of each line and without a byte order mark.
std::string normalised(std::string text);

/// Returns the path without links; empty if there is no such file.
std::string realPath(std::string const& path);

}  // namespace tool::sdc
