// Random designs and words: the index finds what the rules of fuzz/name_rules.h find, applied to one node after
// another. The code of the fuzz target compares them, and ends the program if they differ.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace fuzz {
void run(std::string const& input);
}

namespace {

constexpr char const* nameLevels[] = {"a",    "b",       "ab",  "u1", "a*",    "x\\y", "",  "\xfcr",        "d[0]",
                                      "d[1]", "m[1][2]", "[3]", "q?", "d[07]", "aab",  "q", "d[2147483648]"};
constexpr char const* wordLevels[] = {"a",
                                      "*",
                                      "?",
                                      "*a*",
                                      "a*b",
                                      "u?",
                                      "\\a\\*",
                                      "d",
                                      "d[1:0]",
                                      "\\d[1:0]",
                                      "*[7:0]",
                                      "d*[9:1]",
                                      "m[1]",
                                      "*b",
                                      "\xc3\xbcr",
                                      "lib",
                                      "m[1][:]",
                                      "d[0:99999999999]",
                                      "m[1][2:0]",
                                      "rtl",
                                      "q\\?",
                                      "q\xe2\x82\xac",
                                      "q\\\xe2\x82\xac",
                                      "x\\\\\xe2\x82\xac",
                                      "q\xed\xa0\x80"};
constexpr char const* libraries[] = {"", "work", "lib", "l.x"};
constexpr char const* archs[] = {"", "rtl", "a/b"};

/// Lines that describe a design, and words, as fuzz/fuzz_names.cpp has them.
class RandomInput {
public:
    explicit RandomInput(unsigned seed) : random_(seed) {}

    std::string make() {
        std::string lines;
        for (char const kind : {'k', 'p', 'n'}) {
            for (int i = number(3); i > 0; --i) lines += line(kind, known("", path(2)));
        }
        bool const isLarge = number(20) == 0;
        std::string const common = isLarge ? line('p', path(2)) : "";
        for (int i = isLarge ? 40 : number(7); i > 0; --i) lines += cell() + common;
        for (int i = 3; i > 0; --i) lines += line('w', word());
        for (int i = 3; i > 0; --i) lines += line('w', similarTo(known_.empty() ? "a" : oneOf(known_)));
        return lines;
    }

private:
    int number(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    template <class Texts>
    std::string oneOf(Texts const& texts) {
        return texts[random_() % std::size(texts)];
    }
    static std::string line(char kind, std::string const& name) { return kind + name + '\n'; }
    std::string separator() { return number(3) == 0 ? "/" : "."; }

    template <class Texts>
    std::string joined(Texts const& levels, int most) {
        std::string text = oneOf(levels);
        for (int i = number(most); i > 0; --i) text += separator() + oneOf(levels);
        return text;
    }
    std::string path(int most) { return joined(nameLevels, most); }
    std::string word() { return joined(wordLevels, 4); }

    /// Notes a name that words may be similar to, and returns the part of it that is not in `block`.
    std::string known(std::string const& block, std::string const& name) {
        known_.push_back(block.empty() ? name : block + '/' + name);
        return name;
    }

    std::string cell() {
        if (blocks_.empty() || number(2) == 0) blocks_ = path(2);
        std::string const library = oneOf(libraries);
        std::string const arch = oneOf(archs);
        std::string const name = number(8) == 0 ? "" : number(4) == 0 ? path(4) : blocks_ + '.' + path(1);
        std::string const shown = number(4) == 0 ? oneOf(libraries) : library;
        std::string hierarchy = shown.empty() || shown == "work" ? name : shown + '/' + name;
        if (!arch.empty()) hierarchy += '/' + arch;
        std::string lines = line('l', library) + line('a', arch) + line('c', known("", name));
        known_.push_back(hierarchy);
        for (char const kind : {'p', 'p', 'n', 'k'}) {
            if (number(2) != 0) continue;
            std::string const own = path(number(5) == 0 ? 3 : 1);
            lines += line(kind, known(oneOf(std::vector<std::string>{name, hierarchy, ""}), own));
        }
        return lines;
    }

    /// Returns a word that matches a name, or some similar names.
    std::string similarTo(std::string const& name) {
        std::string text;
        std::string level;
        for (char const c : name + '/') {
            if (c != '.' && c != '/') {
                level += c;
                continue;
            }
            text += number(2) == 0 ? level : changed(level);
            text += number(8) == 0 ? "?" : separator();
            level.clear();
        }
        text.pop_back();
        return text;
    }

    std::string changed(std::string level) {
        std::size_t const at = level.empty() ? 0 : random_() % level.size();
        std::size_t const index = level.rfind('[');
        switch (number(6)) {
            case 0:
                return "*";
            case 1:
                return level.empty() ? "?" : level.replace(at, 1, "?");
            case 2:
                return level.substr(0, at) + "*" + (number(2) == 0 ? "" : level.substr(at));
            case 3:
                return level.insert(at, "\\");
            case 4:
                return index == level.npos ? level + "[1]" : level.substr(0, index);
            default:
                return level.substr(0, index) + oneOf(std::vector<std::string>{"[9:1]", "[0:3]", "[*]"});
        }
    }

    std::minstd_rand random_;
    std::string blocks_;              // the block of the last cells
    std::vector<std::string> known_;  // names, with library and arch or without
};

/// Designs and words that are rare among random ones.
constexpr char const* inputs[] = {
    "n.x\nwx",                                // a net of the design with several levels, the first of them empty
    "cu1.xx\npa\nwu1/*1/xx/a",                // the star does not match what precedes it
    "llib\ncx\nlwork\ncu1\npCK\nwlib/u1/CK",  // the library of another cell
    "ll.x\ncu1\npCK\nwl/x/u1/CK\nwl.x.u1",    // a library with a separator
    "llib\ncu1\npd[1]\nwlib/u1[1:0]\nwlib/u1/d[1:0]",
    "artl\ncu1\npd[1]\nwu1/rtl[1:0]\nwu1/rtl/d[1:0]",
    "cu1.a.q\npCK\ncu1.b\ncu1.c\ncu1.d\nwu1/*/q/C*\nwu1/*/q",  // a literal level after a literal and a star
    "cu1\npsub/z\ncu2\npsub/y\nwsub/?\nwsub/*",
    "pq?\npq??\npqa\nwq\xf0\x9f\x98\x80\nwq\xe0\x80\xbf",  // a character of two units, and one that is too long
    "pd[1]\nwd[1:0]\\",                                    // not a range, because of the last byte
    "pd[1:0]\npd[1]\nwd[1:0]",                             // a name like a range, and a bit in the range
    "p\xc3\xbc\np\xfc\nw\xc3\xbc",                         // the bytes of a word, and its Latin-1 form
};

TEST(NameRules, HoldForRareDesigns) {
    for (char const* input : inputs) fuzz::run(input);
}

TEST(NameRules, HoldForRandomDesigns) {
    for (unsigned seed = 1; seed <= 200; ++seed) fuzz::run(RandomInput(seed).make());
}

}  // namespace
