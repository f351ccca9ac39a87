#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include "serve/workspace.h"

namespace tool::lsp {

/// Answers a request. Throws RpcError.
using Feature = QJsonValue (*)(Workspace const& workspace, QJsonObject const& params);

/// Returns the feature of a method; null for an unknown one.
Feature findFeature(QString const& method);

QJsonValue hover(Workspace const& workspace, QJsonObject const& params);
QJsonValue completion(Workspace const& workspace, QJsonObject const& params);
QJsonValue definition(Workspace const& workspace, QJsonObject const& params);
QJsonValue references(Workspace const& workspace, QJsonObject const& params);
QJsonValue documentHighlight(Workspace const& workspace, QJsonObject const& params);
QJsonValue prepareRename(Workspace const& workspace, QJsonObject const& params);
QJsonValue rename(Workspace const& workspace, QJsonObject const& params);
QJsonValue documentSymbol(Workspace const& workspace, QJsonObject const& params);
QJsonValue codeAction(Workspace const& workspace, QJsonObject const& params);

}  // namespace tool::lsp
