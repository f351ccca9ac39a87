#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "tov/input_file.h"
#include "tov/progress_meter.h"

namespace kiri::tov {

/// Gives the lines of a file one by one, as views into its buffer, which grows with the longest line.
class LineReader {
public:
    /// The file and the meter outlive the reader.
    LineReader(InputFile& file, ProgressMeter& meter);

    /// Puts the next line, without its line feed, into `line`; a NUL byte stands after it. The view lives until the
    /// next call. False at the end, and where the meter stops the load.
    bool next(std::string_view& line);

    /// Whether reading stopped at an error rather than at the end of the file.
    bool failed() const { return failed_; }

private:
    struct Free {
        void operator()(char* block) const { std::free(block); }  // NOLINT(cppcoreguidelines-no-malloc)
    };

    bool fill();
    void resize(std::size_t capacity);
    std::string_view take(std::size_t size);

    InputFile& file_;
    ProgressMeter& meter_;
    std::size_t capacity_ = 0;
    std::unique_ptr<char, Free> buffer_;
    std::size_t begin_ = 0;  // of what was read and not given out
    std::size_t end_ = 0;    // at least one byte of the buffer stands after it
    bool failed_ = false;
};

}  // namespace kiri::tov
