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
/// are equal.
class Baseline {
public:
    Baseline() = default;
    /// Reads a report of `toveng check --format json`; throws Trouble with the reason if the file is not one.
    explicit Baseline(QByteArray const& report);

    /// Returns whether the report has this finding, and removes it from the report; a folded finding, there or here,
    /// matches any number of times. Not for codes that are identified by words.
    bool take(std::string const& file, Code code, std::string const& text, bool isFolded);

    /// Returns the first words in the report for a code that is identified by them.
    std::set<std::string> const& wordsOf(std::string const& file, Code code) const;
    /// Marks a first word as found again.
    void takeWord(std::string const& file, Code code, std::string const& word);

    /// Returns how many findings of the report with these files and codes were not found again.
    std::size_t gone(std::set<std::string> const& files, CodeSet const& codes) const;

private:
    using Key = std::tuple<std::string, Code, std::string>;
    struct Entry {
        std::size_t count = 0;  // of findings that are equal
        bool isFolded = false;  // one of them is folded
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
