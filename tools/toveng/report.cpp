#include "report.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QUrl>
#include <algorithm>

#include "text.h"
#include "tov/version.h"

using namespace kiri::tov;

namespace tool {

namespace {

QJsonObject sarifText(QString const& text) {
    return {{"text", text}};
}

QJsonObject sarifTool() {
    QJsonArray rules;
    for (Code const& code : codes) {
        bool const isError = code.kind == TOVFINDING_ENDS_LOAD;
        rules.append(QJsonObject{{"id", code.name},
                                 {"shortDescription", sarifText(code.text)},
                                 {"defaultConfiguration", QJsonObject{{"level", isError ? "error" : "warning"}}}});
    }
    return {{"driver", QJsonObject{{"name", "toveng"}, {"version", versionText()}, {"rules", rules}}}};
}

// A relative path stays one: whoever reads the report knows the folder.
QString sarifUri(std::string const& file) {
    QByteArray const path(file.data(), static_cast<int>(file.size()));
    return (path.startsWith('/') ? "file://" : "") + QString::fromLatin1(path.toPercentEncoding("/"));
}

QJsonObject sarifResult(std::string const& file, TovFinding const& finding, std::string const& message) {
    QJsonObject const location{{"artifactLocation", QJsonObject{{"uri", sarifUri(file)}}},
                               {"region", QJsonObject{{"startLine", static_cast<qint64>(finding.line)}}}};
    return {{"ruleId", codeOf(finding.kind).name},
            {"ruleIndex", finding.kind - 1},
            {"level", finding.kind == TOVFINDING_ENDS_LOAD ? "error" : "warning"},
            {"message", sarifText(toText(message))},
            {"locations", QJsonArray{QJsonObject{{"physicalLocation", location}}}}};
}

QJsonObject jsonFinding(std::string const& file, TovFinding const& finding, std::string const& message) {
    return {{"file", toText(file)},
            {"line", static_cast<qint64>(finding.line)},
            {"code", codeOf(finding.kind).name},
            {"text", toText(finding.text)},
            {"message", toText(message)}};
}

}  // namespace

void printFinding(std::FILE* out, std::string const& file, TovFinding const& finding, std::string const& message) {
    std::fprintf(out, "%s:%zu: warning: %s [%s]\n", printable(file).c_str(), finding.line, printable(message).c_str(),
                 codeOf(finding.kind).name);
}

Report::Report(Form form, std::size_t most) : form_(form), most_(most) {
    if (form_ == Form::json) tool::print("{\"findings\": [");
    if (form_ == Form::sarif) {
        tool::print(
            R"({"$schema": "https://json.schemastore.org/sarif-2.1.0.json", "version": "2.1.0", "runs": [{"tool": )");
        tool::print(sarifTool());
        tool::print(", \"results\": [");
    }
}

void Report::add(std::string const& file, TovFinding const& finding, std::function<std::string()> const& message) {
    if (count_ < most_) print(file, finding, message());
    ++count_;
    ++countOf_[static_cast<std::size_t>(finding.kind - 1)];
}

void Report::print(std::string const& file, TovFinding const& finding, std::string const& message) {
    if (form_ == Form::text) return printFinding(stdout, file, finding, message);
    tool::print(count_ == 0 ? "\n" : ",\n");
    tool::print((form_ == Form::json ? jsonFinding : sarifResult)(file, finding, message));
}

void Report::finish(bool whole) {
    if (form_ == Form::json) tool::print("\n]}\n");
    if (form_ == Form::sarif) {
        std::string const successful = whole ? "true" : "false";
        tool::print("\n], \"invocations\": [{\"executionSuccessful\": " + successful + "}]}]}\n");
    }
    flushOutput();
}

std::string Report::counts() const {
    if (count_ == 0) return "no findings";
    std::string text = std::to_string(count_) + (count_ == 1 ? " finding" : " findings");
    char const* joint = ": ";
    for (Code const& code : codes) {
        std::size_t const count = countOf_[static_cast<std::size_t>(code.kind - 1)];
        if (count == 0) continue;
        text += joint + std::to_string(count) + " " + code.name;
        joint = ", ";
    }
    return text;
}

}  // namespace tool
