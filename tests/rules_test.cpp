// The findings of toveng in files: rule by rule, and after edits the same as in a new file.

#include <algorithm>
#include <random>
#include <sstream>

#include "analysis/judge.h"
#include "analysis/statement_set.h"
#include "analysis/statements.h"
#include "tests/support.h"

using namespace tool;

namespace {

std::vector<std::string> linesOf(std::string const& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// An edited document: its statements, their judgements and the set of them.
class Document {
public:
    explicit Document(std::vector<std::string> lines) : lines_(std::move(lines)) { scan(0, 0, 0); }

    /// Replaces lines, and judges the statements that this may affect.
    void edit(std::size_t first, std::size_t count, std::vector<std::string> const& others) {
        std::size_t const from = firstTouched(statements_, first);
        auto const place = lines_.begin() + static_cast<std::ptrdiff_t>(first);
        lines_.erase(place, place + static_cast<std::ptrdiff_t>(count));
        lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(first), others.begin(), others.end());
        scan(from, first + others.size(),
             static_cast<std::ptrdiff_t>(others.size()) - static_cast<std::ptrdiff_t>(count));
    }

    std::vector<std::string> const& lines() const { return lines_; }

    std::vector<std::string> findings() {
        update();
        std::vector<std::string> all;
        for (std::size_t i = 0; i < statements_.size(); ++i) {
            for (Finding const& finding : judgements_[i].findings) add(all, finding.line, finding.code);
            for (Code code : codes_[i]) add(all, statements_[i].first, code);
            if (judgements_[i].endsLoad) break;
        }
        std::sort(all.begin(), all.end(), [](std::string const& a, std::string const& b) {
            return std::make_pair(std::stoul(a), a) < std::make_pair(std::stoul(b), b);
        });
        return all;
    }

private:
    // Rebuilds the statements from a place on, up to one that begins where an old one does, at `until` or later.
    void scan(std::size_t from, std::size_t until, std::ptrdiff_t shift) {
        LinesInMemory lines(lines_);
        StatementScanner scanner(lines);
        std::size_t old = from;
        std::size_t at = from < statements_.size() ? statements_[from].first : 0;
        std::vector<Statement> statements;
        std::vector<Judgement> judgements;
        std::vector<Facts> facts;
        auto const lineOf = [&](std::size_t i) { return statements_[i].first + static_cast<std::size_t>(shift); };
        for (std::string_view line; lines.get(at, line);) {
            while (old < statements_.size() &&
                   static_cast<std::ptrdiff_t>(statements_[old].first) + shift < static_cast<std::ptrdiff_t>(at)) {
                ++old;
            }
            if (at >= until && old < statements_.size() && lineOf(old) == at) break;
            statements.push_back(scanner.at(at));
            judgements.push_back(judge_.judge(statements.back(), lines, Detail::codes));
            facts.push_back(judgements.back().facts);
            at = statements.back().end();
        }
        if (at >= lines_.size()) old = statements_.size();
        set_.replace(from, old - from, facts);
        auto const begin = static_cast<std::ptrdiff_t>(from);
        auto const end = static_cast<std::ptrdiff_t>(old);
        for (std::size_t i = old; i < statements_.size(); ++i) {
            statements_[i].first = lineOf(i);
            for (Finding& finding : judgements_[i].findings) finding.line += static_cast<std::size_t>(shift);
        }
        replace(statements_, begin, end, statements);
        replace(judgements_, begin, end, judgements);
        replace(codes_, begin, end, std::vector<std::vector<Code>>(statements.size()));
    }

    template <class T>
    static void replace(std::vector<T>& list, std::ptrdiff_t begin, std::ptrdiff_t end, std::vector<T> const& others) {
        list.erase(list.begin() + begin, list.begin() + end);
        list.insert(list.begin() + begin, others.begin(), others.end());
    }

    void update() {
        for (Judgement const& judgement : judgements_) {
            if (judgement.endsLoad) set_.setCut();
        }
        for (std::size_t place : set_.takeTouched()) {
            codes_[place].clear();
            for (SetFinding const& finding : set_.findingsOf(place)) codes_[place].push_back(finding.code);
        }
    }

    static void add(std::vector<std::string>& all, std::size_t line, Code code) {
        all.push_back(std::to_string(line + 1) + " " + ruleOf(code).name);
    }

    std::vector<std::string> lines_;
    Judge judge_;
    std::vector<Statement> statements_;
    std::vector<Judgement> judgements_;
    std::vector<std::vector<Code>> codes_;  // what the set finds
    StatementSet set_{false};
};

std::string joined(std::vector<std::string> const& lines) {
    std::string text;
    for (std::string const& line : lines) text += line + "\n";
    return text;
}

TEST(Rules, FindWhatTheTableSays) {
    for (support::Row const& row : support::rowsOf("rules")) {
        std::string const expected = row.expected.empty() ? "" : row.expected + "\n";
        EXPECT_EQ(joined(Document(linesOf(row.input)).findings()), expected) << row.place;
    }
}

// So many that their table of keys is full, with gaps where commands were removed.
TEST(Rules, OfManyCommandsAreTheSameAfterEdits) {
    std::mt19937 random(1);
    auto const below = [&random](std::size_t n) { return static_cast<std::size_t>(random() % n); };
    auto const some = [&](std::size_t count) {
        std::vector<std::string> lines(count);
        for (std::string& line : lines) line = "set_max_delay 1 -from p" + std::to_string(below(60));
        return lines;
    };
    Document document(some(55));
    for (int edit = 0; edit < 300; ++edit) {
        document.edit(below(50), 5, some(5));
        ASSERT_EQ(document.findings(), Document(document.lines()).findings()) << "edit " << edit;
    }
}

TEST(Rules, AreTheSameAfterEdits) {
    constexpr char const* pool[] = {"create_clock -period 10 -name clk",
                                    "create_clock -period 10 -name b \\",
                                    "set_input_delay 1 -clock clk a",
                                    "set_input_delay 2 -clock clk a",
                                    "set_input_delay -max 1 -clock b a",
                                    "set_input_delay -min 2 -clock b a",
                                    "set_false_path -from [get_clocks {c*}]",
                                    "set_false_path -from {",
                                    "}",
                                    "x [list {",
                                    "]",
                                    "\"",
                                    "foo \"",
                                    "if {$a} {",
                                    "source x",
                                    "# {",
                                    "",
                                    "#disable set_false_path \\",
                                    "-name $x"};
    for (unsigned seed = 0; seed < 100; ++seed) {
        std::mt19937 random(seed);
        auto const below = [&random](std::size_t n) { return static_cast<std::size_t>(random() % n); };
        auto const some = [&](std::size_t most) {
            std::vector<std::string> lines(below(most + 1));
            for (std::string& line : lines) line = pool[below(std::size(pool))];
            return lines;
        };
        Document document(some(12));
        for (int edit = 0; edit < 12; ++edit) {
            std::size_t const first = below(document.lines().size() + 1);
            std::vector<std::string> const before = document.lines();
            document.edit(first, below(std::min<std::size_t>(before.size() - first, 3) + 1), some(3));
            ASSERT_EQ(document.findings(), Document(document.lines()).findings())
                << "seed " << seed << ", edit at " << first << " of\n"
                << joined(before) << "to\n"
                << joined(document.lines());
        }
    }
}

// The time of the searches for what closes a line must not grow with the square of the number of lines.
TEST(Rules, ReadManyOpenLinesOnce) {
    for (char const* line : {"x {", "x [", "x [ {", "x \"a ["}) {
        std::vector<std::string> lines(20000, line);
        lines.insert(lines.end(), 10, "}");
        LinesInMemory text(lines);
        StatementScanner scanner(text);
        std::size_t count = 0;
        for (std::size_t at = 0; at < lines.size(); at = scanner.at(at).end()) ++count;
        EXPECT_GT(count, lines.size() / 3) << line;
    }
}

}  // namespace
