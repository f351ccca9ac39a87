#include "tov/design/dump_file.h"

#include <algorithm>
#include <string_view>

namespace kiri::tov::impl_detail {

namespace {

constexpr int attributeLimit = 1000;
constexpr qint64 blockSize = 8192;

}  // namespace

DumpFile::DumpFile(char const* path) : file_(path) {
    if (file_.isOpen()) open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

// An element that lies within a block is too short to do harm. So only what the block goes on with and what
// it leaves open is looked at.
qint64 DumpFile::readData(char* data, qint64 size) {
    ssize_t const got = file_.read(data, static_cast<std::size_t>(std::min(size, blockSize)));
    // An error is an end, like that of a file that is cut short.
    if (got <= 0) return 0;
    std::string_view const block(data, static_cast<std::size_t>(got));
    char* const end = data + got;
    std::size_t const first = block.find('<');
    if (first == std::string_view::npos) {
        dropSurplusAttributes(data, end);
    } else {
        dropSurplusAttributes(data, data + first);
        dropSurplusAttributes(data + block.rfind('<'), end);
    }
    return got;
}

// Overwrites by blanks what stands between the last attribute within the limit and the end of a tag. No "<"
// stands in a tag, so that each one is a fresh start, whatever a comment or a declaration held before it:
// none holds a thousand quoted words between a "<" and a ">". Zero bytes are halves of UTF-16 units.
void DumpFile::dropSurplusAttributes(char* begin, char* end) {
    for (char* at = begin; at != end; ++at) {
        char const c = *at;
        bool const surplus = attributes_ >= attributeLimit;
        if (c == '\0') continue;
        if (c == '<') {
            state_ = State::tagOpens;
            attributes_ = 0;
        } else if (state_ == State::tagOpens) {
            state_ = c == '!' || c == '?' ? State::text : State::tag;
        } else if (state_ == State::value) {
            if (surplus) *at = ' ';
            if (c == quote_) {
                state_ = State::tag;
                ++attributes_;
            }
        } else if (state_ == State::text || c == '>') {
            state_ = State::text;
        } else if (c == '"' || c == '\'') {
            if (surplus) *at = ' ';
            state_ = State::value;
            quote_ = c;
        } else if (surplus && c != '/') {
            *at = ' ';
        }
    }
}

}  // namespace kiri::tov::impl_detail
