#include <QJsonArray>
#include <QJsonDocument>
#include <map>
#include <memory>

#include "analysis/known_clocks.h"
#include "command.h"
#include "design.h"
#include "input.h"
#include "text.h"
#include "tov/cmd/cmd.h"
#include "tov/cmd/references.h"
#include "tov/edit.h"
#include "tov/names/document_names.h"
#include "tov/names/name_check.h"

using namespace kiri::tov;

namespace tool {

namespace {

/// The objects that a word matches.
struct Found {
    taDciObjTyp type;
    std::string name;
    std::vector<TovCmd*> commands;
};

/// The clocks that the commands of a document define.
class DefinedClocks {
public:
    DefinedClocks(TOV& document, TovDocumentNames const& join) : document_(document), join_(join) {
        forEachCommand(document, [this](TOVCMD_TYPE, TovCmd& cmd) {
            std::string const name = definedClock(cmd);
            if (name.empty() || !cmd.enabled) return;
            std::unique_ptr<KnownClocks>& clock = clocks_[name];
            if (clock != nullptr) return;
            clock = std::make_unique<KnownClocks>();
            clock->define(clock->useName(name));
        });
    }

    /// Calls `visit` with the name of each clock that a word matches.
    template <class Visit>
    void forEach(std::string const& word, Visit visit) const {
        for (auto const& [name, clock] : clocks_) {
            if (clock->has({taDciObjClock, TOVMATCH_FLAT, true, word})) visit(name);
        }
    }

    /// Returns the commands that define a clock or refer to it, in the order of writing.
    std::vector<TovCmd*> commandsOf(std::string const& name) const {
        KnownClocks const& clock = *clocks_.find(name)->second;
        std::map<std::string, bool> answers;
        std::vector<TovCmd*> commands;
        forEachCommand(document_, [&](TOVCMD_TYPE, TovCmd& cmd) {
            bool isMeant = definedClock(cmd) == name;
            for (TovNameUse const& use : join_.usesIn(cmd)) {
                MissingWord const word{use.type, use.match, true, use.word};
                if (isMeant || !word.mayBeClock()) continue;
                auto const [answer, isNew] = answers.try_emplace(use.word, false);
                if (isNew) answer->second = clock.has(word);
                isMeant = answer->second;
            }
            if (isMeant) commands.push_back(&cmd);
        });
        return commands;
    }

private:
    TOV& document_;
    TovDocumentNames const& join_;
    std::map<std::string, std::unique_ptr<KnownClocks>> clocks_;
};

QJsonObject jsonOf(std::string const& word, std::vector<Found> const& objects) {
    QJsonArray list;
    for (Found const& found : objects) {
        QJsonArray commands;
        for (TovCmd* cmd : found.commands) commands.append(toText(cmd->toSaveString(nullptr)));
        list.append(QJsonObject{{"type", titleOf(found.type)}, {"name", toText(found.name)}, {"commands", commands}});
    }
    return {{"word", toText(word)}, {"objects", list}};
}

void printObjects(std::vector<Found> const& objects) {
    for (Found const& found : objects) {
        printLine(titleOf(found.type), toText(found.name));
        for (TovCmd* cmd : found.commands) printLine("   ", toText(cmd->toSaveString(nullptr)));
    }
}

}  // namespace

int objects(Arguments const& arguments) {
    std::vector<taDciObjTyp> types = {taDciObjPort, taDciObjPin, taDciObjNet, taDciObjCell, taDciObjClock};
    taDciObjTyp wanted = taDciObjName;
    if (arguments.has("type")) {
        wanted = types[arguments.choose("type", {"port", "pin", "net", "cell", "clock"})];
        types = {wanted};
    }
    bool const isJson = arguments.choose("format", {"text", "json"}) == 1;
    TovNameMatch const match = arguments.match();
    TOV& document = keep<TOV>();
    readAll(document, arguments.values("constraints"));
    Design const& design = keep<Design>(arguments.value("design"));
    TovDocumentNames const join(document, *design.names, match);
    DefinedClocks const clocks(document, join);
    int status = 0;
    char const* separator = "[\n";
    for (std::string const& word : arguments.words()) {
        std::vector<Found> found;
        std::vector<TovNode const*> nodes;
        for (taDciObjTyp type : types) {
            design.names->find(type, word, nodes, match);
            for (TovNode const* node : nodes)
                found.push_back({type, design.names->nameOf(*node), join.commandsOf(*node)});
        }
        if (types.back() == taDciObjClock) {
            clocks.forEach(word, [&](std::string const& name) {
                auto const isOfDesign = [&](Found const& known) {
                    return known.type == taDciObjClock && known.name == name;
                };
                if (std::any_of(found.begin(), found.end(), isOfDesign)) return;
                found.push_back({taDciObjClock, name, clocks.commandsOf(name)});
            });
        }
        if (found.empty()) {
            complain("toveng: " + missingMessage({nullptr, "", wanted, word, match}, *design.names));
            status = 1;
        }
        if (!isJson) {
            printObjects(found);
            continue;
        }
        print(std::exchange(separator, ",\n"));
        print(jsonOf(word, found));
    }
    if (isJson) print("\n]\n");
    return status;
}

}  // namespace tool
