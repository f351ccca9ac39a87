// The language server: bytes of a client, including framed messages. Each message that the server sends is valid.

#include <QJsonDocument>

#include "fuzz/fuzz.h"
#include "serve/server.h"
#include "serve/transport.h"

using namespace tool::lsp;

namespace {

void checkMessage(QByteArray const& message) {
    QJsonParseError error{};
    QJsonDocument const json = QJsonDocument::fromJson(message, &error);
    fuzz::require(error.error == QJsonParseError::NoError && json.isObject(), "a message", message.toStdString());
}

// "hover\n..." is short for a message with a length, so that the fuzzer need not count.
std::string framed(std::string const& input) {
    std::string bytes;
    for (std::size_t at = 0; at < input.size();) {
        std::size_t const end = std::min(input.find('\n', at), input.size());
        std::string const line = input.substr(at, end - at);
        if (!line.empty() && line.front() == '{')
            bytes += "Content-Length: " + std::to_string(line.size()) + "\r\n\r\n";
        bytes += line;
        if (line.empty() || line.front() != '{') bytes += '\n';
        at = end + 1;
    }
    return bytes;
}

}  // namespace

void fuzz::run(std::string const& input) {
    Log log("");
    Channel channel;
    Framer framer;
    Server server({checkMessage, [](std::string const&) {}, [](int, std::string const&) {}, [](DesignPtr const&) {}},
                  {}, "/nowhere");
    framer.append(framed(input));
    std::vector<Event> events = messagesIn(framer, log);
    channel.push(std::move(events));
    while (std::optional<Event> const event = channel.take({})) {
        if (server.hasEnded()) break;
        server.handle(*event);
        server.settle();
    }
}
