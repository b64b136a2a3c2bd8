// Saving and loading the Waveform Data File: keys and their order, updating an older file in
// place, exact round trips, and what a load applies.
#include "storage/WaveformFile.h"
#include "GermanLocale.h"
#include "IniTestSupport.h"
#include "WaveformTestSupport.h"
#include "storage/VbConvert.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace zorvik;
using namespace zorvik::testing;

namespace {

class WaveformFileTest : public ::testing::Test {
protected:
    std::string save(const WaveformRecord& r, const std::string& name = "trace.wdf") {
        const std::string path = dir.file(name);
        EXPECT_TRUE(WaveformFile::SaveWaveformFile(ini, path, r));
        return path;
    }

    TempDir dir;
    cInifile ini;
};

TEST_F(WaveformFileTest, ANewFileHoldsEveryKeyInOrder) {
    WaveformRecord r = probeRecord(0x04);
    r.timeRange = 2.5; // written rounded, halves to even
    r.graphOffsetValue = 0.1;
    r.sampleInterval = 5e-8f;
    const std::string path = save(r);

    std::string expected = "[APPLICATION]\r\nName=Zorvik\r\nVersion=1.1.1\r\n"
                           "[SETTINGS]\r\nHscaleindex=2\r\nVscaleindex=3\r\nGraphoffset=0.1\r\n"
                           "Chaoffset=-1.5\r\n"
                           "[BUTTONS]\r\nInvert=True\r\nReference=True\r\n"
                           "[ANALOGTRACE]\r\n";
    for (int line = 1; line <= 7; ++line) {
        expected += "Reftrace" + std::to_string(line) + "=";
        for (int i = (line - 1) * 20; i < std::min(line * 20, 128); ++i)
            expected += VbConvert::singleToText(r.volts[static_cast<std::size_t>(i)]) +
                        (i < 127 ? "," : "");
        expected += "\r\n";
    }
    expected += "Tadj=5E-08\r\n"
                "[HARDWARE]\r\nRange=36\r\nTriggerlevel=16\r\nTimebase=6\r\nTriggerdef=64\r\n";
    EXPECT_EQ(readBytes(path), expected);
    EXPECT_EQ(ini.Path(), path);
}

TEST_F(WaveformFileTest, TheFirstLineOfSamplesReadsAsTheProbeWroteIt) {
    const std::string path = save(probeRecord(0x00));
    ini.setSection("ANALOGTRACE");
    ini.setKey("Reftrace1");
    EXPECT_EQ(ini.Value(), "-0.4920633,-0.4761903,-0.4603173,-0.4444443,-0.4285713,-0.4126982,"
                           "-0.3968252,-0.3809522,-0.3650792,-0.3492062,-0.3333332,-0.3174602,"
                           "-0.3015872,-0.2857142,-0.2698412,-0.2539681,-0.2380951,-0.2222221,"
                           "-0.2063491,-0.1904761,");
    (void)path;
}

TEST_F(WaveformFileTest, SavingOverAFileKeepsItsExtraKeysAndSections) {
    const std::string path = dir.file("old.wdf");
    writeBytes(path, "[APPLICATION]\r\nName=Zorvik\r\nVersion=1.0\r\nAuthor=R. Field\r\n"
                     "[NOTES]\r\nProbe=ZP-1\r\n"
                     "[BUTTONS]\r\nReference=False\r\nInvert=True\r\n");
    WaveformRecord r = probeRecord(0x08);
    r.invert = false;
    r.reference = false;
    ASSERT_TRUE(WaveformFile::SaveWaveformFile(ini, path, r));
    const std::string text = readBytes(path);
    EXPECT_EQ(text.rfind("[APPLICATION]\r\nName=Zorvik\r\nVersion=1.1.1\r\nAuthor=R. Field\r\n"
                         "[NOTES]\r\nProbe=ZP-1\r\n"
                         "[BUTTONS]\r\nReference=True\r\nInvert=False\r\n[SETTINGS]\r\n",
                         0),
              0u)
        << text;
    ini.setSection("NOTES");
    ini.setKey("Probe");
    EXPECT_EQ(ini.Value(), "ZP-1");
}

TEST_F(WaveformFileTest, ReferenceIsTrueAndVersionIs111EveryTime) {
    WaveformRecord r = probeRecord(0x00);
    r.reference = false;
    const std::string path = save(r);
    save(r);
    ini.setSection("BUTTONS");
    ini.setKey("Reference");
    EXPECT_EQ(ini.Value(), "True");
    ini.setSection("APPLICATION");
    ini.setKey("Version");
    EXPECT_EQ(ini.Value(), "1.1.1");

    WaveformRecord loaded = untouchedRecord();
    EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded), WaveformLoadResult::Loaded);
    EXPECT_TRUE(loaded.reference);
}

