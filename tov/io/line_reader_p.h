#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

#include "tov/io/file_p.h"
#include "tov/io/progress_meter_p.h"

namespace kiri::tov::impl_detail {

/// Reads a file line by line. The lines are views into the reader's buffer, which grows with the longest line.
class LineReader {
public:
    /// The file and the meter, if there is one, must outlive the reader.
    explicit LineReader(File const& file, ProgressMeter* meter = nullptr);

    /// Reads a text in place of a file.
    explicit LineReader(std::string_view text, ProgressMeter* meter = nullptr);

    /// Stores the next line, without its line feed, in `line`; a NUL byte follows it. The view is valid until the next
    /// call. Returns false at the end, and if the meter stops the load.
    bool next(std::string_view& line);

    /// Returns how many lines next() has returned.
    std::size_t number() const { return number_; }

    /// Returns how the reading ended: a failure if the file could not be read.
    Result takeResult() { return std::move(result_); }

private:
    struct Free {
        void operator()(char* block) const { std::free(block); }  // NOLINT(cppcoreguidelines-no-malloc)
    };

    bool fill();
    Result read(char* to, std::size_t size, std::size_t& got);
    void resize(std::size_t capacity);
    std::string_view take(std::size_t size);

    bool stopped() const { return meter_ != nullptr && meter_->stopped(); }

    File const* file_ = nullptr;
    std::string_view text_;  // without a file: the rest of the text
    ProgressMeter* meter_;
    std::size_t capacity_ = 0;
    std::unique_ptr<char, Free> buffer_;
    std::size_t begin_ = 0;  // start of the unconsumed bytes
    std::size_t end_ = 0;    // their end; the buffer has room for a byte after it
    std::size_t number_ = 0;
    Result result_;
};

}  // namespace kiri::tov::impl_detail
