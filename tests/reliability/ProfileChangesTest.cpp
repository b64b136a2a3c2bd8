// Tests of the judge of profile-file changes that the profile engine is fuzzed against: it
// accepts exactly the changes a write or a deletion may make and reports any other byte.
#include "ProfileChanges.h"

#include <gtest/gtest.h>

using zorvik::fuzz::ProfileChanges;

namespace {
const std::string kFile = "[a]\r\nk = old\r\n; note\r\n[b]\r\nx=1\r\n";
}

TEST(ProfileChanges, ValueReplacedAfterTheBlanksFollowingTheEqualsSignIsOneLineChange) {
    EXPECT_EQ(ProfileChanges::checkWrite(kFile, "[a]\r\nk = new\r\n; note\r\n[b]\r\nx=1\r\n", "a",
                                         "k", "new"),
              std::nullopt);
    EXPECT_EQ(ProfileChanges::checkWrite(kFile, "[a]\r\nk =new\r\n; note\r\n[b]\r\nx=1\r\n", "a",
                                         "k", "new"),
              std::nullopt);
}

TEST(ProfileChanges, NewKeyInsertedAfterALineIsAccepted) {
    EXPECT_EQ(ProfileChanges::checkWrite(kFile, "[a]\r\nk = old\r\nz=9\r\n; note\r\n[b]\r\nx=1\r\n",
                                         "a", "z", "9"),
              std::nullopt);
}

TEST(ProfileChanges, NewSectionAfterALastLineWithoutBreakGetsTheFilesLineBreak) {
    EXPECT_EQ(ProfileChanges::checkWrite("[a]\nk=v", "[a]\nk=v\n[s]\nn=1\n", "s", "n", "1"),
              std::nullopt);
    EXPECT_TRUE(
        ProfileChanges::checkWrite("[a]\nk=v", "[a]\nk=v\r\n[s]\r\nn=1\r\n", "s", "n", "1"));
}

TEST(ProfileChanges, ChangeToASecondLineIsReported) {
    const auto wrong = ProfileChanges::checkWrite(
        kFile, "[a]\r\nk = new\r\n; Note\r\n[b]\r\nx=1\r\n", "a", "k", "new");
    ASSERT_TRUE(wrong.has_value());
    EXPECT_NE(wrong->find("; Note"), std::string::npos) << *wrong;
}

TEST(ProfileChanges, DeletedKeyMayOnlyTakeOneKeyLine) {
    EXPECT_EQ(ProfileChanges::checkDeleteKey(kFile, "[a]\r\n; note\r\n[b]\r\nx=1\r\n"),
              std::nullopt);
    EXPECT_TRUE(ProfileChanges::checkDeleteKey(kFile, "[a]\r\nk = old\r\n[b]\r\nx=1\r\n"))
        << "a comment line is not a key line";
}

TEST(ProfileChanges, DeletedSectionKeepsItsCommentLines) {
    EXPECT_EQ(ProfileChanges::checkDeleteSection(kFile, "; note\r\n[b]\r\nx=1\r\n"), std::nullopt);
    EXPECT_TRUE(ProfileChanges::checkDeleteSection(kFile, "[b]\r\nx=1\r\n"));
    EXPECT_TRUE(ProfileChanges::checkDeleteSection(kFile, "; note\r\n[b]\r\nx=1\r\nextra\r\n"));
}

TEST(ProfileChanges, LinesEndAtCrLfLfOrALoneCr) {
    const auto lines = ProfileChanges::lines("a\r\nb\nc\rd");
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].next, 3u);
    EXPECT_EQ(lines[1].next, 5u);
    EXPECT_EQ(lines[2].next, 7u);
    EXPECT_EQ(lines[3].end, lines[3].next);
    EXPECT_EQ(ProfileChanges::firstLineBreak("x\ry\r\n"), "\r");
    EXPECT_EQ(ProfileChanges::firstLineBreak("no break"), "\r\n");
}

TEST(ProfileChanges, LineStartingWithANulByteIsAKeyLineAsTheEngineReadsIt) {
    const std::string withNul("[a]\r\n\0k=v\r\n", 11);
    EXPECT_TRUE(ProfileChanges::isEntry(std::string_view("\0k=v", 4)));
    EXPECT_FALSE(ProfileChanges::isEntry("  \t"));
    EXPECT_EQ(ProfileChanges::checkDeleteSection(withNul, ""), std::nullopt);
}

TEST(ProfileChanges, RemovedHeaderEndedByALoneCrIsNotTakenForTheStartOfALaterLine) {
    // The first [C] section goes; the second [C], ended by CR LF, stays. "[C]\r" is the start of
    // "[C]\r\n", which must not make the lines that follow look changed.
    const std::string before = "[S]\r\nk=1\r\n[C]\rx=3\r\nk=1\r\n[C]\r\nCu]\r\nI=F\r\n";
    const std::string after = "[S]\r\nk=1\r\n[C]\r\nCu]\r\nI=F\r\n";
    EXPECT_EQ(ProfileChanges::checkDeleteSection(before, after), std::nullopt);
    EXPECT_TRUE(ProfileChanges::checkDeleteSection(before, "[S]\r\nk=1\r\n[C]\r\nI=F\r\n"))
        << "Cu] is neither a header nor a key line";
}
