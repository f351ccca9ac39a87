// Completions at a position in a line.

#include <QJsonArray>
#include <algorithm>
#include <set>
#include <string>

#include "serve/clock_definitions.h"
#include "serve/features.h"
#include "serve/line_words.h"
#include "text.h"

namespace tool::lsp {

namespace {

// The item kinds of the protocol.
constexpr int functionItem = 3;
constexpr int fieldItem = 5;
constexpr int variableItem = 6;
constexpr int moduleItem = 9;
constexpr int propertyItem = 10;
constexpr int keywordItem = 14;

constexpr int itemsAtMost = 200;

/// Collects the items that begin with the word being typed.
class Items {
public:
    Items(Workspace const& workspace, OpenDocument const& document, Place place, OpenEnd const& end)
        : typed_(document.text.line(place.line).substr(end.begin, place.byte - end.begin)),
          isBraced_(end.isBraced),
          range_(workspace.range(document, {place.line, end.begin}, place)) {}

    std::string_view typed() const { return typed_; }
    bool isFull() const { return items_.size() == itemsAtMost; }

    /// Adds an item if it begins with the word. Returns false if the list is full.
    bool add(std::string_view word, int kind, std::string_view detail = {}) {
        if (word.substr(0, typed_.size()) != typed_) return true;
        if (isFull()) {
            isIncomplete_ = true;
            return false;
        }
        bool const isPart = kind == moduleItem;
        bool const isName = isPart || kind == fieldItem || kind == variableItem;
        QString const label = toText(word);
        QString const text = isName && !isPart && !isBraced_ && needsBraces(word) ? "{" + label + "}" : label;
        QJsonObject item{{"label", label},
                         {"kind", kind},
                         {"filterText", label},
                         {"textEdit", QJsonObject{{"range", range_}, {"newText", text}}}};
        if (!detail.empty()) item.insert("detail", toText(detail));
        items_.append(item);
        return true;
    }

    QJsonObject list() const { return {{"isIncomplete", isIncomplete_}, {"items", items_}}; }

private:
    std::string_view typed_;
    bool isBraced_;
    QJsonObject range_;
    QJsonArray items_;
    bool isIncomplete_ = false;
};

void addCommands(Items& items) {
    for (CommandInfo const& command : commandInfos()) items.add(command.keyword, keywordItem, command.meaning);
}

void addOptions(Items& items, CommandInfo const& command) {
    for (OptionInfo const& option : optionInfos()) {
        if (option.command == command.keyword) items.add(option.name, propertyItem, option.meaning);
    }
}

void addQueries(Items& items) {
    for (QueryInfo const& query : queryInfos()) items.add(query.word, functionItem, query.meaning);
}

void addObjects(Items& items, Workspace const& workspace, taDciObjTyp type) {
    if (workspace.design == nullptr) return;
    workspace.design->list(type).complete(items.typed(), [&](std::string_view name) {
        bool const isPart = !name.empty() && name.back() == '/';
        return items.add(name, isPart ? moduleItem : fieldItem, typeTitle(type));
    });
}

void addClocks(Items& items, Workspace const& workspace, OpenDocument const& document) {
    std::set<std::string> names;
    for (ClockDefinition const& clock : clocksIn(document.text)) names.insert(clock.name);
    for (SetFile const* file : filesBeside(workspace, document)) {
        for (ClockDefinition const& clock : clocksIn(*file)) names.insert(clock.name);
    }
    if (workspace.design != nullptr) {
        int count = 0;
        workspace.design->list(taDciObjClock).complete(items.typed(), [&](std::string_view name) {
            names.emplace(name);
            return ++count <= itemsAtMost;  // an extra one shows that the list is incomplete
        });
    }
    for (std::string const& name : names) {
        if (!items.add(name, variableItem, "clock")) return;
    }
}

}  // namespace

QJsonValue completion(Workspace const& workspace, QJsonObject const& params) {
    OpenDocument const& document = workspace.documentIn(params);
    Place const place = workspace.placeIn(document, objectIn(params, "position"));
    LineWords const line = wordsOf(document.text.line(place.line).substr(0, place.byte));
    OpenEnd const& end = line.end;
    Items items(workspace, document, place, end);
    bool const takesClocks = end.role != nullptr && end.role->operand == Operand::clocks;
    if (end.isFirstWord) {
        addCommands(items);
    } else if (end.isQueryWord) {
        addQueries(items);
    } else if (end.query == nullptr ? takesClocks : end.query->type == taDciObjClock) {
        addClocks(items, workspace, document);
    } else if (end.query != nullptr) {
        addObjects(items, workspace, end.query->type);
    } else if (line.command != nullptr && !end.isComment && items.typed().substr(0, 1) == "-") {
        addOptions(items, *line.command);
    }
    return items.list();
}

}  // namespace tool::lsp
