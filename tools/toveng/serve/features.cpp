#include "serve/features.h"

namespace tool::lsp {

namespace {

struct Row {
    char const* method;
    Feature run;
};

constexpr Row rows[] = {
    {"textDocument/hover", hover},
    {"textDocument/completion", completion},
    {"textDocument/definition", definition},
    {"textDocument/references", references},
    {"textDocument/documentHighlight", documentHighlight},
    {"textDocument/prepareRename", prepareRename},
    {"textDocument/rename", rename},
    {"textDocument/documentSymbol", documentSymbol},
    {"textDocument/codeAction", codeAction},
};

}  // namespace

Feature findFeature(QString const& method) {
    for (Row const& row : rows) {
        if (method == QLatin1String(row.method)) return row.run;
    }
    return nullptr;
}

}  // namespace tool::lsp
