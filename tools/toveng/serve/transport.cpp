#include "serve/transport.h"

#include <poll.h>
#include <unistd.h>

#include <QDateTime>
#include <QJsonDocument>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "serve/framing.h"
#include "text.h"

namespace tool::lsp {

namespace {

std::string_view viewOf(QByteArray const& bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

Incoming parsed(QByteArray const& body) {
    QJsonParseError error{};
    QJsonDocument const document = QJsonDocument::fromJson(body, &error);
    Incoming incoming;
    incoming.size = static_cast<std::size_t>(body.size());
    if (error.error != QJsonParseError::NoError) return incoming;
    incoming.form = document.isObject() ? Incoming::Form::object : Incoming::Form::other;
    incoming.message = document.object();
    return incoming;
}

}  // namespace

std::vector<Event> messagesIn(Framer& framer, Log& log) {
    std::vector<Event> events;
    QByteArray body;
    for (;;) {
        Framer::Result const result = framer.next(body);
        if (result == Framer::Result::needMore) return events;
        if (result == Framer::Result::broken) {
            log.add("<--", "(a header without a length)");
            events.emplace_back(Incoming{});
            continue;
        }
        log.add("<--", viewOf(body));
        events.emplace_back(parsed(body));
    }
}

Log::Log(std::string const& path) {
    if (path.empty()) return;
    file_.open(path, std::ios::binary);
    if (!file_.is_open()) throw Trouble(path + ": " + std::strerror(errno));
}

void Log::add(char const* direction, std::string_view message) {
    if (!file_.is_open()) return;
    std::string const time = QDateTime::currentDateTimeUtc().toString("hh:mm:ss.zzz").toStdString();
    std::lock_guard const lock(mutex_);
    file_ << time << ' ' << direction << ' ' << message << std::endl;  // complete even if the server ends here
}

Input::Input(int fd, Channel& channel, Log& log) : fd_(fd), stop_{-1, -1}, channel_(channel), log_(log) {
    if (::pipe(stop_) != 0) throw Trouble(std::string("pipe: ") + std::strerror(errno));
    thread_ = std::thread([this] { run(); });
}

Input::~Input() {
    channel_.close();
    ::close(stop_[1]);
    thread_.join();
    ::close(stop_[0]);
}

bool Input::hasEnded() const {
    if (ended_) return true;
    pollfd end{fd_, POLLRDHUP, 0};  // a socket may be closed in one direction only
    return ::poll(&end, 1, 0) > 0 && (end.revents & (POLLHUP | POLLRDHUP)) != 0;
}

void Input::run() {
    Framer framer;
    std::array<char, 65536> buffer{};
    for (;;) {
        std::array<pollfd, 2> waiting{{{fd_, POLLIN, 0}, {stop_[0], POLLIN, 0}}};
        if (::poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR) break;
        if (waiting[1].revents != 0) return;
        if (waiting[0].revents == 0) continue;
        ssize_t const size = ::read(fd_, buffer.data(), buffer.size());
        if (size < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (size <= 0) break;
        framer.append({buffer.data(), static_cast<std::size_t>(size)});
        std::vector<Event> events = messagesIn(framer, log_);
        if (!events.empty()) channel_.push(std::move(events));
    }
    ended_ = true;
    channel_.push({Event{EndOfInput{}}});
}

void Output::send(QByteArray const& message) {
    log_.add("-->", viewOf(message));
    std::string const header = "Content-Length: " + std::to_string(message.size()) + "\r\n\r\n";
    write(header.data(), header.size());
    write(message.constData(), static_cast<std::size_t>(message.size()));
}

// A ready pipe accepts this many bytes at once: the write does not block.
void Output::write(char const* bytes, std::size_t size) {
    constexpr std::size_t block = 4096;
    while (size > 0) {
        waitUntilWritable();
        ssize_t const written = ::write(fd_, bytes, std::min(size, block));
        if (written < 0 && (errno == EINTR || errno == EAGAIN)) continue;
        if (written < 0) throw Closed(std::strerror(errno));
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

void Output::waitUntilWritable() {
    constexpr int slice = 100;  // milliseconds
    std::chrono::milliseconds waited{0};
    for (;;) {
        pollfd waiting{fd_, POLLOUT, 0};
        int const ready = ::poll(&waiting, 1, slice);
        if (ready > 0) return;
        if (ready < 0 && errno != EINTR) throw Closed(std::strerror(errno));
        waited += std::chrono::milliseconds(slice);
        if (!input_.hasEnded()) waited = {};
        if (waited >= patience) throw Closed("the client does not read");
    }
}

}  // namespace tool::lsp