TEST_F(WaveformFileTest, SettingsAreWrittenAsTheyStand) {
    WaveformRecord r = probeRecord(0x00);
    r.timeRange = 3.5;
    r.chaLevel = 7;
    r.graphOffsetValue = 37.5;
    r.chaOffset = 0.30000000000000004;
    r.invert = false;
    r.state.bytSwitchSetting = 255;
    r.state.bytTriggerLvl = 0;
    const std::string path = save(r);
    auto value = [&](const char* section, const char* key) {
        ini.setSection(section);
        ini.setKey(key);
        return ini.Value();
    };
    EXPECT_EQ(value("SETTINGS", "Hscaleindex"), "4");
    EXPECT_EQ(value("SETTINGS", "Vscaleindex"), "7");
    EXPECT_EQ(value("SETTINGS", "Graphoffset"), "37.5");
    EXPECT_EQ(value("SETTINGS", "Chaoffset"), "0.30000000000000004");
    EXPECT_EQ(value("BUTTONS", "Invert"), "False");
    EXPECT_EQ(value("HARDWARE", "Range"), "255");
    EXPECT_EQ(value("HARDWARE", "Triggerlevel"), "0");
    EXPECT_EQ(value("ANALOGTRACE", "Tadj"), "5E-05");
    (void)path;
}

TEST_F(WaveformFileTest, EveryRangeAndEveryCountLoadsAsTheNearestSingleToItsSavedText) {
    for (std::uint8_t range : kRangeCodes) {
        for (int seed : {0, 63 - 20}) {
            const WaveformRecord r = probeRecord(range, seed);
            const std::string path = save(r);
            WaveformRecord loaded = untouchedRecord();
            ASSERT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded),
                      WaveformLoadResult::Loaded);
            for (std::size_t i = 0; i < 128; ++i)
                ASSERT_EQ(bits(loaded.volts[i]), bits(asFiled(r.volts[i])))
                    << int(range) << " " << i;
        }
    }
}

TEST_F(WaveformFileTest, EveryTimeBasesSampleIntervalSavesAndLoadsBitIdentically) {
    for (float interval : kSampleIntervals) {
        WaveformRecord r = probeRecord(0x04);
        r.sampleInterval = interval;
        const std::string path = save(r);
        WaveformRecord loaded = untouchedRecord();
        ASSERT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded), WaveformLoadResult::Loaded);
        EXPECT_EQ(bits(loaded.sampleInterval), bits(interval));
    }
}

TEST_F(WaveformFileTest, RoundTripsAreTheSameUnderAGermanLocale) {
    GermanLocale german;
    ASSERT_TRUE(german.available()) << "the set-up installs de_DE.UTF-8";
    for (std::uint8_t range : kRangeCodes) {
        WaveformRecord r = probeRecord(range, 9);
        r.sampleInterval = kSampleIntervals[range / 4];
        r.chaOffset = -0.25;
        r.graphOffsetValue = 2.5;
        const std::string path = save(r);
        const std::string text = readBytes(path);
        EXPECT_NE(text.find("Chaoffset=-0.25\r\n"), std::string::npos);
        EXPECT_NE(text.find("Graphoffset=2.5\r\n"), std::string::npos);
        EXPECT_NE(text.find("Tadj=" + VbConvert::singleToText(r.sampleInterval) + "\r\n"),
                  std::string::npos);
        EXPECT_EQ(VbConvert::singleToText(r.sampleInterval).find(','), std::string::npos);
        WaveformRecord loaded = untouchedRecord();
        ASSERT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded), WaveformLoadResult::Loaded);
        for (std::size_t i = 0; i < 128; ++i)
            ASSERT_EQ(bits(loaded.volts[i]), bits(asFiled(r.volts[i]))) << i;
        EXPECT_EQ(bits(loaded.sampleInterval), bits(r.sampleInterval));
        EXPECT_EQ(loaded.chaOffset, -0.25);
    }
    ini.setSection("SETTINGS");
    ini.setKey("Graphoffset");
    EXPECT_EQ(ini.Value(), "2.5");
}

