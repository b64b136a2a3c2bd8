// Waveform Data Files that are wrong in every way we can think of: the load stops at the first
// bad value and keeps what it applied before it; a failed save leaves the file as it was.
#include "IniTestSupport.h"
#include "WaveformTestSupport.h"
#include "storage/WaveformFile.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>

using namespace zorvik;
using namespace zorvik::testing;

namespace {

namespace fs = std::filesystem;

class WaveformBadInput : public ::testing::Test {
protected:
    /// The Windows-style fixture with `from` replaced by `to` (first occurrence), loaded.
    WaveformLoadResult loadEdited(const std::string& from, const std::string& to) {
        std::string text = readBytes(wdfFixture("windows-style.wdf"));
        const auto at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        if (at != std::string::npos)
            text.replace(at, from.size(), to);
        return loadText(text);
    }
    WaveformLoadResult loadText(const std::string& text) {
        const std::string path = dir.file("edited.wdf");
        writeBytes(path, text);
        return WaveformFile::LoadWaveformFile(ini, path, record);
    }
    // The save builds its file in the temporary folder; each test has its own.
    void SetUp() override {
        if (const char* old = std::getenv("TMPDIR"))
            oldTmp = old;
        fs::create_directory(tmp);
        ::setenv("TMPDIR", tmp.c_str(), 1);
    }
    void TearDown() override {
        if (oldTmp)
            ::setenv("TMPDIR", oldTmp->c_str(), 1);
        else
            ::unsetenv("TMPDIR");
    }
    /// Files the save left in the temporary folder.
    int scratchFiles() const {
        return static_cast<int>(
            std::distance(fs::directory_iterator(tmp), fs::directory_iterator()));
    }

    TempDir dir;
    cInifile ini;
    WaveformRecord record = untouchedRecord();
    fs::path tmp = dir.path() / "tmp";
    std::optional<std::string> oldTmp;
};

TEST_F(WaveformBadInput, ADifferentNameLeavesEverySettingUntouched) {
    for (const char* name : {"Name=Other", "Name=zorvik", "Name=Zorvik2", "Name="}) {
        record = untouchedRecord();
        EXPECT_EQ(loadEdited("Name=Zorvik", name), WaveformLoadResult::NotForThisApplication)
            << name;
        EXPECT_EQ(record.timeRange, 1);
        EXPECT_EQ(record.chaOffset, 3.25);
        EXPECT_FALSE(record.reference);
        EXPECT_EQ(record.state.bytSwitchSetting, 0x18);
        EXPECT_EQ(record.volts[0], 99.0f);
        EXPECT_EQ(record.sampleInterval, 2e-3f);
    }
}

TEST_F(WaveformBadInput, AMissingReftrace7FailsAfterSamples1To120WereReplaced) {
    const std::string text = readBytes(wdfFixture("windows-style.wdf"));
    const auto start = text.find("Reftrace7=");
    const auto end = text.find("\r\n", start) + 2;
    EXPECT_EQ(loadText(text.substr(0, start) + text.substr(end)), WaveformLoadResult::Failed);
    EXPECT_EQ(bits(record.volts[0]), bits(asFiled(probeVolts(31, 0x00))));
    EXPECT_EQ(bits(record.volts[119]), bits(asFiled(probeVolts(8, 0x00))));
    for (std::size_t i = 120; i < 128; ++i)
        EXPECT_EQ(record.volts[i], 99.0f) << i;
    // What comes before the samples was applied; Tadj, after them, was not.
    EXPECT_EQ(record.timeRange, 9);
    EXPECT_EQ(record.state.bytTriggerDef, 64);
    EXPECT_EQ(record.sampleInterval, 2e-3f);
}

// Twenty samples of 13 characters and a comma make a line of 280 characters; only 254 are
// read, so the 19th sample is cut to "-1" and runs into the next line's first sample.
TEST_F(WaveformBadInput, ASevenDigitExponentLinePast254CharactersFails) {
    EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, wdfFixture("long-line.wdf").string(), record),
              WaveformLoadResult::Failed);
    for (std::size_t i = 0; i < 18; ++i)
        EXPECT_EQ(bits(record.volts[i]),
                  bits(asFiled(probeVolts(31 - 1 - static_cast<int>(i % 6), 0x00))))
            << i;
    EXPECT_EQ(record.volts[18], 99.0f);
    EXPECT_EQ(record.sampleInterval, 2e-3f);
}

