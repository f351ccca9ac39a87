#pragma once

// The rules by which words match nodes, applied to one node after another: slow, and as close to docs/names.md as code
// can be. The index is compared with them.

#include <algorithm>
#include <climits>
#include <cstdint>
#include <list>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tov/names/design_names.h"

namespace name_rules {

using namespace kiri::tov;

/// A byte of a word. A byte after a backslash is literal.
struct Symbol {
    char byte;
    bool isEscaped;

    bool isWild() const { return !isEscaped && (byte == '*' || byte == '?'); }
};
using Symbols = std::vector<Symbol>;
using Levels = std::vector<std::string>;

enum Kind { ports, pins, nets, cells, clocks };

struct Candidate {
    TovNode const* node;
    Kind kind;
    std::vector<Levels> paths;
};

struct Word {
    std::vector<Symbols> levels;
    bool isRange = false;  // if true, the last level no longer has the range
    unsigned long low = 0;
    unsigned long high = 0;
};

inline Levels levelsOf(std::string const& name) {
    Levels levels(1);
    for (char const c : name) {
        if (c == '.' || c == '/') {
            levels.emplace_back();
        } else {
            levels.back() += c;
        }
    }
    return levels;
}

template <class Level>
Level joined(std::vector<Level> const& levels, std::size_t count, typename Level::value_type separator) {
    Level text;
    for (std::size_t i = 0; i < count; ++i) {
        if (i > 0) text.push_back(separator);
        text.insert(text.end(), levels[i].begin(), levels[i].end());
    }
    return text;
}

inline std::vector<Candidate> candidatesOf(TovDesign const& design) {
    std::vector<Candidate> found;
    std::list<TovPortNode*> portNodes;
    std::list<TovNetNode*> netNodes;
    std::list<TovCellNode*> cellNodes;
    std::list<TovClockNode*> clockNodes;
    auto const add = [&found](Kind kind, auto const& nodes) {
        for (TovNode const* node : nodes) {
            if (dynamic_cast<TovBusNode const*>(node) != nullptr) continue;
            bool const isInCell = node->parent()->type() == TOV_OBJ_CELL;
            std::string const own = node->name();
            found.push_back({node, kind, {levelsOf(isInCell ? node->parent()->name() + "/" + own : own)}});
            if (kind == clocks && isInCell) found.back().paths.push_back(levelsOf(own));
        }
    };
    design.getPorts(portNodes);
    add(ports, portNodes);
    portNodes.clear();
    design.getPins(portNodes);
    add(pins, portNodes);
    design.getNets(netNodes);
    add(nets, netNodes);
    design.getCells(cellNodes);
    add(cells, cellNodes);
    design.getClocks(clockNodes);
    add(clocks, clockNodes);
    return found;
}

inline bool isOf(taDciObjTyp type, Kind kind) {
    switch (type) {
        case taDciObjPort:
        case taDciObjSourcePort:
            return kind == ports;
        case taDciObjPin:
        case taDciObjPin2:
            return kind == pins;
        case taDciObjNet:
        case taDciObjSourceNet:
            return kind == nets;
        case taDciObjCell:
            return kind == cells;
        case taDciObjClock:
            return kind == clocks;
        default:
            return type == taDciObjName;
    }
}

inline bool isNumber(std::string const& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == text.npos;
}

inline unsigned long numberOf(std::string const& digits) {
    std::string const number = digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
    return number.size() > 10 ? ULONG_MAX : std::stoul("0" + number);
}

/// Converts a level of a word from UTF-8 to Latin-1; none if it is not valid.
inline std::optional<Symbols> latin1Of(Symbols const& level) {
    Symbols latin1;
    for (std::size_t i = 0; i < level.size();) {
        bool const isEscaped = level[i].isEscaped;
        auto const first = static_cast<unsigned char>(level[i++].byte);
        std::size_t const more = first < 0x80 ? 0 : first < 0xe0 ? 1 : first < 0xf0 ? 2 : 3;
        unsigned code = more == 0 ? first : first & (0x3fU >> more);
        if (more > 0 && (first < 0xc0 || first > 0xf4 || level.size() - i < more)) return {};
        for (std::size_t n = 0; n < more; ++n, ++i) {
            auto const next = static_cast<unsigned char>(level[i].byte);
            if (level[i].isEscaped || (next & 0xc0U) != 0x80) return {};
            code = code << 6U | (next & 0x3fU);
        }
        constexpr unsigned least[] = {0, 0x80, 0x800, 0x10000};
        if (code < least[more] || code > 0x10ffff || (code >= 0xd800 && code < 0xe000)) return {};
        if (code < 0x100) {
            latin1.push_back({static_cast<char>(code), isEscaped});
        } else {
            latin1.resize(latin1.size() + (code < 0x10000 ? 1 : 2), Symbol{'?', true});
        }
    }
    return latin1;
}

/// Returns the word without the range at its end; none if there is no range.
inline std::optional<Word> withoutRange(Word word) {
    Symbols& last = word.levels.back();
    std::string text;
    for (Symbol const& symbol : last) text += symbol.isEscaped ? '\0' : symbol.byte;
    std::size_t const open = text.rfind('[');
    std::size_t const colon = text.rfind(':');
    if (open == text.npos || open == 0 || colon == text.npos || colon < open || text.back() != ']') return {};
    std::string const first = text.substr(open + 1, colon - open - 1);
    std::string const second = text.substr(colon + 1, text.size() - colon - 2);
    if (!isNumber(first) || !isNumber(second)) return {};
    last.resize(open);
    word.isRange = true;
    word.low = std::min(numberOf(first), numberOf(second));
    word.high = std::max(numberOf(first), numberOf(second));
    return word;
}

/// The readings of a word: itself, its Latin-1 form, and each of them as a range.
inline std::vector<Word> wordsOf(std::string const& text) {
    std::vector<Word> words(1);
    std::vector<Symbols>& levels = words[0].levels;
    levels.resize(1);
    bool endsEscaped = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        bool const isEscaped = text[i] == '\\';
        if (isEscaped) ++i;
        endsEscaped = i == text.size();
        if (endsEscaped) break;
        if (text[i] == '.' || text[i] == '/') {
            levels.emplace_back();
        } else {
            levels.back().push_back({text[i], isEscaped});
        }
    }
    Word latin1;
    for (Symbols const& level : levels) {
        if (auto const form = latin1Of(level)) latin1.levels.push_back(*form);
    }
    if (latin1.levels.size() == levels.size()) words.push_back(latin1);
    for (std::size_t i = words.size(); i-- > 0 && !endsEscaped;) {
        if (auto const range = withoutRange(words[i])) words.push_back(*range);
    }
    return words;
}

