// The parts of the server: the framing of messages, positions, words of a line; and its costs.

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include "analysis/words.h"
#include "conversation.h"
#include "serve/line_words.h"
#include "serve/name_list.h"
#include "tests/support.h"

namespace {

using conversation::Conversation;
using tool::lsp::Framer;

/// The message bodies in a stream; "!" for a broken one.
std::vector<std::string> bodiesIn(std::string const& stream, std::size_t block) {
    std::vector<std::string> bodies;
    Framer framer;
    QByteArray body;
    for (std::size_t at = 0; at < stream.size(); at += block) {
        framer.append(std::string_view(stream).substr(at, block));
        for (auto result = framer.next(body); result != Framer::Result::needMore; result = framer.next(body)) {
            bodies.push_back(result == Framer::Result::broken ? "!" : body.toStdString());
        }
    }
    return bodies;
}

TEST(Framer, TakesMessagesAndGoesOnAfterBrokenHeaders) {
    using Bodies = std::vector<std::string>;
    std::string const one = "Content-Length: 2\r\n\r\n{}";
    struct {
        std::string stream;
        Bodies bodies;
    } const rows[] = {
        {one + one, {"{}", "{}"}},
        {"content-LENGTH:2\nContent-Type: x\n\n{}", {"{}"}},
        {"Content-Length: 0\r\n\r\n" + one, {"", "{}"}},
        {"Content-Type: x\r\n\r\n{}" + one, {"!", "{}"}},
        {"rubbish" + one, {"!", "{}"}},
        {"rubbish\r\n" + one, {"{}"}},
        {"Content-Length: x\r\n\r\n" + one, {"!", "{}"}},
        {"Content-Length: -1\r\n\r\nContent-Length: 1e3\r\n\r\n" + one, {"!", "!", "{}"}},
        {"Content-Length: 99999999999999999999\r\n\r\n" + one, {"!", "{}"}},
        {"Content-Length: 268435457\r\n\r\n" + one, {"!", "{}"}},
        {std::string(10'000, 'x') + one, {"!", "{}"}},
        {"\r\n\r\n" + one, {"!", "{}"}},
    };
    for (auto const& row : rows) {
        for (std::size_t block : {std::size_t{1}, std::size_t{7}, row.stream.size()}) {
            EXPECT_EQ(bodiesIn(row.stream, block), row.bodies) << row.stream << " in blocks of " << block;
        }
    }
}

void writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        ssize_t const size = ::write(fd, bytes.data(), bytes.size());
        ASSERT_GT(size, 0);
        bytes.remove_prefix(static_cast<std::size_t>(size));
    }
}

// The reading thread then waits for room, and cannot notice the end by itself.
TEST(Input, NoticesTheEndWhileMessagesWait) {
    for (bool isSocket : {false, true}) {
        int ends[2];
        ASSERT_EQ(isSocket ? ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) : ::pipe(ends), 0);
        {
            tool::lsp::Channel channel;
            tool::lsp::Log log("");
            tool::lsp::Input const input(ends[0], channel, log);
            std::size_t const size = tool::lsp::Channel::limit;
            writeAll(ends[1], "Content-Length: " + std::to_string(size) + "\r\n\r\n" + std::string(size, ' '));
            writeAll(ends[1], "Content-Length: 2\r\n\r\n{}");
            EXPECT_FALSE(input.hasEnded());
            isSocket ? ::shutdown(ends[1], SHUT_WR) : ::close(ends[1]);
            EXPECT_TRUE(input.hasEnded()) << (isSocket ? "socket" : "pipe");
        }
        ::close(ends[0]);
        if (isSocket) ::close(ends[1]);
    }
}

