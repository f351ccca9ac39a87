#include "serve/framing.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tool::lsp {

namespace {

constexpr std::string_view lengthField = "content-length:";
constexpr std::size_t longestHeader = 4096;

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::size_t findField(std::string_view text, std::size_t from = 0) {
    auto const start = text.begin() + static_cast<std::ptrdiff_t>(std::min(from, text.size()));
    auto const found = std::search(start, text.end(), lengthField.begin(), lengthField.end(),
                                   [](char a, char b) { return lower(a) == b; });
    return found == text.end() ? std::string_view::npos : static_cast<std::size_t>(found - text.begin());
}

// Returns the number in the rest of a line; nothing if that is not a length.
std::optional<std::size_t> lengthIn(std::string_view line) {
    std::size_t const first = std::min(line.find_first_not_of(" \t"), line.size());
    std::size_t const last = line.find_last_not_of(" \t\r") + 1;
    if (last <= first) return {};
    std::size_t length = 0;
    for (char c : line.substr(first, last - first)) {
        if (c < '0' || c > '9') return {};
        length = length * 10 + static_cast<std::size_t>(c - '0');
        if (length > Framer::longest) return {};
    }
    return length;
}

// Returns the place after a header's empty line; 0 if that is not there yet.
std::size_t headerEnd(std::string_view text, std::size_t from) {
    for (std::size_t at = text.find('\n', from); at != std::string_view::npos; at = text.find('\n', at + 1)) {
        std::string_view const rest = text.substr(at + 1, 2);
        if (!rest.empty() && rest[0] == '\n') return at + 2;
        if (rest == "\r\n") return at + 3;
    }
    return 0;
}

// Returns the length in a field at the beginning of a line.
std::optional<std::size_t> lengthOf(std::string_view header) {
    for (std::size_t at = findField(header); at != std::string_view::npos; at = findField(header, at + 1)) {
        if (at > 0 && header[at - 1] != '\n') continue;
        std::string_view const rest = header.substr(at + lengthField.size());
        return lengthIn(rest.substr(0, rest.find('\n')));
    }
    return {};
}

}  // namespace

void Framer::skip(std::size_t bytes) {
    start_ += bytes;
    searched_ = 0;
    // Drop what was read once it is the larger half.
    if (start_ * 2 < static_cast<std::size_t>(buffer_.size())) return;
    buffer_.remove(0, static_cast<int>(start_));
    start_ = 0;
}

// After a broken header: drops what precedes the next field with a length.
bool Framer::skipToHeader() {
    std::string_view const text = unread();
    std::size_t const at = findField(text);
    // The received bytes may end within the field.
    std::size_t const kept = std::min(text.size(), lengthField.size() - 1);
    skip(at == std::string_view::npos ? text.size() - kept : at);
    isLost_ = at == std::string_view::npos;
    return !isLost_;
}

Framer::Result Framer::readHeader() {
    std::string_view const text = unread();
    std::size_t end = headerEnd(text, searched_);
    if (end == 0) {
        searched_ = text.size() < 3 ? 0 : text.size() - 3;
        if (text.size() < longestHeader) return Result::needMore;
        end = text.size();
    }
    std::string_view const header = text.substr(0, end);
    if (std::optional<std::size_t> const length = lengthOf(header)) {
        inBody_ = true;
        length_ = *length;
        skip(end);
        return Result::message;
    }
    // The next message may begin with a field in the middle of a line.
    std::size_t const inner = findField(header, 1);
    skip(inner == std::string_view::npos || header[inner - 1] == '\n' ? end : inner);
    isLost_ = true;
    return Result::broken;
}

Framer::Result Framer::next(QByteArray& body) {
    if (isLost_ && !skipToHeader()) return Result::needMore;
    if (!inBody_) {
        Result const result = readHeader();
        if (result != Result::message) return result;
    }
    if (unread().size() < length_) return Result::needMore;
    body = QByteArray(unread().data(), static_cast<int>(length_));
    skip(length_);
    inBody_ = false;
    return Result::message;
}

}  // namespace tool::lsp
