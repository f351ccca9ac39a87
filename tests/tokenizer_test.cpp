#include "tov/base/tokenizer_p.h"

#include <gtest/gtest.h>

#include "support.h"

namespace {

using namespace kiri::tov;

TEST(Words, AreCutFromLines) {
    support::expectRows("words", [](std::string const& line) {
        std::string words;
        for (std::string const& word : tokenizeTclString(line)) {
            words += (words.empty() ? "" : "|") + word;
        }
        return words;
    });
    EXPECT_EQ(tokenizeTclString("\""), std::vector<std::string>{""});
}

}  // namespace
