// Reading a profile file: values, defaults, buffer sizes and the NUL-separated name lists.
#include "IniTestSupport.h"

using namespace zorvik;
using namespace zorvik::testing;

namespace {

class ProfileRead : public ::testing::Test {
protected:
    void SetUp() override { path = dir.file("test.ini"); }
    void file(const std::string& bytes) { writeBytes(path, bytes); }

    TempDir dir;
    std::string path;
};

TEST_F(ProfileRead, FoundKeyCopiesItsValueAndReturnsItsLength) {
    file("[App]\r\nkey=value\r\n");
    const Read r = readProfile("App", "key", "dflt", 32, path);
    EXPECT_EQ(r.count, 5u);
    EXPECT_EQ(r.head(6), "value\0"s);
    EXPECT_EQ(r.buffer[6], '#');
}

TEST_F(ProfileRead, EmptyValueReadsAsEmptyTextNotTheDefault) {
    file("[App]\r\nkey=\r\n");
    const Read r = readProfile("App", "key", "dflt", 32, path);
    EXPECT_EQ(r.count, 0u);
    EXPECT_EQ(r.buffer[0], '\0');
}

TEST_F(ProfileRead, MissingKeySectionOrFileGivesTheDefaultAndItsLength) {
    file("[App]\r\nkey=value\r\n");
    const Read noKey = readProfile("App", "other", "dflt", 32, path);
    EXPECT_EQ(noKey.count, 4u);
    EXPECT_EQ(noKey.head(5), "dflt\0"s);
    const Read noSection = readProfile("Other", "key", "dflt", 32, path);
    EXPECT_EQ(noSection.count, 4u);
    EXPECT_EQ(noSection.head(5), "dflt\0"s);
    const Read noFile = readProfile("App", "key", "dflt", 32, dir.file("missing.ini"));
    EXPECT_EQ(noFile.count, 4u);
    EXPECT_EQ(noFile.head(5), "dflt\0"s);
}

TEST_F(ProfileRead, NullDefaultGivesEmptyText) {
    file("[App]\r\n");
    const Read r = readProfile("App", "key", std::nullopt, 32, path);
    EXPECT_EQ(r.count, 0u);
    EXPECT_EQ(r.buffer[0], '\0');
    EXPECT_EQ(r.buffer[1], '#');
}

TEST_F(ProfileRead, DefaultLosesOnlyTrailingSpaces) {
    file("[App]\r\n");
    const Read r = readProfile("App", "key", "  a b\t  ", 32, path);
    EXPECT_EQ(r.count, 6u);
    EXPECT_EQ(r.head(7), "  a b\t\0"s);
    EXPECT_EQ(readValue("App", "key", path, "\tx\t"), "\tx\t");
    EXPECT_EQ(readValue("App", "key", path, "    "), "");
}

TEST_F(ProfileRead, ValueTooLongForTheBufferIsCutToSizeMinusOne) {
    file("[App]\r\nkey=abcdefghij\r\n");
    const Read r = readProfile("App", "key", std::nullopt, 5, path);
    EXPECT_EQ(r.count, 4u);
    EXPECT_EQ(r.buffer, "abcd\0"s);
}

TEST_F(ProfileRead, BufferOf255ReturnsAtMost254Characters) {
    file(std::string("[App]\r\nkey=").append(300, 'v').append("\r\n"));
    const Read r = readProfile("App", "key", std::nullopt, 255, path);
    EXPECT_EQ(r.count, 254u);
    std::string expected(255, 'v');
    expected.back() = '\0';
    EXPECT_EQ(r.buffer, expected);
}

TEST_F(ProfileRead, DefaultTooLongIsCutTheSameWay) {
    file("[App]\r\n");
    const Read r = readProfile("App", "key", "default", 4, path);
    EXPECT_EQ(r.count, 3u);
    EXPECT_EQ(r.buffer, "def\0"s);
}

TEST_F(ProfileRead, BufferOfOneGivesEmptyTextAndZero) {
    file("[App]\r\nkey=value\r\n");
    const Read r = readProfile("App", "key", std::nullopt, 1, path);
    EXPECT_EQ(r.count, 0u);
    EXPECT_EQ(r.buffer, "\0"s);
}

TEST_F(ProfileRead, BufferOfZeroReturnsZeroAndLeavesTheBufferAsItWas) {
    file("[App]\r\nkey=value\r\n");
    std::string buffer = "####";
    EXPECT_EQ(ProfileFile::getPrivateProfileString("App", "key", "dflt",
                                                   std::span<char>(buffer.data(), 0), path),
              0u);
    EXPECT_EQ(buffer, "####");
    EXPECT_EQ(ProfileFile::getPrivateProfileString(std::nullopt, std::nullopt, std::nullopt,
                                                   std::span<char>(buffer.data(), 0), path),
              0u);
    EXPECT_EQ(ProfileFile::getPrivateProfileString("App", std::nullopt, std::nullopt,
                                                   std::span<char>(buffer.data(), 0), path),
              0u);
    EXPECT_EQ(buffer, "####");
}

TEST_F(ProfileRead, NullKeyListsKeyNamesEachWithNulPlusFinalNul) {
    file("[section1]\r\nname1=val1\r\nname2=\r\n; comment=x\r\nno equals sign\r\nname4=v\r\n");
    const Read r = readProfile("section1", std::nullopt, "dflt", 64, path);
    EXPECT_EQ(r.count, 18u);
    EXPECT_EQ(r.head(20), "name1\0name2\0name4\0\0#"s.substr(0, 20));
}

TEST_F(ProfileRead, NullKeyListsDuplicateKeysTwice) {
    file("[s]\r\na=1\r\nb=2\r\nA=3\r\n");
    const Read r = readProfile("s", std::nullopt, std::nullopt, 64, path);
    EXPECT_EQ(r.count, 6u);
    EXPECT_EQ(r.head(7), "a\0b\0A\0\0"s.substr(0, 7));
    EXPECT_EQ(r.buffer[6], '\0');
}

TEST_F(ProfileRead, NullSectionListsSectionNamesTrimmedWithDuplicates) {
    file("[section1]\r\na=1\r\n[ \tsection2\t ]\r\n[SECTION1]\r\n");
    const Read r = readProfile(std::nullopt, std::nullopt, "dflt", 64, path);
    EXPECT_EQ(r.count, 27u);
    EXPECT_EQ(r.head(28), "section1\0section2\0SECTION1\0\0"s);
}

TEST_F(ProfileRead, NullSectionWithTwoSectionsReturns18) {
    file("[section1]\r\n[section2]\r\n");
    const Read r = readProfile(std::nullopt, std::nullopt, std::nullopt, 64, path);
    EXPECT_EQ(r.count, 18u);
    EXPECT_EQ(r.head(19), "section1\0section2\0\0"s);
}

TEST_F(ProfileRead, ListTooLongGivesFirstSizeMinusTwoCharactersAndTwoNuls) {
    file("[section1]\r\n[section2]\r\n");
    const Read r = readProfile(std::nullopt, std::nullopt, std::nullopt, 16, path);
    EXPECT_EQ(r.count, 14u);
    EXPECT_EQ(r.buffer, "section1\0secti\0\0"s);
}

TEST_F(ProfileRead, ListThatExactlyFillsTheBufferCountsAsNotFitting) {
    file("[section1]\r\n[section2]\r\n");
    // The whole list with its final NUL is 19 bytes.
    const Read exact = readProfile(std::nullopt, std::nullopt, std::nullopt, 19, path);
    EXPECT_EQ(exact.count, 17u);
    EXPECT_EQ(exact.buffer, "section1\0section2\0\0"s.substr(0, 17) + "\0\0"s);
    const Read roomy = readProfile(std::nullopt, std::nullopt, std::nullopt, 20, path);
    EXPECT_EQ(roomy.count, 18u);
    EXPECT_EQ(roomy.head(19), "section1\0section2\0\0"s);
}

TEST_F(ProfileRead, KeyListFollowsTheSameTruncationRule) {
    file("[s]\r\nname1=1\r\nname2=2\r\n");
    const Read r = readProfile("s", std::nullopt, std::nullopt, 10, path);
    EXPECT_EQ(r.count, 8u);
    EXPECT_EQ(r.buffer, "name1\0na\0\0"s);
    const Read exact = readProfile("s", std::nullopt, std::nullopt, 13, path);
    EXPECT_EQ(exact.count, 11u);
}

TEST_F(ProfileRead, ListWithBufferBelowTwoReturnsZero) {
    file("[section1]\r\na=1\r\n");
    EXPECT_EQ(readProfile(std::nullopt, std::nullopt, std::nullopt, 1, path).count, 0u);
    EXPECT_EQ(readProfile("section1", std::nullopt, std::nullopt, 1, path).count, 0u);
}

TEST_F(ProfileRead, SectionListOfMissingFileReturnsZeroAndWritesOnlyTheFirstByte) {
    const Read r = readProfile(std::nullopt, std::nullopt, "dflt", 8, dir.file("missing.ini"));
    EXPECT_EQ(r.count, 0u);
    EXPECT_EQ(r.buffer, "\0#######"s);
}

TEST_F(ProfileRead, KeyListOfMissingSectionGivesTheDefault) {
    file("[App]\r\na=1\r\n");
    const Read r = readProfile("Other", std::nullopt, "dflt ", 16, path);
    EXPECT_EQ(r.count, 4u);
    EXPECT_EQ(r.head(5), "dflt\0"s);
    const Read noFile = readProfile("App", std::nullopt, "dflt", 16, dir.file("missing.ini"));
    EXPECT_EQ(noFile.count, 4u);
}

TEST_F(ProfileRead, SizeConvenienceHandsBackTheWholeBufferOfSpaces) {
    file("[App]\r\nkey=value\r\n");
    const ProfileFile::ReadResult r =
        ProfileFile::getPrivateProfileString("App", "key", std::nullopt, 8u, path);
    EXPECT_EQ(r.count, 5u);
    EXPECT_EQ(r.buffer, "value\0  "s);
}

} // namespace
