#include "design_names.h"

#include <fnmatch.h>

#include <algorithm>
#include <list>

#include "tov/cmd/references.h"

using namespace kiri::tov;

namespace {

std::string withSlashes(std::string name) {
    std::replace(name.begin(), name.end(), '.', '/');
    return name;
}

// Calls `use` with the names of each node: its own, and the base name if it is a vector.
template <class Node, class Use>
void forNames(TovDesign const& design, std::size_t (TovDesign::*query)(std::list<Node*>&) const, Use use) {
    std::list<Node*> nodes;
    (design.*query)(nodes);
    for (Node* node : nodes) {
        use(*node, node->name());
        if (auto const* bus = dynamic_cast<TovBusNode const*>(node)) use(*node, bus->baseName());
    }
}

bool contains(std::unordered_set<std::string> const& names, std::string const& name) {
    if (names.count(name) != 0) return true;
    if (name.find_first_of("*?") == std::string::npos) return false;
    std::string pattern;
    for (char c : name) pattern.append(c == '[' || c == '\\' ? "\\" : "").append(1, c);  // these stand for themselves
    return std::any_of(names.begin(), names.end(), [&pattern](std::string const& known) {
        return fnmatch(pattern.c_str(), known.c_str(), 0) == 0;
    });
}

}  // namespace

DesignNames::DesignNames(TovDesign const& design) {
    forNames(design, &TovDesign::getPorts, [this](TovNode&, std::string const& name) { ports_.insert(name); });
    forNames(design, &TovDesign::getClocks, [this](TovNode&, std::string const& name) { clocks_.insert(name); });
    forNames(design, &TovDesign::getCells, [this](TovNode&, auto const& name) { cells_.insert(withSlashes(name)); });
    forNames(design, &TovDesign::getPins, [this](TovNode& pin, std::string const& name) {
        pins_.insert(withSlashes(pin.parent()->name() + '/' + name));
    });
    forNames(design, &TovDesign::getNets, [this](TovNode& net, std::string const& name) {
        nets_.insert(name);
        nets_.insert(net.hierachyName('/'));
    });
}

void DesignNames::takeClocksOf(TOV& document) {
    documentClocks_.clear();
    for (TovCmd* cmd : *document.getTovCmdList(TOVCMD_CLOCK)) {
        documentClocks_.insert(static_cast<TovCmdClockDef*>(cmd)->clockName);
    }
    for (TovCmd* cmd : *document.getTovCmdList(TOVCMD_GENCLOCK)) {
        documentClocks_.insert(static_cast<TovCmdGenClockDef*>(cmd)->clockName);
    }
}

bool DesignNames::knows(std::string const& name, taDciObjTyp type, bool isClock) const {
    switch (type) {
        case taDciObjPort:
        case taDciObjSourcePort:
            return contains(ports_, name);
        case taDciObjNet:
        case taDciObjSourceNet:
            return contains(nets_, name);
        case taDciObjCell:
            return contains(cells_, withSlashes(name));
        case taDciObjPin:
        case taDciObjPin2:
            return contains(pins_, withSlashes(name));
        case taDciObjClock:
            return contains(clocks_, name) || contains(documentClocks_, name);
        default:
            break;
    }
    // A plain name may be any object; an expression such as "[all_inputs]" is none of the design's names.
    if (name.find_first_of("[{@") == 0 || knows(name, taDciObjClock, true)) return true;
    return !isClock && (knows(name, taDciObjPort, false) || knows(name, taDciObjNet, false) ||
                        knows(name, taDciObjCell, false) || knows(name, taDciObjPin, false));
}

std::vector<std::string> DesignNames::unknownIn(TovCmd& cmd) const {
    std::vector<std::string> names;
    for (TovReferences const& references : referencesOf(cmd)) {
        std::string const role = references.role;
        bool const isClock = role == "-clock" || role == "-master_clock" || role == "-group";
        for (taDciObj* object : *references.list) {
            if (object == nullptr || object->name == nullptr || *object->name == '\0') continue;
            if (!knows(object->name, object->type, isClock)) names.emplace_back(object->name);
        }
    }
    return names;
}
