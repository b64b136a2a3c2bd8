// Unicode profile files: a file that begins with the UTF-16 LE mark FF FE is read as UTF-16
// and stays UTF-16 with its mark when written; callers speak 8-bit (Windows-1252) text.
#include "FakeSettingsPanel.h"
#include "IniTestSupport.h"
#include "WaveformTestSupport.h"
#include "storage/ProfileText.h"
#include "storage/SettingsFile.h"
#include "storage/WaveformFile.h"
#include "storage/cInifile.h"

#include <gtest/gtest.h>

#include <string>

using namespace zorvik;
using namespace zorvik::testing;

namespace {

/// The bytes of a Unicode profile file: the mark, then `text` as UTF-16 LE.
std::string utf16(const std::u16string& text) {
    std::string bytes = "\xFF\xFE";
    for (char16_t c : text) {
        bytes += static_cast<char>(c & 0xFF);
        bytes += static_cast<char>(c >> 8);
    }
    return bytes;
}

const std::u16string kFile = u"; Messplatz \u00C4 \u041F\u0440\u0438\u0431\u043E\u0440\r\n"
                             u"[SETTINGS]\r\n"
                             u"Hscaleindex=7\r\n"
                             u"Operator=J\u00FCrgen \u20AC \u4E2D\r\n"
                             u"[PORTS]\r\n"
                             u"COM2=/dev/ttyUSB7\r\n";

class ProfileUnicode : public ::testing::Test {
protected:
    std::string path(const std::string& name = "ZORVIK.INI") const { return dir.file(name); }
    std::string read(const std::string& section, const std::string& key) {
        ini.setPath(path());
        ini.setSection(section);
        ini.setKey(key);
        return ini.Value();
    }
    TempDir dir;
    cInifile ini;
};

TEST_F(ProfileUnicode, KeysOfAUtf16FileAreRead) {
    writeBytes(path(), utf16(kFile));
    EXPECT_EQ(read("SETTINGS", "Hscaleindex"), "7");
    EXPECT_EQ(read("settings", "HSCALEINDEX"), "7");
    EXPECT_EQ(read("PORTS", "COM2"), "/dev/ttyUSB7");
    EXPECT_EQ(read("PORTS", "COM3"), "");
}

TEST_F(ProfileUnicode, CharactersWindows1252HoldsArriveAsItsBytesOthersAsQuestionMarks) {
    writeBytes(path(), utf16(kFile));
    // u-umlaut is E4... FC in Windows-1252, the euro sign 80, the Chinese character has none.
    EXPECT_EQ(read("SETTINGS", "Operator"), "J\xFCrgen \x80 ?");
}

TEST_F(ProfileUnicode, SectionAndKeyListsOfAUtf16File) {
    writeBytes(path(), utf16(kFile));
    ini.setPath(path());
    EXPECT_EQ(ini.Sections(), std::string("SETTINGS\0PORTS\0", 15));
    ini.setSection("SETTINGS");
    EXPECT_EQ(ini.INISection(), std::string("Hscaleindex\0Operator\0", 21));
}

TEST_F(ProfileUnicode, AWriteKeepsTheFileUtf16WithItsMarkAndEveryOtherCharacter) {
    writeBytes(path(), utf16(kFile));
    ini.setPath(path());
    ini.setSection("SETTINGS");
    ini.setKey("Hscaleindex");
    std::string value = "12";
    ini.setValue(value);
    EXPECT_TRUE(ini.Success());
    std::u16string expected = kFile;
    expected.replace(expected.find(u"Hscaleindex=7"), 13, u"Hscaleindex=12");
    EXPECT_EQ(readBytes(path()), utf16(expected));
}

TEST_F(ProfileUnicode, NewKeysAndSectionsGoInAsUtf16WithCrLf) {
    writeBytes(path(), utf16(kFile));
    ini.setPath(path());
    ini.setSection("SETTINGS");
    ini.setKey("Chaoffset");
    std::string offset = "-1.5";
    ini.setValue(offset);
    ini.setSection("BUTTONS");
    ini.setKey("Invert");
    // A Windows-1252 e-acute from the caller becomes U+00E9 in the file.
    std::string word = "Tr\xE9s";
    ini.setValue(word);
    std::u16string expected = kFile;
    expected.insert(expected.find(u"[PORTS]"), u"Chaoffset=-1.5\r\n");
    expected += u"[BUTTONS]\r\nInvert=Tr\u00E9s\r\n";
    EXPECT_EQ(readBytes(path()), utf16(expected));
    EXPECT_EQ(read("BUTTONS", "Invert"), "Tr\xE9s");
}

TEST_F(ProfileUnicode, DeletingAKeyAndASectionKeepsTheFileUtf16) {
    writeBytes(path(), utf16(kFile));
    ini.setPath(path());
    ini.setSection("SETTINGS");
    ini.setKey("Operator");
    ini.DeleteKey();
    ini.setSection("PORTS");
    ini.DeleteSection();
    EXPECT_EQ(readBytes(path()),
              utf16(u"; Messplatz \u00C4 \u041F\u0440\u0438\u0431\u043E\u0440\r\n"
                    u"[SETTINGS]\r\nHscaleindex=7\r\n"));
}

TEST_F(ProfileUnicode, CharactersBeyondTheBasicPlaneAndBrokenPairsComeBackUnchanged) {
    // A musical symbol (a surrogate pair), a lone high and a lone low surrogate.
    const std::u16string text = u"[A]\r\nx=\U0001D11E\r\n; \xD800 and \xDC00\r\n";
    writeBytes(path(), utf16(text));
    ini.setPath(path());
    ini.setSection("A");
    ini.setKey("x");
    EXPECT_EQ(ini.Value(), "?");
    ini.setKey("y");
    std::string one = "1";
    ini.setValue(one);
    EXPECT_EQ(readBytes(path()), utf16(u"[A]\r\nx=\U0001D11E\r\ny=1\r\n; \xD800 and \xDC00\r\n"));
}

TEST_F(ProfileUnicode, ALongValueIsCutAt254CharactersNotBytes) {
    std::u16string value(300, u'\u00E9');
    writeBytes(path(), utf16(u"[A]\r\nk=" + value + u"\r\n"));
    EXPECT_EQ(read("A", "k"), std::string(254, '\xE9'));
}

TEST_F(ProfileUnicode, ANewFileIsAlwaysEightBitText) {
    ini.setPath(path());
    ini.setSection("A");
    ini.setKey("k");
    std::string word = "\xE9t\xE9";
    ini.setValue(word);
    EXPECT_EQ(readBytes(path()), "[A]\r\nk=\xE9t\xE9\r\n");
}

TEST_F(ProfileUnicode, AUtf8MarkIsNoUnicodeFileButBytesOfTheFirstLine) {
    writeBytes(path(), "\xEF\xBB\xBF[A]\r\nk=1\r\n[B]\r\nk=2\r\n");
    EXPECT_EQ(read("A", "k"), "");
    EXPECT_EQ(read("B", "k"), "2");
}

TEST_F(ProfileUnicode, AMarkWithNothingAfterItIsAnEmptyUnicodeFile) {
    writeBytes(path(), "\xFF\xFE");
    EXPECT_EQ(read("A", "k"), "");
    ini.setKey("k");
    std::string one = "1";
    ini.setValue(one);
    EXPECT_EQ(readBytes(path()), utf16(u"[A]\r\nk=1\r\n"));
}

TEST_F(ProfileUnicode, TheSettingsFileIsReadFromAndWrittenBackToAUtf16File) {
    writeBytes(path(), utf16(u"; \u00C4nderungen von Hand\r\n[SETTINGS]\r\nHscaleindex=7\r\n"
                             u"Vscaleindex=4\r\n[BUTTONS]\r\nInvert=True\r\n"));
    FakeSettingsPanel panel;
    SettingsFile::read(ini, path(), panel);
    EXPECT_EQ(panel.timeRange, 7);
    EXPECT_EQ(panel.chaLevel, 4);
    EXPECT_TRUE(panel.buttons[static_cast<int>(SettingsButton::Invert)]);
    SettingsFile::write(ini, path(), panel);
    const std::string bytes = readBytes(path());
    ASSERT_EQ(bytes.substr(0, 2), "\xFF\xFE");
    const ProfileText text = ProfileText::decode(bytes);
    EXPECT_EQ(text.encoding(), ProfileText::Encoding::Utf16Le);
    const std::string kept =
        "; \xC3\x84nderungen von Hand\r\n[SETTINGS]\r\nHscaleindex=7\r\nVscaleindex=4\r\n";
    EXPECT_EQ(text.text().substr(0, kept.size()), kept);
    EXPECT_NE(text.text().find("[COLORS]\r\nCursor1="), std::string::npos);
    EXPECT_EQ(read("BUTTONS", "Invert"), "True");
}

TEST_F(ProfileUnicode, AUtf16WaveformFileLoadsAndIsSavedBackAsUtf16) {
    const WaveformRecord r = probeRecord(0x04, 3);
    const std::string eightBit = path("trace.wdf");
    ASSERT_TRUE(WaveformFile::SaveWaveformFile(ini, eightBit, r));
    std::u16string text;
    for (char c : readBytes(eightBit))
        text += static_cast<char16_t>(static_cast<unsigned char>(c));
    const std::string unicode = path("unicode.wdf");
    writeBytes(unicode, utf16(text));
    WaveformRecord loaded = untouchedRecord();
    ASSERT_EQ(WaveformFile::LoadWaveformFile(ini, unicode, loaded), WaveformLoadResult::Loaded);
    for (std::size_t i = 0; i < 128; ++i)
        ASSERT_EQ(bits(loaded.volts[i]), bits(asFiled(r.volts[i]))) << i;
    EXPECT_EQ(loaded.state.bytSwitchSetting, r.state.bytSwitchSetting);
    loaded.graphOffsetValue = r.graphOffsetValue; // written, never read back
    ASSERT_TRUE(WaveformFile::SaveWaveformFile(ini, unicode, loaded));
    EXPECT_EQ(readBytes(unicode), utf16(text));
}

} // namespace