TEST(Text, ConvertsPositions) {
    using tool::lsp::Encoding;
    tool::lsp::Text text;
    text.replaceAll("a\xc3\xbc\xf0\x9f\x98\x80z\r\nb\rcd\n\re\r");
    struct {
        std::size_t line;
        std::size_t character;
        Encoding encoding;
        int textLine;  // -1: the line does not exist
        std::size_t byte;
    } const rows[] = {
        {0, 2, Encoding::utf16, 0, 3}, {0, 3, Encoding::utf16, 0, 3},   // within the pair
        {0, 4, Encoding::utf16, 0, 7}, {0, 99, Encoding::utf16, 0, 8},  // before the line end
        {0, 3, Encoding::utf8, 0, 3},  {0, 2, Encoding::utf8, 0, 1},    // within the character
        {1, 5, Encoding::utf16, 1, 1}, {2, 1, Encoding::utf16, 1, 3},   // a lone CR ends the client's line
        {3, 9, Encoding::utf16, 2, 0}, {4, 1, Encoding::utf16, 2, 2},
        {5, 0, Encoding::utf16, 2, 3}, {6, 0, Encoding::utf16, -1, 0},
    };
    for (auto const& row : rows) {
        auto const place = text.placeAt(row.line, row.character, row.encoding);
        ASSERT_EQ(place.has_value(), row.textLine >= 0) << row.line << ":" << row.character;
        if (!place) continue;
        EXPECT_EQ(place->line, static_cast<std::size_t>(row.textLine)) << row.line << ":" << row.character;
        EXPECT_EQ(place->byte, row.byte) << row.line << ":" << row.character;
        EXPECT_EQ(text.positionOf(*place, row.encoding).line, row.line);
    }
}

/// The words of a line with their kinds, in short.
std::string wordsIn(std::string_view line) {
    constexpr char const* kinds[] = {"command", "option", "query", "name", "clock", "value", "other"};
    std::string text;
    for (tool::lsp::Word const& word : tool::lsp::wordsOf(line).words) {
        std::string kind = kinds[static_cast<int>(word.kind)];
        if (word.kind == tool::lsp::WordKind::name) kind = tool::lsp::typeTitle(word.type);
        if (!word.isJudged) kind += "?";
        if (word.isLocal) kind += "*";
        tool::addWord(text, std::string(word.text) + "=" + kind);
    }
    return text;
}

TEST(LineWords, KnowWhatEachWordRefersTo) {
    struct {
        char const* line;
        char const* words;
    } const rows[] = {
        {"create_clock -name c -period 10 -waveform {0 5} [get_ports {clk d[3]}]",
         "create_clock=command -name=option c=clock -period=option 10=value -waveform=option 0=value 5=value "
         "get_ports=query clk=port d[3]=port"},
        {" #disable set_input_delay -clock clk -min -0.5 a",
         "#disable=command set_input_delay=command -clock=option "
         "clk=clock -min=option -0.5=value a=object"},
        {"set_false_path -from [get_pins -hier {a b}] -to [get_cells -filter {x == y} c]",
         "set_false_path=command -from=option get_pins=query* -hier=option* a=pin* b=pin* -to=option "
         "get_cells=query? -filter=option? x=other? ===other? y=other? c=cell?"},
        {"set_clock_groups -group [list [get_clocks a] b] -group {c \"d\"}",
         "set_clock_groups=command -group=option list=query get_clocks=query a=clock b=other -group=option c=clock "
         "d=clock"},
        {"#attribute PORT clk KEEP 1 bool", "#attribute=command PORT=other clk=other KEEP=other 1=other bool=other"},
        {"# set_false_path -from a", ""},
        {"#disable\tset_false_path -from a", ""},
        {"]}\"", ""},
    };
    for (auto const& row : rows) EXPECT_EQ(wordsIn(row.line), row.words) << row.line;
}

TEST(NameList, CompletesUpToTheNextLevel) {
    tool::lsp::NameList names;
    for (char const* name : {"u/b/x", "u/a", "u/a/y", "u/a/z", "ux", "u/a", "v"}) names.add(name);
    names.sort();
    struct {
        char const* prefix;
        std::string completions;
    } const rows[] = {{"", "u/ ux v"}, {"u", "u/ ux"}, {"u/", "u/a u/a/ u/b/"}, {"u/a/", "u/a/y u/a/z"}, {"w", ""}};
    for (auto const& row : rows) {
        std::string found;
        names.complete(row.prefix, [&](std::string_view name) {
            tool::addWord(found, name);
            return true;
        });
        EXPECT_EQ(found, row.completions) << row.prefix;
    }
}

