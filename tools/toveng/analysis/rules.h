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

/// What a finding reports, in the order in which the findings of a line are reported.
enum class Code : std::uint8_t {
    droppedLine,  // the first ones are what the library finds, in the order of TovFindingKind
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

/// What a rule says of a command.
struct Remark {
    std::string text;     ///< the name that it is about; empty for the line as a save writes it
    std::string message;  ///< UTF-8 where the command is
};

struct Rule {
    Code code;
    char const* name;  ///< "lost-word"
    Severity severity;
    char const* summary;  ///< one sentence
    char const* help;     ///< what to do
    /// Judges a command by itself; null for what takes more than the command to judge.
    void (*judge)(Command const& command, std::vector<Remark>& remarks) = nullptr;
};

/// The rules; that of a code is at indexOf(code).
extern std::array<Rule, codeCount> const rules;

inline Rule const& ruleOf(Code code) {
    return rules[indexOf(code)];
}

/// Whether the format itself does not hold all of the line, or the line cannot be what its writer meant: the rules on
/// sense do not judge it.
inline bool silencesRules(Code code) {
    return code <= Code::unstableLine || code >= Code::misspeltQuery;
}

/// Returns the rule of a name; null if there is none.
Rule const* findRule(std::string_view name);

/// Codes that are selected.
class CodeSet {
public:
    explicit CodeSet(bool all = false) { has_.fill(all); }

    bool has(Code code) const { return has_[indexOf(code)]; }
    void set(Code code, bool isIn) { has_[indexOf(code)] = isIn; }

private:
    std::array<bool, codeCount> has_{};
};

}  // namespace tool
