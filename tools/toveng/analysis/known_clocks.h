#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>

#include "analysis/facts.h"
#include "analysis/id_list.h"
#include "analysis/pool.h"
#include "tov/names/document_names.h"
#include "tov/tov.h"

namespace tool {

/// Returns the names of a design without objects.
kiri::tov::TovDesignNames const& noDesign();

/// The clocks that the statements of a set define, and the words of the statements that may mean clocks.
class KnownClocks {
public:
    using Id = IdList::Id;

    KnownClocks();
    ~KnownClocks();
    KnownClocks(KnownClocks const&) = delete;
    KnownClocks& operator=(KnownClocks const&) = delete;

    /// A clock name. It is removed with its last use.
    struct Name {
        std::string text;
        std::size_t uses = 0;
        std::size_t definitions = 0;  ///< number of the enabled commands that define it
        IdList compared;              ///< those that the rules for commands judge
        kiri::tov::TovCmd* definition = nullptr;
    };
    /// A word that matches nothing in the design.
    struct Word {
        MissingWord word;
        IdList users;
        bool isClock = false;  ///< it matches a clock of the set
    };

    /// Adds a use of a name and returns its id.
    Id useName(std::string const& name);
    void dropName(Id id);
    /// Adds a user of a word and returns its id.
    Id useWord(MissingWord const& word, Id user);
    void dropWord(Id id, Id user);
    Name& name(Id id) { return names_[id]; }
    Name const& name(Id id) const { return names_[id]; }
    Word const& word(Id id) const { return words_[id]; }

    /// Adds or removes a definition of a clock. Returns whether a clock appeared or disappeared.
    bool define(Id id);
    bool undefine(Id id);
    bool empty() const { return defined_ == 0; }

    /// Looks up the words again; calls `visit` with each word whose answer has changed.
    template <class Visit>
    void update(Visit visit) {
        if (isCurrent_) return;
        isCurrent_ = true;
        for (Word& word : words_) {
            bool const isClock = word.word.mayBeClock() && !word.users.empty() && has(word.word);
            if (isClock == word.isClock) continue;
            word.isClock = isClock;
            visit(word);
        }
    }

    /// Returns whether a word matches a clock of the set.
    bool has(MissingWord const& word) const;

    /// Returns the name of the clock that is nearest to a word, see Nearest; empty if none is near.
    std::string nearest(std::string const& word) const;

private:
    void setKey(MissingWord const& word);

    Pool<Name> names_;
    Pool<Word> words_;
    std::unordered_map<std::string, Id> nameIds_;
    std::unordered_map<std::string, Id> wordIds_;
    std::string key_;  // of the word that is looked up
    std::size_t defined_ = 0;
    bool isCurrent_ = true;
    kiri::tov::TOV document_;  // holds a definition of each clock
    std::unique_ptr<kiri::tov::TovDocumentNames> join_;
};

}  // namespace tool
