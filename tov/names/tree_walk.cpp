#include "tov/names/tree_walk_p.h"

namespace kiri::tov::impl_detail {

bool TreeWalk::next() {
    bool const goesBelow = below_.at < until_ && tree_.children(node_).size() > 0;
    if (goesBelow) {
        NameWord::Literal const literal = word_.literalAt(below_.at);
        bool const isLevel = literal.isLevel && below_.star == Match::none;
        if (isLevel && enterChild(literal)) return true;
        if (!isLevel) addStep(literal.text);
    }
    while (!steps_.empty()) {
        Step& step = steps_.back();
        if (step.later.size() > 0) {
            node_ = *step.later.first++;
            match_ = word_.advance(start_, tree_.path(node_));
        } else if (step.siblings.size() > 0) {
            node_ = step.siblings.begin++;
            path_.resize(step.pathSize);
            match_ = read(step.match, tree_.text(node_));
        } else {
            steps_.pop_back();
            continue;
        }
        if (match_.isDead()) continue;
        below_ = read(match_, "/");
        return true;
    }
    return false;
}

/// Goes to the child with the text of the word's next level.
bool TreeWalk::enterChild(NameWord::Literal const& level) {
    Id const child = tree_.child(node_, level.text, level.hash);
    if (child == CellTree::none) return false;
    node_ = child;
    match_ = below_;
    match_.at += level.text.size();
    below_ = match_;
    below_.at = match_.at == word_.text().size() ? Match::none : match_.at + 1;
    if (start_.crosses) path_.append(level.text) += '/';
    return true;
}

/// Continues a match. Only one that crosses levels may go back to earlier bytes of the path.
Match TreeWalk::read(Match const& match, std::string_view text) {
    if (!match.crosses) return word_.advance(match, text);
    std::size_t const size = path_.size();
    path_ += text;
    return word_.advance(match, path_, size);
}

void TreeWalk::addStep(std::string_view prefix) {
    Step step{tree_.children(node_), below_, path_.size(), {}};
    if (below_.star == Match::none) step.siblings = tree_.withPrefix(step.siblings, prefix);
    if (!below_.crosses && step.siblings.size() > fewSiblings) findLater(step);
    bool const isLast = !steps_.empty() && steps_.back().siblings.size() == 0 && steps_.back().later.size() == 0;
    if (isLast) steps_.pop_back();  // for a chain of nodes, one step is enough
    steps_.push_back(step);
}

/// Replaces the siblings with the nodes that have the text of a later level, if those are fewer.
void TreeWalk::findLater(Step& step) const {
    std::string_view const text = word_.text();
    std::size_t fewest = step.siblings.size();
    CellTree::Range nodes = tree_.children(node_);
    for (std::size_t at = text.find('/', step.match.at) + 1; at > 0 && at < until_; at = text.find('/', at) + 1) {
        nodes = tree_.children(nodes);
        if (nodes.size() == 0) {  // no path is that long
            step.siblings = {};
            step.later = {};
            return;
        }
        NameWord::Literal const level = word_.literalAt(at);
        if (!level.isLevel) continue;
        Span<Id> const later = tree_.withText(nodes, level.hash);
        if (later.size() >= fewest) continue;
        fewest = later.size();
        step.later = later;
        step.siblings = {};
    }
}

}  // namespace kiri::tov::impl_detail
