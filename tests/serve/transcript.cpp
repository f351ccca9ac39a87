// transcript FILE: plays the conversations in a file with a server and compares its answers with what follows each row.
// UPDATE=1 writes the file instead. Rows of the client, with the place of a word as LINE:CHARACTER, from 0:
//
//   start [CAPABILITIES [OPTIONS]]  begins a conversation; the workspace is a scratch folder with the samples in it
//   connect                         begins one without an initialize request
//   write FILE                      writes a file of the workspace: the lines that begin with "| ", with \r and \xfc
//   open FILE                       opens a document with these lines
//   change FILE FROM-TO "TEXT"...   edits it, with all edits in one notification; \x1b as well
//   close FILE
//   FEATURE FILE PLACE [PARAMETERS] asks for hover, completion, definition ...
//   request METHOD PARAMETERS, notify METHOD PARAMETERS
//   answer RESULT, refuse           for the last request of the server
//   message JSON, raw BYTES         as they are; bytes with \r, \n and \0
//   design, tick                    waits for the design; lets the server look at files, if it watches any
//
// The output of the server is indented. Ranges are FROM-TO, and the workspace is $W.

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

#include "conversation.h"
#include "tests/support.h"

namespace {

using conversation::Conversation;

QString placeOf(QJsonObject const& position) {
    return QString("%1:%2").arg(position.value("line").toInt()).arg(position.value("character").toInt());
}

// Ranges in short.
QJsonValue shortened(QJsonValue const& value) {
    if (value.isArray()) {
        QJsonArray array;
        for (QJsonValue const& entry : value.toArray()) array.append(shortened(entry));
        return array;
    }
    if (!value.isObject()) return value;
    QJsonObject object = value.toObject();
    if (object.size() == 2 && object.contains("start") && object.contains("end")) {
        return placeOf(object.value("start").toObject()) + "-" + placeOf(object.value("end").toObject());
    }
    for (QString const& key : object.keys()) object.insert(key, shortened(object.value(key)));
    return object;
}

std::string jsonOf(QJsonValue const& value) {
    QByteArray const json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return json.mid(1, json.size() - 2).toStdString();
}

QJsonObject positionAt(std::string const& place) {
    std::size_t const colon = place.find(':');
    return {{"line", std::stoi(place.substr(0, colon))}, {"character", std::stoi(place.substr(colon + 1))}};
}

QJsonObject rangeAt(std::string const& range) {
    std::size_t const dash = range.find('-');
    std::string const end = dash == std::string::npos ? range : range.substr(dash + 1);
    return {{"start", positionAt(range.substr(0, dash))}, {"end", positionAt(end)}};
}

QJsonValue parsed(std::string const& json) {
    return QJsonDocument::fromJson(QByteArray::fromStdString("[" + json + "]")).array().at(0);
}

std::string unescaped(std::string text) {
    constexpr std::pair<char const*, char> escapes[] = {
        {"\\r", '\r'}, {"\\n", '\n'}, {"\\0", '\0'}, {"\\xfc", '\xfc'}, {"\\x1b", '\x1b'}};
    for (auto const& [escape, character] : escapes) {
        for (std::size_t at = text.find(escape); at != std::string::npos; at = text.find(escape, at)) {
            text.replace(at, std::strlen(escape), 1, character);
        }
    }
    return text;
}

/// Plays the rows of a file.
class Player {
public:
    explicit Player(std::string const& samples) {
        for (char const* sample : {"constraint_tour/demo_soc.tov", "design_tour/soc.xml"}) {
            std::filesystem::copy_file(samples + "/" + sample,
                                       dir_ / std::filesystem::path(sample).filename().string());
        }
    }

    /// Plays a row with the lines of text that follow it, and returns what the server said.
    std::string play(std::string const& row, std::string const& text) {
        output_.clear();
        std::istringstream words(row);
        std::string verb;
        words >> verb;
        run(verb, words, text);
        if (client_) {
            for (QJsonObject const& message : client_->take()) print(message);
            for (std::string const& line : client_->takeComplaints()) addLine("stderr: " + line);
        }
        return output_;
    }

private:
    void run(std::string const& verb, std::istringstream& words, std::string const& text) {
        if (verb == "start") return start(rest(words));
        if (verb == "connect") return void(client_ = std::make_unique<Conversation>(dir_ / ""));
        if (verb == "message") return client_->send(Conversation::framed(parsed(rest(words)).toObject()));
        if (verb == "raw") return client_->send(unescaped(rest(words)));
        if (verb == "design") return client_->waitForDesign();
        if (verb == "tick") return client_->tick();
        if (verb == "answer") return reply({"result", parsed(rest(words))});
        if (verb == "refuse") return reply({"error", QJsonObject{{"code", 1}, {"message", "no"}}});
        std::string name;
        words >> name;
        if (verb == "write") return void(support::write(dir_ / name, unescaped(text)));
        if (verb == "request") return printAnswer(client_->request(name.c_str(), parsed(rest(words)).toObject()));
        if (verb == "notify") return client_->notify(name.c_str(), parsed(rest(words)).toObject());
        QString const uri = QString::fromStdString("file://" + (dir_ / name));
        QJsonObject const document{{"uri", uri}};
        if (verb == "open") return client_->open(uri, text, version_ = 1);
        if (verb == "close") return client_->notify("textDocument/didClose", {{"textDocument", document}});
        if (verb == "change") return client_->change(uri, ++version_, changesIn(words));
        ask(verb, document, words);
    }

