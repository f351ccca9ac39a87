#include "meaning.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/words.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"

using namespace kiri::tov;

namespace tool {

namespace {

// Joins texts. Neither their order nor their repetition matters.
std::string joined(std::vector<std::string> texts) {
    std::string text;
    std::sort(texts.begin(), texts.end());
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    for (std::string const& part : texts) text.append(part).append(1, '\0');
    return text;
}

// Removes the braces and quotes around single words, and the blanks around brackets.
std::string plainText(std::string_view text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size();) {
        char const c = text[at];
        std::size_t const end = std::min(text.find_first_of(separators, at + 1), text.size());
        bool const isClosed = end < text.size() && ((c == '{' && text[end] == '}') || (c == '"' && text[end] == '"'));
        char const before = at == 0 ? ' ' : text[at - 1];
        char const after = end + 1 < text.size() ? text[end + 1] : ' ';
        bool const isWord =
            (isSpace(before) || before == '[' || before == '{') && (isSpace(after) || after == ']' || after == '}');
        if (isClosed && isWord && end > at + 1) {
            plain += text.substr(at + 1, end - at - 1);
            at = end + 1;
            continue;
        }
        bool const isBlank = isSpace(c);
        bool const isNeeded = !plain.empty() && plain.back() != ' ' && plain.back() != '[' && end > at + 1;
        if (!isBlank || isNeeded) plain += isBlank ? ' ' : c;
        ++at;
    }
    return plain;
}

std::string objectsIn(ppStlList<taDciObj*> const& list) {
    std::vector<std::string> objects;
    for (taDciObj* object : list) {
        std::string const text = TovCmd::toTclString(object);
        objects.push_back(object != nullptr && object->type == taDciObjName ? plainText(text) : text);
    }
    return joined(std::move(objects));
}

// During its lifetime, a command has neither the flags of a delay nor the braces of a clock name.
class WithoutFlags {
public:
    explicit WithoutFlags(TovCmd& cmd) : delay_(dynamic_cast<TovCmdIODelay*>(&cmd)) {
        if (delay_ != nullptr) {
            min_ = std::exchange(delay_->min, false);
            max_ = std::exchange(delay_->max, false);
        }
        if (auto* clock = dynamic_cast<TovCmdClockDef*>(&cmd)) name_ = &clock->clockName;
        if (auto* clock = dynamic_cast<TovCmdGenClockDef*>(&cmd)) name_ = &clock->clockName;
        if (name_ == nullptr) return;
        nameAsIs_ = *name_;
        *name_ = plainText(*name_);
    }
    ~WithoutFlags() {
        if (delay_ != nullptr) {
            delay_->min = min_;
            delay_->max = max_;
        }
        if (name_ != nullptr) name_->swap(nameAsIs_);
    }
    WithoutFlags(WithoutFlags const&) = delete;
    WithoutFlags& operator=(WithoutFlags const&) = delete;

    std::string flags() const { return std::string(min_ ? "-min" : "") + (max_ ? "-max" : ""); }

private:
    TovCmdIODelay* delay_;
    bool min_ = false;
    bool max_ = false;
    std::string* name_ = nullptr;
    std::string nameAsIs_;
};

}  // namespace

std::string enabledLine(TOVCMD_TYPE list, TovCmd& cmd) {
    // The mark of a disabled attribute is among its words.
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
    WithoutFlags const withoutFlags(cmd);
    meaning.flags = withoutFlags.flags();
    meaning.values = enabledLine(list, cmd);
    for (std::size_t i = 0; i < taken.size(); ++i) taken[i].swap(*references[i].list);
    return meaning;
}

}  // namespace tool
