#include "design_names.h"

#include <algorithm>
#include <cctype>
#include <list>
#include <numeric>
#include <set>
#include <utility>
#include <vector>

#include "tov/cmd/references.h"

using namespace kiri::tov;

namespace {

void useOneSeparator(std::string& name) {
    std::replace(name.begin(), name.end(), '.', '/');
}

// UTF-8 as the design has it: what Latin-1 does not have is a '?'. Text that is no UTF-8 stays.
std::string toLatin1(std::string const& text) {
    std::string latin;
    for (std::size_t i = 0; i < text.size();) {
        auto const first = static_cast<unsigned char>(text[i++]);
        if (first < 0x80) {
            latin += static_cast<char>(first);
            continue;
        }
        int const more = first >= 0xf0 ? 3 : first >= 0xe0 ? 2 : 1;
        if (first < 0xc2 || first > 0xf4) return text;
        unsigned code = first & (0x3fU >> more);
        for (int n = 0; n < more; ++n, ++i) {
            if (i == text.size() || (text[i] & 0xc0) != 0x80) return text;
            code = code << 6U | (static_cast<unsigned char>(text[i]) & 0x3fU);
        }
        // Beyond the basic plane a character is two units.
        latin += code < 0x100 ? std::string(1, static_cast<char>(code)) : std::string(code < 0x10000 ? 1 : 2, '?');
    }
    return latin;
}

// Whether a text fits a pattern of '*' and '?'. After a mismatch the last '*' takes one character more.
bool fits(std::string_view pattern, std::string_view text) {
    std::size_t p = 0;
    std::size_t star = std::string_view::npos;
    std::size_t taken = 0;
    for (std::size_t t = 0; t < text.size();) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            taken = t;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == text[t])) {
            ++p;
            ++t;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            t = ++taken;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

// How many characters differ, or `limit` where it is that many or more.
std::size_t distance(std::string_view a, std::string_view b, std::size_t limit) {
    if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) >= limit) return limit;
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        std::size_t least = row[0];
        for (std::size_t j = 0; j < b.size(); ++j) {
            std::size_t const replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
            least = std::min(least, row[j + 1]);
        }
        if (least >= limit) return limit;
    }
    return std::min(row.back(), limit);
}

// Adds a node by its names: that within its cell, and that with library and arch of the cell. A vector's bit stands for
// the vector too.
void addNode(NameSet& set, TovNode const& node, std::string const& cell) {
    std::string const name = cell.empty() ? node.name() : cell + "/" + node.name();
    std::string base;
    if (TovBusNode::isBusType(name, &base)) set.add(base);
    set.add(name);
    set.add(node.hierachyName('/'));
}

template <class Node>
void addNodes(NameSet& set, TovDesign const& design, std::size_t (TovDesign::*query)(std::list<Node*>&) const) {
    std::list<Node*> nodes;
    (design.*query)(nodes);
    for (Node const* node : nodes) {
        bool const inCell = node->parent() != nullptr && node->parent()->type() == TOV_OBJ_CELL;
        addNode(set, *node, inCell ? node->parent()->name() : "");
    }
}

std::string nameOf(taDciObj const& object) {
    return object.name == nullptr ? std::string() : object.name;
}

// The name of an object; the words of a plain one: "{a b}" is a list of two.
std::vector<std::string> namesIn(taDciObj const& object) {
    std::string const name = nameOf(object);
    if (object.type != taDciObjName || name.find_first_of("[$@-\\") == 0) return {name};
    std::vector<std::string> words;
    constexpr char const* separators = " \t{}\"";
    for (std::size_t at = name.find_first_not_of(separators); at < name.size();) {
        std::size_t const end = std::min(name.find_first_of(separators, at), name.size());
        words.push_back(name.substr(at, end - at));
        at = name.find_first_not_of(separators, end);
    }
    return words;
}

constexpr std::pair<taDciObjTyp, DesignNames::Kind> kindsOfTypes[] = {
    {taDciObjPort, DesignNames::ports}, {taDciObjSourcePort, DesignNames::ports},
    {taDciObjPin, DesignNames::pins},   {taDciObjPin2, DesignNames::pins},
    {taDciObjNet, DesignNames::nets},   {taDciObjSourceNet, DesignNames::nets},
    {taDciObjCell, DesignNames::cells}, {taDciObjClock, DesignNames::clocks},
};

// A plain name may be any of them.
bool isOf(taDciObjTyp type, DesignNames::Kind kind) {
    return type == taDciObjName || std::any_of(std::begin(kindsOfTypes), std::end(kindsOfTypes), [=](auto const& row) {
               return row.first == type && row.second == kind;
           });
}

}  // namespace

