#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "analysis/command_key.h"
#include "analysis/facts.h"
#include "analysis/lines.h"
#include "analysis/rules.h"
#include "analysis/statements.h"
#include "tov/names/document_names.h"

namespace tool {

/// A finding in a single statement.
struct Finding {
    std::size_t line;  ///< counted from 0, like the lines of the statement
    Code code;
    std::string text;     ///< the words concerned, as in the file
    std::string message;  ///< one line of UTF-8; set for Detail::messages
};

/// The findings in a statement, and the facts that others need.
struct Judgement {
    std::vector<Finding> findings;  ///< in the order in which they are reported
    Facts facts;
    /// A line of the statement ends the load: nothing after it is read.
    bool endsLoad = false;
};

enum class Detail { codes, messages };

/// Judges single statements. The judgement depends only on the lines of the statement and on the design.
class Judge {
public:
    /// `names` is null for a check without a design, and must outlive the judge.
    explicit Judge(kiri::tov::TovDesignNames const* names = nullptr,
                   kiri::tov::TovNameMatch match = kiri::tov::TOVMATCH_LEVELS);
    ~Judge();
    Judge(Judge const&) = delete;
    Judge& operator=(Judge const&) = delete;

    Judgement judge(Statement const& statement, Lines& lines, Detail detail) const;

private:
    void judgeComment(std::string const& line, std::size_t number, Judgement& out, Detail detail) const;
    void judgeCommand(std::string const& line, std::size_t number, Judgement& out, Detail detail) const;
    void addLosses(std::string const& line, Judgement& out, Detail detail) const;
    static void setLine(Judgement& out, std::size_t number);
    void judgeEnabled(Command const& command, Judgement& out) const;
    void addUses(Command const& command, Facts& facts) const;
    void addMissing(WordUse const& use, Facts& facts) const;
    void judgeOther(Statement const& statement, std::string const& joined, Judgement& out, Detail detail) const;
    void judgeContinued(Statement const& statement, Lines& lines, Judgement& out, Detail detail) const;
    bool findMisspelt(Statement const& statement, std::string const& joined, Judgement& out) const;
    void addClocks(std::string const& line, Facts& facts) const;

    bool hasDesign_;
    kiri::tov::TovNameMatch match_;
    kiri::tov::TOV document_;  // without clocks
    std::unique_ptr<kiri::tov::TovDocumentNames const> join_;
};

/// Returns the first word of a statement's first line; for a disabled command, its keyword.
std::string firstWordOf(Statement const& statement, Lines& lines);

}  // namespace tool