TEST_F(WaveformFileTest, ALoadAppliesSettingsButtonsHardwareSamplesAndTadj) {
    const WaveformRecord r = probeRecord(0x08, 17);
    const std::string path = save(r);
    WaveformRecord loaded = untouchedRecord();
    ASSERT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded), WaveformLoadResult::Loaded);
    EXPECT_EQ(loaded.timeRange, 7);
    EXPECT_EQ(loaded.chaLevel, 3);
    EXPECT_EQ(loaded.chaOffset, -1.5);
    EXPECT_TRUE(loaded.invert);
    EXPECT_TRUE(loaded.reference);
    EXPECT_EQ(loaded.state.bytSwitchSetting, 0x28);
    EXPECT_EQ(loaded.state.bytTriggerLvl, 16);
    EXPECT_EQ(loaded.state.bytTimebaseDef, 6);
    EXPECT_EQ(loaded.state.bytTriggerDef, 0x40);
    // The voltmeter bytes are not in the file and stay as they were.
    EXPECT_EQ(loaded.state.bytDVM100, 9);
    EXPECT_EQ(bits(loaded.sampleInterval), bits(5e-5f));
    // The pan position is written but never read back.
    EXPECT_EQ(loaded.graphOffsetValue, 0.0);
}

// Written by an older Windows build: CRLF, exponent and leading-dot forms, keys in mixed case,
// a comment, a key and a section this program does not know. Each sample is the single
// nearest to its text.
TEST_F(WaveformFileTest, AFileInTheWindowsStyleLoadsEachSampleAsTheNearestSingleToItsText) {
    constexpr int kCounts[128] = {
        31, 34, 37, 40, 42, 45, 48, 50, 52, 54, 56, 57, 59, 60, 60, 61, 61, 61, 60, 60, 59, 57,
        56, 54, 52, 50, 48, 45, 42, 40, 37, 34, 31, 28, 25, 22, 20, 17, 14, 12, 10, 8,  6,  5,
        3,  2,  2,  1,  1,  1,  2,  2,  3,  5,  6,  8,  10, 12, 14, 17, 20, 22, 25, 28, 31, 34,
        37, 40, 42, 45, 48, 50, 52, 54, 56, 57, 59, 60, 60, 61, 61, 61, 60, 60, 59, 57, 56, 54,
        52, 50, 48, 45, 42, 40, 37, 34, 31, 28, 25, 22, 20, 17, 14, 12, 10, 8,  6,  5,  3,  2,
        2,  1,  1,  1,  2,  2,  3,  5,  6,  8,  10, 12, 14, 17, 20, 22, 25, 28};
    WaveformRecord loaded = untouchedRecord();
    ASSERT_EQ(WaveformFile::LoadWaveformFile(ini, wdfFixture("windows-style.wdf").string(), loaded),
              WaveformLoadResult::Loaded);
    EXPECT_EQ(loaded.timeRange, 9);
    EXPECT_EQ(loaded.chaLevel, 4);
    EXPECT_EQ(loaded.chaOffset, -1.5);
    EXPECT_TRUE(loaded.invert);
    EXPECT_TRUE(loaded.reference);
    EXPECT_EQ(loaded.state.bytSwitchSetting, 32);
    EXPECT_EQ(loaded.state.bytTriggerLvl, 16);
    EXPECT_EQ(loaded.state.bytTimebaseDef, 4);
    EXPECT_EQ(loaded.state.bytTriggerDef, 64);
    for (std::size_t i = 0; i < 128; ++i)
        EXPECT_EQ(bits(loaded.volts[i]), bits(asFiled(probeVolts(kCounts[i], 0x00)))) << i;
    // Spot checks straight from the file's own texts.
    EXPECT_EQ(bits(loaded.volts[1]), bits(nearestSingle("4.761903E-02")));
    EXPECT_EQ(bits(loaded.volts[3]), bits(nearestSingle(".1428571")));
    EXPECT_EQ(bits(loaded.volts[40]), bits(nearestSingle("-0.3333332")));
    EXPECT_EQ(bits(loaded.sampleInterval), bits(5e-6f));
}

