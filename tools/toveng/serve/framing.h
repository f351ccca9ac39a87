#pragma once

#include <QByteArray>
#include <cstddef>
#include <string_view>

namespace tool::lsp {

/// Splits a stream of bytes into the messages of the protocol:
///
///     Content-Length: 17\r\n
///     \r\n
///     {"method":"exit"}
///
/// Names of header fields are case-insensitive, other fields are ignored, and a line may end in a bare line feed. A
/// header without a usable length is reported once; reading continues at the next "Content-Length".
class Framer {
public:
    enum class Result {
        needMore,  ///< no message is complete: append() more
        message,   ///< the body of a message was returned
        broken     ///< a malformed header was skipped
    };

    /// Longer messages are refused like a header without a length.
    static constexpr std::size_t longest = std::size_t{256} << 20;

    void append(std::string_view bytes) { buffer_.append(bytes.data(), static_cast<int>(bytes.size())); }
    /// Returns what comes next; `body` is set only with Result::message.
    Result next(QByteArray& body);

private:
    std::string_view unread() const {
        return {buffer_.constData() + start_, static_cast<std::size_t>(buffer_.size()) - start_};
    }
    void skip(std::size_t bytes);
    bool skipToHeader();
    Result readHeader();

    QByteArray buffer_;
    std::size_t start_ = 0;     // of the unread bytes
    std::size_t searched_ = 0;  // number of unread bytes without the end of a header
    std::size_t length_ = 0;    // length of the next body
    bool inBody_ = false;
    bool isLost_ = false;  // after a broken header
};

}  // namespace tool::lsp
