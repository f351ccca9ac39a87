#include "tov/names/word_match.h"

#include <algorithm>

#include "tov/names/name_rules.h"

namespace kiri::tov {

namespace {

std::optional<name_rules::Kind> kindOf(TovNode const& node) {
    bool const isInCell = node.parent() != nullptr && node.parent()->type() == TOV_OBJ_CELL;
    if (dynamic_cast<TovBusNode const*>(&node) != nullptr || node.parent() == nullptr) return {};
    if (dynamic_cast<TovPortNode const*>(&node) != nullptr) return isInCell ? name_rules::pins : name_rules::ports;
    if (dynamic_cast<TovNetNode const*>(&node) != nullptr) return name_rules::nets;
    if (dynamic_cast<TovCellNode const*>(&node) != nullptr) return name_rules::cells;
    if (dynamic_cast<TovClockNode const*>(&node) != nullptr) return name_rules::clocks;
    return {};
}

}  // namespace

bool standsFor(taDciObjTyp type, std::string const& word, TovNameMatch match, TovNode const& node) {
    auto const kind = kindOf(node);
    if (!kind || !name_rules::isOf(type, *kind) || !TovDesignNames::isName(word)) return false;
    bool const isInCell = node.parent()->type() == TOV_OBJ_CELL;
    std::string const own = node.name();
    name_rules::Candidate candidate{
        &node, *kind, {name_rules::levelsOf(isInCell ? node.parent()->name() + "/" + own : own)}};
    if (*kind == name_rules::clocks && isInCell) candidate.paths.push_back(name_rules::levelsOf(own));
    for (name_rules::Word const& form : name_rules::wordsOf(word)) {
        if (name_rules::standsFor(form, candidate, match)) return true;
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
    for (name_rules::Word const& form : name_rules::wordsOf(word)) {
        if (!form.isRange &&
            name_rules::fitsLevels(form, name_rules::levelsOf(name), name_rules::clocks, TOVMATCH_FLAT)) {
            return true;
        }
    }
    return false;
}

}  // namespace kiri::tov
