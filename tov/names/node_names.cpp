#include "tov/names/node_names.h"

#include <algorithm>

#include "tov/names/path_text.h"

namespace kiri::tov::impl_detail {

namespace {

std::optional<NameKind> kindOf(TovNode const& node) {
    if (node.parent() == nullptr || isBus(node)) return {};
    switch (node.type()) {
        case TOV_OBJ_TOP_PORT:
            return NameKind::port;
        case TOV_OBJ_PIN:
            return NameKind::pin;
        case TOV_OBJ_NET:
            return NameKind::net;
        case TOV_OBJ_CELL:
            return NameKind::cell;
        case TOV_OBJ_CLOCK_PORT:
        case TOV_OBJ_CLOCK_NET:
        case TOV_OBJ_CLOCK_OTHER:
            return NameKind::clock;
        default:
            return {};
    }
}

}  // namespace

NodeNames::NodeNames(TovNode const& node) : kind_(kindOf(node)), own_(node.plainName()) {
    if (!kind_) return;
    hasBits_ = kind_ != NameKind::cell && kind_ != NameKind::clock;
    TovNode const& parent = *node.parent();
    path_ = parent.type() == TOV_OBJ_CELL ? parent.plainName() + '/' + own_ : own_;
    hierarchy_ = node.hierachyName('/');
}

bool NodeNames::fits(taDciObjTyp type, std::string_view word, TovNameMatch match) const {
    if (!kind_ || !kindsOf(type).has(*kind_)) return false;
    NameWord const form(word);
    return fits(form, match) || (isUtf8BeyondAscii(word) && fits(form.latin1(), match));
}

bool NodeNames::fits(NameWord const& word, TovNameMatch match) const {
    if (kind_ == NameKind::port || kind_ == NameKind::clock) match = TOVMATCH_FLAT;
    if (kind_ == NameKind::cell && fitsBlock(word, match)) return true;
    if (match == TOVMATCH_LOCAL) return fitsLocal(word);
    if (!word.isPattern() && word.fitsFlat(hierarchy_, hasBits_)) return true;
    if (match != TOVMATCH_FLAT) return word.fitsPath(0, path_, hasBits_);
    return word.fitsFlat(path_, hasBits_) || (kind_ == NameKind::clock && word.fitsFlat(own_, false));
}

bool NodeNames::fitsLocal(NameWord const& word) const {
    std::size_t const last = lastLevelOf(path_);
    if (word.levels() == 1) return word.fitsLast(std::string_view(path_).substr(last), hasBits_);
    if (word.levels() != 2 || kind_ != NameKind::pin) return false;
    std::size_t const first = lastLevelOf(std::string_view(path_).substr(0, last - 1));
    return word.fitsPath(0, std::string_view(path_).substr(first), hasBits_);
}

bool NodeNames::fitsBlock(NameWord const& word, TovNameMatch match) const {
    if (match == TOVMATCH_LOCAL && word.levels() > 1) return false;
    std::string_view const path = path_;
    for (std::size_t at = path.find_first_of("./"); at != std::string_view::npos;
         at = path.find_first_of("./", at + 1)) {
        std::string_view const block = path.substr(0, at);
        bool const fits = match == TOVMATCH_LOCAL  ? word.fitsLevel(0, block.substr(lastLevelOf(block)))
                          : match == TOVMATCH_FLAT ? word.fitsFlat(block, false)
                                                   : word.fitsPath(0, block, false);
        if (fits) return true;
    }
    return false;
}

std::vector<std::string> NodeNames::literalWords() const {
    std::vector<std::string> words = {own_, path_, hierarchy_};
    for (std::string& word : words) std::replace(word.begin(), word.end(), '.', '/');
    for (std::size_t i = 0; hasBits_ && i < words.size(); ++i) {
        std::string base;
        if (TovBusNode::isBusType(words[i], &base)) words.push_back(std::move(base));
    }
    // The last levels of each and, of cells, the blocks.
    for (std::size_t i = words.size(); i-- > 0;) {
        std::string const word = words[i];
        for (std::size_t at = word.find('/'); at != std::string::npos; at = word.find('/', at + 1)) {
            words.push_back(word.substr(at + 1));
            if (kind_ != NameKind::cell) continue;
            words.push_back(word.substr(0, at));
            words.push_back(word.substr(at + 1, word.find('/', at + 1) - at - 1));
        }
        if (kind_ == NameKind::cell) words.push_back(word.substr(0, word.find('/')));
    }
    return words;
}

bool isLiteral(std::string_view word) {
    bool const isRange = !word.empty() && word.back() == ']' && word.find(':') != std::string_view::npos;
    return !isRange && word.find_first_of("*?\\") == std::string_view::npos &&
           std::all_of(word.begin(), word.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace kiri::tov::impl_detail
