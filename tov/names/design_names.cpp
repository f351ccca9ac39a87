#include "tov/names/design_names.h"

#include <string_view>
#include <utility>

#include "tov/names/name_search_p.h"
#include "tov/names/nearest_name_p.h"

namespace kiri::tov {

using namespace impl_detail;

namespace {

void search(NameIndex const* index, taDciObjTyp type, std::string const& word, TovNameMatch match, Hits& hits) {
    NameKinds const kinds = kindsOf(type);
    if (index == nullptr || kinds.isEmpty() || !TovDesignNames::isName(word)) return;
    forEachForm(word, [&](NameWord const& form) {
        NameSearch(*index, form, hits).run(kinds, match);
        return !hits.isEnough();
    });
}

}  // namespace

TovDesignNames::TovDesignNames(TovDesign const& design, TovProgress const& progress) {
    auto index = std::make_unique<NameIndex>(design, progress);
    if (index->isComplete) index_ = std::move(index);
}

TovDesignNames::~TovDesignNames() = default;

bool TovDesignNames::complete() const {
    return index_ != nullptr;
}

std::size_t TovDesignNames::find(taDciObjTyp type, std::string const& word, std::vector<TovNode const*>& nodes,
                                 TovNameMatch match) const {
    Hits hits(false);
    search(index_.get(), type, word, match, hits);
    hits.moveTo(nodes);
    return nodes.size();
}

bool TovDesignNames::has(taDciObjTyp type, std::string const& word, TovNameMatch match) const {
    Hits hits(true);
    search(index_.get(), type, word, match, hits);
    return !hits.isEmpty();
}

bool TovDesignNames::isName(std::string const& word) {
    std::string_view const text = word;
    return !text.empty() && text != "\\" && std::string_view("[$@-").find(text[0]) == std::string_view::npos;
}

std::string TovDesignNames::nameOf(TovNode const& node) const {
    return impl_detail::nameOf(node);
}

std::string TovDesignNames::nearest(taDciObjTyp type, std::string const& word) const {
    return index_ == nullptr ? std::string() : nearestName(*index_, kindsOf(type), word);
}

}  // namespace kiri::tov
