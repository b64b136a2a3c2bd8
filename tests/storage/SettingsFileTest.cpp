// The application settings file: location, the writer's thirteen keys in order, the reader's
// conversions and handler calls, the resume-next policy, and the PORTS section.
#include "FakeSettingsPanel.h"
#include "IniTestSupport.h"

#include "storage/SettingsFile.h"

using namespace zorvik;
using namespace zorvik::testing;
namespace fs = std::filesystem;

namespace {

class Settings : public ::testing::Test {
protected:
    void SetUp() override { path = dir.file("ZORVIK.INI"); }
    void file(const std::string& bytes) { writeBytes(path, bytes); }
    void read() { SettingsFile::read(ini, path, panel); }

    TempDir dir;
    std::string path;
    cInifile ini;
    FakeSettingsPanel panel;
};

const std::string kFullFile = "[SETTINGS]\r\nHscaleindex=5\r\nVscaleindex=7\r\nChaoffset=-1.25\r\n"
                              "[COLORS]\r\nCursor1=255\r\nCursor2=65280\r\nCursor3=16711680\r\n"
                              "Cursor4=65535\r\nDisplay=0\r\nPrimarytrace=16776960\r\n"
                              "Referencetrace=16711935\r\n"
                              "[BUTTONS]\r\nHcursors=True\r\nVcursors=False\r\nInvert=True\r\n";

TEST_F(Settings, WithoutAFileStartUpChangesNothing) {
    panel.timeRange = 3;
    read();
    EXPECT_TRUE(panel.log.empty());
    EXPECT_EQ(panel.timeRange, 3);
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(Settings, WithoutAFileShutdownCreatesAllThirteenKeysInThreeSections) {
    panel.timeRange = 5;
    panel.chaLevel = 7;
    panel.chaOffset = -1.25;
    panel.colours = {255, 65280, 16711680, 65535, 0, 16776960, 16711935};
    panel.buttons = {true, false, true};
    SettingsFile::write(ini, path, panel);
    EXPECT_EQ(readBytes(path), kFullFile);
}

TEST_F(Settings, WriterRoundsKnobsHalvesToEvenAndKeepsTheOffsetFraction) {
    panel.timeRange = 2.5;
    panel.chaLevel = 3.5;
    panel.chaOffset = 1.0 / 3.0;
    SettingsFile::write(ini, path, panel);
    EXPECT_EQ(readValue("SETTINGS", "Hscaleindex", path), "2");
    EXPECT_EQ(readValue("SETTINGS", "Vscaleindex", path), "4");
    EXPECT_EQ(readValue("SETTINGS", "Chaoffset", path), "0.3333333333333333");
}

TEST_F(Settings, OffsetWrittenAtShutdownComesBackExactly) {
    for (double offset : {0.1, -0.3, 2.0 / 3.0, -4.999999999999999, 0.0}) {
        panel.chaOffset = offset;
        SettingsFile::write(ini, path, panel);
        FakeSettingsPanel restored;
        SettingsFile::read(ini, path, restored);
        EXPECT_EQ(restored.chaOffset, offset);
    }
}

TEST_F(Settings, WriterSkipsOnlyTheKeyThatFails) {
    panel.timeRange = 1e12; // does not fit a 32-bit whole number
    panel.refuse = {"Cursor3", "Vcursors"};
    SettingsFile::write(ini, path, panel);
    EXPECT_EQ(readBytes(path), "[SETTINGS]\r\nVscaleindex=0\r\nChaoffset=0\r\n"
                               "[COLORS]\r\nCursor1=0\r\nCursor2=0\r\nCursor4=0\r\nDisplay=0\r\n"
                               "Primarytrace=0\r\nReferencetrace=0\r\n"
                               "[BUTTONS]\r\nHcursors=False\r\nInvert=False\r\n");
}

TEST_F(Settings, WriterThatCannotWriteTheFileRaisesNothing) {
    EXPECT_NO_THROW(SettingsFile::write(ini, dir.file("no-folder/ZORVIK.INI"), panel));
    EXPECT_FALSE(ini.Success());
}

TEST_F(Settings, WriterKeepsOtherSectionsSuchAsPorts) {
    file("[PORTS]\r\nCOM1=/dev/ttyUSB3\r\n");
    SettingsFile::write(ini, path, panel);
    EXPECT_TRUE(readBytes(path).starts_with("[PORTS]\r\nCOM1=/dev/ttyUSB3\r\n[SETTINGS]\r\n"));
    EXPECT_EQ(SettingsFile::readPorts(path).at(1), "/dev/ttyUSB3");
}

TEST_F(Settings, ReaderAppliesEveryKeyOnceInFileOrderRunningHandlers) {
    file(kFullFile);
    read();
    EXPECT_EQ(panel.log, (std::vector<std::string>{
                             "CWKTimeRange=5", "CWKChaLvl=7", "CWSCHaOffset=-1.25", "Cursor1=255",
                             "Cursor2=65280", "Cursor3=16711680", "Cursor4=65535", "Display=0",
                             "Primarytrace=16776960", "Referencetrace=16711935", "CWBHCursors=True",
                             "CWBVCursors=False", "CWBChaInv=True"}));
    EXPECT_EQ(panel.chaOffset, -1.25);
}

TEST_F(Settings, ReaderUsesItsOwnKeyOrderWhateverTheOrderInTheFile) {
    file("[BUTTONS]\r\nInvert=1\r\nHcursors=0\r\n[SETTINGS]\r\nVscaleindex=2\r\nHscaleindex=1\r\n");
    read();
    EXPECT_EQ(panel.log, (std::vector<std::string>{"CWKTimeRange=1", "CWKChaLvl=2",
                                                   "CWBHCursors=False", "CWBChaInv=True"}));
}

TEST_F(Settings, StoredScaleIndexIsRoundedHalvesToEven) {
    file("[SETTINGS]\r\nHscaleindex=3.5\r\nVscaleindex=2.5\r\n");
    read();
    EXPECT_EQ(panel.log, (std::vector<std::string>{"CWKTimeRange=4", "CWKChaLvl=2"}));
}

TEST_F(Settings, ScaleIndexFollowedByLettersIsAppliedAsItsNumber) {
    file("[SETTINGS]\r\nHscaleindex=7 steps\r\nVscaleindex=abc\r\n");
    read();
    EXPECT_EQ(panel.log, (std::vector<std::string>{"CWKTimeRange=7", "CWKChaLvl=0"}));
}

TEST_F(Settings, EmptyCursor2LeavesItsColourWhileOtherKeysApply) {
    file("[COLORS]\r\nCursor1=1\r\nCursor2=\r\nCursor3=3\r\n");
    panel.colours[1] = 4242;
    read();
    EXPECT_EQ(panel.colours[1], 4242);
    EXPECT_EQ(panel.colours[0], 1);
    EXPECT_EQ(panel.colours[2], 3);
    EXPECT_EQ(panel.log, (std::vector<std::string>{"Cursor1=1", "Cursor3=3"}));
}

TEST_F(Settings, ColourIsTheLeadingWholeNumberRedInTheLowByte) {
    file("[COLORS]\r\nDisplay=255 (red)\r\nPrimarytrace=65280.4\r\n");
    read();
    EXPECT_EQ(panel.colours[4], 0x0000FF);
    EXPECT_EQ(panel.colours[5], 0x00FF00);
}

TEST_F(Settings, InvertThatIsNotABooleanLeavesTheButtonAsItWas) {
    file("[BUTTONS]\r\nInvert=maybe\r\n");
    panel.buttons[2] = true;
    read();
    EXPECT_TRUE(panel.buttons[2]);
    EXPECT_TRUE(panel.log.empty());
}

TEST_F(Settings, ButtonThatIsNotABooleanIsSkippedAndFollowingKeysStillApply) {
    file("[BUTTONS]\r\nHcursors=maybe\r\nVcursors=TRUE\r\nInvert=-1\r\n");
    read();
    EXPECT_EQ(panel.log, (std::vector<std::string>{"CWBVCursors=True", "CWBChaInv=True"}));
    EXPECT_FALSE(panel.buttons[0]);
}

TEST_F(Settings, ControlThatRefusesAValueSkipsOnlyThatKey) {
    file(kFullFile);
    panel.refuse = {"Hscaleindex", "Chaoffset", "Display", "Vcursors"};
    read();
    EXPECT_EQ(panel.log, (std::vector<std::string>{
                             "CWKChaLvl=7", "Cursor1=255", "Cursor2=65280", "Cursor3=16711680",
                             "Cursor4=65535", "Primarytrace=16776960", "Referencetrace=16711935",
                             "CWBHCursors=True", "CWBChaInv=True"}));
}

TEST_F(Settings, OffsetTextIsHandedToTheSlideAsItStands) {
    file("[SETTINGS]\r\nChaoffset= \"0.5\" \r\n");
    read();
    EXPECT_EQ(panel.log, (std::vector<std::string>{"CWSCHaOffset=0.5"}));
    file("[SETTINGS]\r\nChaoffset=0,5\r\n");
    panel.log.clear();
    read();
    EXPECT_TRUE(panel.log.empty()); // the slide refuses a comma
}

TEST_F(Settings, ReaderLeavesDefaultEmptyAndTheLastSectionAndKeySet) {
    file(kFullFile);
    read();
    EXPECT_EQ(ini.Default(), "");
    EXPECT_EQ(ini.Path(), path);
    EXPECT_EQ(ini.Section(), "BUTTONS");
    EXPECT_EQ(ini.Key(), "Invert");
}

TEST_F(Settings, LocationIsTheProgramFolderWhenItIsWritable) {
    const fs::path program = dir.path() / "bin";
    fs::create_directory(program);
    const SettingsLocation where = SettingsFile::location(program, dir.path() / "user");
    EXPECT_EQ(where.file, program / "ZORVIK.INI");
    EXPECT_TRUE(where.original.empty());
    EXPECT_EQ(where.readPath(), program / "ZORVIK.INI");
    EXPECT_FALSE(fs::exists(dir.path() / "user"));
    EXPECT_TRUE(fs::is_empty(program)); // the probe file is gone again
}

TEST_F(Settings, LocationIsThePerUserFolderWhenTheProgramFolderIsReadOnly) {
    const fs::path program = dir.path() / "bin";
    fs::create_directory(program);
    fs::permissions(program, fs::perms::owner_read | fs::perms::owner_exec);
    const fs::path user = dir.path() / "config" / "Zorvik";
    const SettingsLocation where = SettingsFile::location(program, user);
    EXPECT_EQ(where.file, user / "ZORVIK.INI");
    EXPECT_EQ(where.original, program / "ZORVIK.INI");
    // Nothing is made until the first save.
    EXPECT_FALSE(fs::exists(user));
}

TEST_F(Settings, LocationIsThePerUserFolderWhenTheProgramFolderIsNotAFolder) {
    // Unwritable whoever runs the test, root included.
    const fs::path program = dir.path() / "program-file";
    writeBytes(program, "x");
    const fs::path user = dir.path() / "user";
    EXPECT_EQ(SettingsFile::location(program, user).file, user / "ZORVIK.INI");
    EXPECT_EQ(SettingsFile::location(dir.path() / "missing", user).file, user / "ZORVIK.INI");
}

// A read-only program folder: the file beside the program is read while there is no per-user
// copy; the first save makes the copy from it, keeping what the program does not write.
TEST_F(Settings, WithAReadOnlyProgramFolderTheFileBesideTheProgramIsReadUntilTheCopyExists) {
    const fs::path program = dir.path() / "bin";
    fs::create_directory(program);
    const std::string beside = "; set up by the administrator\r\n[SETTINGS]\r\nHscaleindex=9\r\n"
                               "Site=Lab 2\r\n[PORTS]\r\nCOM1=/dev/ttyS7\r\n";
    writeBytes(program / "ZORVIK.INI", beside);
    fs::permissions(program, fs::perms::owner_read | fs::perms::owner_exec);
    const fs::path user = dir.path() / "config" / "zorvik";
    const SettingsLocation where = SettingsFile::location(program, user);
    EXPECT_EQ(where.readPath(), program / "ZORVIK.INI");
    EXPECT_EQ(SettingsFile::readPorts(where.readPath().string()),
              (std::map<int, std::string>{{1, "/dev/ttyS7"}}));
    FakeSettingsPanel panel;
    SettingsFile::read(ini, where.readPath().string(), panel);
    EXPECT_EQ(panel.timeRange, 9);

    panel.timeRange = 4;
    SettingsFile::write(ini, where, panel);
    ASSERT_TRUE(fs::exists(user / "ZORVIK.INI"));
    EXPECT_EQ(where.readPath(), user / "ZORVIK.INI");
    EXPECT_EQ(ini.Path(), (user / "ZORVIK.INI").string());
    EXPECT_TRUE(ini.Success());
    // The file beside the program is untouched; the copy holds its lines and the new keys.
    EXPECT_EQ(readBytes(program / "ZORVIK.INI"), beside);
    const std::string copy = readBytes(user / "ZORVIK.INI");
    EXPECT_EQ(copy.substr(0, 70), "; set up by the administrator\r\n[SETTINGS]\r\nHscaleindex=4\r\n"
                                  "Site=Lab 2\r\n");
    EXPECT_NE(copy.find("[PORTS]\r\nCOM1=/dev/ttyS7\r\n"), std::string::npos);
    EXPECT_NE(copy.find("[BUTTONS]\r\nHcursors="), std::string::npos);

    // From now on the copy is read and written; the original is not looked at again.
    writeBytes(user / "ZORVIK.INI", "[SETTINGS]\r\nHscaleindex=2\r\n");
    FakeSettingsPanel again;
    SettingsFile::read(ini, where.readPath().string(), again);
    EXPECT_EQ(again.timeRange, 2);
    SettingsFile::write(ini, where, again);
    EXPECT_EQ(readBytes(user / "ZORVIK.INI").find("Site="), std::string::npos);
}

TEST_F(Settings, WithAReadOnlyProgramFolderAndNoFileBesideItTheCopyStartsEmpty) {
    const fs::path program = dir.path() / "bin";
    fs::create_directory(program);
    fs::permissions(program, fs::perms::owner_read | fs::perms::owner_exec);
    const fs::path user = dir.path() / "config" / "zorvik";
    const SettingsLocation where = SettingsFile::location(program, user);
    EXPECT_EQ(where.readPath(), program / "ZORVIK.INI");
    FakeSettingsPanel panel;
    SettingsFile::write(ini, where, panel);
    EXPECT_EQ(readBytes(user / "ZORVIK.INI").substr(0, 27), "[SETTINGS]\r\nHscaleindex=0\r\n");
}

TEST_F(Settings, PortsSectionMapsPortNumbersToDevicePaths) {
    writeBytes(path, fixture("latin1.ini"));
    const std::map<int, std::string> ports = SettingsFile::readPorts(path);
    EXPECT_EQ(ports, (std::map<int, std::string>{{1, "/dev/ttyUSB7"},
                                                 {3, "/dev/serial/by-id/usb-Zorvik_Probe-if00"}}));
}

TEST_F(Settings, PortsOfAMissingFileAreEmpty) {
    EXPECT_TRUE(SettingsFile::readPorts(dir.file("missing.ini")).empty());
}

TEST_F(Settings, WriterNeverWritesAPortsSection) {
    SettingsFile::write(ini, path, panel);
    EXPECT_EQ(readBytes(path).find("PORTS"), std::string::npos);
}

} // namespace
