#include <QHash>
#include <QJsonArray>
#include <QRegularExpression>
#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <list>
#include <map>
#include <numeric>
#include <set>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "command.h"
#include "design.h"
#include "input.h"
#include "meaning.h"
#include "text.h"
#include "tov/cmd/commands.h"
#include "tov/cmd/references.h"
#include "tov/edit.h"
#include "tov/names/document_names.h"

using namespace kiri::tov;

namespace tool {

namespace {

// The bits of a port's direction; an inout is both.
constexpr std::uint32_t inputs = 1;
constexpr std::uint32_t outputs = 2;

using Nodes = std::unordered_set<TovNode const*>;

/// Walks through a document and collects the parts of a design that it covers.
class Coverage {
public:
    Coverage(Design const& design, TOV& document)
        : names_(*design.names), document_(document), documentNames_(document, names_) {
        design.design.getPorts(ports_);
        ports_.remove_if([](TovPortNode const* port) { return dynamic_cast<TovBusPortNode const*>(port) != nullptr; });
        design.design.getClocks(clocks_);
        clocks_.remove_if([this](TovClockNode const* clock) {
            return clock->parent()->type() != TOV_OBJ_TOP || !clockNames_.insert(clock->name()).second;
        });
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
        return {{"inputs", portsOf(inputs, inputs_, exceptedInputs_)},
                {"outputs", portsOf(outputs, outputs_, exceptedOutputs_)},
                {"clocks", clocksReached()},
                {"unmatched", unmatched},
                {"repeated", repeated}};
    }

private:
    // A clock is defined if a definition has it, or another clock of its name, as its target.
    QJsonObject clocksReached() const {
        std::unordered_set<std::string> names;
        for (TovNode const* node : defined_) names.insert(node->name());
        QJsonArray missing;
        for (TovClockNode const* clock : clocks_) {
            if (names.count(clock->name()) == 0) missing.append(toText(names_.nameOf(*clock)));
        }
        auto const total = static_cast<qint64>(clocks_.size());
        return {{"total", total}, {"constrained", total - missing.size()}, {"missing", missing}};
    }

    QJsonObject portsOf(std::uint32_t direction, Nodes const& delayed, Nodes const& excepted) const {
        qint64 total = 0;
        QJsonArray missing;
        QJsonArray exceptions;
        for (TovPortNode const* port : ports_) {
            bool const isClock = clockPorts_.count(port) != 0 || clockNames_.count(port->name()) != 0;
            if ((port->direction() & direction) == 0 || isClock) continue;
            ++total;
            if (delayed.count(port) != 0) continue;
            (excepted.count(port) != 0 ? exceptions : missing).append(toText(names_.nameOf(*port)));
        }
        return {{"total", total},
                {"constrained", total - missing.size() - exceptions.size()},
                {"missing", missing},
                {"excepted", exceptions}};
    }

    QString saved(TovCmd* cmd) const { return toText(cmd->toSaveString(&document_)); }