QString const documentUri = "file:///w/a.tov";

std::string largeDocument(int lines) {
    std::string text = "create_clock -period 10 -name clk [get_ports clk]\n";
    for (int i = 0; i < lines; ++i) {
        std::string const number = std::to_string(i);
        text += i % 100 == 0 ? "set_false_path -setup -from [get_ports p" + number + "]\n"
                             : "set_max_delay " + number + " -from [get_pins u" + number + "/Q] -to [get_clocks clk]\n";
    }
    return text;
}

void start(Conversation& client) {
    client.request("initialize", {{"capabilities", QJsonObject()}});
    client.notify("initialized", {});
}

QJsonArray typed(int line, QString const& text) {
    QJsonObject const place{{"line", line}, {"character", 17}};
    return {QJsonObject{{"range", QJsonObject{{"start", place}, {"end", place}}}, {"text", text}}};
}

QJsonArray replaced(int line, QString const& text) {
    QJsonObject const range{{"start", QJsonObject{{"line", line}, {"character", 0}}},
                            {"end", QJsonObject{{"line", line}, {"character", 999}}}};
    return {QJsonObject{{"range", range}, {"text", text}}};
}

double secondsUsed() {
    struct rusage used {};
    ::getrusage(RUSAGE_SELF, &used);
    return static_cast<double>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
           static_cast<double>(used.ru_utime.tv_usec + used.ru_stime.tv_usec) * 1e-6;
}

// Clocks of the document with another prefix do not displace those of the design.
TEST(Server, OffersTheClocksOfBothDocumentAndDesign) {
    Conversation client("/w");
    client.request("initialize", {{"initializationOptions", QJsonObject{{"design", SAMPLES "/design_tour/soc.xml"}}}});
    client.notify("initialized", {});
    client.waitForDesign();
    std::string text = "set_input_delay 1 -clock u\n";
    for (int i = 0; i < 300; ++i) text += "create_clock -period 3 -name c" + std::to_string(i) + " x\n";
    client.open(documentUri, text);
    QJsonObject const place{{"line", 0}, {"character", 26}};
    QJsonObject const answer = client.request(
        "textDocument/completion", {{"textDocument", QJsonObject{{"uri", documentUri}}}, {"position", place}});
    QJsonObject const list = answer.value("result").toObject();
    EXPECT_EQ(list.value("items").toArray().size(), 2);
    EXPECT_FALSE(list.value("isIncomplete").toBool());
}

TEST(Server, OffersTwoHundredClocksOfADesignAtMost) {
    support::TempDir const dir;
    for (int count : {200, 201}) {
        std::string dump = "<top name=\"t\"><clocks>";
        for (int i = 0; i < count; ++i) dump += "<clockitem name=\"c" + std::to_string(i) + "\" type=\"port\"/>";
        support::write(dir / "t.xml", dump + "</clocks><library name=\"l\"><unit name=\"t\"/></library></top>");
        Conversation client(dir / "");
        client.request("initialize", {{"initializationOptions", QJsonObject{{"design", "t.xml"}}}});
        client.notify("initialized", {});
        client.waitForDesign();
        client.open(documentUri, "set_input_delay 1 -clock \n");
        QJsonObject const answer =
            client.request("textDocument/completion", {{"textDocument", QJsonObject{{"uri", documentUri}}},
                                                       {"position", QJsonObject{{"line", 0}, {"character", 25}}}});
        QJsonObject const list = answer.value("result").toObject();
        EXPECT_EQ(list.value("items").toArray().size(), 200);
        EXPECT_EQ(list.value("isIncomplete").toBool(), count > 200) << count;
    }
}

// A load that has been replaced may end after that.
TEST(Server, IgnoresTheDesignOfAnEarlierLoad) {
    Conversation client("/w");
    client.request("initialize", {{"initializationOptions", QJsonObject{{"design", "none.xml"}}}});
    client.notify("initialized", {});
    client.waitForDesign();
    client.take();
    client.server().handle(tool::lsp::DesignEvent{-1, 100, nullptr, "of an earlier load"});
    EXPECT_TRUE(client.take().empty());
}

