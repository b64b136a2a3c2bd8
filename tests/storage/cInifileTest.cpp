// cInifile: properties, Value and its 254-character limit, NUL removal, deletes, the name
// lists and their 1-based arrays, CLngDefault, and the shared instance.
#include "IniTestSupport.h"

#include "storage/cInifile.h"

using namespace zorvik;
using namespace zorvik::testing;

namespace {

class IniFile : public ::testing::Test {
protected:
    void SetUp() override {
        path = dir.file("test.ini");
        ini.setPath(path);
    }
    void file(const std::string& bytes) { writeBytes(path, bytes); }
    std::string at(const std::string& section, const std::string& key) {
        ini.setSection(section);
        ini.setKey(key);
        return ini.Value();
    }

    TempDir dir;
    std::string path;
    cInifile ini;
};

TEST_F(IniFile, PropertiesHoldWhatIsSetAndStartEmpty) {
    cInifile fresh;
    EXPECT_EQ(fresh.LastReturnCode(), 0);
    EXPECT_FALSE(fresh.Success());
    EXPECT_EQ(fresh.Default(), "");
    EXPECT_EQ(fresh.Path(), "");
    EXPECT_EQ(fresh.Key(), "");
    EXPECT_EQ(fresh.Section(), "");
    fresh.setDefault("d");
    fresh.setPath("p");
    fresh.setKey("k");
    fresh.setSection("s");
    EXPECT_EQ(fresh.Default(), "d");
    EXPECT_EQ(fresh.Path(), "p");
    EXPECT_EQ(fresh.Key(), "k");
    EXPECT_EQ(fresh.Section(), "s");
}

TEST_F(IniFile, SeparateInstancesAreIndependent) {
    cInifile other;
    other.setKey("mine");
    other.setSection("theirs");
    EXPECT_EQ(ini.Key(), "");
    EXPECT_EQ(ini.Section(), "");
    EXPECT_EQ(other.Key(), "mine");
}

TEST_F(IniFile, ValueOf255OrMoreCharactersReadsBackCutTo254) {
    file("[A]\r\nlong=" + std::string(255, 'x') + "\r\nlonger=" + std::string(1000, 'y') +
         "\r\nfits=" + std::string(254, 'z') + "\r\n");
    EXPECT_EQ(at("A", "long"), std::string(254, 'x'));
    EXPECT_EQ(at("A", "longer"), std::string(254, 'y'));
    EXPECT_EQ(at("A", "fits"), std::string(254, 'z'));
}

TEST_F(IniFile, MissingKeyReadsAsDefaultWhichIsEmptyUnlessSet) {
    file("[A]\r\na=1\r\n");
    EXPECT_EQ(at("A", "missing"), "");
    ini.setDefault("none  ");
    EXPECT_EQ(at("A", "missing"), "none");
    EXPECT_EQ(at("A", "a"), "1");
    ini.setPath(dir.file("missing.ini"));
    EXPECT_EQ(at("A", "a"), "none");
}

TEST_F(IniFile, AssigningValueRemovesNulsAndHandsTheCleanTextBack) {
    std::string text = "\0a\0\0b c\0"s;
    ini.setSection("A");
    ini.setKey("k");
    ini.setValue(text);
    EXPECT_EQ(text, "ab c");
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(readBytes(path), "[A]\r\nk=ab c\r\n");
}

TEST_F(IniFile, AssigningValueCreatesFileSectionAndKeyAndReportsSuccess) {
    std::string text = "1";
    ini.setSection("A");
    ini.setKey("a");
    ini.setValue(text);
    EXPECT_NE(ini.LastReturnCode(), 0);
    EXPECT_TRUE(ini.Success());
    ini.setSection("B");
    text = "2";
    ini.setValue(text);
    EXPECT_EQ(readBytes(path), "[A]\r\na=1\r\n[B]\r\na=2\r\n");
}

TEST_F(IniFile, SectionAndKeyPersistSoAKeyIsReusedWhenOnlySectionChanges) {
    file("[A]\r\nk=from A\r\n[B]\r\nk=from B\r\n");
    ini.setSection("A");
    ini.setKey("k");
    EXPECT_EQ(ini.Value(), "from A");
    ini.setSection("B");
    EXPECT_EQ(ini.Value(), "from B");
}

TEST_F(IniFile, FailedWriteLeavesLastReturnCodeZeroAndRaisesNothing) {
    std::string text = "1";
    ini.setSection("A");
    ini.setKey("a");
    ini.setValue(text);
    ASSERT_TRUE(ini.Success());
    ini.setPath(dir.file("no-folder/test.ini"));
    ini.setValue(text);
    EXPECT_EQ(ini.LastReturnCode(), 0);
    EXPECT_FALSE(ini.Success());
}

TEST_F(IniFile, ReadingValueDoesNotChangeLastReturnCode) {
    ini.setPath(dir.file("no-folder/test.ini"));
    std::string text = "1";
    ini.setSection("A");
    ini.setValue(text);
    ASSERT_FALSE(ini.Success());
    ini.setPath(path);
    file("[A]\r\n=1\r\n");
    EXPECT_EQ(ini.Value(), "1");
    EXPECT_EQ(ini.LastReturnCode(), 0);
}

TEST_F(IniFile, DeleteKeyAndDeleteSectionRemoveWhatTheyName) {
    file("[A]\r\na=1\r\nb=2\r\n[B]\r\nc=3\r\n");
    ini.setSection("A");
    ini.setKey("a");
    ini.DeleteKey();
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(readBytes(path), "[A]\r\nb=2\r\n[B]\r\nc=3\r\n");
    ini.DeleteSection();
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(readBytes(path), "[B]\r\nc=3\r\n");
}

TEST_F(IniFile, INISectionListsKeyNamesEachFollowedByNul) {
    file("[A]\r\none=1\r\n;two=2\r\nthree=3\r\n");
    ini.setSection("A");
    EXPECT_EQ(ini.INISection(), "one\0three\0"s);
    ini.setSection("Missing");
    ini.setDefault("dflt");
    EXPECT_EQ(ini.INISection(), "dflt");
}

TEST_F(IniFile, AssigningINISectionRemovesTheWholeSectionIgnoringTheText) {
    file("[A]\r\na=1\r\n[B]\r\nb=2\r\n");
    ini.setSection("A");
    ini.setINISection("x=9");
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(readBytes(path), "[B]\r\nb=2\r\n");
}

TEST_F(IniFile, SectionsListsSectionNamesEachFollowedByNul) {
    file("[A]\r\n[ B ]\r\n[A]\r\n");
    EXPECT_EQ(ini.Sections(), "A\0B\0A\0"s);
}

TEST_F(IniFile, FileWithoutSectionsGivesEmptyListsCountZeroAndEmptyArrays) {
    file("orphan=1\r\n; just a comment\r\n");
    ini.setSection("A");
    EXPECT_EQ(ini.INISection(), "");
    EXPECT_EQ(ini.Sections(), "");
    std::vector<std::string> keys{"stale"};
    std::int32_t keyCount = 99;
    ini.EnumerateCurrentSection(keys, keyCount);
    EXPECT_EQ(keyCount, 0);
    EXPECT_TRUE(keys.empty());
    std::vector<std::string> sections{"stale"};
    std::int32_t sectionCount = 99;
    ini.EnumerateAllSections(sections, sectionCount);
    EXPECT_EQ(sectionCount, 0);
    EXPECT_TRUE(sections.empty());
}

TEST_F(IniFile, EnumerateCurrentSectionGivesA1BasedArrayKeepingEmptyNames) {
    file("[A]\r\nfirst=1\r\n=nameless\r\nlast=3\r\n");
    ini.setSection("A");
    std::vector<std::string> keys;
    std::int32_t count = 0;
    ini.EnumerateCurrentSection(keys, count);
    EXPECT_EQ(count, 3);
    EXPECT_EQ(keys, (std::vector<std::string>{"", "first", "", "last"}));
}

TEST_F(IniFile, EnumerateAllSectionsSkipsEmptyNames) {
    file("[One]\r\n[]\r\n[Two]\r\n");
    std::vector<std::string> sections;
    std::int32_t count = 0;
    ini.EnumerateAllSections(sections, count);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(sections, (std::vector<std::string>{"", "One", "Two"}));
}

TEST_F(IniFile, EnumerationDropsANameCutShortBy8192CharacterList) {
    std::string text = "[A]\r\n";
    for (int i = 0; i < 1100; ++i)
        text += "Key" + std::to_string(1000 + i) + "=1\r\n"; // 8 characters with the NUL
    file(text);
    ini.setSection("A");
    EXPECT_EQ(ini.INISection().size(), 8190u);
    std::vector<std::string> keys;
    std::int32_t count = 0;
    ini.EnumerateCurrentSection(keys, count);
    // 1023 whole names take 8184 characters; the 6 after them are a name without its NUL.
    EXPECT_EQ(count, 1023);
    EXPECT_EQ(keys.back(), "Key2022");
}

TEST_F(IniFile, CLngDefaultGivesTheDefaultForFailAndTheNumberFor12) {
    EXPECT_EQ(ini.CLngDefault("FAIL", 100), 100);
    EXPECT_EQ(ini.CLngDefault("12", 100), 12);
    EXPECT_EQ(ini.CLngDefault("FAIL"), 0);
}

TEST_F(IniFile, CLngDefaultRoundsHalvesToEvenAndAbsorbsEveryError) {
    EXPECT_EQ(ini.CLngDefault(" -42 ", 1), -42);
    EXPECT_EQ(ini.CLngDefault("3.5", 1), 4);
    EXPECT_EQ(ini.CLngDefault("2.5", 1), 2);
    EXPECT_EQ(ini.CLngDefault("1.5E3", 1), 1500);
    EXPECT_EQ(ini.CLngDefault("", 7), 7);
    EXPECT_EQ(ini.CLngDefault("12abc", 7), 7);
    EXPECT_EQ(ini.CLngDefault("1,5", 7), 7);
    EXPECT_EQ(ini.CLngDefault("2147483647", 7), 2147483647);
    EXPECT_EQ(ini.CLngDefault("2147483648", 7), 7);
    EXPECT_EQ(ini.CLngDefault("-2147483648", 7), -2147483647 - 1);
    EXPECT_EQ(ini.CLngDefault("1E300", 7), 7);
}

} // namespace
