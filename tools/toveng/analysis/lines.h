#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// A sequence of lines, such as a file or an edited document.
class Lines {
public:
    virtual ~Lines() = default;

    /// Stores a line, counted from 0, in `line`, without the LF or CR LF at its end. Returns false beyond the last
    /// line. The view is valid until the next call.
    virtual bool get(std::size_t index, std::string_view& line) = 0;

protected:
    Lines() = default;
    Lines(Lines const&) = default;
    Lines& operator=(Lines const&) = default;
};

/// The lines of a vector, which must outlive it.
class LinesInMemory : public Lines {
public:
    explicit LinesInMemory(std::vector<std::string> const& lines) : lines_(lines) {}

    bool get(std::size_t index, std::string_view& line) override {
        if (index >= lines_.size()) return false;
        line = lines_[index];
        return true;
    }

private:
    std::vector<std::string> const& lines_;
};

}  // namespace tool
