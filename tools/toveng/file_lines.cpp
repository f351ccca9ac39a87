#include "file_lines.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "text.h"

namespace tool {

namespace {

void closeFile(std::FILE* file) {
    if (file != nullptr) std::fclose(file);
}

}  // namespace

FileLines::FileLines(Input const& input) : name_(input.name()), file_(std::fopen(input.path(), "rb"), closeFile) {
    if (file_ == nullptr) throw Trouble(name_ + ": " + std::strerror(errno));
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // FileLines has its own buffer
}

bool FileLines::get(std::size_t index, std::string_view& line) {
    while (index - first_ >= held_.size()) {
        if (!readLine()) return false;
    }
    Line const& held = held_[index - first_];
    line = std::string_view(buffer_).substr(held.offset - bufferOffset_, held.size);
    return true;
}

void FileLines::forgetBefore(std::size_t index) {
    while (first_ < index && (!held_.empty() || readLine())) {
        held_.pop_front();
        ++first_;
    }
}

bool FileLines::readLine() {
    for (;;) {
        std::size_t const start = next_ - bufferOffset_;
        std::size_t const from = start + searched_;
        // NOLINTNEXTLINE(bugprone-not-null-terminated-result): the buffer is not a text
        void const* const found = std::memchr(buffer_.data() + from, '\n', buffer_.size() - from);
        if (found != nullptr) {
            auto const end = static_cast<std::size_t>(static_cast<char const*>(found) - buffer_.data());
            bool const hasReturn = end > start && buffer_[end - 1] == '\r';
            held_.push_back({next_, end - start - (hasReturn ? 1 : 0)});
            next_ = bufferOffset_ + end + 1;
            searched_ = 0;
            return true;
        }
        searched_ = buffer_.size() - start;
        if (readMore()) continue;
        if (searched_ == 0) return false;
        held_.push_back({next_, searched_});
        next_ += searched_;
        searched_ = 0;
        return true;
    }
}

// Drops the forgotten lines and reads as much again as the buffer holds.
bool FileLines::readMore() {
    if (isAtEnd_) return false;
    std::uint64_t const kept = held_.empty() ? next_ : held_.front().offset;
    buffer_.erase(0, kept - bufferOffset_);
    bufferOffset_ = kept;
    std::size_t const size = buffer_.size();
    constexpr std::size_t block = 65536;
    buffer_.resize(size + std::max(size, block));
    std::size_t const read = std::fread(&buffer_[size], 1, buffer_.size() - size, file_.get());
    buffer_.resize(size + read);
    if (std::ferror(file_.get()) != 0) throw Trouble(name_ + ": " + std::strerror(errno));
    isAtEnd_ = read == 0;
    return read > 0;
}

}  // namespace tool