inline bool fits(Symbols const& pattern, std::string const& text) {
    std::size_t at = 0;           // in the pattern
    std::size_t star = SIZE_MAX;  // the last one passed
    std::size_t starEnd = 0;      // end of the text that it matches
    for (std::size_t t = 0; t < text.size();) {
        bool const isStar = at < pattern.size() && pattern[at].isWild() && pattern[at].byte == '*';
        if (isStar) {
            star = at++;
            starEnd = t;
        } else if (at < pattern.size() && (pattern[at].isWild() || pattern[at].byte == text[t])) {
            ++at;
            ++t;
        } else if (star != SIZE_MAX) {
            at = star + 1;
            t = ++starEnd;
        } else {
            return false;
        }
    }
    return std::all_of(pattern.begin() + static_cast<std::ptrdiff_t>(at), pattern.end(),
                       [](Symbol const& symbol) { return symbol.isWild() && symbol.byte == '*'; });
}

inline bool fitsLevels(Word const& word, Levels const& path, Kind kind, TovNameMatch match) {
    std::size_t const size = word.levels.size();
    if (match == TOVMATCH_FLAT) return fits(joined(word.levels, size, {'/', true}), joined(path, path.size(), '/'));
    if (match == TOVMATCH_LOCAL ? size > (kind == pins ? 2U : 1U) || size > path.size() : size != path.size())
        return false;
    return std::equal(word.levels.begin(), word.levels.end(), path.end() - static_cast<std::ptrdiff_t>(size), fits);
}

