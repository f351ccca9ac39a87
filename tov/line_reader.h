#ifndef TOVENG_TOV_LINE_READER_H
#define TOVENG_TOV_LINE_READER_H

#include <cstddef>
#include <memory>
#include <string_view>

#include "tov/input_file.h"

namespace kiri::tov {

/// Gives the lines of a file one by one, as views into its buffer. The buffer grows to the longest line and
/// never beyond the size of the file.
class LineReader {
public:
    explicit LineReader(InputFile& file);

    /// Puts the next line, without its line feed, into `line`; the view lives until the next call. False at
    /// the end.
    bool next(std::string_view& line);

    /// Whether reading stopped at an error rather than at the end of the file.
    bool failed() const { return failed_; }

private:
    bool fill();

    InputFile& file_;
    std::size_t capacity_;
    std::unique_ptr<char[]> buffer_;
    std::size_t begin_ = 0;  // of what was read and not given out
    std::size_t end_ = 0;
    bool failed_ = false;
};

}  // namespace kiri::tov

#endif
