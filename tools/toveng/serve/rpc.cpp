#include "serve/rpc.h"

#include <algorithm>
#include <cmath>

namespace tool::lsp {

namespace {

QJsonObject message() {
    return {{"jsonrpc", "2.0"}};
}

QJsonValue fieldIn(QJsonObject const& object, char const* field, QJsonValue::Type type, char const* title) {
    QJsonValue value = object.value(QLatin1String(field));
    if (value.type() == type) return value;
    throw RpcError{ErrorCode::invalidParams,
                   QString("'%1' must be %2").arg(QLatin1String(field), QLatin1String(title))};
}

}  // namespace

QJsonObject response(QJsonValue const& id, QJsonValue const& result) {
    QJsonObject object = message();
    object.insert("id", id);
    object.insert("result", result);
    return object;
}

QJsonObject errorResponse(QJsonValue const& id, RpcError const& error) {
    QJsonObject object = message();
    object.insert("id", id);
    object.insert("error", QJsonObject{{"code", static_cast<int>(error.code)}, {"message", error.message}});
    return object;
}

QJsonObject notification(char const* method, QJsonValue const& params) {
    QJsonObject object = message();
    object.insert("method", method);
    object.insert("params", params);
    return object;
}

QJsonObject request(std::int64_t id, char const* method, QJsonValue const& params) {
    QJsonObject object = notification(method, params);
    object.insert("id", static_cast<qint64>(id));
    return object;
}

QJsonObject objectIn(QJsonObject const& object, char const* field) {
    return fieldIn(object, field, QJsonValue::Object, "an object").toObject();
}

QJsonArray arrayIn(QJsonObject const& object, char const* field) {
    return fieldIn(object, field, QJsonValue::Array, "an array").toArray();
}

QString textIn(QJsonObject const& object, char const* field) {
    return fieldIn(object, field, QJsonValue::String, "a string").toString();
}

std::size_t numberIn(QJsonObject const& object, char const* field) {
    double const number = fieldIn(object, field, QJsonValue::Double, "a number").toDouble();
    if (!(number >= 0) || std::floor(number) != number) {
        throw RpcError{ErrorCode::invalidParams, QString("'%1' must be a whole number").arg(QLatin1String(field))};
    }
    constexpr double most = 1e15;
    return static_cast<std::size_t>(number < most ? number : most);
}

std::int64_t wholeNumber(QJsonValue const& number) {
    constexpr double most = 9007199254740992;
    return static_cast<std::int64_t>(std::clamp(number.toDouble(), -most, most));
}

QJsonValue at(QJsonValue value, std::initializer_list<char const*> fields) {
    for (char const* field : fields) value = value.toObject().value(QLatin1String(field));
    return value;
}

}  // namespace tool::lsp
