#include "tov/names/design_names.h"

#include <string_view>
#include <utility>

#include "tov/names/name_index.h"
#include "tov/names/name_search.h"
#include "tov/names/nearest_name.h"

namespace kiri::tov {

namespace {

using impl_detail::NameKinds;
using impl_detail::NameWord;

void search(impl_detail::NameIndex const* index, taDciObjTyp type, std::string const& text, TovNameMatch match,
            impl_detail::Hits& hits) {
    NameKinds const kinds = impl_detail::kindsOf(type);
    if (index == nullptr || kinds.isEmpty() || !TovDesignNames::isName(text)) return;
    NameWord const word(text);
    impl_detail::NameSearch(*index, word, hits).run(kinds, match);
    if (word.isAscii() || !impl_detail::isUtf8BeyondAscii(text)) return;
    NameWord const latin1 = word.latin1();
    impl_detail::NameSearch(*index, latin1, hits).run(kinds, match);
}

}  // namespace

TovDesignNames::TovDesignNames(TovDesign const& design, TovProgress const& progress) {
    auto index = std::make_unique<impl_detail::NameIndex>(design, progress);
    if (index->isComplete) index_ = std::move(index);
}

TovDesignNames::~TovDesignNames() = default;

bool TovDesignNames::complete() const {
    return index_ != nullptr;
}

std::size_t TovDesignNames::find(taDciObjTyp type, std::string const& word, std::vector<TovNode const*>& nodes,
                                 TovNameMatch match) const {
    impl_detail::Hits hits(false);
    search(index_.get(), type, word, match, hits);
    hits.moveTo(nodes);
    return nodes.size();
}

bool TovDesignNames::has(taDciObjTyp type, std::string const& word, TovNameMatch match) const {
    impl_detail::Hits hits(true);
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
    if (index_ == nullptr || word.size() > 1000) return {};
    std::string const latin1 = impl_detail::isUtf8BeyondAscii(word) ? impl_detail::latin1Of(word) : word;
    impl_detail::NearestName nearest(*index_, impl_detail::kindsOf(type));
    unsigned const most = word.size() < 4 ? 1 : word.size() < 12 ? 2 : 3;
    for (unsigned bound = 1; bound <= most && nearest.name().empty(); ++bound) {
        nearest.compare(word, bound);
        if (latin1 != word) nearest.compare(latin1, bound);
    }
    return nearest.name();
}

}  // namespace kiri::tov