/// The titles of the actions for the first line of a document.
std::string titlesIn(QJsonObject const& answer) {
    std::string titles;
    for (QJsonValue const& action : answer.value("result").toArray()) {
        titles += action.toObject().value("title").toString().toStdString() + "\n";
    }
    return titles;
}

QJsonObject actionsAt(int line) {
    QJsonObject const place{{"line", line}, {"character", 0}};
    return {{"textDocument", QJsonObject{{"uri", documentUri}}},
            {"range", QJsonObject{{"start", place}, {"end", place}}},
            {"context", QJsonObject{{"diagnostics", QJsonArray()}}}};
}

// Actions that come with an edit in one block of bytes are those of the edited text.
TEST(Server, OffersActionsForTheTextAfterAnEdit) {
    Conversation client("/w");
    start(client);
    client.open(documentUri, "set_false_path -from [get_clocks clk]\ncreate_clock -period 1 -name clk\n");
    QJsonObject const edit{{"textDocument", QJsonObject{{"uri", documentUri}, {"version", 2}}},
                           {"contentChanges", replaced(0, "set_false_path -from [get_clocks clj]")}};
    client.take();
    client.send(Conversation::framed({{"method", "textDocument/didChange"}, {"params", edit}}) +
                Conversation::framed({{"id", "a"}, {"method", "textDocument/codeAction"}, {"params", actionsAt(0)}}));
    EXPECT_EQ(titlesIn(client.take().front()), "Write clk\nDisable the command\nWrite the line as a save does\n");
}

// The objects of both ends make a line for each pair.
TEST(Server, OffersAThousandLinesForACommandAtMost) {
    for (int count : {25, 26}) {
        std::string names;
        for (int i = 0; i < 40; ++i) names += " p" + std::to_string(i);
        std::string others;
        for (int i = 0; i < count; ++i) others += " q" + std::to_string(i);
        Conversation client("/w");
        start(client);
        client.open(documentUri, "set_false_path -from [get_ports {" + names + "}] -to [get_ports {" + others + "}]\n");
        std::string const titles = titlesIn(client.request("textDocument/codeAction", actionsAt(0)));
        EXPECT_EQ(titles,
                  (count == 25 ? "Write one command for each object\n" : "") + std::string("Disable the command\n"));
    }
}

// The promise is a tenth; both figures include the work of the test itself.
TEST(Server, JudgesAfterAnEditWhatItMayChange) {
    Conversation client("/w");
    start(client);
    double const before = secondsUsed();
    client.open(documentUri, largeDocument(5'000));
    double const whole = secondsUsed() - before;
    constexpr int edits = 10;
    double const start = secondsUsed();
    for (int i = 0; i < edits; ++i) client.change(documentUri, 2 + i, typed(2'000 + i, "9"));
    EXPECT_LT((secondsUsed() - start) / edits, whole / 5);
}

TEST(Server, DoesNotGrowInALongConversation) {
    Conversation client("/w");
    start(client);
    client.open(documentUri, largeDocument(100));
    // Each name is new, but the places of removed names are reused.
    auto const converse = [&client](int from, int count) {
        for (int i = from; i < from + count; ++i) {
            QString const text = i % 2 == 0 ? QString("set_false_path -from [get_clocks typed_%1]").arg(i)
                                            : QString("create_clock -period 3 -name typed_%1 x").arg(i);
            client.change(documentUri, i, replaced(7 + i % 2, text));
            client.request("textDocument/hover", {{"textDocument", QJsonObject{{"uri", documentUri}}},
                                                  {"position", QJsonObject{{"line", 7}, {"character", 40}}}});
            client.take();
        }
    };
    converse(0, 500);
    std::size_t const before = ::mallinfo2().uordblks;
    converse(500, 1'000);
    EXPECT_LT(::mallinfo2().uordblks, before + 50'000);
}

}  // namespace