void NameSet::add(std::string name) {
    useOneSeparator(name);
    names_.insert(std::move(name));
}

// "base[h:l]" has both of its ends.
bool NameSet::hasRange(std::string const& name) const {
    std::size_t const open = name.rfind('[');
    std::size_t const colon = name.rfind(':');
    if (open == std::string::npos || colon == std::string::npos || colon < open || name.back() != ']') return false;
    std::string const base = name.substr(0, open + 1);
    return has(base + name.substr(open + 1, colon - open - 1) + "]") && has(base + name.substr(colon + 1));
}

bool NameSet::matches(std::string const& name) const {
    std::string wanted = name;
    useOneSeparator(wanted);
    for (std::string const& form : {wanted, toLatin1(wanted)}) {
        if (has(form) || hasRange(form)) return true;
    }
    return wanted.find_first_of("*?") != std::string::npos &&
           std::any_of(names_.begin(), names_.end(), [&](std::string const& known) { return fits(wanted, known); });
}

std::string NameSet::nearest(std::string const& name) const {
    std::string wanted = toLatin1(name);
    useOneSeparator(wanted);
    std::string best;
    std::size_t limit = wanted.size() < 4 ? 2 : wanted.size() < 12 ? 3 : 4;
    for (std::string const& known : names_) {
        std::size_t const difference = distance(wanted, known, limit + 1);
        if (difference >= limit && (difference > limit || best.empty() || known > best)) continue;
        limit = difference;
        best = known;
    }
    return best;
}

DesignNames::DesignNames(TovDesign const& design) {
    addNodes(sets_[ports], design, &TovDesign::getPorts);
    addNodes(sets_[pins], design, &TovDesign::getPins);
    addNodes(sets_[nets], design, &TovDesign::getNets);
    addNodes(sets_[cells], design, &TovDesign::getCells);
    addNodes(sets_[clocks], design, &TovDesign::getClocks);
    std::list<TovClockNode*> clockNodes;
    design.getClocks(clockNodes);
    for (TovClockNode const* node : clockNodes) sets_[clocks].add(node->name());
}

// A clock without a name has that of its first target.
void DesignNames::addClockOf(TovCmd const& cmd) {
    auto const add = [this](std::string const& name, ppStlList<taDciObj*> const& targets) {
        if (!name.empty()) return defined_.add(name);
        if (!targets.empty() && targets.front() != nullptr) defined_.add(nameOf(*targets.front()));
    };
    if (auto const* definition = dynamic_cast<TovCmdClockDef const*>(&cmd))
        add(definition->clockName, definition->targets);
    if (auto const* definition = dynamic_cast<TovCmdGenClockDef const*>(&cmd))
        add(definition->clockName, definition->targets);
}

std::vector<DesignNames::Missing> DesignNames::missingIn(TovCmd& cmd) const {
    std::vector<Missing> missing;
    std::set<std::pair<taDciObjTyp, std::string>> seen;
    for (TovReferences const& references : referencesOf(cmd)) {
        for (taDciObj const* object : *references.list) {
            if (object == nullptr || !seen.emplace(object->type, nameOf(*object)).second) continue;
            for (std::string& name : namesIn(*object)) {
                if (!has(object->type, name)) missing.push_back({object->type, std::move(name)});
            }
        }
    }
    return missing;
}

bool DesignNames::has(taDciObjTyp type, std::string const& name) const {
    // A nested command, a variable, a reserved key, an option or the end of a line.
    if (name.empty() || std::string_view("[$@-\\").find(name.front()) != std::string_view::npos) return true;
    bool isName = false;
    for (int kind = 0; kind < kinds; ++kind) {
        if (!isOf(type, static_cast<Kind>(kind))) continue;
        isName = true;
        if (sets_[static_cast<std::size_t>(kind)].matches(name)) return true;
        if (kind == clocks && defined_.matches(name)) return true;
    }
    return !isName;
}

std::string DesignNames::nearest(taDciObjTyp type, std::string const& name) const {
    for (int kind = 0; kind < kinds; ++kind) {
        if (!isOf(type, static_cast<Kind>(kind))) continue;
        std::string found = sets_[static_cast<std::size_t>(kind)].nearest(name);
        if (!found.empty()) return found;
    }
    return {};
}

char const* DesignNames::titleOf(taDciObjTyp type) {
    constexpr char const* titles[kinds] = {"port", "pin", "net", "cell", "clock"};
    for (auto const& [known, kind] : kindsOfTypes) {
        if (known == type) return titles[kind];
    }
    return "object";
}
