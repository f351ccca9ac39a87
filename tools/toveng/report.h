#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "findings.h"

namespace tool {

enum class Form : std::size_t { text, json, sarif };

/// Prints findings as they come, and counts them.
class Report {
public:
    /// Prints the first `most` findings.
    Report(Form form, std::size_t most);

    /// Counts a finding, and prints it with the message that `message` returns.
    void add(std::string const& file, kiri::tov::TovFinding const& finding,
             std::function<std::string()> const& message);
    /// Ends the text on standard output. `whole`: all files were read.
    void finish(bool whole);

    std::size_t count() const { return count_; }
    /// "3 findings: 1 unknown-command, 2 lost-word".
    std::string counts() const;

private:
    void print(std::string const& file, kiri::tov::TovFinding const& finding, std::string const& message);

    Form form_;
    std::size_t most_;
    std::size_t count_ = 0;
    std::array<std::size_t, codeCount> countOf_{};
};

/// Prints `FILE:LINE: warning: MESSAGE [CODE]` to a stream.
void printFinding(std::FILE* out, std::string const& file, kiri::tov::TovFinding const& finding,
                  std::string const& message);

}  // namespace tool
