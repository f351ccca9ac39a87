#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <cstdint>
#include <string>
#include <utility>

namespace tool::lsp {

/// The error codes of the protocol.
enum class ErrorCode : int {
    parseError = -32700,
    invalidRequest = -32600,
    methodNotFound = -32601,
    invalidParams = -32602,
    internalError = -32603,
    serverNotInitialized = -32002,
    requestCancelled = -32800,
    requestFailed = -32803
};

/// Ends a request, as its answer, or a notification, as a line on standard error.
struct RpcError {
    ErrorCode code;
    QString message;
};

QJsonObject response(QJsonValue const& id, QJsonValue const& result);
QJsonObject errorResponse(QJsonValue const& id, RpcError const& error);
QJsonObject notification(char const* method, QJsonValue const& params);
QJsonObject request(std::int64_t id, char const* method, QJsonValue const& params);

// Read a field of a message. Throw RpcError with invalidParams if it is missing or has another type.
QJsonObject objectIn(QJsonObject const& object, char const* field);
QJsonArray arrayIn(QJsonObject const& object, char const* field);
QString textIn(QJsonObject const& object, char const* field);
/// A non-negative integer; larger numbers saturate.
std::size_t numberIn(QJsonObject const& object, char const* field);

/// Returns a number as an integer, rounded to one that a double holds exactly.
std::int64_t wholeNumber(QJsonValue const& number);

/// Returns the value at a path of fields; undefined if a field is missing or not an object.
QJsonValue at(QJsonValue value, std::initializer_list<char const*> fields);

}  // namespace tool::lsp
