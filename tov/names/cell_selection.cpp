#include "tov/names/cell_selection.h"

#include <utility>

namespace kiri::tov::impl_detail {

LevelSelection::LevelSelection(CellTree const& tree, NameWord const& word, std::size_t levels)
    : tree_(tree), word_(word), levels_(levels), first_(enter(CellTree::root, 0)) {}

CellTree::Id LevelSelection::next() {
    Id found = std::exchange(first_, CellTree::none);
    while (found == CellTree::none && !steps_.empty()) {
        Step& step = steps_.back();
        if (step.withText.size() > 0) {
            auto const node = static_cast<Id>(*step.withText.first++);
            std::size_t const level = step.textLevel;
            if (fitsUpwards(node, level, step.level)) found = enter(node, level + 1);
        } else if (step.siblings.size() > 0) {
            Id const node = step.siblings.begin++;
            std::size_t const level = step.level;
            if (word_.fitsLevel(level, tree_.text(node))) found = enter(node, level + 1);
        } else {
            steps_.pop_back();
        }
    }
    return found;
}

/// Follows the literal levels from `level` on. Returns the node where the levels end, or none after it added a step for
/// a wildcard.
CellTree::Id LevelSelection::enter(Id node, std::size_t level) {
    for (; level < levels_ && !word_.isPattern(level); ++level) {
        node = tree_.child(node, word_.level(level));
        if (node == CellTree::none) return node;
    }
    if (level == levels_) return node;
    addStep(node, level);
    return CellTree::none;
}

void LevelSelection::addStep(Id node, std::size_t level) {
    Step step{level, tree_.withPrefix(tree_.children(node), word_.prefix(level)), level, {}};
    CellTree::Range below = tree_.children(node);
    std::size_t fewest = step.siblings.size();
    for (std::size_t later = level + 1; later < levels_; ++later) {
        below = tree_.children(below);
        if (fewest == 0 || below.size() == 0) return;
        if (word_.isPattern(later)) continue;
        CellTree::Span<std::uint64_t> const withText = tree_.withText(below, word_.level(later));
        if (withText.size() > fewest) continue;
        fewest = withText.size();
        step.textLevel = later;
        step.withText = withText;
        step.siblings = {};
    }
    steps_.push_back(step);
}

/// Returns whether the texts of the node and its ancestors fit the levels from `level` up to `first`.
bool LevelSelection::fitsUpwards(Id node, std::size_t level, std::size_t first) const {
    for (; word_.fitsLevel(level, tree_.text(node)); --level) {
        if (level == first) return true;
        node = tree_.parent(node);
    }
    return false;
}

FlatSelection::FlatSelection(CellTree const& tree, FlatMatcher const& matcher)
    : tree_(tree), matcher_(matcher), states_{matcher.start()} {}

CellTree::Id FlatSelection::next() {
    if (current_ != CellTree::none) ranges_.push_back(tree_.children(current_));
    while (!ranges_.empty()) {
        CellTree::Range& siblings = ranges_.back();
        if (siblings.size() == 0) {
            ranges_.pop_back();
            continue;
        }
        std::size_t const depth = ranges_.size();
        current_ = siblings.begin++;
        if (states_.size() == depth) states_.emplace_back();
        FlatMatcher::State& state = states_[depth];
        state = states_[depth - 1];
        if (depth > 1) matcher_.advance(state, "/");
        matcher_.advance(state, tree_.text(current_));
        if (!FlatMatcher::isDead(state)) return current_;
    }
    current_ = CellTree::none;
    return CellTree::none;
}

TextSelection::TextSelection(CellTree const& tree, NameWord const& word)
    : tree_(tree), word_(word), node_(word.isPattern(0) ? CellTree::root : tree.size()) {
    if (!word.isPattern(0)) withText_ = tree.withText({0, tree.size()}, word.level(0));
}

CellTree::Id TextSelection::next() {
    while (withText_.size() > 0) {
        auto const node = static_cast<CellTree::Id>(*withText_.first++);
        if (word_.fitsLevel(0, tree_.text(node))) return node;
    }
    while (node_ < tree_.size() && ++node_ < tree_.size()) {
        if (word_.fitsLevel(0, tree_.text(node_))) return node_;
    }
    return CellTree::none;
}

}  // namespace kiri::tov::impl_detail
