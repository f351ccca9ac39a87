#include "analysis/set_message.h"

#include "analysis/edit_distance.h"
#include "analysis/words.h"
#include "tov/names/name_check.h"

using namespace kiri::tov;

namespace tool {

std::string NearNames::nearestTo(MissingWord const& word) {
    Nearest nearest(word.text);
    if (word.isClock || word.mayBeClock()) {
        std::string const clock = clocks_.nearest(word.text);
        if (!clock.empty()) nearest.add(clock);
    }
    if (search_ && searches_ > 0) {
        --searches_;
        std::string name = search_(word.isClock ? taDciObjClock : word.type, word.text);
        if (name == word.text) name.clear();  // a local match does not find a whole path
        // A name of the design may be near by its path, which differs from its text.
        if (nearest.word().empty()) return name;
        if (!name.empty()) nearest.add(name);
    }
    return nearest.word();
}

std::string NearNames::messageOf(MissingWord const& word) {
    taDciObjTyp const type = word.isClock ? taDciObjClock : word.type;
    std::string const message = missingMessage({nullptr, "", type, word.text, word.match});
    std::string const nearest = nearestTo(word);
    return nearest.empty() ? message : message + "; did you mean `" + nearest + "`?";
}

std::string messageOf(SetFinding const& finding, StatementSet const& set, std::size_t place, std::string const& other,
                      NearNames& near) {
    std::string message;
    switch (finding.code) {
        case Code::undefinedClock:
        case Code::missingName:
            for (MissingWord const& word : finding.words) {
                if (!message.empty()) message += "; ";
                message += near.messageOf(word);
            }
            return message;
        case Code::redefinedClock:
            return "the clock is already defined at " + other + "; remove one of the two or rename it";
        case Code::repeated:
            return "repeats the command at " + other + "; remove one of the two";
        case Code::overridden:
            return "overridden at " + other + ", which sets " + number(set.valueOf(finding.other)) + " instead of " +
                   number(set.valueOf(place)) + "; remove the one that is not meant";
        case Code::minOverMax: {
            double const value = set.valueOf(place);
            double const bound = set.valueOf(finding.other);
            return value > bound
                       ? "the minimum " + number(value) + " is above the maximum " + number(bound) + " at " + other
                       : "the maximum " + number(value) + " is below the minimum " + number(bound) + " at " + other;
        }
        default:
            return message;
    }
}

}  // namespace tool
