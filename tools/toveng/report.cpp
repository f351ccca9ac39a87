#include "report.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "analysis/words.h"
#include "sarif.h"
#include "text.h"

namespace tool {

namespace {

constexpr char const* bold = "\033[1m";
constexpr char const* magenta = "\033[1;35m";
constexpr char const* red = "\033[1;31m";
constexpr char const* green = "\033[1;32m";
constexpr char const* plain = "\033[0m";

bool isWordEnd(std::string_view text, std::size_t at) {
    return at >= text.size() || isSpace(text[at]) ||
           std::string_view("[]{}\";").find(text[at]) != std::string_view::npos;
}

// The place of a word that is in the line exactly once, else npos.
std::size_t placeOf(std::string_view word, std::string_view line) {
    std::size_t place = std::string_view::npos;
    if (word.empty()) return place;
    for (std::size_t at = line.find(word); at != std::string_view::npos; at = line.find(word, at + 1)) {
        bool const isWord = (at == 0 || isWordEnd(line, at - 1)) && isWordEnd(line, at + word.size());
        if (!isWord) continue;
        if (place != std::string_view::npos) return std::string_view::npos;
        place = at;
    }
    return place;
}

// The columns that a text takes; a tab shows as a blank.
std::size_t widthOf(std::string_view text) {
    return static_cast<std::size_t>(toText(text).size());
}

void printSource(std::FILE* out, Told const& finding, Look const& look) {
    std::string line = shown(finding.source, 400);
    std::replace(line.begin(), line.end(), '\t', ' ');
    std::string const number = std::to_string(finding.line);
    print(out, "  " + number + " | " + printable(line) + "\n");
    std::string_view word = finding.text;
    std::size_t place = placeOf(word, line);
    if (place == std::string_view::npos) {
        word = firstWord(word);
        place = placeOf(word, line);
    }
    if (place == std::string_view::npos) return;
    std::string const mark = "^" + std::string(widthOf(word) - 1, '~');
    print(out, std::string(number.size() + 2, ' ') + " | " + std::string(widthOf(line.substr(0, place)), ' ') +
                   (look.hasColors ? green + mark + plain : mark) + "\n");
}

}  // namespace

Look lookFor(std::FILE* out, Colors colors) {
    bool const isTerminal = ::isatty(::fileno(out)) != 0;
    char const* const noColor = std::getenv("NO_COLOR");
    char const* const terminal = std::getenv("TERM");
    bool const mayHave =
        (noColor == nullptr || *noColor == '\0') && (terminal == nullptr || std::string_view(terminal) != "dumb");
    return {colors == Colors::always || (colors == Colors::atTerminal && isTerminal && mayHave), isTerminal};
}

void printFinding(std::FILE* out, Told const& finding, Look const& look) {
    bool const isError = finding.severity == Severity::error;
    auto const inColor = [&look](char const* color, std::string const& text) {
        return look.hasColors ? color + text + plain : text;
    };
    print(out, inColor(bold, printable(finding.file) + ":" + std::to_string(finding.line) + ":") + " " +
                   inColor(isError ? red : magenta, "warning:") + " " + printable(finding.message) + " [" +
                   finding.code + "]\n");
    if (look.hasSource && !finding.source.empty()) printSource(out, finding, look);
}

QJsonObject jsonOf(Told const& finding) {
    return {{"file", toText(finding.file)},       {"line", static_cast<qint64>(finding.line)},
            {"code", toText(finding.code)},       {"text", toText(finding.text)},
            {"message", toText(finding.message)}, {"count", static_cast<qint64>(finding.count)}};
}

Report::Report(Form form, std::size_t most, Look const& look)
    : form_(form), most_(most), look_(look), sarif_(std::make_unique<SarifResults>()) {
    if (form_ == Form::json) print("{\"findings\": [");
    if (form_ != Form::sarif) return;
    print(R"({"$schema": "https://json.schemastore.org/sarif-2.1.0.json", "version": "2.1.0", "runs": [{"tool": )");
    print(sarifTool());
    print(", \"results\": [");
}

Report::~Report() = default;

void Report::add(Told const& finding) {
    if (count_++ >= most_) return;
    if (form_ == Form::text) return printFinding(stdout, finding, look_);
    print(count_ == 1 ? "\n" : ",\n");
    print(form_ == Form::json ? jsonOf(finding) : sarif_->add(finding));
}

void Report::addTrouble(std::string const& message) {
    complain("toveng: " + message);
    troubles_.push_back(message);
}

void Report::finish() {
    if (form_ == Form::json) print("\n]}\n");
    if (form_ == Form::sarif) {
        print("\n], \"invocations\": [");
        print(sarifInvocation(troubles_));
        print("]}]}\n");
    }
    flushOutput();
}

}  // namespace tool
