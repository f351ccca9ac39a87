#include "sarif.h"

#include <QCryptographicHash>
#include <QJsonArray>

#include "analysis/folding.h"
#include "text.h"
#include "tov/version.h"

namespace tool {

namespace {

char const* levelOf(Severity severity) {
    return severity == Severity::error ? "error" : "warning";
}

// A relative path stays relative: the reader of the report knows the folder.
QString uriOf(std::string const& file) {
    QByteArray const path(file.data(), static_cast<int>(file.size()));
    return (path.startsWith('/') ? "file://" : "") + QString::fromLatin1(path.toPercentEncoding("/"));
}

QJsonObject textOf(std::string const& text) {
    return {{"text", toText(text)}};
}

QJsonObject placeOf(std::string const& file, std::size_t line) {
    return {{"physicalLocation", QJsonObject{{"artifactLocation", QJsonObject{{"uri", uriOf(file)}}},
                                             {"region", QJsonObject{{"startLine", static_cast<qint64>(line)}}}}}};
}

}  // namespace

QJsonObject sarifTool() {
    QJsonArray list;
    for (Rule const& rule : rules) {
        list.append(QJsonObject{{"id", rule.name},
                                {"shortDescription", textOf(rule.summary)},
                                {"fullDescription", textOf(std::string(rule.summary) + " " + rule.help)},
                                {"help", textOf(rule.help)},
                                {"defaultConfiguration", QJsonObject{{"level", levelOf(rule.severity)}}}});
    }
    QJsonObject const driver{{"name", "toveng"}, {"version", kiri::tov::versionText()}, {"rules", list}};
    return {{"driver", driver}};
}

QJsonObject SarifResults::add(Told const& finding) {
    Rule const* const rule = findRule(finding.code);
    // The list of first words changes with each command.
    bool const isByWords = finding.count > 1 && rule != nullptr && Folding::isByWords(rule->code);
    std::string const identity = finding.file + '\0' + finding.code + '\0' + (isByWords ? "" : finding.text);
    QByteArray const hashed =
        QByteArray(identity.data(), static_cast<int>(identity.size())) + '\0' + QByteArray::number(++seen_[identity]);
    QByteArray const fingerprint = QCryptographicHash::hash(hashed, QCryptographicHash::Sha256).toHex().left(32);
    QJsonObject result{{"ruleId", toText(finding.code)},
                       {"level", levelOf(finding.severity)},
                       {"message", textOf(finding.message)},
                       {"locations", QJsonArray{placeOf(finding.file, finding.line)}},
                       {"partialFingerprints", QJsonObject{{"finding/v1", QString::fromLatin1(fingerprint)}}}};
    if (rule != nullptr) result["ruleIndex"] = static_cast<qint64>(indexOf(rule->code));
    if (finding.count > 1) result["occurrenceCount"] = static_cast<qint64>(finding.count);
    if (!finding.relatedFile.empty()) {
        result["relatedLocations"] = QJsonArray{placeOf(finding.relatedFile, finding.relatedLine)};
    }
    return result;
}

QJsonObject sarifInvocation(std::vector<std::string> const& troubles) {
    QJsonObject invocation{{"executionSuccessful", troubles.empty()}};
    if (troubles.empty()) return invocation;
    QJsonArray notifications;
    for (std::string const& trouble : troubles) {
        notifications.append(QJsonObject{{"level", "error"}, {"message", textOf(trouble)}});
    }
    invocation["toolExecutionNotifications"] = notifications;
    return invocation;
}

}  // namespace tool
