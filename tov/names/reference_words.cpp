#include "tov/names/reference_words.h"

#include <set>
#include <string>
#include <tuple>

#include "tov/cmd/cmd.h"
#include "tov/cmd/object_words_p.h"
#include "tov/cmd/references.h"

namespace kiri::tov {

using namespace impl_detail;

std::vector<ReferenceWord> referenceWords(TovCmd& cmd, TovNameMatch match) {
    std::vector<ReferenceWord> words;
    std::set<std::tuple<std::string_view, taDciObjTyp, std::string_view, TovNameMatch>> seen;
    std::string name;
    for (TovReferences const& references : referencesOf(cmd)) {
        for (ObjectWord const& word : objectWords(*references.list)) {
            name = word.text;
            if (!word.isJudged || !TovDesignNames::isName(name)) continue;
            TovNameMatch const how = word.isHierarchical ? TOVMATCH_LOCAL : match;
            if (!seen.emplace(references.role, word.type, word.text, how).second) continue;
            words.push_back({references.role, word.type, word.text, how});
        }
    }
    return words;
}

}  // namespace kiri::tov
