#include <QJsonArray>
#include <array>
#include <utility>

#include "command.h"
#include "findings.h"
#include "text.h"
#include "tov/version.h"

using namespace kiri::tov;

namespace tool {

namespace {

QJsonObject sarifTool() {
    QJsonArray rules;
    for (Code const& code : codes) {
        bool const isError = code.kind == TOVFINDING_ENDS_LOAD;
        rules.append(QJsonObject{{"id", code.name},
                                 {"shortDescription", QJsonObject{{"text", code.text}}},
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
            {"message", QJsonObject{{"text", toText(message)}}},
            {"locations", QJsonArray{QJsonObject{{"physicalLocation", location}}}}};
}

QJsonObject jsonFinding(std::string const& file, TovFinding const& finding, std::string const& message) {
    return {{"file", toText(file)},
            {"line", static_cast<qint64>(finding.line)},
            {"code", codeOf(finding.kind).name},
            {"text", toText(finding.text)},
            {"message", toText(message)}};
}

enum class Form : std::size_t { text, json, sarif };

/// Prints findings as they come, and counts them.
class Report {
public:
    /// Prints the first `most` findings.
    Report(Form form, std::size_t most) : form_(form), most_(most) {
        if (form_ == Form::json) tool::print("{\"findings\": [");
        if (form_ != Form::sarif) return;
        tool::print(
            R"({"$schema": "https://json.schemastore.org/sarif-2.1.0.json", "version": "2.1.0", "runs": [{"tool": )");
        tool::print(sarifTool());
        tool::print(", \"results\": [");
    }

    /// Counts a finding, and prints it with the message that `message` makes.
    template <class Message>
    void add(std::string const& file, TovFinding const& finding, Message const& message) {
        if (count_ < most_) print(file, finding, message());
        ++count_;
        ++countOf_[static_cast<std::size_t>(finding.kind - 1)];
    }

    /// Ends the text on standard output. `whole` tells whether all files were read.
    void finish(bool whole) {
        if (form_ == Form::json) tool::print("\n]}\n");
        if (form_ == Form::sarif) {
            std::string const successful = whole ? "true" : "false";
            tool::print("\n], \"invocations\": [{\"executionSuccessful\": " + successful + "}]}]}\n");
        }
        flushOutput();
    }

    std::size_t count() const { return count_; }

    /// "3 findings: 1 unknown-command, 2 lost-word".
    std::string counts() const {
        if (count_ == 0) return "no findings";
        std::string text = std::to_string(count_) + (count_ == 1 ? " finding" : " findings");
        char const* joint = ": ";
        for (Code const& code : codes) {
            std::size_t const count = countOf_[static_cast<std::size_t>(code.kind - 1)];
            if (count > 0) text += std::exchange(joint, ", ") + std::to_string(count) + " " + code.name;
        }
        return text;
    }

private:
    void print(std::string const& file, TovFinding const& finding, std::string const& message) {
        if (form_ == Form::text) return printFinding(stdout, file, finding, message);
        tool::print(count_ == 0 ? "\n" : ",\n");
        tool::print((form_ == Form::json ? jsonFinding : sarifResult)(file, finding, message));
    }

    Form form_;
    std::size_t most_;
    std::size_t count_ = 0;
    std::array<std::size_t, codeCount> countOf_{};
};

/// For each code whether it is left out.
std::array<bool, codeCount> ignoredIn(QString const& text) {
    QStringList names = text.split(',');
    std::array<bool, codeCount> ignored{};
    for (std::size_t i = 0; i < codeCount; ++i) ignored[i] = names.removeAll(codes[i].name) > 0;
    if (!names.isEmpty()) throw Trouble("unknown code '" + names.front().toStdString() + "'; toveng(1) has the codes");
    return ignored;
}

}  // namespace

void printFinding(std::FILE* out, std::string const& file, TovFinding const& finding, std::string const& message) {
    std::fprintf(out, "%s:%zu: warning: %s [%s]\n", printable(file).c_str(), finding.line, printable(message).c_str(),
                 codeOf(finding.kind).name);
}

int check(Arguments const& arguments) {
    auto const form = static_cast<Form>(arguments.choose("format", {"text", "json", "sarif"}));
    TovNameMatch const match = arguments.match();
    if (arguments.has("match") && !arguments.has("design")) throw Trouble("--match without --design");
    std::array<bool, codeCount> ignored{};
    if (arguments.has("ignore")) ignored = ignoredIn(toText(arguments.value("ignore")));
    bool isNumber = true;
    quint64 most = ~quint64{0};
    if (arguments.has("max")) most = toText(arguments.value("max")).toULongLong(&isNumber);
    if (!isNumber) throw Trouble("--max '" + arguments.value("max") + "' is no number");
    Design const* const design = arguments.has("design") ? &keep<Design>(arguments.value("design")) : nullptr;

    Report report(form, most);
    int suggestions = suggestionsAtMost;
    std::size_t failed = 0;
    std::vector<std::string> const files = arguments.words();
    for (std::string const& file : files) {
        try {
            Input const input(file, Content::constraints);
            forEachFinding(input, design, match, [&](auto const& finding, auto const& line, auto const& missing) {
                if (ignored[static_cast<std::size_t>(finding.kind - 1)]) return;
                report.add(file, finding, [&] {
                    std::string message;
                    for (TovNameUse const& use : missing) {
                        if (!message.empty()) message += "; ";
                        message += missingMessage(use.type, use.word, *design->names, suggestions);
                    }
                    return message.empty() ? findingMessage(finding, line) : message;
                });
            });
        } catch (Trouble const& trouble) {
            complain(std::string("toveng: ") + trouble.what());
            ++failed;
        }
    }
    report.finish(failed == 0);
    if (failed < files.size()) complain("toveng: " + report.counts());
    if (failed > 0) return 2;
    return report.count() == 0 ? 0 : 1;
}

}  // namespace tool