/// Returns the path without the index at its end; none if it is not a bit.
inline std::optional<Levels> withoutIndex(Levels path, unsigned long* index = nullptr) {
    std::string& last = path.back();
    std::size_t const open = last.rfind('[');
    if (open == last.npos || last.back() != ']') return {};
    std::string const digits = last.substr(open + 1, last.size() - open - 2);
    if (!isNumber(digits)) return {};
    if (index != nullptr) *index = numberOf(digits);
    last.resize(open);
    return path;
}

inline bool fitsPath(Word const& word, Levels path, Kind kind, TovNameMatch match) {
    bool const hasBits = kind == ports || kind == pins || kind == nets;
    for (;;) {
        unsigned long index = 0;
        std::optional<Levels> const base = withoutIndex(path, &index);
        if (word.isRange) {
            bool const hasBase = base && (!base->back().empty() || (match == TOVMATCH_FLAT && base->size() > 1));
            bool const isIn = hasBase && word.low <= index && index <= word.high && index <= INT_MAX;
            if (hasBits && isIn && fitsLevels(word, *base, kind, match)) return true;
        } else if (fitsLevels(word, path, kind, match)) {
            return true;
        }
        if (!hasBits || !base || base->back().empty()) return false;
        path = *base;
    }
}

inline bool fitsBlock(Word const& word, Levels const& path, TovNameMatch match) {
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        auto const at = path.begin() + static_cast<std::ptrdiff_t>(i);
        Levels const block(match == TOVMATCH_LOCAL ? at : path.begin(), at + 1);
        if (!word.isRange && fitsLevels(word, block, cells, match)) return true;
    }
    return false;
}

inline bool standsFor(Word const& word, Candidate const& candidate, TovNameMatch match) {
    Kind const kind = candidate.kind;
    if (kind == ports || kind == clocks) match = TOVMATCH_FLAT;
    for (Levels const& path : candidate.paths) {
        if (fitsPath(word, path, kind, match)) return true;
    }
    if (kind == cells && fitsBlock(word, candidate.paths[0], match)) return true;
    for (Symbols const& level : word.levels) {
        if (std::any_of(level.begin(), level.end(), [](Symbol const& symbol) { return symbol.isWild(); })) return false;
    }
    return match != TOVMATCH_LOCAL && fitsPath(word, levelsOf(candidate.node->hierachyName('/')), kind, match);
}

inline std::vector<TovNode const*> find(std::vector<Candidate> const& candidates, taDciObjTyp type,
                                        std::string const& text, TovNameMatch match) {
    std::vector<TovNode const*> nodes;
    if (!TovDesignNames::isName(text)) return nodes;
    std::vector<Word> const words = wordsOf(text);
    for (Candidate const& candidate : candidates) {
        bool const isMeant = isOf(type, candidate.kind) &&
                             std::any_of(words.begin(), words.end(),
                                         [&](Word const& word) { return standsFor(word, candidate, match); });
        if (isMeant) nodes.push_back(candidate.node);
    }
    return nodes;
}

/// Returns a text as Latin-1, if it is UTF-8.
inline std::string latin1Of(std::string const& text) {
    Symbols symbols;
    for (char const c : text) symbols.push_back({c, false});
    std::string latin1;
    for (Symbol const& symbol : latin1Of(symbols).value_or(symbols)) latin1 += symbol.byte;
    return latin1;
}

inline std::size_t distance(std::string const& a, std::string const& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = i;
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            std::size_t const replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

inline std::string nearest(TovDesignNames const& names, std::vector<Candidate> const& candidates, taDciObjTyp type,
                           std::string const& text) {
    if (text.size() > 1000) return {};
    std::vector<std::string> forms;
    for (std::string form : {text, latin1Of(text)}) forms.push_back(joined(levelsOf(form), levelsOf(form).size(), '/'));
    using Found = std::pair<std::size_t, std::string>;
    Found best{text.size() < 4 ? 2 : text.size() < 12 ? 3 : 4, ""};
    for (Candidate const& candidate : candidates) {
        std::string const name = names.nameOf(*candidate.node);
        if (!isOf(type, candidate.kind) || name.empty()) continue;
        for (Levels const& path : candidate.paths) {
            std::string const known = joined(path, path.size(), '/');
            for (std::string const& form : forms) best = std::min(best, Found{distance(form, known), name});
        }
    }
    return best.second;
}

}  // namespace name_rules
