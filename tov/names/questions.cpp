#include "tov/names/questions_p.h"

#include <limits>
#include <new>
#include <set>
#include <tuple>

#include "tov/cmd/object_words_p.h"
#include "tov/cmd/references.h"
#include "tov/names/node_names_p.h"

namespace kiri::tov::impl_detail {

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

Questions::Question Questions::of(ReferenceWord const& word) {
    return {word.type, word.match, word.text};
}

Questions::Id Questions::find(Question const& question, std::uint64_t hash) const {
    auto const [first, last] = ids_.equal_range(hash);
    for (auto at = first; at != last; ++at) {
        Row const& row = rows_[at->second];
        if (row.type == question.type && row.match == question.match && row.word == question.word) return at->second;
    }
    return size();
}

// A row is found by its hash, which is added last: a failure before that leaves no question.
Questions::Id Questions::put(Question const& question) {
    std::uint64_t const hash = PathHash(question.word).value();
    Id const id = find(question, hash);
    if (id != size()) return id;
    if (id == std::numeric_limits<Id>::max()) throw std::bad_alloc();
    rows_.push_back({std::string(question.word), question.type, question.match, Answer::unknown});
    if (!isLiteral(question.word)) patterns_.push_back(id);
    ids_.emplace(hash, id);
    return id;
}

bool Questions::isFoundIn(TovDesignNames const& names, Id id) {
    if (answer(id) == Answer::unknown) setAnswer(id, (*this)[id].isFoundIn(names) ? Answer::found : Answer::missing);
    return answer(id) == Answer::found;
}

}  // namespace kiri::tov::impl_detail
