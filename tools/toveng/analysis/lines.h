#pragma once

#include <cstddef>
#include <string_view>

namespace tool {

/// A sequence of lines, such as a file that is read or a document that is edited.
class Lines {
public:
    virtual ~Lines() = default;

    /// Puts a line, counted from 0, into `line`, without the LF or CR LF at its end; false beyond the last one. The
    /// view is valid while the line is kept: as long as the class that implements this says.
    virtual bool get(std::size_t index, std::string_view& line) = 0;

protected:
    Lines() = default;
    Lines(Lines const&) = default;
    Lines& operator=(Lines const&) = default;
};

}  // namespace tool
