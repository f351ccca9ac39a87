#pragma once

#include <cstdint>
#include <cstdio>
#include <deque>
#include <memory>
#include <string>

#include "analysis/lines.h"
#include "input.h"

namespace tool {

/// The lines of a file. Lines after the last forgotten one are held in memory.
class FileLines : public Lines {
public:
    /// Throws Trouble if the file cannot be opened.
    explicit FileLines(Input const& input);

    /// Throws Trouble if the file cannot be read.
    bool get(std::size_t index, std::string_view& line) override;

    /// Forgets the lines before `index`, after reading them if necessary.
    void forgetBefore(std::size_t index);

    std::uint64_t bytesRead() const { return next_; }

private:
    struct Line {
        std::uint64_t offset;
        std::size_t size;
    };

    bool readLine();
    bool readMore();

    std::string name_;
    std::shared_ptr<std::FILE> file_;
    std::string buffer_;
    std::uint64_t bufferOffset_ = 0;  // of its first byte in the file
    std::uint64_t next_ = 0;          // offset of the next line
    std::size_t searched_ = 0;        // bytes of the next line that have no line end
    std::size_t first_ = 0;           // number of the first line in memory
    std::deque<Line> held_;
    bool isAtEnd_ = false;
};

}  // namespace tool