    std::string rest(std::istringstream& words) const {
        std::string text;
        std::getline(words >> std::ws, text);
        for (std::size_t at = text.find("$W"); at != std::string::npos; at = text.find("$W", at)) {
            text.replace(at, 2, folder());
        }
        return text;
    }

    void start(std::string const& parameters) {
        client_ = std::make_unique<Conversation>(dir_ / "");
        std::string values = parameters;
        std::size_t const between = values.find("} {");
        if (between != std::string::npos) values.replace(between, 3, "}, {");
        QJsonArray const given = QJsonDocument::fromJson(QByteArray::fromStdString("[" + values + "]")).array();
        client_->request("initialize", {{"capabilities", given.at(0).toObject()},
                                        {"initializationOptions", given.at(1)},
                                        {"rootUri", QString::fromStdString("file://" + (dir_ / ""))}});
        client_->notify("initialized", {});
    }

    static QJsonArray changesIn(std::istringstream& words) {
        QJsonArray changes;
        for (std::string range; words >> range;) {
            std::string text;
            words >> std::ws;
            words.get();  // the quote
            std::getline(words, text, '"');
            QJsonObject change{{"text", QString::fromStdString(unescaped(text))}};
            if (range != "all") change.insert("range", rangeAt(range));
            changes.append(change);
        }
        return changes;
    }

    void ask(std::string const& feature, QJsonObject const& document, std::istringstream& words) {
        QJsonObject params{{"textDocument", document}};
        std::string place;
        if (feature != "documentSymbol") words >> place;
        if (feature == "codeAction") {
            params.insert("range", rangeAt(place));
            params.insert("context", QJsonObject{{"diagnostics", QJsonArray()}});
        } else if (!place.empty()) {
            params.insert("position", positionAt(place));
        }
        QJsonObject const more = parsed(rest(words)).toObject();
        for (QString const& key : more.keys()) params.insert(key, more.value(key));
        printAnswer(client_->request(QString::fromStdString("textDocument/" + feature), params));
    }

    void reply(std::pair<char const*, QJsonValue> const& result) {
        QJsonObject message{{"jsonrpc", "2.0"}, {"id", lastAsked_}};
        message.insert(QLatin1String(result.first), result.second);
        client_->send(Conversation::framed(message));
    }

    void print(QJsonObject const& message) {
        if (!message.contains("method")) return printAnswer(message, true);
        if (message.contains("id")) lastAsked_ = message.value("id");
        QJsonObject const params = message.value("params").toObject();
        std::string const method = message.value("method").toString().toStdString();
        if (method != "textDocument/publishDiagnostics") {
            return addLine(method + " " + jsonOf(shortened(params)));
        }
        addLine("diagnostics " + params.value("uri").toString().toStdString() + " " + jsonOf(params.value("version")));
        for (QJsonValue const& each : params.value("diagnostics").toArray()) {
            QJsonObject const finding = each.toObject();
            addLine("  " + shortened(finding.value("range")).toString().toStdString() +
                    (finding.value("severity") == 1 ? " error " : " ") +
                    finding.value("code").toString().toStdString() + ": " +
                    finding.value("message").toString().toStdString());
        }
    }

    void printAnswer(QJsonObject const& message, bool withId = false) {
        std::string const id = withId ? jsonOf(message.value("id")) + ": " : "";
        if (message.contains("error")) {
            QJsonObject const error = message.value("error").toObject();
            return addLine(id + "error " + std::to_string(error.value("code").toInt()) + " " +
                           error.value("message").toString().toStdString());
        }
        QJsonValue const result = shortened(message.value("result"));
        if (!result.isArray() || result.toArray().isEmpty()) return addLine(id + jsonOf(result));
        for (QJsonValue const& entry : result.toArray()) addLine(id + jsonOf(entry));
    }

    void addLine(std::string line) {
        std::string const path = folder();
        for (std::size_t at = line.find(path); at != std::string::npos; at = line.find(path, at)) {
            line.replace(at, path.size(), "$W");
        }
        for (std::size_t at = line.find('\x1b'); at != std::string::npos; at = line.find('\x1b', at)) {
            line.replace(at, 1, "\\x1b");
        }
        output_ += "    " + line + "\n";
    }

    std::string folder() const { return (dir_ / "").substr(0, (dir_ / "").size() - 1); }

    support::TempDir dir_;
    std::unique_ptr<Conversation> client_;
    std::string output_;
    QJsonValue lastAsked_;
    int version_ = 0;
};

std::string play(std::string const& transcript, std::string const& samples) {
    Player player(samples);
    std::istringstream lines(transcript);
    std::string played;
    std::string line;
    std::getline(lines, line);
    while (lines) {
        std::string const row = line;
        std::string text;
        played += row + "\n";
        while (std::getline(lines, line) && (line.rfind("| ", 0) == 0 || line == "|" || line.rfind("    ", 0) == 0)) {
            if (line.front() != '|') continue;
            text += line.substr(std::min<std::size_t>(2, line.size())) + "\n";
            played += line + "\n";
        }
        bool const isRemark = row.empty() || row.rfind("##", 0) == 0;
        if (!isRemark) played += player.play(row, text);
    }
    return played;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    std::string const expected = support::read(argv[1]);
    std::string const actual = play(expected, argv[2]);
    if (::getenv("UPDATE") != nullptr) support::write(argv[1], actual);
    if (actual == expected) return 0;
    std::cerr << "The conversation differs; UPDATE=1 writes this:\n" << actual;
    return 1;
}
