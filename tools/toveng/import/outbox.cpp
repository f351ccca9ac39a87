#include "outbox.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace tool::sdc {

namespace {

std::string number(std::size_t value) {
    auto const size = static_cast<std::uint32_t>(value);
    char bytes[sizeof size];
    std::memcpy(bytes, &size, sizeof size);
    return {bytes, sizeof size};
}

}  // namespace

void Outbox::put(Record kind, std::string_view text) {
    if (muted > 0) return;
    end_ = shared_.end;
    char head[5] = {static_cast<char>(kind)};
    auto const size = static_cast<std::uint32_t>(text.size());
    std::memcpy(head + 1, &size, sizeof size);
    append({head, sizeof head});
    append(text);
    shared_.end = end_;  // publish the record only when it is complete
}

void Outbox::putFinding(Code code, std::string_view text, std::string_view message) {
    if (muted > 0) return;
    put(Record::finding,
        std::string(1, static_cast<char>(code)) + number(text.size()) + std::string(text) + std::string(message));
}

void Outbox::putBegin(std::uint32_t line, std::string_view text) {
    if (muted > 0) return;
    put(Record::begin, number(line).append(text));
}

void Outbox::append(std::string_view bytes) {
    while (!bytes.empty()) {
        if (end_ - flushed_ == Shared::capacity) {
            shared_.end = end_;
            flush();
        }
        std::size_t const at = end_ % Shared::capacity;
        std::size_t const room = std::min<std::size_t>(Shared::capacity - at, Shared::capacity - (end_ - flushed_));
        std::size_t const size = std::min(room, bytes.size());
        std::memcpy(shared_.ring + at, bytes.data(), size);
        end_ += size;
        bytes.remove_prefix(size);
    }
}

void Outbox::flush() {
    while (flushed_ < shared_.end) {
        std::size_t const at = flushed_ % Shared::capacity;
        std::size_t const size = std::min<std::size_t>(shared_.end - flushed_, Shared::capacity - at);
        ssize_t const written = ::write(pipe_, shared_.ring + at, size);
        if (written > 0)
            flushed_ += static_cast<std::uint64_t>(written);
        else if (errno != EINTR)
            ::_exit(1);  // the parent has ended
    }
}

}  // namespace tool::sdc
