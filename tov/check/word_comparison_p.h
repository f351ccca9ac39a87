#pragma once

#include <string_view>
#include <vector>

namespace kiri::tov::impl_detail {

/// Compares a line with the line its command saves, word by word. Words end at white space, brackets, braces and double
/// quotes; these and the order of the words do not count. Numbers are compared by value.
class WordComparison {
public:
    struct Word {
        explicit Word(std::string_view word);

        std::string_view text;
        float value = 0;
        bool isNumber;          // to the commands
        bool isMarked = false;  // about to be dropped
    };
    using Words = std::vector<Word>;

    /// Compares two texts. The words are views into them.
    void compare(std::string_view line, std::string_view saved);

    Words const& lost() const { return lost_; }        ///< words of the line that are not saved
    Words const& changed() const { return changed_; }  ///< numbers of the line that are saved as other numbers
    Words const& added() const { return added_; }      ///< words that only the saved line has

    /// Whether a word ends before this character.
    static bool endsWord(char c);
    /// Appends the words of a text.
    static void appendWords(Words& words, std::string_view text);

private:
    Words lost_;
    Words changed_;
    Words added_;
};

}  // namespace kiri::tov::impl_detail