// A 100 V trace as an older Windows build wrote it, opened under a German locale: CRLF,
// upper-case .WDF, numbers with "E+00" and "E+01" exponents, leading dots and signs. Every
// sample is the single nearest to its own text, value for value.
TEST_F(WaveformFileTest, AWindowsWrittenFileLoadsValueForValueUnderAGermanLocale) {
    GermanLocale german;
    ASSERT_TRUE(german.available()) << "the set-up installs de_DE.UTF-8";
    const std::vector<std::string> texts = {"-4.920633E+01", "-3.174602E+01", "-1.587301E+01",
                                            "-4.761903E+00", "-1.587301E+00", "0",
                                            "1.587301E+00",  "3.174602",      "4.761903E+00",
                                            ".7936505",      "-.3174602",     "2.222221E+01",
                                            "4.920633E+01",  "1.587301",      "-0.4920633",
                                            "9.523806E-02",  "-9.523806E-02", "7.936505E+00",
                                            "-7.936505",     "1.2698408E+01"};
    std::string samples;
    for (int line = 1; line <= 7; ++line) {
        samples += "Reftrace" + std::to_string(line) + "=";
        for (int i = (line - 1) * 20; i < std::min(line * 20, 128); ++i)
            samples += texts[static_cast<std::size_t>(i) % texts.size()] + (i < 127 ? "," : "");
        samples += "\r\n";
    }
    const std::string path = dir.file("BENCH100V.WDF");
    writeBytes(path, "[APPLICATION]\r\nName=Zorvik\r\nVersion=1.1.1\r\n[SETTINGS]\r\n"
                     "Hscaleindex=4\r\nVscaleindex=1\r\nGraphoffset=0\r\nChaoffset=.5\r\n"
                     "[BUTTONS]\r\nInvert=False\r\nReference=True\r\n[ANALOGTRACE]\r\n" +
                         samples +
                         "Tadj=5E-08\r\n[HARDWARE]\r\nRange=40\r\nTriggerlevel=4\r\n"
                         "Timebase=0\r\nTriggerdef=65\r\n");
    WaveformRecord loaded = untouchedRecord();
    ASSERT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded), WaveformLoadResult::Loaded);
    for (std::size_t i = 0; i < 128; ++i)
        EXPECT_EQ(bits(loaded.volts[i]), bits(nearestSingle(texts[i % texts.size()]))) << i;
    EXPECT_EQ(bits(loaded.volts[14]), 0xBEFBEFB9u); // "-0.4920633"
    EXPECT_EQ(bits(loaded.sampleInterval), bits(5e-8f));
    EXPECT_EQ(loaded.chaOffset, 0.5);
    EXPECT_EQ(loaded.state.bytSwitchSetting, 40);
}

TEST_F(WaveformFileTest, OlderNumberFormsLoadAsTheyRead) {
    WaveformRecord loaded = untouchedRecord();
    ASSERT_EQ(WaveformFile::LoadWaveformFile(ini, wdfFixture("older-forms.wdf").string(), loaded),
              WaveformLoadResult::Loaded);
    EXPECT_EQ(loaded.timeRange, 2); // "2.5", halves to even
    EXPECT_EQ(loaded.chaLevel, 4);  // "3.5abc": the leading number, rounded
    EXPECT_EQ(loaded.chaOffset, 0.25);
    EXPECT_FALSE(loaded.invert);
    EXPECT_TRUE(loaded.reference); // "1"
    const float expected[8] = {0.5f,  -0.25f,
                               0.0f,  355.5554f,
                               5e-8f, asFiled(probeVolts(0, 0x00)),
                               1e-7f, asFiled(probeVolts(30, 0x00))};
    for (std::size_t i = 0; i < 128; ++i)
        EXPECT_EQ(bits(loaded.volts[i]), bits(expected[i % 8])) << i;
    EXPECT_EQ(bits(loaded.sampleInterval), bits(1e-7f));
    EXPECT_EQ(loaded.state.bytSwitchSetting, 4);
}

