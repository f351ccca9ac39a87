#include "tov/names/node_names_p.h"

#include <algorithm>

namespace kiri::tov::impl_detail {

namespace {

std::optional<NameKind> kindOf(TovNode const& node) {
    if (node.parent() == nullptr || isBus(node)) return {};
    constexpr struct {
        TovObjType type;
        NameKind kind;
    } known[] = {
        {TOV_OBJ_TOP_PORT, NameKind::port},     {TOV_OBJ_PIN, NameKind::pin},
        {TOV_OBJ_NET, NameKind::net},           {TOV_OBJ_CELL, NameKind::cell},
        {TOV_OBJ_CLOCK_PORT, NameKind::clock},  {TOV_OBJ_CLOCK_NET, NameKind::clock},
        {TOV_OBJ_CLOCK_OTHER, NameKind::clock},
    };
    for (auto const& [type, kind] : known) {
        if (type == node.type()) return kind;
    }
    return {};
}

}  // namespace

NodeNames::NodeNames(TovNode const& node) : kind_(kindOf(node)), own_(node.plainName()) {
    if (!kind_) return;
    hasBits_ = hasBits(*kind_);
    TovNode const& parent = *node.parent();
    path_ = parent.type() == TOV_OBJ_CELL ? parent.plainName() + '/' + own_ : own_;
    hierarchy_ = node.hierachyName('/');
}

bool NodeNames::fits(taDciObjTyp type, std::string_view word, TovNameMatch match) const {
    if (!kind_ || !kindsOf(type).has(*kind_)) return false;
    bool isFound = false;
    forEachForm(word, [&](NameWord const& form) {
        isFound = fits(form, match);
        return !isFound;
    });
    return isFound;
}

bool NodeNames::fits(NameWord const& word, TovNameMatch match) const {
    if (kind_ == NameKind::port || kind_ == NameKind::clock) match = TOVMATCH_FLAT;
    bool const isFlat = match == TOVMATCH_FLAT;
    if (kind_ == NameKind::cell && fitsBlock(word, match)) return true;
    if (match == TOVMATCH_LOCAL) {
        bool const isShort = word.levels() == 1 || (word.levels() == 2 && kind_ == NameKind::pin);
        return isShort && word.fits(lastLevels(word.levels()), hasBits_, false);
    }
    if (!word.isPattern() && word.fits(hierarchy_, hasBits_, false)) return true;
    return word.fits(path_, hasBits_, isFlat) || (kind_ == NameKind::clock && word.fits(own_, false, isFlat));
}

bool NodeNames::fitsBlock(NameWord const& word, TovNameMatch match) const {
    bool const isLocal = match == TOVMATCH_LOCAL;
    if (word.isRange()) return false;
    Match const start = NameWord::start(match == TOVMATCH_FLAT);
    Match block = start;
    std::string_view rest = path_;
    std::size_t begin = 0;
    for (std::size_t end = rest.find_first_of("./"); end != std::string_view::npos;
         end = rest.find_first_of("./", begin)) {
        block = isLocal ? word.advance(start, rest.substr(begin, end - begin))
                        : word.advance(block, rest.substr(0, end), begin);
        if (word.accepts(block)) return true;
        if (!isLocal) block = word.advance(block, rest.substr(0, end + 1), end);
        begin = end + 1;
    }
    return false;
}

std::string_view NodeNames::lastLevels(std::size_t levels) const {
    return std::string_view(path_).substr(lastLevelsOf(path_, levels));
}

bool isLiteral(std::string_view word) {
    bool const isRange = !word.empty() && word.back() == ']' && word.find(':') != std::string_view::npos;
    return !isRange && word.find_first_of("*?\\") == std::string_view::npos &&
           std::all_of(word.begin(), word.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace kiri::tov::impl_detail
