#include <QJsonArray>
#include <algorithm>
#include <array>
#include <functional>
#include <future>
#include <map>
#include <tuple>
#include <utility>

#include "command.h"
#include "input.h"
#include "meaning.h"
#include "text.h"
#include "tov/cmd/references.h"
#include "tov/edit.h"
#include "tov/names/name_check.h"

using namespace kiri::tov;

namespace tool {

namespace {

/// A command in its document. 64-bit hashes are compared instead of texts.
struct Entry {
    std::size_t line;   // without the prefix of a disabled command
    std::size_t place;  // in the order of writing
    TovCmd* cmd;
    TOVCMD_TYPE list;
    bool enabled;
    std::size_t subject;  // set for commands without an equal one
    std::size_t values;
};

using Entries = std::vector<Entry>;

// What must be the same for two entries to be equal.
constexpr auto exactOrder = [](Entry const& e) { return std::make_tuple(e.line, e.enabled); };

template <class Order>
void sort(Entries& entries, Order order) {
    auto const isBefore = [order](Entry const& a, Entry const& b) {
        return std::make_tuple(order(a), a.place) < std::make_tuple(order(b), b.place);
    };
    if (!std::is_sorted(entries.begin(), entries.end(), isBefore)) std::sort(entries.begin(), entries.end(), isBefore);
}

Entries readEntries(Input const& input, TOV& document, TovProgress const& progress) {
    read(document, input, progress);
    Entries entries;
    std::hash<std::string> const hash;
    forEachCommand(document, [&](TOVCMD_TYPE list, TovCmd& cmd) {
        entries.push_back({hash(enabledLine(list, cmd)), entries.size(), &cmd, list, cmd.enabled, 0, 0});
    });
    sort(entries, exactOrder);
    return entries;
}

// What the commands are about, and what they say about it. For an attribute, both are its line.
void addSubjects(Entries& entries) {
    std::hash<std::string> const hash;
    for (Entry& entry : entries) {
        Meaning const meaning = meaningOf(entry.list, *entry.cmd);
        bool const isAttribute = entry.list == TOVCMD_ATTRIBUTE;
        bool const isClock = entry.list == TOVCMD_CLOCK || entry.list == TOVCMD_GENCLOCK;
        std::string const subject = isClock ? definedClock(*entry.cmd) : meaning.flags + '\n' + meaning.objects;
        entry.subject = isAttribute ? entry.line : hash(keywordOf(entry.list) + ('\n' + subject));
        entry.values = hash(isClock ? meaning.objects + meaning.values : meaning.values);
    }
}

// Calls `visit` with pairs of equal entries, the first with the first, and removes them from the lists.
template <class Order, class Visit>
void pairOff(Entries& olds, Entries& news, Order order, Visit visit) {
    sort(olds, order);
    sort(news, order);
    Entries restOfOlds;
    Entries restOfNews;
    auto a = olds.begin();
    auto b = news.begin();
    while (a != olds.end() || b != news.end()) {
        bool const aIsFirst = b == news.end() || (a != olds.end() && order(*a) < order(*b));
        bool const bIsFirst = a == olds.end() || (b != news.end() && order(*b) < order(*a));
        if (aIsFirst) restOfOlds.push_back(*a);
        if (bIsFirst) restOfNews.push_back(*b);
        if (!aIsFirst && !bIsFirst) visit(*a, *b);
        if (!bIsFirst) ++a;
        if (!aIsFirst) ++b;
    }
    olds.swap(restOfOlds);
    news.swap(restOfNews);
}

QString savedLine(Entry const& entry) {
    return toText(entry.cmd->toSaveString(nullptr));
}

QJsonArray savedLines(Entries& entries) {
    sort(entries, [](Entry const&) { return 0; });
    QJsonArray lines;
    for (Entry const& entry : entries) lines.append(savedLine(entry));
    return lines;
}

QJsonObject difference(Entries& olds, Entries& news) {
    Entries enabled;
    Entries disabled;
    std::map<std::size_t, QJsonObject> changes;  // by their places in the new file
    auto const addSwitched = [&](Entry const&, Entry const& now) { (now.enabled ? enabled : disabled).push_back(now); };
    pairOff(olds, news, exactOrder, [](Entry const&, Entry const&) {});
    pairOff(olds, news, std::mem_fn(&Entry::line), addSwitched);
    addSubjects(olds);
    addSubjects(news);
    pairOff(olds, news, std::mem_fn(&Entry::subject), [&](Entry const& before, Entry const& now) {
        if (before.values == now.values && before.enabled == now.enabled) return;
        if (before.values == now.values) return addSwitched(before, now);
        changes[now.place] = {{"old", savedLine(before)}, {"new", savedLine(now)}};
    });
    QJsonArray changed;
    for (auto const& [place, change] : changes) changed.append(change);
    return {{"added", savedLines(news)},
            {"removed", savedLines(olds)},
            {"changed", changed},
            {"enabled", savedLines(enabled)},
            {"disabled", savedLines(disabled)}};
}

void printDifference(QJsonObject const& difference) {
    for (char const* title : {"removed", "added", "changed", "enabled", "disabled"}) {
        for (QJsonValue const entry : difference[title].toArray()) {
            QJsonObject const change = entry.toObject();
            printLine(title, change.isEmpty() ? entry.toString() : change["old"].toString());
            if (!change.isEmpty()) printLine("     to", change["new"].toString());
        }
    }
}

// Reports how many lines of a file are compared only as far as a save would keep them.
void printNotCompared(Input const& input) {
    std::size_t lines = 0;
    std::size_t last = 0;
    std::array<std::size_t, TOVFINDING_LOST_WORD + 1> counts{};
    auto const visit = [&](TovFinding const& finding, std::string const&, std::vector<TovNameUse> const&) {
        if (finding.kind > TOVFINDING_LOST_WORD) return true;
        ++counts[static_cast<std::size_t>(finding.kind)];
        if (std::exchange(last, finding.line) != finding.line) ++lines;
        return true;
    };
    checkTovFile(input.path(), TovCheckOptions(), visit);
    if (lines == 0) return;
    std::string text;
    auto const add = [&](TovFindingKind kind, char const* one) {
        std::size_t const count = counts[static_cast<std::size_t>(kind)];
        if (count == 0) return;
        text += (text.empty() ? ": " : ", ") + std::to_string(count) + " " + one + (count == 1 ? "" : "s");
    };
    add(TOVFINDING_UNKNOWN_COMMAND, "unknown command");
    add(TOVFINDING_LOST_WORD, "lost word");
    add(TOVFINDING_DROPPED_LINE, "dropped line");
    complain("toveng: " + input.name() + ": " + std::to_string(lines) + (lines == 1 ? " line is" : " lines are") +
             " not compared as written" + text + "; see toveng check");
}

}  // namespace

int diff(Arguments const& arguments) {
    bool const isJson = arguments.choose("format", {"text", "json"}) == 1;
    std::vector<std::string> const names = arguments.words();
    if (names[0] == "-" && names[1] == "-") throw Trouble("standard input can be read only once");
    Input const oldInput(names[0], Content::constraints);
    Input const newInput(names[1], Content::constraints);
    TOV& document = keep<TOV>();
    auto before = std::async(std::launch::async, [&] { return readEntries(oldInput, document, {}); });
    Entries news = readEntries(newInput, keep<TOV>(), progressBar());
    Entries olds = before.get();
    QJsonObject const result = difference(olds, news);
    isJson ? print(result), print("\n") : printDifference(result);
    flushOutput();
    printNotCompared(oldInput);
    printNotCompared(newInput);
    bool const isSame =
        std::all_of(result.begin(), result.end(), [](QJsonValue const& list) { return list.toArray().isEmpty(); });
    return isSame ? 0 : 1;
}

}  // namespace tool
