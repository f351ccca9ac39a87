#include <QJsonArray>
#include <algorithm>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <numeric>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "command.h"
#include "findings.h"
#include "meaning.h"
#include "text.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"
#include "tov/edit.h"

using namespace kiri::tov;

namespace tool {

namespace {

// The bits of a port's direction; an inout is both.
constexpr std::uint32_t in = 1;
constexpr std::uint32_t out = 2;

using Nodes = std::unordered_set<TovNode const*>;

/// Walks through a document and collects what of a design it reaches.
class Coverage {
public:
    Coverage(Design const& design, TOV& document)
        : names_(*design.names), document_(document), documentNames_(document, names_) {
        design.design.getPorts(ports_);
        ports_.remove_if([](TovPortNode const* port) { return dynamic_cast<TovBusPortNode const*>(port) != nullptr; });
        design.design.getClocks(clocks_);
        for (TovClockNode const* clock : clocks_) {
            if (clock->parent()->type() == TOV_OBJ_TOP) clockNames_.insert(clock->name());
        }
        forEachCommand(document, [this](TOVCMD_TYPE list, TovCmd& cmd) {
            if (cmd.enabled) read(list, cmd);
        });
    }

    QJsonObject result() const {
        QJsonArray unmatched;
        for (TovNameUse const& use : documentNames_.missing()) {
            unmatched.append(
                QJsonObject{{"type", titleOf(use.type)}, {"word", toText(use.word)}, {"command", saved(use.cmd)}});
        }
        QJsonArray repeated;
        for (std::vector<TovCmd*> const* same : repeated_) {
            QJsonArray lines;
            for (TovCmd* cmd : *same) lines.append(saved(cmd));
            repeated.append(lines);
        }
        return {{"inputs", portsOf(in, inputs_)},
                {"outputs", portsOf(out, outputs_)},
                {"clocks", reach(clocks_, defined_, [](TovClockNode const&) { return true; })},
                {"unmatched", unmatched},
                {"repeated", repeated}};
    }

private:
    template <class Node, class Counts>
    QJsonObject reach(std::list<Node*> const& all, Nodes const& reached, Counts counts) const {
        qint64 total = 0;
        QJsonArray missing;
        for (Node const* node : all) {
            if (!counts(*node)) continue;
            ++total;
            if (reached.count(node) == 0) missing.append(toText(names_.nameOf(*node)));
        }
        return {{"total", total}, {"constrained", total - missing.size()}, {"missing", missing}};
    }

    QJsonObject portsOf(std::uint32_t direction, Nodes const& delayed) const {
        return reach(ports_, delayed, [&](TovPortNode const& port) {
            bool const isClock = clockPorts_.count(&port) != 0 || clockNames_.count(port.name()) != 0;
            return (port.direction() & direction) != 0 && !isClock;
        });
    }

    QString saved(TovCmd* cmd) const { return toText(cmd->toSaveString(&document_)); }

    void read(TOVCMD_TYPE list, TovCmd& cmd) {
        if (list == TOVCMD_INPUTDELAY) readDelay(static_cast<TovCmdIODelay&>(cmd), inputs_);
        if (list == TOVCMD_OUTPUTDELAY) readDelay(static_cast<TovCmdIODelay&>(cmd), outputs_);
        if (list == TOVCMD_CLOCK || list == TOVCMD_GENCLOCK) {
            for (TovNameUse const& use : documentNames_.usesIn(cmd)) {
                if (list == TOVCMD_CLOCK) addFound(use.type, use, clockPorts_);
                addFound(taDciObjClock, use, defined_);
            }
            addFound(taDciObjClock, {&cmd, "", taDciObjClock, definedClock(cmd), TOVMATCH_LEVELS}, defined_);
        }
        std::vector<TovCmd*>& same = same_[meaningInDesign(list, cmd)];
        same.push_back(&cmd);
        if (same.size() == 2) repeated_.push_back(&same);
    }

    // Adds what the word of a target stands for; other roles add nothing.
    void addFound(taDciObjTyp type, TovNameUse const& use, Nodes& nodes) {
        if (*use.role != '\0') return;
        names_.find(type, use.word, found_, use.match);
        nodes.insert(found_.begin(), found_.end());
    }

