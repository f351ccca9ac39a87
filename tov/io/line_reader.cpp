#include "tov/io/line_reader_p.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace kiri::tov::impl_detail {

namespace {

constexpr std::size_t chunkSize = std::size_t{16} * 1024;

}  // namespace

LineReader::LineReader(File const& file, ProgressMeter* meter) : file_(&file), meter_(meter) {
    resize(chunkSize + 1);
}

LineReader::LineReader(std::string_view text, ProgressMeter* meter) : text_(text), meter_(meter) {
    resize(chunkSize + 1);
}

bool LineReader::next(std::string_view& line) {
    for (std::size_t searched = 0;;) {
        char const* const text = buffer_.get() + begin_;
        std::size_t const size = end_ - begin_;
        if (void const* const lineFeed = std::memchr(text + searched, '\n', size - searched)) {
            line = take(static_cast<std::size_t>(static_cast<char const*>(lineFeed) - text));
            ++begin_;
            ++number_;
            return true;
        }
        searched = size;
        if (fill()) continue;
        line = take(end_ - begin_);
        if (line.empty() || !result_.ok() || stopped()) return false;
        ++number_;
        return true;
    }
}

// Consumes `size` of the unconsumed bytes. A long line is complete here: the buffer shrinks to the line and a chunk.
std::string_view LineReader::take(std::size_t size) {
    if (capacity_ - end_ > chunkSize + 1) resize(end_ + chunkSize + 1);
    char* const text = buffer_.get() + begin_;
    text[size] = '\0';
    begin_ += size;
    return {text, size};
}

// Reads a chunk after the unconsumed bytes, which move to the front of the buffer. If a line fills the buffer, it grows
// by an eighth: that is all the memory that a line needs beyond its own size.
bool LineReader::fill() {
    if (!result_.ok()) return false;
    std::size_t const unconsumed = end_ - begin_;
    if (begin_ > 0) std::memmove(buffer_.get(), buffer_.get() + begin_, unconsumed);
    begin_ = 0;
    end_ = unconsumed;
    if (unconsumed + 1 == capacity_) resize(capacity_ + std::max(chunkSize, capacity_ / 8));
    std::size_t const space = capacity_ - unconsumed - 1;
    std::size_t got = 0;
    result_ = read(buffer_.get() + unconsumed, std::min(space, chunkSize), got);
    if (got == 0 || (meter_ != nullptr && !meter_->add(got))) return false;
    end_ += got;
    return true;
}

Result LineReader::read(char* to, std::size_t size, std::size_t& got) {
    if (file_ != nullptr) return readSome(*file_, to, size, got);
    got = text_.copy(to, size);
    text_.remove_prefix(got);
    return {};
}

// The C library can grow and shrink a large block in place, so there are never two copies of it.
void LineReader::resize(std::size_t capacity) {
    void* const block = std::realloc(buffer_.get(), capacity);  // NOLINT(cppcoreguidelines-no-malloc)
    if (block == nullptr) throw std::bad_alloc();
    static_cast<void>(buffer_.release());
    buffer_.reset(static_cast<char*>(block));
    capacity_ = capacity;
}

}  // namespace kiri::tov::impl_detail
