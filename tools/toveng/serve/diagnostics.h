#pragma once

#include <QByteArray>

#include "serve/workspace.h"

namespace tool::lsp {

/// Returns the complete notification with the findings of a document, as sent to the client.
QByteArray publishedDiagnostics(Workspace const& workspace, OpenDocument& document);

/// Returns the bytes of the line that a finding is about: the word concerned if it occurs once in the line, else the
/// text of the line.
std::pair<std::size_t, std::size_t> placeOfProblem(std::string_view line, Problem const& problem);

}  // namespace tool::lsp