    void readDelay(TovCmdIODelay& cmd, Nodes& delayed) {
        for (TovNameUse const& use : documentNames_.usesIn(cmd)) addFound(use.type, use, delayed);
        for (taDciObj* object : cmd.objects) {
            std::string const query = TovCmd::toTclString(object);
            std::uint32_t const direction = query == "[all_inputs]" ? in : query == "[all_outputs]" ? out : 0;
            for (TovPortNode const* port : ports_) {
                if ((port->direction() & direction) != 0) delayed.insert(port);
            }
        }
    }

    // Identifies what a command says of which objects of the design, whatever its words.
    std::string meaningInDesign(TOVCMD_TYPE list, TovCmd& cmd) {
        Meaning const meaning = meaningOf(list, cmd);
        if (list == TOVCMD_CLOCKGROUP || list == TOVCMD_ATTRIBUTE) return meaning.values + meaning.objects;
        std::hash<std::string> const hash;
        std::map<std::string, std::unordered_set<std::size_t>> roles;
        for (TovNameUse const& use : documentNames_.usesIn(cmd)) {
            // A word without nodes identifies itself.
            std::unordered_set<std::size_t>& things = roles[use.role];
            if (names_.find(use.type, use.word, found_, use.match) == 0) things.insert(hash(use.word));
            for (TovNode const* node : found_) things.insert(hash(names_.nameOf(*node) + std::to_string(node->type())));
        }
        std::string text = meaning.values;
        // A sum has no order.
        for (auto const& [role, things] : roles) {
            text += role + std::to_string(std::accumulate(things.begin(), things.end(), std::size_t{0})) + '\n';
        }
        for (TovReferences const& references : referencesOf(cmd)) {
            if (references.list->empty() || references.list->front()->type != taDciObjName) continue;
            // What is no name may be a query of its own.
            std::string const query = TovCmd::toTclString(references.list->front());
            if (!TovDesignNames::isName(query)) text += references.role + query;
        }
        return text;
    }

    TovDesignNames const& names_;
    TOV& document_;
    TovDocumentNames documentNames_;
    std::list<TovPortNode*> ports_;
    std::list<TovClockNode*> clocks_;
    std::unordered_set<std::string> clockNames_;
    Nodes inputs_;
    Nodes outputs_;
    Nodes clockPorts_;
    Nodes defined_;
    std::vector<TovNode const*> found_;
    std::unordered_map<std::string, std::vector<TovCmd*>> same_;
    std::vector<std::vector<TovCmd*> const*> repeated_;
};

void printText(QJsonObject const& result) {
    for (char const* title : {"inputs", "outputs", "clocks"}) {
        QJsonObject const reach = result[title].toObject();
        print(std::string(title) + ": " + std::to_string(reach["constrained"].toInt()) + " of " +
              std::to_string(reach["total"].toInt()) + " constrained\n");
        for (QJsonValue const name : reach["missing"].toArray()) printLine("  missing", name.toString());
    }
    QJsonArray const unmatched = result["unmatched"].toArray();
    print("unmatched: " + std::to_string(unmatched.size()) + "\n");
    for (QJsonValue const use : unmatched) {
        printLine("  " + use["type"].toString().toStdString(), use["word"].toString());
        printLine("   ", use["command"].toString());
    }
    QJsonArray const repeated = result["repeated"].toArray();
    print("repeated: " + std::to_string(repeated.size()) + "\n");
    for (QJsonValue const same : repeated) {
        char const* title = "  same";
        for (QJsonValue const line : same.toArray()) printLine(std::exchange(title, "      "), line.toString());
    }
}

bool isWhole(QJsonObject const& result) {
    return std::all_of(result.begin(), result.end(), [](QJsonValue const& part) {
        return (part.isObject() ? part["missing"] : part).toArray().isEmpty();
    });
}

}  // namespace

int coverage(Arguments const& arguments) {
    bool const isJson = arguments.choose("format", {"text", "json"}) == 1;
    TOV& document = keep<TOV>();
    read(document, Input(arguments.words().front(), Content::constraints), progressBar());
    QJsonObject const result = keep<Coverage>(keep<Design>(arguments.value("design")), document).result();
    isJson ? print(result), print("\n") : printText(result);
    return isWhole(result) ? 0 : 1;
}

}  // namespace tool