TEST_F(WaveformBadInput, ALineCutAfterAFullSampleLosesSamplesAndFails) {
    // 126 samples "0," make 252 characters; the cut at 254 leaves "00" of the last one, still
    // a number, and the 128th sample is lost.
    std::string line;
    while (line.size() < 252)
        line += "0,";
    line += "00000"; // the cut leaves "00" of it, still a number
    const std::string text =
        "[APPLICATION]\r\nName=Zorvik\r\n[ANALOGTRACE]\r\nReftrace1=" + line + "\r\n";
    EXPECT_EQ(loadText(text), WaveformLoadResult::Failed);
    for (std::size_t i = 0; i < 127; ++i)
        EXPECT_EQ(record.volts[i], 0.0f) << i;
    EXPECT_EQ(record.volts[127], 99.0f);
}

TEST_F(WaveformBadInput, MoreThan128SamplesLoadAndTheRestIsIgnored) {
    EXPECT_EQ(loadEdited("-4.761903E-02\r\n", "-4.761903E-02,1,2,3\r\n"),
              WaveformLoadResult::Loaded);
    EXPECT_EQ(bits(record.volts[127]), bits(asFiled(probeVolts(28, 0x00))));
    EXPECT_EQ(bits(record.sampleInterval), bits(5e-6f));
}

TEST_F(WaveformBadInput, FewerThan128SamplesFailAfterStoringThoseThere) {
    EXPECT_EQ(loadEdited(",-4.761903E-02\r\n", "\r\n"), WaveformLoadResult::Failed);
    EXPECT_EQ(bits(record.volts[126]), bits(asFiled(probeVolts(25, 0x00))));
    EXPECT_EQ(record.volts[127], 99.0f);
}

TEST_F(WaveformBadInput, AnEmptyPieceFails) {
    EXPECT_EQ(loadEdited("Reftrace1=0,", "Reftrace1=0,,"), WaveformLoadResult::Failed);
    EXPECT_EQ(record.volts[0], 0.0f);
    EXPECT_EQ(record.volts[1], 99.0f);
}

TEST_F(WaveformBadInput, ASampleThatIsNotANumberFailsAndKeepsTheSamplesBeforeIt) {
    EXPECT_EQ(loadEdited("Reftrace1=0,4.761903E-02,", "Reftrace1=0,4.761903E-02,volts,"),
              WaveformLoadResult::Failed);
    EXPECT_EQ(record.volts[0], 0.0f);
    EXPECT_EQ(bits(record.volts[1]), bits(asFiled(probeVolts(34, 0x00))));
    EXPECT_EQ(record.volts[2], 99.0f);
}

TEST_F(WaveformBadInput, AHardwareByteOver255FailsAfterTheBytesBeforeIt) {
    EXPECT_EQ(loadEdited("Triggerlevel=16", "Triggerlevel=256"), WaveformLoadResult::Failed);
    EXPECT_EQ(record.state.bytSwitchSetting, 32);
    EXPECT_EQ(record.state.bytTriggerLvl, 64);
    EXPECT_EQ(record.state.bytTimebaseDef, 10);
    EXPECT_EQ(record.volts[0], 99.0f);
}

TEST_F(WaveformBadInput, HardwareBytesAreWholeNumbersFrom0To255) {
    EXPECT_EQ(loadEdited("Range=32", "Range=12.5"), WaveformLoadResult::Loaded);
    EXPECT_EQ(record.state.bytSwitchSetting, 12);
    for (const char* bad : {"Range=-1", "Range=255.5", "Range=abc", "Range=7x", "Range=1e9"}) {
        record = untouchedRecord();
        EXPECT_EQ(loadEdited("Range=32", bad), WaveformLoadResult::Failed) << bad;
        EXPECT_EQ(record.state.bytSwitchSetting, 0x18);
        EXPECT_EQ(record.timeRange, 9);
    }
}

TEST_F(WaveformBadInput, ValuesThatDoNotConvertEndTheLoadWhereTheyStand) {
    EXPECT_EQ(loadEdited("INVERT=True", "INVERT=maybe"), WaveformLoadResult::Failed);
    EXPECT_EQ(record.chaOffset, -1.5);
    EXPECT_FALSE(record.invert);
    EXPECT_FALSE(record.reference);
    record = untouchedRecord();
    EXPECT_EQ(loadEdited("Chaoffset=-1.5", "Chaoffset=-1,5"), WaveformLoadResult::Failed);
    EXPECT_EQ(record.chaLevel, 4);
    EXPECT_EQ(record.chaOffset, 3.25);
    record = untouchedRecord();
    EXPECT_EQ(loadEdited("Hscaleindex=9", "Hscaleindex=1e300"), WaveformLoadResult::Failed);
    EXPECT_EQ(record.timeRange, 1);
    record = untouchedRecord();
    EXPECT_EQ(loadEdited("TADJ=5E-06", "TADJ=5E-06s"), WaveformLoadResult::Failed);
    EXPECT_EQ(bits(record.volts[127]), bits(asFiled(probeVolts(28, 0x00))));
    EXPECT_EQ(record.sampleInterval, 2e-3f);
}

