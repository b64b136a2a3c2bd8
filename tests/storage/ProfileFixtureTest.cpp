// Files as other programs write them (CRLF, LF, CR, a byte-order mark, 8-bit text) are read
// and updated with every byte outside the change kept, compared whole.
#include "FakeSettingsPanel.h"
#include "IniTestSupport.h"

#include "storage/SettingsFile.h"
#include "storage/cInifile.h"

using namespace zorvik;
using namespace zorvik::testing;

namespace {

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos)
        text.replace(at, from.size(), to);
    return text;
}

class ProfileFixture : public ::testing::Test {
protected:
    std::string copy(const std::string& name) {
        const std::string path = dir.file(name);
        writeBytes(path, fixture(name));
        return path;
    }
    static std::string value(const std::string& path, const std::string& section,
                             const std::string& key) {
        cInifile ini;
        ini.setPath(path);
        ini.setSection(section);
        ini.setKey(key);
        return ini.Value();
    }
    static void set(const std::string& path, const std::string& section, const std::string& key,
                    std::string text) {
        cInifile ini;
        ini.setPath(path);
        ini.setSection(section);
        ini.setKey(key);
        ini.setValue(text);
        EXPECT_TRUE(ini.Success());
    }

    TempDir dir;
};

TEST_F(ProfileFixture, WindowsFileWithSpacesQuotesAndMixedCaseIsRead) {
    const std::string path = copy("windows-crlf.ini");
    EXPECT_EQ(value(path, "SETTINGS", "Hscaleindex"), "3");
    EXPECT_EQ(value(path, "SETTINGS", "Vscaleindex"), "5");
    EXPECT_EQ(value(path, "SETTINGS", "Chaoffset"), "0.25");
    EXPECT_EQ(value(path, "COLORS", "Cursor2"), "65280");
    EXPECT_EQ(value(path, "COLORS", "Display"), "0");
    EXPECT_EQ(value(path, "COLORS", "Referencetrace"), "");
    EXPECT_EQ(value(path, "BUTTONS", "Invert"), "TRUE");
}

TEST_F(ProfileFixture, WindowsFileKeepsEveryOtherByteWhenOneValueChanges) {
    const std::string path = copy("windows-crlf.ini");
    set(path, "settings", "HSCALEINDEX", "9");
    EXPECT_EQ(readBytes(path),
              replaced(fixture("windows-crlf.ini"), "Hscaleindex = 3\r\n", "Hscaleindex = 9\r\n"));
}

TEST_F(ProfileFixture, WindowsFileSavedBySettingsWriterMatchesTheExpectedFile) {
    const std::string path = copy("windows-crlf.ini");
    FakeSettingsPanel panel;
    panel.timeRange = 4;
    panel.chaLevel = 6;
    panel.chaOffset = -0.5;
    panel.colours = {1, 2, 3, 4, 5, 6, 7};
    panel.buttons = {false, true, false};
    cInifile ini;
    SettingsFile::write(ini, path, panel);
    EXPECT_EQ(readBytes(path), fixture("windows-crlf.saved.ini"));
}

TEST_F(ProfileFixture, ByteOrderMarkHidesTheFirstSectionAndAWriteAppendsANewOne) {
    const std::string path = copy("bom.ini");
    EXPECT_EQ(value(path, "SETTINGS", "Hscaleindex"), "");
    EXPECT_EQ(value(path, "COLORS", "Cursor1"), "255");
    set(path, "SETTINGS", "Hscaleindex", "9");
    EXPECT_EQ(readBytes(path), fixture("bom.ini") + "[SETTINGS]\r\nHscaleindex=9\r\n");
    EXPECT_EQ(value(path, "SETTINGS", "Hscaleindex"), "9");
}

TEST_F(ProfileFixture, LfOnlyFileIsUpdatedWithLfLineBreaks) {
    const std::string path = copy("lf-only.ini");
    EXPECT_EQ(value(path, "COLORS", "Cursor1"), "255");
    set(path, "SETTINGS", "Hscaleindex", "4");
    set(path, "SETTINGS", "Vscaleindex", "5");
    set(path, "BUTTONS", "Invert", "True");
    EXPECT_EQ(readBytes(path), "[SETTINGS]\nHscaleindex=4\nVscaleindex=5\n; note\n[COLORS]\n"
                               "Cursor1=255\n[BUTTONS]\nInvert=True\n");
}

TEST_F(ProfileFixture, CrOnlyFileIsUpdatedWithCrLineBreaks) {
    const std::string path = copy("cr-only.ini");
    EXPECT_EQ(value(path, "COLORS", "Cursor1"), "255");
    set(path, "SETTINGS", "Hscaleindex", "4");
    set(path, "SETTINGS", "Vscaleindex", "5");
    set(path, "BUTTONS", "Invert", "True");
    EXPECT_EQ(readBytes(path), "[SETTINGS]\rHscaleindex=4\rVscaleindex=5\r; note\r[COLORS]\r"
                               "Cursor1=255\r[BUTTONS]\rInvert=True\r");
}

TEST_F(ProfileFixture, LfFileWithoutFinalLineBreakGetsAnLfBeforeANewSection) {
    const std::string path = dir.file("unterminated.ini");
    writeBytes(path, "[A]\na=1");
    set(path, "B", "b", "2");
    EXPECT_EQ(readBytes(path), "[A]\na=1\n[B]\nb=2\n");
}

TEST_F(ProfileFixture, EightBitTextIsReadAndKeptUnchanged) {
    const std::string path = copy("latin1.ini");
    EXPECT_EQ(value(path, "GER\xc4T", "Bezeichnung"), "");
    EXPECT_EQ(value(path, "Ger\xe4t", "bezeichnung"), "Me\xdfkopf \xb5V");
    set(path, "Ger\xe4t", "Bezeichnung", "Tastkopf \xb5V");
    EXPECT_EQ(readBytes(path),
              replaced(fixture("latin1.ini"), "Me\xdfkopf \xb5V", "Tastkopf \xb5V"));
}

TEST_F(ProfileFixture, DeletingAKeyAndASectionKeepsEveryOtherByte) {
    const std::string path = copy("windows-crlf.ini");
    cInifile ini;
    ini.setPath(path);
    ini.setSection("Colors");
    ini.setKey("DISPLAY");
    ini.DeleteKey();
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(readBytes(path), replaced(fixture("windows-crlf.ini"), "Display='0'\r\n", ""));
    ini.DeleteSection();
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(readBytes(path),
              "; Zorvik settings, saved by an older Windows build\r\n"
              "[SETTINGS]\r\nHscaleindex = 3\r\nVScaleIndex=5\r\n"
              "  Chaoffset\t=\t\"0.25\"\r\n; colours follow\r\n"
              "; end of colours\r\n\r\n"
              "[Buttons]\r\nHcursors = True\r\nVcursors=false\r\nInvert = TRUE\r\n");
}

} // namespace
