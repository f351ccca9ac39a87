#include "analysis/folding.h"

#include <algorithm>
#include <string_view>

#include "analysis/words.h"

namespace tool {

namespace {

constexpr std::size_t rangesShown = 5;
constexpr std::size_t messageSize = 1000;

// "5 `set_load`, 2 `set_units`".
std::string counted(std::vector<Cause::Word> const& words) {
    std::string text;
    std::size_t shown = 0;
    for (Cause::Word const& word : words) {
        if (text.size() + word.text.size() > messageSize - 200 && shown > 0) break;
        if (shown++ > 0) text += ", ";
        text += std::to_string(word.count) + " `" + word.text.substr(0, 200) + "`";
    }
    if (shown < words.size()) text += " and " + std::to_string(words.size() - shown) + " others";
    return text;
}

std::string rangesText(Cause const& cause) {
    std::string text;
    for (auto const& [first, last] : cause.ranges) {
        if (!text.empty()) text += ", ";
        text += std::to_string(first);
        if (last > first) text += " to " + std::to_string(last);
    }
    return cause.count > cause.ranges.size() ? text + " and more" : text;
}

}  // namespace

bool Folding::isFolded(Code code, std::string const& text) {
    if (isByWords(code)) return true;
    bool const mayBe = code == Code::lostWord || code == Code::mistakenWord || code == Code::variableName;
    return mayBe && (startsWith(text, "-") || startsWith(text, "$") || startsWith(text, "expr"));
}

void Folding::add(Code code, std::string const& text, std::size_t line, std::size_t lastLine) {
    if (!isFolded(code, text)) return;
    Cause& cause = causes_[keyOf(code, text)];
    if (cause.count++ == 0) cause.line = line;
    if (cause.ranges.size() < rangesShown) cause.ranges.emplace_back(line, lastLine);
    auto const [place, isNew] = wordPlaces_.try_emplace({code, text}, cause.words.size());
    if (isNew) {
        cause.words.push_back({text, 1, line});
    } else {
        ++cause.words[place->second].count;
    }
}

void Folding::drop(Code code, std::set<std::string> const& words) {
    auto const found = causes_.find(keyOf(code, {}));
    if (found == causes_.end()) return;
    Cause& cause = found->second;
    auto const isDropped = [&](Cause::Word const& word) { return words.count(word.text) > 0; };
    if (std::none_of(cause.words.begin(), cause.words.end(), isDropped)) return;
    cause.words.erase(std::remove_if(cause.words.begin(), cause.words.end(), isDropped), cause.words.end());
    cause.count = 0;
    cause.line = cause.words.empty() ? 0 : cause.words.front().line;
    for (Cause::Word const& word : cause.words) cause.count += word.count;
    // It is no longer known to which words these lines belong.
    cause.ranges.clear();
}

Cause const* Folding::causeOf(Code code, std::string const& text) const {
    auto const found = causes_.find(keyOf(code, text));
    return found == causes_.end() ? nullptr : &found->second;
}

std::string foldedMessage(Code code, Cause const& cause, std::string const& message) {
    if (cause.count <= 1) return message;
    std::string const number = std::to_string(cause.count);
    if (code == Code::unknownCommand) {
        return number + " commands are not part of this format: " + counted(cause.words) +
               "; a save keeps them as comments; `toveng import` runs the Tcl";
    }
    if (code == Code::continuedLine) {
        std::string const places = cause.ranges.empty() ? "" : " (lines " + rangesText(cause) + ")";
        return number + " commands continue on the next line or are never closed: " + counted(cause.words) + places +
               "; in this format a command is one line; `toveng import` joins the lines";
    }
    return message + " (" + number + " times in this file)";
}

}  // namespace tool
