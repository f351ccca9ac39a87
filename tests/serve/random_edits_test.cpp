// After each edit the findings are the same as those of a server that opens the whole text.

#include <gtest/gtest.h>

#include <random>

#include "conversation.h"
#include "tests/support.h"

namespace {

using conversation::Conversation;

// Lines that make commands depend on each other, or continue on the next line.
char const* const pieces[] = {
    "create_clock -period 10 -name clk_a [get_ports clk]\n",
    "create_clock -period 5 -name clk_b [get_ports tck]\n",
    "create_clock -waveform\n",
    "set_input_delay 1 -clock clk_a [get_ports tdi]\n",
    "set_input_delay 2 -min -clock clk_a [get_ports tdi]\n",
    "set_input_delay -max 1 -clock [get_clocks clk_*] [get_ports {tdi}]\n",
    "set_false_path -from [get_clocks clk_b] -to [get_ports nope]\n",
    "set_false_path -from clk_c\n",
    "#disable set_max_delay 3 -from [get_cells u_cpu]\n",
    "set_min_delay 4 -to [get_ports tdo]\nset_max_delay 3 -to [get_ports tdo]\n",
    "set_clock_groups -asynchronous -group [get_clocks clk_a] -group {clk_b}\n",
    "set_false_path -from [get_ports {tdi\n",
    "tms}]\n",
    "set_multicycle_path 2 -setup \\\n",
    "# a comment\n",
    "if {1} {\n",
    "}\n",
    "set_flase_path -from [get_port a]\n",
    "source other.tcl\n",
    "\xf0\x9f\x98\x80 \xc3\xbc [get_nets \xc3\xbc]\n",
    "\r",
    "\r\n",
    "\n",
    "#attribute a b c\n",
    "[",
    "}",
    "\"",
    "\\\n",
    "$x",
    " ",
};

/// A text as a client stores it, in its own units.
template <class String>
class ClientText {
public:
    using Unit = typename String::value_type;

    String const& text() const { return text_; }

    QJsonObject positionOf(std::size_t offset) const {
        std::size_t line = 0;
        std::size_t start = 0;
        for (std::size_t i = 0; i < offset; ++i) {
            bool const isEnd = text_[i] == Unit('\n') || (text_[i] == Unit('\r') && !isFeed(i + 1));
            if (!isEnd) continue;
            ++line;
            start = i + 1;
        }
        return {{"line", static_cast<qint64>(line)}, {"character", static_cast<qint64>(offset - start)}};
    }

    // A position that is not inside a character or a line end.
    std::size_t placeNear(std::size_t offset) const {
        offset = std::min(offset, text_.size());
        while (offset > 0 && offset < text_.size() && (continues(text_[offset]) || isSplitEnd(offset))) --offset;
        return offset;
    }

    void replace(std::size_t first, std::size_t last, String const& text) { text_.replace(first, last - first, text); }

private:
    bool isFeed(std::size_t at) const { return at < text_.size() && text_[at] == Unit('\n'); }
    bool isSplitEnd(std::size_t at) const { return isFeed(at) && text_[at - 1] == Unit('\r'); }
    static bool continues(Unit unit) {
        if (sizeof(Unit) == 1) return (static_cast<unsigned>(unit) & 0xc0U) == 0x80;
        return (static_cast<unsigned>(unit) & 0xfc00U) == 0xdc00;
    }

    String text_;
};

std::string asUtf8(std::string const& text) {
    return text;
}

std::string asUtf8(std::u16string const& text) {
    return QString::fromStdU16String(text).toStdString();
}

template <class String>
String fromUtf8(char const* text);

template <>
std::string fromUtf8(char const* text) {
    return text;
}

template <>
std::u16string fromUtf8(char const* text) {
    return QString::fromUtf8(text).toStdU16String();
}

QJsonObject initialization(char const* encoding, std::string const& design) {
    QJsonObject options;
    if (!design.empty()) options.insert("design", QString::fromStdString(design));
    QJsonObject const general{{"positionEncodings", QJsonArray{encoding}}};
    return {{"capabilities", QJsonObject{{"general", general}}}, {"initializationOptions", options}};
}

/// The findings that the server has sent last; null if it has not sent any.
QJsonValue lastFindings(Conversation& client) {
    QJsonValue last;
    for (QJsonObject const& message : client.take()) {
        if (message.value("method") != "textDocument/publishDiagnostics") continue;
        last = message.value("params").toObject().value("diagnostics");
    }
    return last;
}

// One per line.
std::string asText(QJsonValue const& findings) {
    std::string text;
    for (QJsonValue const& finding : findings.toArray()) {
        text += QJsonDocument(finding.toObject()).toJson(QJsonDocument::Compact).toStdString() + "\n";
    }
    return text;
}

template <class String>
void editAtRandom(char const* encoding, std::string const& design, unsigned seed) {
    constexpr int edits = 2000;
    constexpr std::size_t longest = 1500;
    QString const uri = "file:///w/a.tov";
    Conversation edited("/w");
    Conversation fresh("/w");
    for (Conversation* client : {&edited, &fresh}) {
        client->request("initialize", initialization(encoding, design));
        client->notify("initialized", {});
        client->waitForDesign();
    }
    std::mt19937 random(seed);
    auto const upTo = [&](std::size_t most) { return std::uniform_int_distribution<std::size_t>(0, most)(random); };
    ClientText<String> text;
    edited.open(uri, "");
    for (int edit = 0; edit < edits; ++edit) {
        QJsonArray changes;
        for (std::size_t count = upTo(2) + 1; count > 0; --count) {
            std::size_t const first = text.placeNear(upTo(text.text().size()));
            bool const isLong = text.text().size() > longest;
            std::size_t const last = text.placeNear(first + (upTo(3) == 0 || isLong ? upTo(isLong ? 300 : 60) : 0));
            String const piece = upTo(5) == 0 ? String() : fromUtf8<String>(pieces[upTo(std::size(pieces) - 1)]);
            QJsonObject const range{{"start", text.positionOf(first)}, {"end", text.positionOf(std::max(first, last))}};
            changes.append(QJsonObject{{"range", range}, {"text", QString::fromStdString(asUtf8(piece))}});
            text.replace(first, std::max(first, last), piece);
        }
        edited.change(uri, edit + 2, changes);
        fresh.open(uri, asUtf8(text.text()));
        QJsonValue const findings = lastFindings(edited);
        QJsonValue const expected = lastFindings(fresh);
        ASSERT_TRUE(findings == expected && findings.isArray()) << "seed " << seed << ", edit " << edit << "\n"
                                                                << asUtf8(text.text()) << "\nfindings:\n"
                                                                << asText(findings) << "expected:\n"
                                                                << asText(expected);
        fresh.notify("textDocument/didClose", {{"textDocument", QJsonObject{{"uri", uri}}}});
        fresh.take();
        ASSERT_TRUE(edited.takeComplaints().empty());
    }
}

std::string const design = SAMPLES "/design_tour/soc.xml";

TEST(RandomEdits, Utf16) {
    editAtRandom<std::u16string>("utf-16", "", 1);
}

TEST(RandomEdits, Utf16WithDesign) {
    editAtRandom<std::u16string>("utf-16", design, 2);
}

TEST(RandomEdits, Utf8) {
    editAtRandom<std::string>("utf-8", "", 3);
}

TEST(RandomEdits, Utf8WithDesign) {
    editAtRandom<std::string>("utf-8", design, 4);
}

}  // namespace
