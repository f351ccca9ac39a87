#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tov/names/cell_tree.h"
#include "tov/names/flat_matcher.h"
#include "tov/names/name_word.h"

// Walks over the nodes of a cell tree that a word may match. Each next() returns a node, or CellTree::none at the end.
// The tree, the word and the matcher must outlive the walk.

namespace kiri::tov::impl_detail {

/// The nodes whose paths fit the first levels of a word, level by level. Literal levels are searched, also those after
/// a wildcard: where fewer nodes have the text of a later level than there are children to try, the walk goes on from
/// these.
class LevelSelection {
public:
    LevelSelection(CellTree const& tree, NameWord const& word, std::size_t levels);
    CellTree::Id next();

private:
    using Id = CellTree::Id;

    /// Nodes to try: siblings for `level`, or, for the later level `textLevel`, those that have its text.
    struct Step {
        std::size_t level;
        CellTree::Range siblings;
        std::size_t textLevel;
        CellTree::Span<std::uint64_t> withText;
    };

    Id enter(Id node, std::size_t level);
    void addStep(Id node, std::size_t level);
    bool fitsUpwards(Id node, std::size_t level, std::size_t first) const;

    CellTree const& tree_;
    NameWord const& word_;
    std::size_t levels_;
    std::vector<Step> steps_;
    Id first_;
};

/// The nodes whose paths may begin a text that the matcher fits, parents first.
class FlatSelection {
public:
    FlatSelection(CellTree const& tree, FlatMatcher const& matcher);
    CellTree::Id next();
    /// The matcher's state after the path of the last node.
    FlatMatcher::State const& state() const { return states_[ranges_.size()]; }
    /// Skips the descendants of the last node.
    void skipBelow() { current_ = CellTree::none; }

private:
    CellTree const& tree_;
    FlatMatcher const& matcher_;
    std::vector<CellTree::Range> ranges_;     // the siblings to try at each depth
    std::vector<FlatMatcher::State> states_;  // of the nodes on the way to the last one, the root's first
    CellTree::Id current_ = CellTree::root;
};

/// The nodes at any depth whose own level fits the first level of a word.
class TextSelection {
public:
    TextSelection(CellTree const& tree, NameWord const& word);
    CellTree::Id next();

private:
    CellTree const& tree_;
    NameWord const& word_;
    CellTree::Id node_;
    CellTree::Span<std::uint64_t> withText_{};
};

}  // namespace kiri::tov::impl_detail
