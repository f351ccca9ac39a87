#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tov/names/design_names.h"
#include "tov/names/hits.h"
#include "tov/names/name_word.h"

namespace kiri::tov::impl_detail {

/// The names of one node, to compare words with: it fits the words by which TovDesignNames::find finds it. Each word
/// is a name, see TovDesignNames::isName.
class NodeNames {
public:
    explicit NodeNames(TovNode const& node);

    bool fits(taDciObjTyp type, std::string_view word, TovNameMatch match) const;

    /// Returns all literal words that may fit, levels joined by '/', and some more: see isLiteral().
    std::vector<std::string> literalWords() const;

private:
    bool fits(NameWord const& word, TovNameMatch match) const;
    bool fitsBlock(NameWord const& word, TovNameMatch match) const;
    bool fitsLocal(NameWord const& word) const;

    std::optional<NameKind> kind_;  // none: no word stands for the node
    bool hasBits_ = false;
    std::string own_;
    std::string path_;
    std::string hierarchy_;
};

/// Returns whether a word has no wildcard, no range, no escape and nothing beyond ASCII: it fits names that are the
/// same text, with '.' equal to '/', and bits and blocks of such names.
bool isLiteral(std::string_view word);

}  // namespace kiri::tov::impl_detail
