#include "meaning.h"

#include <set>
#include <vector>

#include "tov/cmd/references.h"

using namespace kiri::tov;

namespace tool {

namespace {

// Neither the order of the texts nor their repetition counts.
std::string joined(std::set<std::string> const& texts) {
    std::string text;
    for (std::string const& part : texts) text.append(part).append(1, '\0');
    return text;
}

std::string objectsIn(TovReferences const& references) {
    std::set<std::string> objects;
    for (taDciObj* object : *references.list) objects.insert(TovCmd::toTclString(object));
    return references.role + joined(objects);
}

}  // namespace

Meaning meaningOf(TovCmd& cmd) {
    std::vector<TovReferences> const references = referencesOf(cmd);
    std::vector<ppStlList<taDciObj*>> taken(references.size());
    std::set<std::string> roles;
    for (std::size_t i = 0; i < taken.size(); ++i) {
        if (!references[i].list->empty()) roles.insert(objectsIn(references[i]));
        taken[i].swap(*references[i].list);
    }
    Meaning const meaning = {joined(roles), lineOf(cmd)};
    for (std::size_t i = 0; i < taken.size(); ++i) taken[i].swap(*references[i].list);
    return meaning;
}

std::string lineOf(TovCmd& cmd) {
    // The mark of an attribute is a word of it.
    if (cmd.enabled || dynamic_cast<TovCmdAttr*>(&cmd) != nullptr) return cmd.toSaveString(nullptr);
    cmd.enabled = true;
    std::string line = cmd.toSaveString(nullptr);
    cmd.enabled = false;
    return line;
}

}  // namespace tool
