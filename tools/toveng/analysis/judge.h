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

/// What is found in a statement by itself.
struct Finding {
    std::size_t line;  ///< counted from 0 as the lines of the statement are
    Code code;
    std::string text;     ///< the words concerned, as the file has them
    std::string message;  ///< one line of UTF-8; filled for Detail::messages
};

/// What is found in a statement, and what others must know of it.
struct Judgement {
    std::vector<Finding> findings;  ///< in the order in which they are reported
    Facts facts;
    /// Nothing after the statement is read: a line of it ends the load.
    bool endsLoad = false;
};

enum class Detail { codes, messages };

/// Judges statements by themselves. The judgement depends on the lines of the statement and on the design alone.
class Judge {
public:
    /// `names` is null for a check without a design, and lives as long as the judge.
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

/// Returns the first word of a statement's first line: of a disabled command its keyword.
std::string firstWordOf(Statement const& statement, Lines& lines);

}  // namespace tool
