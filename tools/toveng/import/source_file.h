#pragma once

#include <optional>
#include <string>
#include <vector>

namespace tool::sdc {

/// A file that a script sources.
struct SourcedFile {
    std::string path;  ///< the real path, without links
    std::string text;
};

/// Reads an SDC file: a regular file below one of `roots` (real paths) that is neither a dump nor binary nor one of
/// `open`. Otherwise returns nothing and the reason.
std::optional<SourcedFile> readSource(std::string const& path, std::vector<std::string> const& roots,
                                      std::vector<std::string> const& open, std::string& error);

/// Returns a text with LF at the end of each line and without a byte order mark.
std::string normalised(std::string text);

/// Returns the path without links; empty if there is no such file.
std::string realPath(std::string const& path);

}  // namespace tool::sdc
