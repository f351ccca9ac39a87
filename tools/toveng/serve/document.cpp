#include "serve/document.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "analysis/words.h"

namespace tool::lsp {

namespace {

// Calls `visit` with each part of a text, separated by line feeds.
template <class Visit>
void forEachLine(std::string_view text, Visit visit) {
    for (;;) {
        std::size_t const end = text.find('\n');
        visit(text.substr(0, end));
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
}

// The client's lines in a line of the text.
std::string_view clientPart(std::string_view line, std::size_t part) {
    for (; part > 0; --part) line.remove_prefix(std::min(line.find('\r'), line.size() - 1) + 1);
    return line.substr(0, line.find('\r'));
}

QJsonObject jsonOf(Position position) {
    return {{"line", static_cast<qint64>(position.line)}, {"character", static_cast<qint64>(position.character)}};
}

}  // namespace

std::string_view Text::line(std::size_t index) const {
    std::string_view text = lines_[index]->text;
    if (!isLast(index) && !text.empty() && text.back() == '\r') text.remove_suffix(1);
    return text;
}

std::size_t Text::countReturns(std::size_t index) const {
    std::string_view const text = line(index);
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\r'));
}

std::optional<Place> Text::placeAt(std::size_t line, std::size_t character, Encoding encoding) const {
    if (line >= lines_.size() + returns_) return {};
    Place place;
    std::size_t part = 0;
    if (returns_ == 0) {
        place.line = line;
    } else {
        for (part = line; part > lines_[place.line]->returns; ++place.line) part -= lines_[place.line]->returns + 1;
    }
    std::string_view const whole = this->line(place.line);
    std::string_view const shown = clientPart(whole, part);
    place.byte = static_cast<std::size_t>(shown.data() - whole.data()) + byteAt(shown, character, encoding);
    return place;
}

// The client's line in which a line of the text begins.
std::size_t Text::clientLine(Place place) const {
    if (returns_ == 0) return place.line;
    if (place.line < counted_.line) counted_ = {};
    for (; counted_.line < place.line; ++counted_.line) counted_.returns += lines_[counted_.line]->returns;
    return counted_.line + counted_.returns;
}

Position Text::positionOf(Place place, Encoding encoding) const {
    std::string_view before = line(place.line).substr(0, place.byte);
    std::size_t const parts =
        returns_ == 0 ? 0 : static_cast<std::size_t>(std::count(before.begin(), before.end(), '\r'));
    before.remove_prefix(parts == 0 ? 0 : before.rfind('\r') + 1);
    return {clientLine(place) + parts, unitsIn(before, encoding)};
}

QJsonObject Text::range(Place start, Place end, Encoding encoding) const {
    return {{"start", jsonOf(positionOf(start, encoding))}, {"end", jsonOf(positionOf(end, encoding))}};
}

QJsonObject Text::lineRange(std::size_t index, Encoding encoding) const {
    std::string_view const text = line(index);
    std::size_t const last = text.find_last_not_of(whiteSpace) + 1;
    std::size_t const first = last == 0 ? 0 : text.find_first_not_of(whiteSpace);
    return range({index, first}, {index, last}, encoding);
}

Splice Text::replace(Place start, Place end, std::string_view text) {
    std::string const rest = lines_[end.line]->text.substr(end.byte);
    std::vector<std::unique_ptr<Line>> added;
    counted_ = {};
    for (std::size_t i = start.line; i <= end.line; ++i) returns_ -= lines_[i]->returns;
    forEachLine(text, [&](std::string_view line) {
        added.push_back(std::make_unique<Line>());
        added.back()->text = line;
    });
    added.front()->text.insert(0, lines_[start.line]->text, 0, start.byte);
    added.back()->text += rest;

    Splice const splice{start.line, end.line + 1 - start.line, added.size()};
    auto const at = lines_.begin() + static_cast<std::ptrdiff_t>(start.line);
    std::size_t const shared = std::min(splice.removed, splice.added);
    auto const middle = added.begin() + static_cast<std::ptrdiff_t>(shared);
    auto const after = std::move(added.begin(), middle, at);
    if (splice.removed > shared) {
        lines_.erase(after, at + static_cast<std::ptrdiff_t>(splice.removed));
    } else {
        lines_.insert(after, std::make_move_iterator(middle), std::make_move_iterator(added.end()));
    }
    for (std::size_t i = 0; i < splice.added; ++i) {
        std::size_t const index = splice.first + i;
        returns_ += lines_[index]->returns = countReturns(index);
    }
    return splice;
}

Splice Text::replaceAll(std::string_view text) {
    Splice const splice{0, lines_.size(), 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'))};
    lines_.clear();
    lines_.reserve(splice.added);
    returns_ = 0;
    counted_ = {};
    forEachLine(text, [&](std::string_view line) {
        lines_.push_back(std::make_unique<Line>());
        lines_.back()->text = line;
    });
    for (std::size_t i = 0; i < lines_.size(); ++i) returns_ += lines_[i]->returns = countReturns(i);
    return splice;
}

std::string Text::text() const {
    std::string text;
    for (std::size_t i = 0; i < lines_.size(); ++i) text.append(i == 0 ? "" : "\n").append(lines_[i]->text);
    return text;
}

}  // namespace tool::lsp
