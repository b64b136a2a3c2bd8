// Crash safety of the settings file: a process saving it is killed with SIGKILL at random
// moments, and the file must always parse and hold either the previous or the new settings as
// a whole, never a mixture of the two.
#include "KillDuringSave.h"
#include "Soak.h"
#include "storage/FakeSettingsPanel.h"
#include "storage/IniTestSupport.h"

#include "storage/SettingsFile.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

using namespace zorvik;
using namespace zorvik::testing;
namespace fs = std::filesystem;

namespace {

FakeSettingsPanel version(int n) {
    FakeSettingsPanel panel;
    panel.timeRange = 10 + n;
    panel.chaLevel = 20 + n;
    panel.chaOffset = n == 0 ? -1.25 : 2.5;
    for (int i = 0; i < 7; ++i)
        panel.colours[static_cast<std::size_t>(i)] = 1000 * (n + 1) + i;
    panel.buttons = {n == 0, n != 0, n == 0};
    return panel;
}

/// The settings as the reader sees them: every key of the three sections in order.
std::string settingsText(const std::string& path) {
    static const char* const keys[][2] = {
        {"SETTINGS", "Hscaleindex"},  {"SETTINGS", "Vscaleindex"}, {"SETTINGS", "Chaoffset"},
        {"COLORS", "Cursor1"},        {"COLORS", "Cursor2"},       {"COLORS", "Cursor3"},
        {"COLORS", "Cursor4"},        {"COLORS", "Display"},       {"COLORS", "Primarytrace"},
        {"COLORS", "Referencetrace"}, {"BUTTONS", "Hcursors"},     {"BUTTONS", "Vcursors"},
        {"BUTTONS", "Invert"}};
    cInifile ini;
    ini.setPath(path);
    std::string text;
    for (const auto& [section, key] : keys) {
        ini.setSection(section);
        ini.setKey(key);
        text += std::string(key) + "=" + ini.Value() + ";";
    }
    return text;
}

} // namespace

TEST(SettingsSaveCrash, FileHoldsTheOldOrTheNewSettingsWholeAfterEveryKill) {
    TempDir dir;
    const std::string path = dir.file(SettingsFile::kFileName);
    const test::TemporaryFolder scratch(dir.path() / "tmp");

    // The two versions as whole files and as the reader sees them.
    const FakeSettingsPanel panels[2] = {version(0), version(1)};
    std::string bytes[2];
    std::string seen[2];
    for (int n : {1, 0}) {
        cInifile ini;
        SettingsFile::write(ini, path, panels[n]);
        bytes[n] = readBytes(path);
        seen[n] = settingsText(path);
    }
    ASSERT_NE(seen[0], seen[1]);

    // The kills fall anywhere in up to three saves.
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 5; ++i) {
        cInifile ini;
        SettingsFile::write(ini, path, panels[i % 2]);
    }
    const auto saveTime = std::chrono::duration_cast<std::chrono::microseconds>(
                              std::chrono::steady_clock::now() - begin) /
                          5;

    int heldA = 0;
    int heldB = 0;
    const int kills = test::soakRun() ? 1000 : 30;
    const test::KillReport report = test::killDuringSaves(
        kills, 3 * saveTime + std::chrono::microseconds(200),
        [&](std::uint64_t n) {
            cInifile ini;
            SettingsFile::write(ini, path, panels[n % 2]);
        },
        [&] {
            const std::string now = readBytes(path);
            const bool whole = now == bytes[0] || now == bytes[1];
            EXPECT_TRUE(whole) << "torn settings file:\n" << now;
            const std::string text = settingsText(path);
            EXPECT_TRUE(text == seen[0] || text == seen[1]) << text;
            heldA += now == bytes[0] ? 1 : 0;
            heldB += now == bytes[1] ? 1 : 0;
            return whole;
        });
    std::printf("settings file: %d kills (%d in the middle of a save), %llu saves completed, "
                "one save %lld us; file held version A %d times, version B %d times\n",
                report.kills, report.midSave, static_cast<unsigned long long>(report.saves),
                static_cast<long long>(saveTime.count()), heldA, heldB);
    EXPECT_EQ(report.kills, kills);
    EXPECT_EQ(report.checks, static_cast<std::uint64_t>(kills));
    // Most kills must really fall inside a save, or the test proves nothing.
    EXPECT_GT(report.midSave, kills / 2);
}

TEST(SettingsSaveCrash, SaveLeavesNoScratchCopyBehindAndItsPathOnTheIniObject) {
    TempDir dir;
    const fs::path scratch = dir.path() / "tmp";
    const test::TemporaryFolder temporary(scratch);
    const std::string path = dir.file(SettingsFile::kFileName);
    cInifile ini;
    SettingsFile::write(ini, path, version(0));
    EXPECT_TRUE(fs::is_empty(scratch));
    EXPECT_EQ(ini.Path(), path);
    EXPECT_TRUE(ini.Success());
    EXPECT_EQ(settingsText(path).substr(0, 15), "Hscaleindex=10;");
}

TEST(SettingsSaveCrash, SaveWhoseEveryKeyFailsCreatesNoFile) {
    TempDir dir;
    const std::string path = dir.file(SettingsFile::kFileName);
    FakeSettingsPanel panel;
    panel.refuse = {"Hscaleindex", "Vscaleindex", "Chaoffset", "Cursor1",      "Cursor2",
                    "Cursor3",     "Cursor4",     "Display",   "Primarytrace", "Referencetrace",
                    "Hcursors",    "Vcursors",    "Invert"};
    cInifile ini;
    SettingsFile::write(ini, path, panel);
    EXPECT_FALSE(fs::exists(path));
}
