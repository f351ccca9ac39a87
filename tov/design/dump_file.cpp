#include "tov/design/dump_file.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace kiri::tov::impl_detail {

namespace {

constexpr int attributeLimit = 10'000;
// A tag that begins and ends within a block is too short for so many.
constexpr qint64 blockSize = 8192;

char* findTag(char* at, char* end) {
    void* const found = std::memchr(at, '<', static_cast<std::size_t>(end - at));
    return found == nullptr ? end : static_cast<char*>(found);
}

// The first tag or markup that has to be looked at: all tags but the last lie within the block, as no "<" stands in
// a tag.
char* skipShortTags(char* at, char* end) {
    at = findTag(at, end);
    while (end - at > 1 && at[1] != '!' && at[1] != '?') {
        char* const next = findTag(at + 1, end);
        if (next == end) break;
        at = next;
    }
    return at;
}

}  // namespace

DumpFile::DumpFile(char const* path) : file_(path) {
    if (file_.isOpen()) open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

// Fills the block as far as there is a file: the XML reader takes less than four bytes for an end. A read error is an
// end like that of a file that is cut short.
qint64 DumpFile::readData(char* data, qint64 size) {
    size = std::min(size, blockSize);
    qint64 got = 0;
    for (ssize_t more = 1; more > 0 && got < size;) {
        more = file_.read(data + got, static_cast<std::size_t>(size - got));
        got += std::max<ssize_t>(more, 0);
    }
    char* const end = data + got;
    if (state_ == State::start) {
        // Each wider encoding has a zero byte in the first characters of a document.
        std::string_view const beginning(data, static_cast<std::size_t>(std::min<qint64>(got, 4)));
        state_ = beginning.find('\0') == std::string_view::npos ? State::text : State::wide;
    }
    if (state_ == State::wide) return got;
    for (char* at = data; at != end; ++at) {
        if (state_ == State::text && (at = skipShortTags(at, end)) == end) break;
        if (isSurplus(*at)) *at = ' ';
    }
    return got;
}

// Takes the next character; true if it stands between the last attribute within the limit and the end of its tag.
bool DumpFile::isSurplus(char c) {
    bool const surplus = attributes_ >= attributeLimit;
    // No "<" stands in a tag or value: each is a fresh start, whatever a declaration held before it.
    if (c == '<' && state_ != State::skipped) {
        state_ = State::opened;
        return false;
    }
    switch (state_) {
        case State::opened:
            attributes_ = 0;
            mark_ = c;
            state_ = c == '!' ? State::declared : c == '?' ? State::skipped : State::tag;
            return false;
        case State::declared:
            // A comment or a CDATA section; of other declarations the parts are taken for text.
            mark_ = c == '[' ? ']' : c;
            state_ = c == '-' || c == '[' ? State::skipped : State::text;
            last_[0] = last_[1] = '\0';
            return false;
        case State::skipped:
            if (c == '>' && last_[1] == mark_ && (mark_ == '?' || last_[0] == mark_)) state_ = State::text;
            last_[0] = last_[1];
            last_[1] = c;
            return false;
        case State::value:
            if (c == mark_) {
                state_ = State::tag;
                ++attributes_;
            }
            return surplus;
        case State::tag:
            if (c == '>') {
                state_ = State::text;
            } else if (c == '"' || c == '\'') {
                state_ = State::value;
                mark_ = c;
            }
            return surplus && c != '>' && c != '/' && c != '\n';
        default:
            return false;
    }
}

}  // namespace kiri::tov::impl_detail
