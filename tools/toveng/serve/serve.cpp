// toveng serve: a language server on standard input and output.

#include <unistd.h>

#include <QDir>
#include <csignal>
#include <cstdlib>

#include "command.h"
#include "serve/server.h"
#include "serve/transport.h"
#include "text.h"

namespace tool::lsp {

namespace {

/// Reserves standard output for the protocol: other output goes to standard error.
int takeStandardOutput() {
    int const fd = ::dup(STDOUT_FILENO);
    if (fd < 0 || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0) throw Trouble("standard output is closed");
    return fd;
}

QJsonArray codesIn(Arguments const& arguments, char const* option) {
    QJsonArray codes;
    for (std::string const& list : arguments.values(option)) {
        for (QString const& code : toText(list).split(',', Qt::SkipEmptyParts)) codes.append(code);
    }
    return codes;
}

Settings settingsOf(Arguments const& arguments) {
    QJsonObject object;
    for (char const* option : {"design", "match"}) {
        if (arguments.has(option)) object.insert(option, toText(arguments.value(option)));
    }
    for (char const* option : {"ignore", "select"}) {
        if (arguments.has(option)) object.insert(option, codesIn(arguments, option));
    }
    QStringList problems;
    Settings settings = Settings::read(object, problems);
    if (!problems.isEmpty()) throw Trouble(problems.front().toStdString());
    // Relative to the working directory, not to the workspace.
    if (settings.design) settings.design = QDir::current().absoluteFilePath(*settings.design);
    return settings;
}

// Findings are sent when no messages wait, or twice a second if messages never stop.
void work(Server& server, Channel& channel) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds tick{300};
    constexpr std::chrono::milliseconds longest{500};
    constexpr std::chrono::hours unbounded{24};
    Clock::time_point ticked = Clock::now();
    Clock::time_point settled = ticked;
    while (!server.hasEnded()) {
        std::optional<Event> event = channel.take({});
        if (!event || Clock::now() - settled > longest) {
            server.settle();
            settled = Clock::now();
        }
        if (!event) event = channel.take(server.isWatching() ? tick : std::chrono::milliseconds(unbounded));
        if (event) server.handle(*event);
        if (Clock::now() - ticked < tick) continue;
        server.tick();
        ticked = Clock::now();
    }
}

}  // namespace

}  // namespace tool::lsp

namespace tool {

int serve(Arguments const& arguments) {
    using namespace lsp;
    Settings const settings = settingsOf(arguments);
    Log log(arguments.value("log"));
    std::signal(SIGPIPE, SIG_IGN);  // a write to a closed client reports an error
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
        // The client no longer exists.
    }
    // Nothing is left to write, and freeing a design takes long.
    std::_Exit(server.status());
}

}  // namespace tool
