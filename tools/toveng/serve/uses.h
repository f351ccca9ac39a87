#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "serve/clock_definitions.h"
#include "serve/line_words.h"
#include "serve/workspace.h"

namespace tool::lsp {

/// A word that refers to something.
struct Use {
    std::size_t line;
    std::size_t begin;
    std::size_t end;
    bool isDefinition = false;  ///< of a clock
    bool isPattern = false;     ///< or any other word that is not the name itself
};

/// What a word of a document refers to: clocks, or objects of the design.
class Subject {
public:
    /// Returns the subject of the word at a place; nothing if there is no word that refers to anything.
    static std::optional<Subject> at(Workspace const& workspace, OpenDocument const& document, Place place);

    bool isClock() const { return isClock_; }
    std::string const& text() const { return text_; }
    taDciObjTyp type() const { return type_; }
    Use const& use() const { return use_; }

    /// The clocks of the document that the word matches.
    std::vector<ClockDefinition> const& clocks() const { return clocks_; }
    /// The objects of the design that the word matches; empty without a design.
    std::vector<kiri::tov::TovNode const*> const& nodes() const { return nodes_; }

    /// Returns the words of the document that refer to any of the same objects, in the order of the text.
    std::vector<Use> uses() const;

private:
    Subject(Workspace const& workspace, OpenDocument const& document, std::size_t line, Word const& word);

    void findClocks(Word const& word);
    void findNodes(Word const& word);
    void addNames(std::string const& path);
    bool isUse(Word const& word) const;
    bool isUseOfClock(Word const& word) const;
    bool isUseOfNodes(Word const& word) const;
    kiri::tov::TovNameMatch matchOf(Word const& word) const;

    Workspace const* workspace_;
    OpenDocument const* document_;
    std::string text_;
    taDciObjTyp type_;
    Use use_;
    bool isClock_ = false;
    std::vector<ClockDefinition> clocks_;
    std::vector<kiri::tov::TovNode const*> nodes_;
    std::unordered_set<std::string> names_;  // of the clocks, or the possible plain words for the nodes
    std::unordered_set<kiri::tov::TovNode const*> nodeSet_;
    bool tryAll_ = false;                                   // `names_` is incomplete
    mutable std::unordered_map<std::string, bool> judged_;  // words of objects
};

}  // namespace tool::lsp
