#include "meaning.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tov/cmd/cmd.h"
#include "tov/cmd/references.h"

using namespace kiri::tov;

namespace tool {

namespace {

// Joins texts. Neither their order nor their repetition counts.
std::string joined(std::vector<std::string> texts) {
    std::string text;
    std::sort(texts.begin(), texts.end());
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    for (std::string const& part : texts) text.append(part).append(1, '\0');
    return text;
}

std::string objectsIn(ppStlList<taDciObj*> const& list) {
    std::vector<std::string> objects;
    for (taDciObj* object : list) objects.push_back(TovCmd::toTclString(object));
    return joined(std::move(objects));
}

}  // namespace

std::string enabledLine(TOVCMD_TYPE list, TovCmd& cmd) {
    // An attribute has its mark among its words.
    bool const enabled = std::exchange(cmd.enabled, cmd.enabled || list != TOVCMD_ATTRIBUTE);
    std::string line = cmd.toSaveString(nullptr);
    cmd.enabled = enabled;
    return line;
}

Meaning meaningOf(TOVCMD_TYPE list, TovCmd& cmd) {
    Meaning meaning;
    std::vector<TovReferences> const references = referencesOf(cmd);
    std::vector<ppStlList<taDciObj*>> taken(references.size());
    std::vector<std::string> groups;
    for (std::size_t i = 0; i < taken.size(); ++i) {
        taken[i].swap(*references[i].list);
        if (list == TOVCMD_CLOCKGROUP) {
            groups.push_back(objectsIn(taken[i]));
        } else if (!taken[i].empty()) {
            meaning.objects.append(references[i].role).append(1, '\0').append(objectsIn(taken[i])).append(1, '\0');
        }
    }
    meaning.objects += joined(std::move(groups));
    meaning.values = enabledLine(list, cmd);
    for (std::size_t i = 0; i < taken.size(); ++i) taken[i].swap(*references[i].list);
    return meaning;
}

}  // namespace tool