    void read(TOVCMD_TYPE list, TovCmd& cmd) {
        if (list == TOVCMD_INPUTDELAY) readDelay(static_cast<TovCmdIODelay&>(cmd), inputs_);
        if (list == TOVCMD_OUTPUTDELAY) readDelay(static_cast<TovCmdIODelay&>(cmd), outputs_);
        if (list == TOVCMD_FALSEPATH) readFalsePath(static_cast<TovCmdFalsePath&>(cmd));
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

    // Adds the objects that a target word matches; other roles add nothing.
    void addFound(taDciObjTyp type, TovNameUse const& use, Nodes& nodes) {
        if (*use.role != '\0') return;
        names_.find(type, use.word, found_, use.match);
        nodes.insert(found_.begin(), found_.end());
    }

    // Adds the ports that a query of all inputs or outputs returns.
    void addAll(ppStlList<taDciObj*> const& list, Nodes& nodes) {
        for (taDciObj* object : list) {
            std::string const query = TovCmd::toTclString(object);
            std::uint32_t const direction = query == "[all_inputs]" ? inputs : query == "[all_outputs]" ? outputs : 0;
            for (TovPortNode const* port : ports_) {
                if ((port->direction() & direction) != 0) nodes.insert(port);
            }
        }
    }

    void readDelay(TovCmdIODelay& cmd, Nodes& delayed) {
        for (TovNameUse const& use : documentNames_.usesIn(cmd)) addFound(use.type, use, delayed);
        addAll(cmd.objects, delayed);
    }

    // If all paths from or to a port are false, whatever their other end is, the port needs no delay.
    void readFalsePath(TovCmdFalsePath& cmd) {
        bool const isFrom = !cmd.from.empty();
        if (isFrom == !cmd.to.empty() || !cmd.through.empty()) return;
        Nodes& excepted = isFrom ? exceptedInputs_ : exceptedOutputs_;
        for (TovNameUse const& use : documentNames_.usesIn(cmd)) {
            names_.find(use.type, use.word, found_, use.match);
            excepted.insert(found_.begin(), found_.end());
        }
        addAll(isFrom ? cmd.from : cmd.to, excepted);
    }

    // Identifies what a command says about which objects of the design, independent of its wording.
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
        std::string text = meaning.values + meaning.flags;
        // A sum does not depend on the order.
        for (auto const& [role, things] : roles) {
            text += role + std::to_string(std::accumulate(things.begin(), things.end(), std::size_t{0})) + '\n';
        }
        for (TovReferences const& references : referencesOf(cmd)) {
            if (references.list->empty() || references.list->front()->type != taDciObjName) continue;
            // A word that is not a name may be another query.
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
    Nodes exceptedInputs_;
    Nodes exceptedOutputs_;
    Nodes clockPorts_;
    Nodes defined_;
    std::vector<TovNode const*> found_;
    std::unordered_map<std::string, std::vector<TovCmd*>> same_;
    std::vector<std::vector<TovCmd*> const*> repeated_;
};

/// Bits of one name, by their indexes.
struct Bits {
    QString name;
    std::set<qlonglong> indexes;  // empty for a name that is not a bit
};

// "gpio[7:1]" instead of seven names: a text for each run of indexes, from high to low.
QStringList foldedBits(QJsonArray const& names) {
    static QRegularExpression const bit("^(.+)\\[(0|[1-9][0-9]{0,8})\\]$",
                                        QRegularExpression::DotMatchesEverythingOption);
    std::vector<Bits> groups;
    QHash<QString, std::size_t> places;
    for (QJsonValue const name : names) {
        QRegularExpressionMatch const match = bit.match(name.toString());
        QString const base = match.hasMatch() ? match.captured(1) + "[" : name.toString();
        auto const known = places.constFind(base);
        std::size_t const place = known == places.constEnd() ? groups.size() : *known;
        if (place == groups.size()) groups.push_back({base, {}});
        places[base] = place;
        if (match.hasMatch()) groups[place].indexes.insert(match.captured(2).toLongLong());
    }
    QStringList folded;
    for (Bits const& bits : groups) {
        if (bits.indexes.empty()) folded.append(bits.name);
        for (auto high = bits.indexes.rbegin(); high != bits.indexes.rend();) {
            auto low = high;
            while (std::next(low) != bits.indexes.rend() && *std::next(low) == *low - 1) ++low;
            QString const end = low == high ? QString() : ":" + QString::number(*low);
            folded.append(bits.name + QString::number(*high) + end + "]");
            high = std::next(low);
        }
    }
    return folded;
}

void printCoverage(QJsonObject const& result) {
    for (char const* title : {"inputs", "outputs", "clocks"}) {
        QJsonObject const reach = result[title].toObject();
        print(std::string(title) + ": " + std::to_string(reach["constrained"].toInt()) + " of " +
              std::to_string(reach["total"].toInt()) + " constrained\n");
        for (QString const& name : foldedBits(reach["missing"].toArray())) printLine("  missing", name);
        for (QString const& name : foldedBits(reach["excepted"].toArray())) printLine("  excepted", name);
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
    readAll(document, arguments.words());
    QJsonObject const result = keep<Coverage>(keep<Design>(arguments.value("design")), document).result();
    isJson ? print(result), print("\n") : printCoverage(result);
    return isWhole(result) ? 0 : 1;
}

}  // namespace tool