namespace {

// A settings file a Windows editor saved as "Unicode": the 8-bit fixture's keys, a title line
// in three scripts. Reading gives the same values as the 8-bit file; a write changes one line.
TEST(ProfileUnicodeFixture, AUnicodeSettingsFileReadsLikeItsEightBitTwinAndKeepsItsBytes) {
    TempDir dir;
    const std::string path = dir.file("ZORVIK.INI");
    const std::string original = fixture("utf16.ini");
    writeBytes(path, original);
    cInifile ini;
    ini.setPath(path);
    ini.setSection("SETTINGS");
    ini.setKey("Hscaleindex");
    EXPECT_EQ(ini.Value(), "3");
    ini.setKey("Chaoffset");
    EXPECT_EQ(ini.Value(), "0.25");
    ini.setSection("COLORS");
    ini.setKey("Display");
    EXPECT_EQ(ini.Value(), "0");
    ini.setSection("SETTINGS");
    ini.setKey("Hscaleindex");
    std::string nine = "9";
    ini.setValue(nine);
    ProfileText expected = ProfileText::decode(original);
    std::string text = expected.text();
    text.replace(text.find("Hscaleindex = 3\r\n"), 17, "Hscaleindex = 9\r\n");
    expected.setText(text);
    EXPECT_EQ(readBytes(path), expected.encode());
}

} // namespace
