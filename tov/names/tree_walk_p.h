#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tov/names/cell_tree_p.h"
#include "tov/names/name_word_p.h"

namespace kiri::tov::impl_detail {

/// Matches a word with the levels of a cell tree: walks over the nodes whose paths may begin a matching path, parents
/// first. Literal levels are looked up, even those after a wildcard, unless wildcards cross levels: if fewer nodes have
/// the text of a later level than there are siblings to try, the walk continues from those nodes.
class TreeWalk {
public:
    /// Begins with the match `start`, and does not descend below nodes where the match has reached `until`. The tree
    /// and the word must outlive the walk.
    TreeWalk(CellTree const& tree, NameWord const& word, Match const& start, std::size_t until)
        : tree_(tree), word_(word), start_(start), until_(until), below_(start) {}

    /// Goes to the next node; returns false at the end.
    bool next();
    CellTree::Id node() const { return node_; }
    /// The match of the node's path, and of the path followed by a separator.
    Match const& match() const { return match_; }
    Match const& below() const { return below_; }
    /// Skips the descendants of the node.
    void skipBelow() { below_.at = Match::none; }

private:
    using Id = CellTree::Id;

    static constexpr Id fewSiblings = 3;  // not worth a search for a later level

    /// Nodes to try: siblings, or nodes of a later level that have its text.
    struct Step {
        CellTree::Range siblings;
        Match match;           // before the siblings
        std::size_t pathSize;  // of what is before them
        Span<Id> later;
    };

    bool enterChild(NameWord::Literal const& level);
    void addStep(std::string_view prefix);
    void findLater(Step& step) const;
    Match read(Match const& match, std::string_view text);

    CellTree const& tree_;
    NameWord const& word_;
    Match start_;
    std::size_t until_;
    std::vector<Step> steps_;
    std::string path_;  // of the node and a separator, if the match crosses levels
    Id node_ = CellTree::root;
    Match match_;
    Match below_;
};

}  // namespace kiri::tov::impl_detail
