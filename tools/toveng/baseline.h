#pragma once

#include <QByteArray>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "analysis/rules.h"

namespace tool {

/// The findings of an earlier report, which are not reported again. Findings are equal if their files, codes and texts
/// are.
class Baseline {
public:
    Baseline() = default;
    /// Reads a report of `toveng check --format json`; throws Trouble with the reason if it is none.
    explicit Baseline(QByteArray const& report);

    /// Returns whether the report has a finding that is found again, and takes it; one that stands for several, there
    /// or here, any number of times. Not for codes that are known by words.
    bool take(std::string const& file, Code code, std::string const& text, bool isFolded);

    /// Returns the first words that the report has of a code that is known by them.
    std::set<std::string> const& wordsOf(std::string const& file, Code code) const;
    /// Says that a first word was found again.
    void takeWord(std::string const& file, Code code, std::string const& word);

    /// Returns how many findings of the report were not found again, of these files and codes.
    std::size_t gone(std::set<std::string> const& files, CodeSet const& codes) const;

private:
    using Key = std::tuple<std::string, Code, std::string>;
    struct Entry {
        std::size_t count = 0;  // of findings that are equal
        bool isFolded = false;  // one of them stands for several
        std::size_t taken = 0;
    };
    using File = std::pair<std::string, Code>;

    void add(std::string const& file, Code code, std::string const& text, bool isFolded);

    std::map<Key, Entry> entries_;
    std::map<File, std::set<std::string>> words_;
    std::map<File, std::set<std::string>> found_;                     // of words_
    std::vector<std::pair<File, std::vector<std::string>>> byWords_;  // findings that have these words
};

}  // namespace tool
