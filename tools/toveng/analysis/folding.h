#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "analysis/rules.h"

namespace tool {

/// The findings with one cause in one file.
struct Cause {
    struct Word {
        std::string text;
        std::size_t count;
        std::size_t line;  ///< of its first finding
    };

    std::size_t count = 0;
    std::size_t line = 0;     ///< of the first one
    std::vector<Word> words;  ///< first words of commands, in the order of the lines; or only the common text
    std::vector<std::pair<std::size_t, std::size_t>> ranges;  ///< first and last lines of the first findings
};

/// Combines all findings with the same cause in a file. All unknown commands are one cause, and so are all continued
/// commands; for a lost or mistaken word or a variable that begins with "-", "$" or "expr", the text is the cause.
class Folding {
public:
    /// Counts a finding on these lines.
    void add(Code code, std::string const& text, std::size_t line, std::size_t lastLine);

    /// Drops the findings of unknown-command or continued-line with these first words.
    void drop(Code code, std::set<std::string> const& words);

    /// Returns the cause of a finding; null for one that is reported by itself.
    Cause const* causeOf(Code code, std::string const& text) const;

    /// Whether the findings of a code are combined by the first words of their commands.
    static bool isByWords(Code code) { return code == Code::unknownCommand || code == Code::continuedLine; }
    static bool isFolded(Code code, std::string const& text);

private:
    using Key = std::pair<Code, std::string>;
    static Key keyOf(Code code, std::string const& text) { return {code, isByWords(code) ? std::string() : text}; }

    std::map<Key, Cause> causes_;
    std::map<Key, std::size_t> wordPlaces_;  // in the words of the cause of a code
};

/// Returns the message of a cause; `message` is that of its first finding.
std::string foldedMessage(Code code, Cause const& cause, std::string const& message);

}  // namespace tool
