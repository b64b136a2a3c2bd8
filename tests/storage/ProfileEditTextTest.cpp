// Changes to a profile file's text made in memory: each gives exactly the text that the same
// write leaves in the file, so several changes can be made first and the file replaced once.
#include "IniTestSupport.h"

using namespace zorvik;
using namespace zorvik::testing;

namespace {

struct Write {
    OptionalText section;
    OptionalText key;
    OptionalText value;
};

// Updates, a new key, a new section, NULs and blanks in names, a deleted key and section.
const Write kWrites[] = {
    {"Settings", "Hscaleindex", "12"},
    {" Settings ", "New key", "x"},
    {"Fresh", "a", "1"},
    {"Settings", "Vscaleindex", std::string("5\0ignored", 9)},
    {"Fresh", "a", std::nullopt},
    {"COLORS", std::nullopt, std::nullopt},
    {"Settings", "Chaoffset", "\"0.5\""},
};

TEST(ProfileEditText, EditsInMemoryGiveTheTextTheSameWritesLeaveInTheFile) {
    const std::string start = "; kept\r\n[Settings]\r\nHscaleindex = 3\r\nVscaleindex=1\r\n\r\n"
                              "[COLORS]\r\nCursor1=255\r\n; comment in COLORS\r\n";
    TempDir dir;
    const std::string path = dir.file("edited.ini");
    writeBytes(path, start);
    std::optional<std::string> text = start;
    for (const Write& w : kWrites) {
        ASSERT_NE(ProfileFile::writePrivateProfileString(w.section, w.key, w.value, path), 0);
        if (auto edited = ProfileFile::editText(text, w.section, w.key, w.value))
            text = std::move(edited);
        ASSERT_EQ(*text, readBytes(path));
    }
}

TEST(ProfileEditText, AWriteToNoFileGivesTheNewFilesText) {
    EXPECT_EQ(ProfileFile::editText(std::nullopt, "App", "key", "string"),
              std::optional<std::string>("[App]\r\nkey=string\r\n"));
}

TEST(ProfileEditText, DeletingFromNoFileGivesAnEmptyText) {
    EXPECT_EQ(ProfileFile::editText(std::nullopt, "App", std::nullopt, std::nullopt),
              std::optional<std::string>(""));
    EXPECT_EQ(ProfileFile::editText(std::nullopt, "App", "key", std::nullopt),
              std::optional<std::string>(""));
}

TEST(ProfileEditText, DeletingWhatIsNotThereChangesNothing) {
    const std::optional<std::string> text = "[App]\r\nkey=1\r\n";
    EXPECT_EQ(ProfileFile::editText(text, "Other", std::nullopt, std::nullopt), std::nullopt);
    EXPECT_EQ(ProfileFile::editText(text, "App", "other", std::nullopt), std::nullopt);
}

TEST(ProfileEditText, ANullSectionChangesNothing) {
    EXPECT_EQ(ProfileFile::editText(std::string("[App]\r\n"), std::nullopt, "key", "1"),
              std::nullopt);
}

} // namespace
