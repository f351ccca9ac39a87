#include "tov/tokenizer.h"

#include <gtest/gtest.h>

#include <chrono>

#include "support.h"

namespace {

TEST(Tokenizer, SplitsLines) {
    for (auto const& [line, expected] : support::rowsOf("words")) {
        std::string words;
        for (std::string const& word : kiri::tov::tokenizeTclString(line)) {
            words += (words.empty() ? "" : "|") + word;
        }
        EXPECT_EQ(words, expected) << line;
    }
    EXPECT_EQ(kiri::tov::tokenizeTclString("\""), std::vector<std::string>{""});
}

// Each of these lines takes minutes where a word costs a walk over the rest of the line.
TEST(Tokenizer, IsLinearInTheLine) {
    for (char const* pattern : {"a ", "{a} ", "[a ", "{a {b} ", "\"a\" ", "{ ", "}{ ", "[a] {b "}) {
        std::string line = "x ";
        while (line.size() < 4'000'000) line += pattern;
        auto const start = std::chrono::steady_clock::now();
        kiri::tov::WordCursor cursor(line);
        std::size_t size = 0;
        for (std::string_view word; cursor.next(word);) size += word.size();
        EXPECT_GT(size, line.size() / 8) << pattern;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20)) << pattern;
    }
}

}  // namespace
