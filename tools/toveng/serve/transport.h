#pragma once

#include <QByteArray>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "serve/channel.h"
#include "serve/framing.h"

namespace tool::lsp {

/// Writes the conversation to a file. Used by several threads.
class Log {
public:
    /// Throws Trouble if the file cannot be written. With an empty path, nothing is logged.
    explicit Log(std::string const& path);
    /// Adds a message with the time and its direction, "<--" from the client or "-->" to it.
    void add(char const* direction, std::string_view message);

private:
    std::mutex mutex_;
    std::ofstream file_;
};

/// Returns the complete messages, and logs them.
std::vector<Event> messagesIn(Framer& framer, Log& log);

/// Reads messages from a file descriptor in a separate thread.
class Input {
public:
    Input(int fd, Channel& channel, Log& log);
    /// Waits for the thread; the descriptor stays open.
    ~Input();
    Input(Input const&) = delete;
    Input& operator=(Input const&) = delete;

    /// Whether the client has closed its end. Some of its messages may still wait.
    bool hasEnded() const;

private:
    void run();

    int fd_;
    int stop_[2];
    Channel& channel_;
    Log& log_;
    std::atomic<bool> ended_{false};
    std::thread thread_;
};

/// Writes messages to a file descriptor, and waits while the client does not read.
class Output {
public:
    /// The client has closed its end: nothing more can be written.
    struct Closed : std::runtime_error {
        using std::runtime_error::runtime_error;
    };

    /// How long to wait for a client that has closed its end and does not read.
    static constexpr std::chrono::seconds patience{5};

    Output(int fd, Input const& input, Log& log) : fd_(fd), input_(input), log_(log) {}
    /// Writes a message; throws Closed if it cannot be written.
    void send(QByteArray const& message);

private:
    void write(char const* bytes, std::size_t size);
    void waitUntilWritable();

    int fd_;
    Input const& input_;
    Log& log_;
};

}  // namespace tool::lsp
