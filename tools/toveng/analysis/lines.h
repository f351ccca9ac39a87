#pragma once

#include <cstddef>
#include <string_view>

namespace tool {

/// A sequence of lines, such as a file that is read or a document that is edited.
class Lines {
public:
    virtual ~Lines() = default;

    /// Puts a line, counted from 0, into `line`, without the LF or CR LF at its end; false beyond the last one. The
    /// view is valid until the next call.
    virtual bool get(std::size_t index, std::string_view& line) = 0;

protected:
    Lines() = default;
    Lines(Lines const&) = default;
    Lines& operator=(Lines const&) = default;
};

}  // namespace tool
