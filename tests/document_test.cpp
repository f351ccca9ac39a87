// Documents: which line is what, where it is saved, and what a caller may do with the lists.

#include "tov/tov.h"

#include <gtest/gtest.h>

#include "support.h"

namespace {

using namespace kiri::tov;
using support::bodyOf;

TEST(Document, ClassifiesLines) {
    support::forEachRow("documents",
                        [](auto const& text, auto const& saved) { EXPECT_EQ(bodyOf(text), saved + "\n"); });
}

// A first save drops what the format has no place for; from then on a text stays as it is.
TEST(Document, IsStableFromTheSecondSaveOn) {
    support::forEachRow("second_saves", [](auto const& text, auto const& saved) {
        TOV document;
        support::load(document, text);
        for (int saves = 1; saves < 4; ++saves) {
            support::load(document, document.toSaveString());
            EXPECT_EQ(bodyOf(document), saved + "\n");
        }
    });
}

TEST(Document, SavesBothHeadersAndRemovesTheirFirstCopy) {
    TOV document;
    EXPECT_EQ(document.toSaveString(), support::read(TEST_DATA "/empty"));
    std::string const command = document.sdcComments();
    std::string const attribute = document.attributeComments();
    EXPECT_EQ(document.toSaveString(), command + "\n\n" + attribute + "\n");
    support::load(document, command + attribute + "1\n" + attribute + command + "#attribute a b c d e\n" + attribute +
                                "a\n" + command);
    EXPECT_EQ(document.sdcCommentText, "1\n" + attribute + command);
    EXPECT_EQ(document.attributeCommentText, "a\n");
}

TEST(Document, ListsAreTheCallersToEdit) {
    for (int type : {-1, 0, 11, 99}) {
        EXPECT_EQ(TOV().getTovCmdList(static_cast<TOVCMD_TYPE>(type)), nullptr);
    }
    // An empty line is not written, and null entries are passed over.
    struct Silent : TovCmdMaxDelay {
        using TovCmdMaxDelay::TovCmdMaxDelay;
        std::string toSaveString(TOV*) override { return {}; }
    };
    TOV document;
    auto& list = *document.getTovCmdList(TOVCMD_MAXDELAY);
    for (int rounds = 0; rounds < 2; ++rounds) {
        document.reset();
        list.push_back(new TovCmdMaxDelay(1, nullptr));
        list.push_back(nullptr);
        list.push_back(new Silent(1, nullptr));
        list.push_back(new TovCmdMaxDelay(2, nullptr));
        EXPECT_EQ(bodyOf(document), "set_max_delay 1.000000\nset_max_delay 2.000000\n~\n");
    }
}

TEST(Document, ParsingAddsCommandsAndResetKeepsTheCommentsAlone) {
    support::TempDir const dir;
    std::string const path = support::write(dir / "in", "c\nset_false_path\n#attribute a b c d e\nd");
    std::string const rest = "set_false_path\nc\n~\n#attribute\ta\tb\tc\td\te\nd\n";
    TOV document;
    EXPECT_EQ(document.getErrorList(), nullptr);
    EXPECT_TRUE(document.parseTovFile(path.c_str()));
    EXPECT_TRUE(document.parseTovFile(path.c_str()));
    EXPECT_EQ(bodyOf(document), "set_false_path\n" + rest);
    EXPECT_TRUE(document.load(path.c_str()));
    EXPECT_EQ(bodyOf(document), rest);
    document.dci = new taDci();
    EXPECT_EQ(document.getErrorList(), &document.dci->errors);
    document.reset();
    EXPECT_EQ(document.getErrorList(), nullptr);
    EXPECT_EQ(bodyOf(document), "c\n~\nd\n");
}

}  // namespace
