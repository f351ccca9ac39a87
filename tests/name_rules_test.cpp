// Random designs and words: the index finds what the rules of fuzz/name_rules.h find, tried on one node after another.
// The fuzz target compares them, and ends the program where they differ.

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace fuzz {
void run(std::string const& input);
}

namespace {

/// Lines that describe a design, and words, as fuzz/fuzz_names.cpp has them.
class RandomInput {
public:
    explicit RandomInput(unsigned seed) : random_(seed) {}

    std::string make() {
        std::string lines;
        for (char const kind : {'k', 'p', 'n'}) {
            for (int i = number(3); i > 0; --i) lines += line(kind, path(2));
        }
        for (int i = number(20) == 0 ? 40 : number(7); i > 0; --i) lines += cell();
        for (int i = 3; i > 0; --i) lines += line('w', word());
        return lines;
    }

private:
    int number(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    template <std::size_t size>
    std::string oneOf(char const* const (&texts)[size]) {
        return texts[random_() % size];
    }
    static std::string line(char kind, std::string const& name) { return kind + name + '\n'; }

    std::string path(int most) {
        constexpr char const* levels[] = {"a",    "b",    "ab",      "u1",  "a*", "x\\y",  "",    "t\xfcr",
                                          "d[0]", "d[1]", "m[1][2]", "[3]", "q?", "d[07]", "aab", "d[9]"};
        std::string text = oneOf(levels);
        for (int i = number(most); i > 0; --i) text += (number(3) == 0 ? "/" : ".") + oneOf(levels);
        return text;
    }

    std::string cell() {
        constexpr char const* libraries[] = {"l", "lwork", "llib", "ll.x"};
        constexpr char const* archs[] = {"a", "artl", "aa/b"};
        if (blocks_.empty() || number(2) == 0) blocks_ = path(2);
        std::string lines = oneOf(libraries) + '\n' + oneOf(archs) + '\n';
        lines += line('c', number(4) == 0 ? path(4) : blocks_ + '.' + path(1));
        for (char const kind : {'p', 'p', 'n', 'k'}) {
            if (number(2) == 0) lines += line(kind, path(number(5) == 0 ? 3 : 1));
        }
        return lines;
    }

    std::string word() {
        constexpr char const* levels[] = {"a",
                                          "*",
                                          "?",
                                          "*a*",
                                          "a*b",
                                          "u?",
                                          "ab",
                                          "\\a\\*",
                                          "d",
                                          "d[1:0]",
                                          "*[7:0]",
                                          "[3]",
                                          "d*[9:1]",
                                          "m[1]",
                                          "*b",
                                          "t\xc3\xbcr",
                                          "lib",
                                          "m[1][:]",
                                          "d[0:99999999999]",
                                          "m[1][2:0]",
                                          "rtl",
                                          "q\\?",
                                          "\xe2\x82\xac"};
        std::string text = oneOf(levels);
        for (int i = number(4); i > 0; --i) text += (number(3) == 0 ? "." : "/") + oneOf(levels);
        return text;
    }

    std::minstd_rand random_;
    std::string blocks_;  // the block of the last cells
};

TEST(NameRules, HoldForRandomDesigns) {
    for (unsigned seed = 1; seed <= 200; ++seed) fuzz::run(RandomInput(seed).make());
}

}  // namespace
