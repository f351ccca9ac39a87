#include "tov/names/design_names.h"

#include "tov/names/name_rules.h"

namespace kiri::tov {

namespace impl_detail {

class NameIndex {
public:
    std::vector<name_rules::Candidate> candidates;
    bool isComplete = true;
};

}  // namespace impl_detail

TovDesignNames::TovDesignNames(TovDesign const& design, TovProgress const& progress) {
    auto index = std::make_unique<impl_detail::NameIndex>();
    index->candidates = name_rules::candidatesOf(design);
    if (progress && !progress(index->candidates.size(), index->candidates.size())) {
        index->candidates.clear();
        index->isComplete = false;
    }
    index_ = std::move(index);
}

TovDesignNames::~TovDesignNames() = default;

bool TovDesignNames::complete() const {
    return index_->isComplete;
}

std::size_t TovDesignNames::find(taDciObjTyp type, std::string const& word, std::vector<TovNode const*>& nodes,
                                 TovNameMatch match) const {
    nodes = name_rules::find(index_->candidates, type, word, match);
    return nodes.size();
}

bool TovDesignNames::has(taDciObjTyp type, std::string const& word, TovNameMatch match) const {
    return !name_rules::find(index_->candidates, type, word, match).empty();
}

bool TovDesignNames::isName(std::string const& word) {
    return !word.empty() && word != "\\" && std::string("[$@-").find(word[0]) == std::string::npos;
}

std::string TovDesignNames::nameOf(TovNode const& node) const {
    std::string const own = node.name();
    if (own.empty()) return {};
    TovNode const* const parent = node.parent();
    bool const isPlain =
        parent != nullptr && parent->type() == TOV_OBJ_TOP &&
        (dynamic_cast<TovPortNode const*>(&node) != nullptr || dynamic_cast<TovClockNode const*>(&node) != nullptr);
    std::string path = parent != nullptr && parent->type() == TOV_OBJ_CELL ? parent->name() + "/" + own : own;
    std::string word;
    for (char c : path) {
        if (c == '.' && !isPlain) c = '/';
        bool const isSpecial = std::string("*?\\").find(c) != std::string::npos ||
                               (word.empty() && std::string("[$@-").find(c) != std::string::npos);
        if (isSpecial) word += '\\';
        word += c;
    }
    return word;
}

std::string TovDesignNames::nearest(taDciObjTyp type, std::string const& word) const {
    return name_rules::nearest(*this, index_->candidates, type, word);
}

}  // namespace kiri::tov
