#include "tov/names/word_match.h"

#include <algorithm>

#include "tov/names/word_rules.h"

namespace kiri::tov {

namespace {

std::optional<word_rules::Kind> kindOf(TovNode const& node) {
    bool const isInCell = node.parent() != nullptr && node.parent()->type() == TOV_OBJ_CELL;
    if (dynamic_cast<TovBusNode const*>(&node) != nullptr || node.parent() == nullptr) return {};
    if (dynamic_cast<TovPortNode const*>(&node) != nullptr) return isInCell ? word_rules::pins : word_rules::ports;
    if (dynamic_cast<TovNetNode const*>(&node) != nullptr) return word_rules::nets;
    if (dynamic_cast<TovCellNode const*>(&node) != nullptr) return word_rules::cells;
    if (dynamic_cast<TovClockNode const*>(&node) != nullptr) return word_rules::clocks;
    return {};
}

}  // namespace

bool standsFor(taDciObjTyp type, std::string const& word, TovNameMatch match, TovNode const& node) {
    auto const kind = kindOf(node);
    if (!kind || !word_rules::isOf(type, *kind) || !TovDesignNames::isName(word)) return false;
    bool const isInCell = node.parent()->type() == TOV_OBJ_CELL;
    std::string const own = node.name();
    word_rules::Candidate candidate{
        &node, *kind, {word_rules::levelsOf(isInCell ? node.parent()->name() + "/" + own : own)}};
    if (*kind == word_rules::clocks && isInCell) candidate.paths.push_back(word_rules::levelsOf(own));
    for (word_rules::Word const& form : word_rules::wordsOf(word)) {
        if (word_rules::standsFor(form, candidate, match)) return true;
    }
    return false;
}

bool isLiteral(std::string_view word) {
    bool const isRange = !word.empty() && word.back() == ']' && word.find(':') != std::string_view::npos;
    return !isRange && std::none_of(word.begin(), word.end(), [](char c) {
        return c == '*' || c == '?' || c == '\\' || static_cast<unsigned char>(c) >= 0x80;
    });
}

bool matchesText(std::string const& word, std::string const& name) {
    for (word_rules::Word const& form : word_rules::wordsOf(word)) {
        if (!form.isRange &&
            word_rules::fitsLevels(form, word_rules::levelsOf(name), word_rules::clocks, TOVMATCH_FLAT)) {
            return true;
        }
    }
    return false;
}

}  // namespace kiri::tov
