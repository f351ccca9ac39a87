#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "analysis/folding.h"
#include "analysis/judge.h"
#include "analysis/set_message.h"
#include "analysis/statement_set.h"
#include "baseline.h"
#include "design.h"
#include "file_lines.h"
#include "report.h"

namespace tool {

/// What is reported, and how.
struct CheckOptions {
    kiri::tov::TovNameMatch match = kiri::tov::TOVMATCH_LEVELS;
    CodeSet codes{true};           ///< findings with other codes are left out
    bool isFolded = true;          ///< findings with the same cause are combined
    Baseline* baseline = nullptr;  ///< findings that it has are left out
};

/// The results of a check.
struct CheckCounts {
    std::array<std::size_t, codeCount> of{};
    std::size_t leftOut = 0;  ///< by the baseline

    void add(Code code) { ++of[indexOf(code)]; }
};

/// Checks the files of one set. Files are read line by line: first to compare the commands, and if there are findings a
/// second time to report them.
class SetCheck {
public:
    /// `design` is null for a check without names.
    SetCheck(CheckOptions const& options, Design const* design, Report& report, CheckCounts& counts);

    /// Reads a file; reports it if it cannot be read.
    void read(Input const& input, SlowProgress& progress);
    /// Notes that a file of the set could not be opened.
    void setCut() { set_.setCut(); }

    /// Reports the findings, file by file.
    void tell();

private:
    /// A statement that others depend on, or that has findings. Its index is its place in the set.
    struct Spot {
        std::uint32_t line;
        std::uint32_t count;
        Statement::Kind kind;
        bool isOpen;
        bool hasFindings;  // of its own
        bool isFirstWord;  // there is one, which is folded by the first word of the command
    };
    struct File {
        Input input;
        std::size_t end;  // of its places
        Folding folding{};
    };

    void add(Statement const& statement, Judgement const& judgement, File& file);
    void tell(File& file, std::size_t first);
    void tell(File& file, std::size_t place, FileLines& lines);
    void tell(File& file, Finding const& finding, std::vector<SetFinding> const& others, FileLines& lines);
    static bool beginsCause(File const& file, std::size_t line);
    void applyBaseline(File& file, Code code);
    bool isInBaseline(std::string const& file, Code code, std::string const& text, bool isFolded);
    std::pair<std::string, std::size_t> lineOf(std::size_t place) const;

    CheckOptions const& options_;
    Report& report_;
    CheckCounts& counts_;
    Judge judge_;
    StatementSet set_;
    NearNames near_;
    std::deque<File> files_;
    std::vector<Spot> spots_;
};

}  // namespace tool