TEST_F(WaveformFileTest, AnUpperCaseExtensionLoads) {
    const std::string path = dir.file("TRACE.WDF");
    writeBytes(path, readBytes(wdfFixture("windows-style.wdf")));
    WaveformRecord loaded = untouchedRecord();
    EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded), WaveformLoadResult::Loaded);
    EXPECT_EQ(loaded.timeRange, 9);
}

TEST_F(WaveformFileTest, ANameThatMerelyEndsInWdfPasses) {
    EXPECT_TRUE(WaveformFile::hasWaveformExtension("trace.wdf"));
    EXPECT_TRUE(WaveformFile::hasWaveformExtension("TRACE.Wdf"));
    EXPECT_TRUE(WaveformFile::hasWaveformExtension("notes_wdf"));
    EXPECT_TRUE(WaveformFile::hasWaveformExtension("wdf"));
    EXPECT_FALSE(WaveformFile::hasWaveformExtension("trace.txt"));
    EXPECT_FALSE(WaveformFile::hasWaveformExtension("trace.wdf "));
    EXPECT_FALSE(WaveformFile::hasWaveformExtension("df"));
    EXPECT_FALSE(WaveformFile::hasWaveformExtension(""));

    const std::string path = dir.file("notes_wdf");
    writeBytes(path, readBytes(wdfFixture("windows-style.wdf")));
    WaveformRecord loaded = untouchedRecord();
    EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded), WaveformLoadResult::Loaded);
}

TEST_F(WaveformFileTest, ATxtFileIsNotReadAtAll) {
    const std::string path = dir.file("trace.txt");
    writeBytes(path, readBytes(wdfFixture("windows-style.wdf")));
    ini.setPath("elsewhere.ini");
    WaveformRecord loaded = untouchedRecord();
    EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded),
              WaveformLoadResult::NotWaveformFile);
    EXPECT_EQ(loaded.timeRange, 1);
    EXPECT_EQ(ini.Path(), "elsewhere.ini");
}

TEST_F(WaveformFileTest, MissingSettingsAndButtonsLeaveTheirValuesAndTheFileStillLoads) {
    std::string text = readBytes(wdfFixture("windows-style.wdf"));
    for (const char* key : {"Hscaleindex=9\r\n", "VScaleIndex=4\r\n", "INVERT=True\r\n",
                            "Range=32\r\n", "Timebase=4\r\n"})
        text.erase(text.find(key), std::string(key).size());
    text.replace(text.find("Chaoffset=-1.5"), 14, "Chaoffset=");
    const std::string path = dir.file("sparse.wdf");
    writeBytes(path, text);
    WaveformRecord loaded = untouchedRecord();
    ASSERT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded), WaveformLoadResult::Loaded);
    EXPECT_EQ(loaded.timeRange, 1);
    EXPECT_EQ(loaded.chaLevel, 1);
    EXPECT_EQ(loaded.chaOffset, 3.25);
    EXPECT_FALSE(loaded.invert);
    EXPECT_EQ(loaded.state.bytSwitchSetting, 0x18);
    EXPECT_EQ(loaded.state.bytTimebaseDef, 10);
    EXPECT_EQ(loaded.state.bytTriggerLvl, 16);
    EXPECT_TRUE(loaded.reference);
}

TEST_F(WaveformFileTest, AnEmptyOrMissingTadjKeepsTheSampleInterval) {
    const std::string original = readBytes(wdfFixture("windows-style.wdf"));
    for (const std::string& replacement : {std::string("TADJ=\r\n"), std::string()}) {
        std::string text = original;
        text.replace(text.find("TADJ=5E-06\r\n"), 12, replacement);
        const std::string path = dir.file("no-tadj.wdf");
        writeBytes(path, text);
        WaveformRecord loaded = untouchedRecord();
        ASSERT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded), WaveformLoadResult::Loaded);
        EXPECT_EQ(loaded.sampleInterval, 2e-3f);
        EXPECT_EQ(bits(loaded.volts[1]), bits(asFiled(probeVolts(34, 0x00))));
    }
}

} // namespace
