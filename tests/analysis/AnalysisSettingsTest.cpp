// The [ANALYSIS] section of the settings file: read back as written, the other sections left
// byte for byte, nothing written when nothing changes, the per-user copy started from the file
// beside the program, and bad or missing values giving the defaults.
#include "analysis/AnalysisSettings.h"
#include "../storage/IniTestSupport.h"

#include <gtest/gtest.h>

using namespace zorvik;
using namespace zorvik::testing;

namespace {

const std::string kPanel = "[SETTINGS]\r\nHscaleindex=3\r\nVscaleindex=1\r\nChaoffset=0\r\n"
                           "[BUTTONS]\r\nHcursors=False\r\n";

} // namespace

TEST(AnalysisSettings, WhatIsWrittenReadsBackAndThePanelsSectionsStayAsTheyWere) {
    TempDir dir;
    const std::filesystem::path file = dir.file("ZORVIK.INI");
    writeBytes(file, kPanel);
    AnalysisSettings s(SettingsLocation{file, {}});
    ASSERT_TRUE(s.write({{"SpectrumWindow", "flattop"}, {"SpectrumAverage", "12"}}));
    EXPECT_EQ(readBytes(file),
              kPanel + "[ANALYSIS]\r\nSpectrumWindow=flattop\r\nSpectrumAverage=12\r\n");
    EXPECT_EQ(s.text("SpectrumWindow"), "flattop");
    EXPECT_EQ(s.number("SpectrumAverage", 1, 100, 1), 12);
    EXPECT_FALSE(s.text("Missing").has_value());
    EXPECT_EQ(s.number("Missing", 1, 100, 7), 7);
    // A value can be empty and is still there.
    ASSERT_TRUE(s.write({{"Empty", ""}}));
    EXPECT_EQ(s.text("Empty"), "");
}

TEST(AnalysisSettings, AFileThatWouldNotChangeIsNotTouched) {
    TempDir dir;
    const std::filesystem::path file = dir.file("ZORVIK.INI");
    AnalysisSettings s(SettingsLocation{file, {}});
    ASSERT_TRUE(s.write({{"CompareVolts", "0.5"}}));
    const auto before = std::filesystem::last_write_time(file);
    const std::filesystem::file_time_type earlier = before - std::chrono::hours(1);
    std::filesystem::last_write_time(file, earlier);
    ASSERT_TRUE(s.write({{"CompareVolts", "0.5"}}));
    EXPECT_EQ(std::filesystem::last_write_time(file), earlier);
}

TEST(AnalysisSettings, BadValuesGiveTheDefaults) {
    TempDir dir;
    const std::filesystem::path file = dir.file("ZORVIK.INI");
    writeBytes(file, "[ANALYSIS]\r\nA=12x\r\nB=500\r\nC=-3\r\nD=1.5e\r\nE=0.25\r\nF=inf\r\n");
    AnalysisSettings s(SettingsLocation{file, {}});
    EXPECT_EQ(s.number("A", 1, 100, 4), 4);
    EXPECT_EQ(s.number("B", 1, 100, 4), 4);
    EXPECT_EQ(s.number("C", 1, 100, 4), 4);
    EXPECT_EQ(s.number("C", -5, 100, 4), -3);
    EXPECT_EQ(s.real("D", 2.0), 2.0);
    EXPECT_EQ(s.real("E", 2.0), 0.25);
    EXPECT_EQ(s.real("F", 2.0), 2.0);
}

TEST(AnalysisSettings, ThePerUserCopyStartsAsTheFileBesideTheProgram) {
    TempDir dir;
    const std::filesystem::path original = dir.file("ZORVIK.INI");
    const std::filesystem::path copy = dir.path() / "user" / "zorvik" / "ZORVIK.INI";
    writeBytes(original, kPanel);
    AnalysisSettings s(SettingsLocation{copy, original});
    EXPECT_FALSE(s.text("SpectrumUnit").has_value()); // read from the original until the copy
    ASSERT_TRUE(s.write({{"SpectrumUnit", "volts"}}));
    EXPECT_EQ(readBytes(copy), kPanel + "[ANALYSIS]\r\nSpectrumUnit=volts\r\n");
    EXPECT_EQ(readBytes(original), kPanel);
    EXPECT_EQ(s.text("SpectrumUnit"), "volts");
}

TEST(AnalysisSettings, WithoutASettingsFileNothingIsKept) {
    AnalysisSettings s;
    EXPECT_FALSE(s.kept());
    EXPECT_TRUE(s.write({{"SpectrumUnit", "volts"}}));
    EXPECT_FALSE(s.text("SpectrumUnit").has_value());
}
