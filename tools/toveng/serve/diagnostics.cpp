#include "serve/diagnostics.h"

#include <QJsonDocument>

#include "analysis/words.h"
#include "text.h"

namespace tool::lsp {

namespace {

bool endsWord(char c) {
    return separators.find(c) != std::string_view::npos;
}

// Returns whether a word ends before the rest of its line, which may be the "\" that joins the next line.
bool endsBefore(std::string_view rest) {
    return rest.empty() || endsWord(rest.front()) || (rest.front() == '\\' && trim(rest).size() == 1);
}

// Appends a text as a string of JSON.
void appendText(std::string& json, std::string_view text) {
    constexpr char const* digits = "0123456789abcdef";
    json += '"';
    for (char c : text) {
        if (c == '"' || c == '\\') {
            json.append(1, '\\').append(1, c);
        } else if (static_cast<unsigned char>(c) < ' ') {
            json.append("\\u00").append(1, c < 16 ? '0' : '1').append(1, digits[c & 15]);
        } else {
            json += c;
        }
    }
    json += '"';
}

void appendPosition(std::string& json, std::size_t line, std::size_t character) {
    json.append("{\"line\":").append(std::to_string(line));
    json.append(",\"character\":").append(std::to_string(character)).append(1, '}');
}

// Written without QJson: a document may have as many findings as lines, and they are sent after each edit.
void appendProblem(std::string& json, Text const& text, Encoding encoding, Problem const& problem) {
    auto const [begin, end] = placeOfProblem(text.line(problem.line), problem);
    Position const first = text.positionOf({problem.line, begin}, encoding);
    Position const last = text.positionOf({problem.line, end}, encoding);
    Rule const& rule = ruleOf(problem.code);
    json += "{\"range\":{\"start\":";
    appendPosition(json, first.line, first.character);
    json += ",\"end\":";
    appendPosition(json, last.line, last.character);
    json.append("},\"severity\":").append(rule.severity == Severity::error ? "1" : "2");
    json.append(",\"source\":\"toveng\",\"code\":");
    appendText(json, rule.name);
    json += ",\"message\":";
    appendText(json, toText(problem.message).toStdString());  // a design may have Latin-1 names
    json += '}';
}

}  // namespace

std::pair<std::size_t, std::size_t> placeOfProblem(std::string_view line, Problem const& problem) {
    std::string_view const word = problem.text;
    std::size_t found = std::string_view::npos;
    std::size_t count = 0;
    if (!word.empty()) {
        for (std::size_t at = line.find(word); at < line.size() && count < 2; at = line.find(word, at + 1)) {
            bool const begins = at == 0 || endsWord(line[at - 1]);
            if (!begins || !endsBefore(line.substr(at + word.size()))) continue;
            found = at;
            ++count;
        }
    }
    if (count == 1) return {found, found + word.size()};
    std::string_view const shown = trim(line);
    std::size_t const begin = shown.empty() ? 0 : static_cast<std::size_t>(shown.data() - line.data());
    return {begin, begin + shown.size()};
}

QByteArray publishedDiagnostics(Workspace const& workspace, OpenDocument& document) {
    std::string json = R"({"jsonrpc":"2.0","method":"textDocument/publishDiagnostics","params":{"uri":)";
    appendText(json, document.uri.toStdString());
    if (document.version) json.append(",\"version\":").append(std::to_string(*document.version));
    json += ",\"diagnostics\":[";
    bool isFirst = true;
    document.analysis->forEachProblem([&](Problem const& problem) {
        if (!std::exchange(isFirst, false)) json += ',';
        appendProblem(json, document.text, workspace.client.encoding, problem);
    });
    json += "]}}";
    return QByteArray::fromStdString(json);
}

}  // namespace tool::lsp
