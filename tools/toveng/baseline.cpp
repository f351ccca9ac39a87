#include "baseline.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

#include "analysis/folding.h"
#include "text.h"

namespace tool {

namespace {

[[noreturn]] void refuse(std::string const& reason) {
    throw Trouble("not a report of toveng check --format json: " + reason);
}

std::string textIn(QJsonObject const& finding, char const* key) {
    QJsonValue const value = finding[key];
    if (!value.isString()) refuse("a finding without a text \"" + std::string(key) + "\"");
    return value.toString().toStdString();
}

}  // namespace

Baseline::Baseline(QByteArray const& report) {
    if (report.contains('\0')) refuse("it contains a NUL byte");
    QJsonParseError error{};
    QJsonDocument const document = QJsonDocument::fromJson(report, &error);
    if (error.error != QJsonParseError::NoError) {
        refuse(error.errorString().toStdString() + " at byte " + std::to_string(error.offset));
    }
    QJsonValue const findings = document.object()["findings"];
    if (!findings.isArray()) refuse("it has no array \"findings\"");
    for (QJsonValue const entry : findings.toArray()) {
        if (!entry.isObject()) refuse("a finding is not an object");
        QJsonObject const finding = entry.toObject();
        std::string const code = textIn(finding, "code");
        std::string const file = textIn(finding, "file");
        std::string const text = textIn(finding, "text");
        // A code of another release does not match anything.
        Rule const* const rule = findRule(code);
        if (rule != nullptr) add(file, rule->code, text, finding["count"].toDouble(1) > 1);
    }
}

void Baseline::add(std::string const& file, Code code, std::string const& text, bool isFolded) {
    if (code == Code::endsLoad) return;  // always reported
    if (!Folding::isByWords(code)) {
        Entry& entry = entries_[{file, code, text}];
        ++entry.count;
        entry.isFolded = entry.isFolded || isFolded;
        return;
    }
    std::vector<std::string> words;
    for (QString const& word : QString::fromStdString(text).split(' ')) words.push_back(word.toStdString());
    words_[{file, code}].insert(words.begin(), words.end());
    byWords_.emplace_back(File(file, code), std::move(words));
}

bool Baseline::take(std::string const& file, Code code, std::string const& text, bool isFolded) {
    auto const found = entries_.find({file, code, text});
    if (found == entries_.end()) return false;
    Entry& entry = found->second;
    if (entry.isFolded || isFolded) {
        entry.taken = entry.count;
        return true;
    }
    if (entry.taken == entry.count) return false;
    ++entry.taken;
    return true;
}

std::set<std::string> const& Baseline::wordsOf(std::string const& file, Code code) const {
    static std::set<std::string> const none;
    auto const found = words_.find({file, code});
    return found == words_.end() ? none : found->second;
}

void Baseline::takeWord(std::string const& file, Code code, std::string const& word) {
    found_[{file, code}].insert(word);
}

std::size_t Baseline::gone(std::set<std::string> const& files, CodeSet const& codes) const {
    std::size_t gone = 0;
    auto const isJudged = [&](std::string const& file, Code code) { return files.count(file) > 0 && codes.has(code); };
    for (auto const& [key, entry] : entries_) {
        if (isJudged(std::get<0>(key), std::get<1>(key))) gone += entry.count - entry.taken;
    }
    for (auto const& [file, words] : byWords_) {
        auto const found = found_.find(file);
        bool const isThere = found != found_.end() &&
                             std::any_of(words.begin(), words.end(),
                                         [&](std::string const& word) { return found->second.count(word) > 0; });
        if (isJudged(file.first, file.second) && !isThere) ++gone;
    }
    return gone;
}

}  // namespace tool
