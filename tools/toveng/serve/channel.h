#pragma once

#include <QJsonObject>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <variant>
#include <vector>

#include "serve/design_loader.h"

namespace tool::lsp {

/// A message from the client.
struct Incoming {
    enum class Form { object, other, broken };

    Form form = Form::broken;  ///< `other` is JSON, `broken` is neither JSON nor a header with a length
    QJsonObject message;
    std::size_t size = 0;  ///< in bytes, as received
    bool isCancelled = false;
};

/// The client has closed its end.
struct EndOfInput {};

using Event = std::variant<Incoming, DesignEvent, EndOfInput>;

/// Passes events from the threads that create them to the one that handles them.
class Channel {
public:
    /// While the messages in the channel are larger than this, more messages of the client have to wait.
    static constexpr std::size_t limit = std::size_t{16} << 20;

    /// Adds events that came together. First waits for room, unless the channel is closed. A "$/cancelRequest" marks
    /// the request that it cancels, if that is still in the channel.
    void push(std::vector<Event> events);
    /// Removes and returns the next event; waits for it up to a timeout.
    std::optional<Event> take(std::chrono::milliseconds most);
    /// Stops push() from waiting.
    void close();

private:
    void add(Event event);

    std::mutex mutex_;
    std::condition_variable arrived_;
    std::condition_variable taken_;
    std::deque<Event> events_;
    std::size_t size_ = 0;
    bool closed_ = false;
};

}  // namespace tool::lsp
