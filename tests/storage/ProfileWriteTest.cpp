// Writing a profile file: new files and sections, in-place updates, inserts, deletes,
// failures that change nothing, and the atomic replacement of the file.
#include "IniTestSupport.h"

using namespace zorvik;
using namespace zorvik::testing;
namespace fs = std::filesystem;

namespace {

class ProfileWrite : public ::testing::Test {
protected:
    void SetUp() override { path = dir.file("test.ini"); }
    void file(const std::string& bytes) { writeBytes(path, bytes); }
    std::string contents() const { return readBytes(path); }
    std::int32_t write(const OptionalText& s, const OptionalText& k, const OptionalText& v) {
        return ProfileFile::writePrivateProfileString(s, k, v, path);
    }

    TempDir dir;
    std::string path;
};

TEST_F(ProfileWrite, NewFileGetsHeaderAndKeyWithCrlfAndNoSpaces) {
    EXPECT_NE(write("App", "key", "string"), 0);
    EXPECT_EQ(contents(), "[App]\r\nkey=string\r\n");
}

TEST_F(ProfileWrite, EmptyValueWritesKeyAndEquals) {
    EXPECT_NE(write("App", "key", ""), 0);
    EXPECT_EQ(contents(), "[App]\r\nkey=\r\n");
}

TEST_F(ProfileWrite, NewSectionIsAppendedWithoutBlankLine) {
    file("; head\r\n[A]\r\na=1\r\n");
    EXPECT_NE(write("B", "b", "2"), 0);
    EXPECT_EQ(contents(), "; head\r\n[A]\r\na=1\r\n[B]\r\nb=2\r\n");
}

TEST_F(ProfileWrite, NewSectionAfterAFileWithoutFinalLineBreakAddsCrlfFirst) {
    file("[A]\r\na=1");
    EXPECT_NE(write("B", "b", "2"), 0);
    EXPECT_EQ(contents(), "[A]\r\na=1\r\n[B]\r\nb=2\r\n");
    file("[A]");
    EXPECT_NE(write("B", "b", "2"), 0);
    EXPECT_EQ(contents(), "[A]\r\n[B]\r\nb=2\r\n");
}

TEST_F(ProfileWrite, ExistingKeyChangesInPlaceKeepingSpellingAndEveryOtherLine) {
    file("[Sec]\r\n; c1\r\nFirst=1\r\n  MyKey = old value  \r\nLast=3\r\n[Other]\r\nmykey=x\r\n");
    EXPECT_NE(write("SEC", "mykey", "new"), 0);
    EXPECT_EQ(contents(),
              "[Sec]\r\n; c1\r\nFirst=1\r\n  MyKey = new\r\nLast=3\r\n[Other]\r\nmykey=x\r\n");
}

TEST_F(ProfileWrite, ExistingEmptyOrQuotedValueIsReplacedWhole) {
    file("[S]\r\ne=\r\nb=   \r\nq=\"quoted\"\r\n");
    EXPECT_NE(write("S", "e", "1"), 0);
    EXPECT_NE(write("S", "b", "2"), 0);
    EXPECT_NE(write("S", "q", "3"), 0);
    EXPECT_EQ(contents(), "[S]\r\ne=1\r\nb=2\r\nq=3\r\n");
}

TEST_F(ProfileWrite, NewKeyGoesAfterTheLastKeyLineOfItsSection) {
    file("[A]\r\na=1\r\n; trailing comment\r\n\r\n[B]\r\nb=2\r\n");
    EXPECT_NE(write("A", "new", "x"), 0);
    EXPECT_EQ(contents(), "[A]\r\na=1\r\nnew=x\r\n; trailing comment\r\n\r\n[B]\r\nb=2\r\n");
}

TEST_F(ProfileWrite, NewKeyInSectionWithoutKeysGoesRightAfterTheHeader) {
    file("[A]\r\n; only a comment\r\n[B]\r\n");
    EXPECT_NE(write("a", "k", "v"), 0);
    EXPECT_EQ(contents(), "[A]\r\nk=v\r\n; only a comment\r\n[B]\r\n");
}

TEST_F(ProfileWrite, NewKeyAfterLastLineWithoutLineBreak) {
    file("[A]\r\na=1");
    EXPECT_NE(write("A", "b", "2"), 0);
    EXPECT_EQ(contents(), "[A]\r\na=1\r\nb=2\r\n");
}

TEST_F(ProfileWrite, ValueIsWrittenExactlyAndReadsBackTrimmed) {
    EXPECT_NE(write("App", "k", "  \"as is\" ; not a comment\t"), 0);
    EXPECT_EQ(contents(), "[App]\r\nk=  \"as is\" ; not a comment\t\r\n");
    EXPECT_EQ(readValue("App", "k", path), "\"as is\" ; not a comment");
}

TEST_F(ProfileWrite, SpacesButNotTabsAreStrippedFromSectionAndKeyArguments) {
    EXPECT_NE(write("  App  ", "  key  ", "v"), 0);
    EXPECT_NE(write("App", "\ttab", "w"), 0);
    EXPECT_EQ(contents(), "[App]\r\nkey=v\r\n\ttab=w\r\n");
}

TEST_F(ProfileWrite, NullValueDeletesTheKeyLine) {
    file("[A]\r\na=1\r\nb=2\r\nc=3\r\n");
    EXPECT_NE(write("A", "B", std::nullopt), 0);
    EXPECT_EQ(contents(), "[A]\r\na=1\r\nc=3\r\n");
}

TEST_F(ProfileWrite, DeletingAMissingKeySucceedsAndChangesNothing) {
    const std::string original = "[A]\r\na=1\r\n";
    file(original);
    const auto before = fs::last_write_time(path);
    EXPECT_NE(write("A", "zz", std::nullopt), 0);
    EXPECT_NE(write("Nowhere", "a", std::nullopt), 0);
    EXPECT_EQ(contents(), original);
    EXPECT_EQ(fs::last_write_time(path), before);
}

TEST_F(ProfileWrite, DeletingTheLastKeyLeavesTheHeader) {
    file("[A]\r\na=1\r\n");
    EXPECT_NE(write("A", "a", std::nullopt), 0);
    EXPECT_EQ(contents(), "[A]\r\n");
}

TEST_F(ProfileWrite, NullKeyDeletesHeaderAndKeysKeepsCommentsIgnoresValue) {
    file("[A]\r\na=1\r\n[Del]\r\nx=1\r\n; kept comment\r\ny=2\r\n[B]\r\nb=2\r\n");
    EXPECT_NE(write("del", std::nullopt, "ignored"), 0);
    EXPECT_EQ(contents(), "[A]\r\na=1\r\n; kept comment\r\n[B]\r\nb=2\r\n");
}

TEST_F(ProfileWrite, DeletingAMissingSectionSucceedsAndChangesNothing) {
    file("[A]\r\na=1\r\n");
    EXPECT_NE(write("B", std::nullopt, std::nullopt), 0);
    EXPECT_EQ(contents(), "[A]\r\na=1\r\n");
}

TEST_F(ProfileWrite, DeletingFromAMissingFileCreatesAnEmptyFile) {
    EXPECT_NE(write("A", "a", std::nullopt), 0);
    ASSERT_TRUE(fs::exists(path));
    EXPECT_EQ(contents(), "");
    fs::remove(path);
    EXPECT_NE(write("A", std::nullopt, std::nullopt), 0);
    ASSERT_TRUE(fs::exists(path));
    EXPECT_EQ(contents(), "");
}

TEST_F(ProfileWrite, NullSectionFailsAndChangesNothing) {
    file("[A]\r\na=1\r\n");
    EXPECT_EQ(write(std::nullopt, "a", "2"), 0);
    EXPECT_EQ(write(std::nullopt, std::nullopt, std::nullopt), 0);
    EXPECT_EQ(contents(), "[A]\r\na=1\r\n");
}

TEST_F(ProfileWrite, EmptyFileNameFails) {
    EXPECT_EQ(ProfileFile::writePrivateProfileString("A", "a", "1", ""), 0);
}

TEST_F(ProfileWrite, MissingFolderFails) {
    EXPECT_EQ(
        ProfileFile::writePrivateProfileString("A", "a", "1", dir.file("no-such-folder/test.ini")),
        0);
    EXPECT_FALSE(fs::exists(dir.path() / "no-such-folder"));
}

// Tests run as root, for whom permission bits do not stop a write. The engine itself treats a
// file or folder without any write bit as read-only, so these cases are tested with chmod; the
// two tests after them build targets that cannot be written whoever runs them.
TEST_F(ProfileWrite, ReadOnlyFileFailsAndChangesNothing) {
    file("[A]\r\na=1\r\n");
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    EXPECT_EQ(write("A", "a", "2"), 0);
    EXPECT_EQ(write("A", "a", "1"), 0);
    EXPECT_EQ(write("A", std::nullopt, std::nullopt), 0);
    EXPECT_EQ(contents(), "[A]\r\na=1\r\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 1);
}

TEST_F(ProfileWrite, ReadOnlyFolderFailsAndChangesNothing) {
    file("[A]\r\na=1\r\n");
    fs::permissions(dir.path(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(write("A", "a", "2"), 0);
    EXPECT_EQ(ProfileFile::writePrivateProfileString("A", "a", "1", dir.file("new.ini")), 0);
    fs::permissions(dir.path(), fs::perms::owner_all);
    EXPECT_EQ(contents(), "[A]\r\na=1\r\n");
    EXPECT_FALSE(fs::exists(dir.file("new.ini")));
}

TEST_F(ProfileWrite, PathWhoseFolderIsARegularFileFails) {
    file("not a folder");
    EXPECT_EQ(ProfileFile::writePrivateProfileString("A", "a", "1", path + "/inside.ini"), 0);
    EXPECT_EQ(contents(), "not a folder");
}

TEST_F(ProfileWrite, FolderWhereTheFileShouldBeFails) {
    fs::create_directory(path);
    EXPECT_EQ(write("A", "a", "1"), 0);
    EXPECT_EQ(write("A", "a", std::nullopt), 0);
    EXPECT_TRUE(fs::is_directory(path));
    EXPECT_TRUE(fs::is_empty(path));
}

TEST_F(ProfileWrite, FileIsReadAfreshAtEveryCall) {
    EXPECT_NE(write("A", "a", "1"), 0);
    file("[A]\r\na=changed elsewhere\r\n");
    EXPECT_EQ(readValue("A", "a", path), "changed elsewhere");
    EXPECT_NE(write("A", "b", "2"), 0);
    EXPECT_EQ(contents(), "[A]\r\na=changed elsewhere\r\nb=2\r\n");
}

TEST_F(ProfileWrite, WriteLeavesNoTemporaryFileBehind) {
    file("[A]\r\na=1\r\n");
    for (int i = 0; i < 5; ++i)
        EXPECT_NE(write("A", "a", std::to_string(i)), 0);
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir.path()))
        names.push_back(entry.path().filename().string());
    EXPECT_EQ(names, std::vector<std::string>{"test.ini"});
}

TEST_F(ProfileWrite, WriteKeepsTheFilePermissions) {
    file("[A]\r\na=1\r\n");
    const fs::perms mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(path, mode);
    EXPECT_NE(write("A", "a", "2"), 0);
    EXPECT_EQ(fs::status(path).permissions(), mode);
}

TEST_F(ProfileWrite, WriteReplacesTheFileInsteadOfRewritingIt) {
    // A reader that opened the old file keeps seeing the old bytes: the new text arrives by
    // renaming a complete file over the name, never by overwriting in place.
    file("[A]\r\na=1\r\n");
    std::ifstream before(path, std::ios::binary);
    ASSERT_TRUE(before.good());
    EXPECT_NE(write("A", "a", "2"), 0);
    const std::string old((std::istreambuf_iterator<char>(before)),
                          std::istreambuf_iterator<char>());
    EXPECT_EQ(old, "[A]\r\na=1\r\n");
    EXPECT_EQ(contents(), "[A]\r\na=2\r\n");
}

TEST_F(ProfileWrite, SymbolicLinkStaysAndItsTargetIsUpdated) {
    const std::string target = dir.file("real.ini");
    writeBytes(target, "[A]\r\na=1\r\n");
    fs::create_symlink(target, path);
    EXPECT_NE(write("A", "a", "2"), 0);
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(readBytes(target), "[A]\r\na=2\r\n");
}

TEST_F(ProfileWrite, ValueArgumentEndsAtItsFirstNul) {
    EXPECT_NE(write("App", "key", "before\0after"s), 0);
    EXPECT_EQ(contents(), "[App]\r\nkey=before\r\n");
}

TEST_F(ProfileWrite, WritesDuplicateSectionIntoTheFirstOccurrence) {
    file("[A]\r\na=1\r\n[a]\r\nb=2\r\n");
    EXPECT_NE(write("A", "b", "3"), 0);
    EXPECT_EQ(contents(), "[A]\r\na=1\r\nb=3\r\n[a]\r\nb=2\r\n");
    EXPECT_NE(write("A", std::nullopt, std::nullopt), 0);
    EXPECT_EQ(contents(), "[a]\r\nb=2\r\n");
}

} // namespace
