#include "result.h"

#include <algorithm>
#include <cstring>

#include "comments.h"

namespace tool::sdc {

namespace {

constexpr std::size_t headSize = 5;

std::uint32_t numberAt(char const* bytes) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

}  // namespace

void Result::take(std::string_view bytes) {
    received_ += bytes.size();
    if (!unread_.empty()) {
        unread_ += bytes;
        bytes = unread_;
    }
    std::size_t at = 0;
    while (bytes.size() - at >= headSize) {
        std::size_t const size = numberAt(bytes.data() + at + 1);
        if (bytes.size() - at - headSize < size) break;
        take(static_cast<Record>(bytes[at]), bytes.substr(at + headSize, size));
        at += headSize + size;
    }
    std::string rest(bytes.substr(at));
    unread_.swap(rest);
}

void Result::takeRest(Shared const& shared) {
    std::uint64_t const end = shared.end;
    while (received_ < end) {
        std::size_t const at = received_ % Shared::capacity;
        take({shared.ring + at, std::min<std::size_t>(end - received_, Shared::capacity - at)});
    }
    unread_.clear();
}

void Result::take(Record kind, std::string_view text) {
    switch (kind) {
        case Record::enterFile:
            files_.push_back(numberOf(text));
            break;
        case Record::leaveFile:
            files_.pop_back();
            break;
        case Record::begin:
            open_.push_back({numberAt(text.data()),
                             std::string(text.substr(4)),
                             text_.size(),
                             findings_.size(),
                             files_.size(),
                             counts_,
                             {}});
            break;
        case Record::end:
            open_.pop_back();
            break;
        case Record::lines:
            text_ += text;
            ++counts_.calls;
            counts_.lines += static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
            break;
        case Record::kept:
            text_ += text;
            break;
        case Record::finding:
            takeFinding(text);
            break;
        case Record::unit:
            unit_ = text;
            break;
        case Record::undo:
            undo();
            break;
    }
}

void Result::takeFinding(std::string_view record) {
    auto const code = static_cast<Code>(record[0]);
    std::size_t const size = numberAt(record.data() + 1);
    if (code == Code::notHeld) ++counts_.calls;
    add(code, record.substr(headSize, size), record.substr(headSize + size));
}

void Result::add(Code code, std::string_view text, std::string_view message) {
    ImportFinding const finding{files_.back(), open_.back().line, code, numberOf(text), numberOf(message), 1};
    std::uint64_t const textAndCode = finding.text * std::uint64_t{8} + static_cast<std::uint64_t>(code);
    std::uint64_t const key = textAndCode << 32U | finding.message;
    auto const [known, isNew] = open_.back().known.emplace(key, findings_.size());
    if (isNew)
        findings_.push_back(finding);
    else
        ++findings_[known->second].count;
}

void Result::rollBack() {
    Open const& open = open_.back();
    text_.resize(open.textSize);
    findings_.resize(open.findings);
    files_.resize(open.files);
    counts_ = open.counts;
}

void Result::undo() {
    if (open_.empty()) return;
    rollBack();
    open_.pop_back();
}

void Result::breakOff(std::string_view message) {
    if (open_.empty()) open_.push_back({1, {}, text_.size(), findings_.size(), files_.size(), counts_, {}});
    if (files_.empty()) files_.push_back(numberOf("-"));
    rollBack();
    if (!open_.back().text.empty()) text_ += commented(open_.back().text);
    add(Code::tclError, "", message);
}

void Result::finish() {
    // A command that the format does not have is reported once.
    std::unordered_map<std::uint32_t, std::size_t> words;
    std::size_t size = 0;
    for (ImportFinding const& finding : findings_) {
        if (finding.code == Code::otherCommand) {
            auto const [known, isNew] = words.emplace(finding.text, size);
            if (!isNew) {
                findings_[known->second].count += finding.count;
                continue;
            }
        }
        findings_[size++] = finding;
    }
    findings_.resize(size);
}

std::map<std::string, std::size_t> Result::keptByOption() const {
    std::map<std::string, std::size_t> kept;
    for (ImportFinding const& finding : findings_) {
        if (finding.code == Code::notHeld) kept[textOf(finding.text)] += finding.count;
    }
    return kept;
}

std::uint32_t Result::numberOf(std::string_view text) {
    auto const [entry, isNew] = numbers_.emplace(text, static_cast<std::uint32_t>(texts_.size()));
    if (isNew) texts_.push_back(&entry->first);
    return entry->second;
}

}  // namespace tool::sdc
