// toveng serve: a language server on standard input and output.

#include <unistd.h>

#include <QDir>
#include <csignal>

#include "command.h"
#include "serve/server.h"
#include "serve/transport.h"
#include "text.h"

namespace tool {

namespace {

using namespace lsp;

/// Takes standard output away from everything but the protocol: what else prints goes to standard error.
int takeStandardOutput() {
    int const fd = ::dup(STDOUT_FILENO);
    if (fd < 0 || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0) throw Trouble("standard output is closed");
    return fd;
}

QStringList codesIn(Arguments const& arguments, char const* option) {
    return toText(arguments.value(option)).split(',', Qt::SkipEmptyParts);
}

Settings settingsOf(Arguments const& arguments) {
    QJsonObject object;
    for (char const* option : {"design", "match"}) {
        if (arguments.has(option)) object.insert(option, toText(arguments.value(option)));
    }
    for (char const* option : {"ignore", "select"}) {
        if (arguments.has(option)) object.insert(option, QJsonArray::fromStringList(codesIn(arguments, option)));
    }
    QStringList problems;
    Settings settings = Settings::read(object, problems);
    if (!problems.isEmpty()) throw Trouble(problems.front().toStdString());
    // Relative to where the program was started, not to the workspace.
    if (settings.design) settings.design = QDir::current().absoluteFilePath(*settings.design);
    return settings;
}

void work(Server& server, Channel& channel) {
    constexpr std::chrono::milliseconds tick{300};
    constexpr std::chrono::hours long_{24};
    while (!server.hasEnded()) {
        std::optional<Event> event = channel.take({});
        if (!event) {
            server.settle();
            event = channel.take(server.isWatching() ? tick : std::chrono::milliseconds(long_));
        }
        if (event) {
            server.handle(*event);
        }
        server.tick();
    }
}

}  // namespace

int serve(Arguments const& arguments) {
    Settings const settings = settingsOf(arguments);
    Log log(arguments.value("log"));
    std::signal(SIGPIPE, SIG_IGN);  // a client that has gone shows as an error of the write
    int const out = takeStandardOutput();
    Channel channel;
    lsp::Input const input(STDIN_FILENO, channel, log);
    lsp::Output output(out, input, log);
    DesignLoader loader([&channel](DesignEvent event) { channel.push({Event(std::move(event))}); });
    Server server(
        {[&](QByteArray const& message) { output.send(message); }, [](std::string const& line) { complain(line); },
         [&](int number, std::string path) {
             if (number == 0) return loader.stop();
             loader.load(number, std::move(path));
         },
         [&](DesignPtr design) { loader.dispose(std::move(design)); }},
        settings, QDir::currentPath().toStdString());
    try {
        work(server, channel);
    } catch (Output::Closed const&) {
        // There is nobody left to tell.
    }
    return server.status();
}

}  // namespace tool