TEST_F(WaveformBadInput, ATruncatedFileFailsWithWhatItHeldApplied) {
    const std::string text = readBytes(wdfFixture("windows-style.wdf"));
    EXPECT_EQ(loadText(text.substr(0, text.find("REFTRACE4=") + 40)), WaveformLoadResult::Failed);
    EXPECT_EQ(record.timeRange, 9);
    EXPECT_EQ(bits(record.volts[59]), bits(asFiled(probeVolts(17, 0x00))));
    // The cut leaves "-9.523806" of the 63rd sample: -6 counts in the range the record still
    // has, since HARDWARE was cut off.
    EXPECT_EQ(record.state.bytSwitchSetting, 0x18);
    EXPECT_EQ(bits(record.volts[62]), bits(asFiled(probeVolts(25, 0x08))));
    EXPECT_EQ(record.volts[63], 99.0f);
}

TEST_F(WaveformBadInput, BinaryGarbageNamedWdfIsNotForThisApplication) {
    EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, wdfFixture("garbage.wdf").string(), record),
              WaveformLoadResult::NotForThisApplication);
    EXPECT_EQ(record.volts[0], 99.0f);
    using namespace std::string_literals;
    EXPECT_NE(loadText("\0\0\0[APPLICATION]\nName=Zorvik\0\n\xff\xfe"s),
              WaveformLoadResult::Loaded);
}

TEST_F(WaveformBadInput, AMissingOrEmptyFileIsNotForThisApplication) {
    EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, dir.file("absent.wdf"), record),
              WaveformLoadResult::NotForThisApplication);
    EXPECT_EQ(loadText(""), WaveformLoadResult::NotForThisApplication);
}

TEST_F(WaveformBadInput, AFolderNamedWdfIsNeitherReadNorReplaced) {
    const fs::path folder = dir.path() / "x.wdf";
    fs::create_directory(folder);
    writeBytes(folder / "inside.txt", "kept");
    EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, folder.string(), record),
              WaveformLoadResult::NotForThisApplication);
    const int before = scratchFiles();
    EXPECT_FALSE(WaveformFile::SaveWaveformFile(ini, folder.string(), probeRecord(0x00)));
    EXPECT_TRUE(fs::is_directory(folder));
    EXPECT_EQ(readBytes(folder / "inside.txt"), "kept");
    EXPECT_EQ(scratchFiles(), before);
}

TEST_F(WaveformBadInput, AFailedSaveToAReadOnlyFileLeavesItAsItWas) {
    const std::string path = dir.file("kept.wdf");
    const std::string old = readBytes(wdfFixture("windows-style.wdf"));
    writeBytes(path, old);
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const int before = scratchFiles();
    EXPECT_FALSE(WaveformFile::SaveWaveformFile(ini, path, probeRecord(0x08)));
    EXPECT_EQ(readBytes(path), old);
    EXPECT_EQ(scratchFiles(), before);
    EXPECT_EQ(ini.Path(), path);
}

TEST_F(WaveformBadInput, AFailedSaveIntoAReadOnlyFolderCreatesNothing) {
    const fs::path folder = dir.path() / "locked";
    fs::create_directory(folder);
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    const std::string path = (folder / "new.wdf").string();
    EXPECT_FALSE(WaveformFile::SaveWaveformFile(ini, path, probeRecord(0x00)));
    EXPECT_FALSE(fs::exists(path));
    EXPECT_FALSE(
        WaveformFile::SaveWaveformFile(ini, dir.file("missing/new.wdf"), probeRecord(0x00)));
    EXPECT_EQ(scratchFiles(), 0);
}

TEST_F(WaveformBadInput, ASuccessfulSaveLeavesNoScratchFileBehind) {
    EXPECT_TRUE(WaveformFile::SaveWaveformFile(ini, dir.file("new.wdf"), probeRecord(0x00)));
    EXPECT_TRUE(WaveformFile::SaveWaveformFile(ini, dir.file("new.wdf"), probeRecord(0x04)));
    EXPECT_EQ(scratchFiles(), 0);
}

TEST_F(WaveformBadInput, SavingToAnEmptyNameWritesNothing) {
    const int before = scratchFiles();
    EXPECT_FALSE(WaveformFile::SaveWaveformFile(ini, "", probeRecord(0x00)));
    EXPECT_EQ(scratchFiles(), before);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 1);
}

} // namespace
