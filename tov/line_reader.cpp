#include "tov/line_reader.h"

#include <algorithm>
#include <cstring>

namespace kiri::tov {

namespace {

constexpr std::size_t chunkSize = std::size_t{32} * 1024;
constexpr std::size_t longLine = std::size_t{1024} * 1024;

// A buffer that a line fills doubles; for a very long line it takes the rest of the file at once. One byte more than
// the rest lets a read meet the end. `remaining` is 0 where it is not known.
std::size_t nextCapacity(std::size_t held, std::size_t remaining) {
    std::size_t const doubled = std::max(chunkSize, 2 * held);
    if (remaining == 0) return doubled;
    std::size_t const whole = held + remaining + 1;
    return doubled > longLine ? whole : std::min(doubled, whole);
}

}  // namespace

LineReader::LineReader(InputFile& file)
    : file_(file), capacity_(nextCapacity(0, file.remaining())), buffer_(new char[capacity_]) {}

bool LineReader::next(std::string_view& line) {
    for (std::size_t searched = 0;;) {
        char const* const text = buffer_.get() + begin_;
        std::size_t const size = end_ - begin_;
        if (void const* const feed = std::memchr(text + searched, '\n', size - searched)) {
            line = std::string_view(text, static_cast<std::size_t>(static_cast<char const*>(feed) - text));
            begin_ += line.size() + 1;
            return true;
        }
        searched = size;
        if (fill()) continue;
        line = std::string_view(buffer_.get() + begin_, end_ - begin_);
        begin_ = end_;
        return !line.empty();
    }
}

// Reads behind what is held, which moves to the front of the buffer, or of a larger one if it fills this one.
bool LineReader::fill() {
    std::size_t const held = end_ - begin_;
    if (held == capacity_) {
        std::size_t const capacity = nextCapacity(held, file_.remaining());
        std::unique_ptr<char[]> larger(new char[capacity]);
        std::memcpy(larger.get(), buffer_.get() + begin_, held);
        buffer_ = std::move(larger);
        capacity_ = capacity;
    } else if (begin_ > 0) {
        std::memmove(buffer_.get(), buffer_.get() + begin_, held);
    }
    begin_ = 0;
    end_ = held;
    ssize_t const got = file_.read(buffer_.get() + held, capacity_ - held);
    failed_ = got < 0;
    if (got <= 0) return false;
    end_ += static_cast<std::size_t>(got);
    return true;
}

}  // namespace kiri::tov
