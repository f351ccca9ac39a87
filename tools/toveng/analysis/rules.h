#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tov/check.h"
#include "tov/cmd/references.h"
#include "tov/tov.h"

namespace tool {

/// The codes of findings, in the order in which the findings of a line are reported.
enum class Code : std::uint8_t {
    droppedLine,  // the first ones are those of the library, in the order of TovFindingKind
    unknownCommand,
    lostWord,
    changedValue,
    mistakenWord,
    endsLoad,
    unstableLine,
    missingName,
    noObjects,
    noClock,
    badClock,
    badValue,
    undefinedClock,
    redefinedClock,
    repeated,
    overridden,
    minOverMax,
    misspeltQuery,
    variableName,
    continuedLine,
    misspeltCommand,
};

inline constexpr std::size_t codeCount = 21;

inline std::size_t indexOf(Code code) {
    return static_cast<std::size_t>(code);
}

inline Code codeOf(kiri::tov::TovFindingKind kind) {
    return static_cast<Code>(kind - 1);
}

enum class Severity : std::uint8_t { warning, error };

/// An enabled command.
struct Command {
    kiri::tov::TovCmd& cmd;
    kiri::tov::TOVCMD_TYPE list;
    std::vector<kiri::tov::TovReferences> references;  ///< see referencesOf
    bool mayHoldVariables = true;                      ///< there is a "$" in its line
};

/// What a rule reports about a command.
struct Remark {
    std::string text;     ///< the name concerned; if empty, the line as a save writes it
    std::string message;  ///< UTF-8 if the command is
};

struct Rule {
    Code code;
    char const* name;  ///< "lost-word"
    Severity severity;
    char const* summary;  ///< one sentence
    char const* help;     ///< what to do
    /// Judges a command by itself; null if judging it takes more than the command.
    void (*judge)(Command const& command, std::vector<Remark>& remarks) = nullptr;
};

/// The rules; that of a code is at indexOf(code).
extern std::array<Rule, codeCount> const rules;

inline Rule const& ruleOf(Code code) {
    return rules[indexOf(code)];
}

/// Whether the format does not hold the whole line, or the line cannot be what its writer meant: the rules for commands
/// do not judge it.
inline bool silencesRules(Code code) {
    return code <= Code::unstableLine || code >= Code::misspeltQuery;
}

/// Returns the rule of a name; null if there is none.
Rule const* findRule(std::string_view name);

/// A set of codes.
class CodeSet {
public:
    explicit CodeSet(bool all = false) { has_.fill(all); }

    bool has(Code code) const { return has_[indexOf(code)]; }
    void set(Code code, bool isIn) { has_[indexOf(code)] = isIn; }

private:
    std::array<bool, codeCount> has_{};
};

}  // namespace tool
