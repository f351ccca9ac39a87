// The commands of a document by their kinds.

#include <QJsonArray>
#include <map>
#include <vector>

#include "serve/features.h"
#include "serve/line_words.h"

namespace tool::lsp {

namespace {

constexpr int namespaceSymbol = 3;
constexpr int eventSymbol = 24;

struct Symbol {
    std::size_t line;
    QString name;
};

// What distinguishes a command from others of its kind: its objects or its name, in the order of the line.
QString nameOf(std::string_view line, LineWords const& words) {
    QString name;
    for (Word const& word : words.words) {
        bool const isOperand = word.kind == WordKind::name || word.kind == WordKind::clockName;
        bool const isText = words.command->keyword == "#attribute" && word.kind == WordKind::other;
        if (!isOperand && !isText) continue;
        constexpr int most = 80;
        if (name.size() > most) return name + "...";
        std::string_view const text = line.substr(word.begin, word.end - word.begin);
        name += (name.isEmpty() ? "" : " ") + QString::fromUtf8(text.data(), static_cast<int>(text.size()));
    }
    return name;
}

QJsonObject fullRange(Workspace const& workspace, Text const& text, std::size_t first, std::size_t last) {
    return text.range({first, 0}, {last, text.line(last).size()}, workspace.client.encoding);
}

QJsonObject nested(Workspace const& workspace, Text const& text, Symbol const& symbol) {
    return {{"name", symbol.name},
            {"kind", eventSymbol},
            {"range", fullRange(workspace, text, symbol.line, symbol.line)},
            {"selectionRange", text.lineRange(symbol.line, workspace.client.encoding)}};
}

}  // namespace

QJsonValue documentSymbol(Workspace const& workspace, QJsonObject const& params) {
    OpenDocument const& document = workspace.documentIn(params);
    Text const& text = document.text;
    std::map<CommandInfo const*, std::vector<Symbol>> byKind;
    for (std::size_t i = 0; i < text.lineCount(); ++i) {
        LineWords const words = wordsOf(text.line(i));
        if (words.command == nullptr) continue;
        QString name = nameOf(text.line(i), words);
        if (name.isEmpty()) name = QString::fromUtf8(words.command->keyword.data());
        byKind[words.command].push_back({i, (words.isDisabled ? "#disable " : "") + name});
    }
    QJsonArray symbols;
    for (CommandInfo const& command : commandInfos()) {
        std::vector<Symbol> const& all = byKind[&command];
        if (all.empty()) continue;
        QString const kind = QString::fromUtf8(command.keyword.data());
        QJsonArray children;
        for (Symbol const& symbol : all) {
            if (workspace.client.nestsSymbols) {
                children.append(nested(workspace, text, symbol));
                continue;
            }
            QJsonObject const range = fullRange(workspace, text, symbol.line, symbol.line);
            symbols.append(QJsonObject{{"name", symbol.name},
                                       {"kind", eventSymbol},
                                       {"location", QJsonObject{{"uri", document.uri}, {"range", range}}},
                                       {"containerName", kind}});
        }
        if (!workspace.client.nestsSymbols) continue;
        symbols.append(QJsonObject{{"name", kind},
                                   {"detail", QString::number(all.size())},
                                   {"kind", namespaceSymbol},
                                   {"range", fullRange(workspace, text, all.front().line, all.back().line)},
                                   {"selectionRange", text.lineRange(all.front().line, workspace.client.encoding)},
                                   {"children", children}});
    }
    return symbols;
}

}  // namespace tool::lsp
