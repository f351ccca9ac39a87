#pragma once

#include <QJsonObject>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "analysis/rules.h"

namespace tool {

/// A finding in a report. Texts are bytes as in the files.
struct Told {
    std::string file;
    std::size_t line;  ///< counted from 1
    std::string code;
    std::string text;  ///< the words concerned
    std::string message;
    std::size_t count = 1;  ///< number of findings with the same cause
    Severity severity = Severity::warning;
    std::string source{};         ///< the line itself, shown on a terminal
    std::string relatedFile{};    ///< another place that the message names; empty if there is none
    std::size_t relatedLine = 0;  ///< counted from 1
};

/// The style of text output.
struct Look {
    bool hasColors = false;
    bool hasSource = false;  ///< print the line, too, with a mark below the words concerned
};

enum class Colors : std::size_t {
    atTerminal,  ///< unless NO_COLOR is set
    always,
    never,
};

/// Returns the style for a stream.
Look lookFor(std::FILE* out, Colors colors);

/// Prints `FILE:LINE: warning: MESSAGE [CODE]`; standard output is checked, see print().
void printFinding(std::FILE* out, Told const& finding, Look const& look = {});

/// Returns a finding as an object of the array "findings".
QJsonObject jsonOf(Told const& finding);

class SarifResults;

enum class Form : std::size_t { text, json, sarif };

/// Prints findings to standard output as they are added, and counts them.
class Report {
public:
    /// Prints the first `most` findings.
    Report(Form form, std::size_t most, Look const& look);
    ~Report();
    Report(Report const&) = delete;
    Report& operator=(Report const&) = delete;

    void add(Told const& finding);

    /// Adds the reason why a file was not read. A SARIF report lists it.
    void addTrouble(std::string const& message);

    /// Ends the report.
    void finish();

    std::size_t count() const { return count_; }
    bool isWhole() const { return troubles_.empty(); }

private:
    Form form_;
    std::size_t most_;
    Look look_;
    std::size_t count_ = 0;
    std::vector<std::string> troubles_;
    std::unique_ptr<SarifResults> sarif_;
};

}  // namespace tool
