#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tov/names/design_names.h"
#include "tov/names/name_index_p.h"
#include "tov/names/name_word_p.h"
#include "tov/names/questions_p.h"

namespace kiri::tov::impl_detail {

/// The names of one node, for comparison with words: a node matches the words by which TovDesignNames::find finds it.
/// Each word must be a name, see TovDesignNames::isName.
class NodeNames {
public:
    explicit NodeNames(TovNode const& node);

    bool fits(taDciObjTyp type, std::string_view word, TovNameMatch match) const;

    /// Calls `visit(hash)` for all literal words that may match, and some more, see isLiteral().
    template <class Visit>
    void forEachLiteral(Visit visit) const;

private:
    bool fits(NameWord const& word, TovNameMatch match) const;
    bool fitsBlock(NameWord const& word, TovNameMatch match) const;
    /// The last levels of the path.
    std::string_view lastLevels(std::size_t levels) const;

    std::optional<NameKind> kind_;  // none: no word matches the node
    bool hasBits_ = false;
    std::string own_;
    std::string path_;
    std::string hierarchy_;
};

/// Returns whether a word is ASCII without wildcards, ranges and escapes: it matches names with the same text, with '.'
/// equal to '/', and bits and blocks of such names.
bool isLiteral(std::string_view word);

template <class Visit>
void NodeNames::forEachLiteral(Visit visit) const {
    // Bits are found by what precedes a '[', and blocks by what precedes a separator.
    for (std::string_view const text : {std::string_view(own_), std::string_view(path_), std::string_view(hierarchy_),
                                        lastLevels(1), lastLevels(2)}) {
        PathHash hash;
        for (char const c : text) {
            if (c == '[' || isSeparator(c)) visit(hash);
            hash.add(c);
        }
        visit(hash);
    }
    if (kind_ != NameKind::cell) return;
    for (std::string_view rest = path_; rest.data() != nullptr;) visit(PathHash(takeLevel(rest)));
}

}  // namespace kiri::tov::impl_detail
