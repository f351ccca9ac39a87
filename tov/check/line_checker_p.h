#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tov/check.h"
#include "tov/check/word_comparison_p.h"
#include "tov/cmd/cmd.h"
#include "tov/tov.h"

namespace kiri::tov::impl_detail {

/// Finds what a load and a save of a file would lose, line by line.
class LineChecker {
public:
    /// Checks the next line and appends its findings, in the order of their kinds. Returns false if the line ends the
    /// load, which makes the line the last one.
    bool check(std::string_view line, std::vector<TovFinding>& findings);

    /// The number of the line checked last, counted from 1.
    std::size_t number() const { return number_; }

    /// The command of the line checked last, enabled or disabled as in the line; null if the line makes none. It lives
    /// until the next check. A clock group may lack references that repeat the names of others.
    TovCmd* command() const { return cmd_.get(); }

    /// The list to which a load would add that command; TOVCMD_NONE without one.
    TOVCMD_TYPE list() const { return list_; }

    /// The line that a save writes for that command, and how it differs from the line. Equal lines are not compared.
    /// The words are views into both.
    std::string const& saved() const { return saved_; }
    WordComparison const& words() const { return words_; }

private:
    struct Texts;
    bool checkText(std::string_view line, Texts& texts);
    bool checkNames(std::string_view line, std::string& mistaken);
    bool isReadBack();

    std::size_t number_ = 0;
    std::unique_ptr<TovCmd> cmd_;
    TOVCMD_TYPE list_ = TOVCMD_NONE;
    WordComparison words_;
    std::string saved_;
    std::string savedAgain_;
    TOV document_;  // commands are saved for a document
};

}  // namespace kiri::tov::impl_detail
