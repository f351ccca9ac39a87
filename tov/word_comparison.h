#pragma once

#include <string_view>
#include <vector>

namespace kiri::tov {

/// Tells a line and the line that is saved for its command apart, word by word. Words end at white space, brackets,
/// braces and double quotes; these and the order of the words do not count. Numbers are compared by value.
class WordComparison {
public:
    struct Word {
        std::string_view text;
        float value = 0;
        bool isNumber;          // to the commands
        bool isCommon = false;  // it stands in the other line too

        explicit Word(std::string_view word);
        bool operator==(Word const& other) const;
        bool operator<(Word const& other) const;
    };
    using Words = std::vector<Word>;

    /// Compares two texts. The words are views into them.
    void compare(char const* line, char const* saved);

    Words const& lost() const { return lost_; }        ///< words of the line that are not saved
    Words const& changed() const { return changed_; }  ///< numbers of the line that are saved as other numbers
    Words const& added() const { return added_; }      ///< words that the line has not, but for those other numbers

    /// Whether a word ends before this character.
    static bool endsWord(char c);
    static void appendWords(Words& words, char const* text);

private:
    void dropCommonWords();

    Words lost_;
    Words changed_;
    Words added_;
    std::vector<Word*> lineOrder_;
    std::vector<Word*> savedOrder_;
};

}  // namespace kiri::tov
