#include "serve/channel.h"

#include <utility>

#include "serve/rpc.h"

namespace tool::lsp {

namespace {

// Even a short message takes some memory when it is parsed.
std::size_t sizeOf(Event const& event) {
    constexpr std::size_t least = 1024;
    auto const* const incoming = std::get_if<Incoming>(&event);
    return incoming == nullptr ? 0 : incoming->size + least;
}

void cancel(std::deque<Event>& events, QJsonValue const& id) {
    for (Event& event : events) {
        auto* const incoming = std::get_if<Incoming>(&event);
        if (incoming != nullptr && incoming->message.value("id") == id) incoming->isCancelled = true;
    }
}

}  // namespace

void Channel::push(std::vector<Event> events) {
    std::unique_lock lock(mutex_);
    bool const isMessage = !events.empty() && std::holds_alternative<Incoming>(events.front());
    taken_.wait(lock, [&] { return !isMessage || size_ < limit || closed_; });
    for (Event& event : events) add(std::move(event));
    arrived_.notify_one();
}

void Channel::add(Event event) {
    auto const* const incoming = std::get_if<Incoming>(&event);
    if (incoming != nullptr && incoming->message.value("method") == QLatin1String("$/cancelRequest")) {
        QJsonValue const id = at(incoming->message, {"params", "id"});
        if (id.isString() || id.isDouble()) cancel(events_, id);
    }
    size_ += sizeOf(event);
    events_.push_back(std::move(event));
}

std::optional<Event> Channel::take(std::chrono::milliseconds most) {
    std::unique_lock lock(mutex_);
    if (!arrived_.wait_for(lock, most, [this] { return !events_.empty(); })) return {};
    std::optional<Event> event(std::move(events_.front()));
    events_.pop_front();
    size_ -= sizeOf(*event);
    taken_.notify_one();
    return event;
}

void Channel::close() {
    std::lock_guard const lock(mutex_);
    closed_ = true;
    taken_.notify_one();
}

}  // namespace tool::lsp
