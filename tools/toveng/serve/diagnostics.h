#pragma once

#include <QByteArray>

#include "serve/workspace.h"

namespace tool::lsp {

/// Returns the whole notification with the findings of a document, as it goes to the client.
QByteArray publishedDiagnostics(Workspace const& workspace, OpenDocument& document);

/// Returns the bytes of the line that a finding is about: the word concerned, if it is in the line once, else what is
/// on the line.
std::pair<std::size_t, std::size_t> placeOfProblem(std::string_view line, Problem const& problem);

}  // namespace tool::lsp
