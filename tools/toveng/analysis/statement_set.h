#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "analysis/facts.h"
#include "analysis/id_list.h"
#include "analysis/key_table.h"
#include "analysis/known_clocks.h"
#include "analysis/pool.h"
#include "analysis/rules.h"

namespace tool {

/// A finding in a statement because of other statements.
struct SetFinding {
    Code code;
    std::size_t other = 0;             ///< the statement that it conflicts with
    std::vector<MissingWord> words{};  ///< that match nothing, for undefined-clock and missing-name
};

/// The statements of one or several files, in order, and the findings between them. Statements are identified by their
/// place in the set, counted from 0.
class StatementSet {
public:
    /// `hasDesign`: the missing words of the statements are missing in a design.
    explicit StatementSet(bool hasDesign) : hasDesign_(hasDesign) {}

    std::size_t size() const { return order_.size(); }

    /// Appends a statement. Takes about 150 bytes for a command; each name is stored once.
    void append(Facts const& facts);

    /// Replaces `count` statements from `first` on with others.
    void replace(std::size_t first, std::size_t count, std::vector<Facts> const& others);

    /// Sets whether a file of the set could not be read to its end.
    void setCut(bool isCut = true) { isCut_ = isCut; }

    /// Returns the findings in a statement, in the order in which they are reported.
    std::vector<SetFinding> findingsOf(std::size_t place) const;

    /// Returns and clears the statements whose findings may have changed since the last call, in order. They include
    /// appended statements.
    std::vector<std::size_t> takeTouched();

    /// Brings the answers up to date with the clocks; findingsOf needs it after a change.
    void update();

    /// The clocks that are defined, for near names.
    KnownClocks const& clocks() const { return clocks_; }
    /// The delay or the number of cycles that a statement sets.
    double valueOf(std::size_t place) const { return entries_[order_[place]].value; }

private:
    using Id = IdList::Id;

    struct Entry {
        std::uint64_t key = 0;
        std::uint64_t path = 0;
        double value = 0;
        std::uint32_t same = 0;    // in same_, where there is a key
        std::uint32_t limits = 0;  // in limits_, where there is a path
        IdList words;              // in words_
        IdList clocks;             // in clockNames_
        bool isMin = false;
        bool isMax = false;
        bool isDelay = false;
        bool isCompared = false;
        bool hidesClocks = false;
        bool isTouched = false;
    };

    Id add(Facts const& facts);
    void link(Id id);
    void remove(Id id);
    void number(std::size_t first);
    void touch(Id id);
    void touchAll(IdList const& ids);
    void touchNeighbours(IdList const& ids, Id id);
    void touchFrom(IdList const& ids, Id id);
    void touchLimits(Id id);
    bool judgesClocks() const;

    // The first statement of a list that is not before a given one.
    Id const* placeIn(IdList const& ids, Id id) const;
    void insertInto(IdList& ids, Id id);
    void eraseFrom(IdList& ids, Id id) { ids.erase(placeIn(ids, id)); }

    void findMissing(Entry const& entry, std::vector<SetFinding>& findings) const;
    void findRedefined(Id id, std::vector<SetFinding>& findings) const;
    void findSame(Id id, std::vector<SetFinding>& findings) const;
    void findLimit(Id id, std::vector<SetFinding>& findings) const;
    bool hasDesign_;
    bool isCut_ = false;
    bool judgedClocks_ = false;
    std::size_t hiding_ = 0;  // statements that may hide clocks
    Pool<Entry> entries_;
    std::vector<Id> order_;              // ids by place
    std::vector<std::uint32_t> places_;  // places by id
    std::vector<Id> touched_;

    /// The commands that bound one path, in their order.
    struct Limits {
        IdList minimums;
        IdList maximums;
    };

    KeyTable<IdList> same_;  // the commands of a key, in their order
    KeyTable<Limits> limits_;
    KnownClocks clocks_;
};

}  // namespace tool
