// Crash safety of Waveform Data Files: a process saving a reference over and over is killed
// with SIGKILL at random moments, and the file must always load and hold either the previous
// or the new reference as a whole.
#include "KillDuringSave.h"
#include "Soak.h"
#include "storage/IniTestSupport.h"

#include "storage/WaveformFile.h"
#include "storage/WaveformRecord.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>

using namespace zorvik;
using namespace zorvik::testing;

namespace {

WaveformRecord version(int n) {
    WaveformRecord r;
    r.timeRange = 5 + n;
    r.chaLevel = 3 - n;
    r.graphOffsetValue = 0.5 * n;
    r.chaOffset = n == 0 ? -0.25 : 1.75;
    r.invert = n != 0;
    r.state.bytSwitchSetting = n == 0 ? 0x24 : 0x28;
    r.state.bytTriggerLvl = n == 0 ? 16 : 64;
    r.state.bytTimebaseDef = static_cast<std::uint8_t>(6 + n);
    r.state.bytTriggerDef = n == 0 ? 0x40 : 0x20;
    const float perCount = n == 0 ? 0.1587301f : 1.587301f;
    for (std::size_t i = 0; i < r.volts.size(); ++i)
        r.volts[i] = static_cast<float>(static_cast<int>((i * (3 + n)) % 63) - 31) * perCount;
    r.sampleInterval = n == 0 ? 5e-5f : 1e-4f;
    return r;
}

} // namespace

TEST(WaveformSaveCrash, FileHoldsTheOldOrTheNewReferenceWholeAfterEveryKill) {
    TempDir dir;
    const std::string path = dir.file("reference.wdf");
    const test::TemporaryFolder scratch(dir.path() / "tmp");

    const WaveformRecord records[2] = {version(0), version(1)};
    std::string bytes[2];
    for (int n : {1, 0}) {
        cInifile ini;
        ASSERT_TRUE(WaveformFile::SaveWaveformFile(ini, path, records[n]));
        bytes[n] = readBytes(path);
    }
    ASSERT_NE(bytes[0], bytes[1]);

    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 5; ++i) {
        cInifile ini;
        WaveformFile::SaveWaveformFile(ini, path, records[i % 2]);
    }
    const auto saveTime = std::chrono::duration_cast<std::chrono::microseconds>(
                              std::chrono::steady_clock::now() - begin) /
                          5;

    int held[2] = {0, 0};
    const int kills = test::soakRun() ? 1000 : 30;
    const test::KillReport report = test::killDuringSaves(
        kills, 3 * saveTime + std::chrono::microseconds(200),
        [&](std::uint64_t n) {
            cInifile ini;
            WaveformFile::SaveWaveformFile(ini, path, records[n % 2]);
        },
        [&] {
            const std::string now = readBytes(path);
            const bool whole = now == bytes[0] || now == bytes[1];
            EXPECT_TRUE(whole) << "torn waveform file:\n" << now;
            WaveformRecord loaded;
            cInifile ini;
            EXPECT_EQ(WaveformFile::LoadWaveformFile(ini, path, loaded),
                      WaveformLoadResult::Loaded);
            held[0] += now == bytes[0] ? 1 : 0;
            held[1] += now == bytes[1] ? 1 : 0;
            return whole;
        });
    std::printf("waveform file: %d kills (%d in the middle of a save), %llu saves completed, "
                "one save %lld us; file held version A %d times, version B %d times\n",
                report.kills, report.midSave, static_cast<unsigned long long>(report.saves),
                static_cast<long long>(saveTime.count()), held[0], held[1]);
    EXPECT_EQ(report.checks, static_cast<std::uint64_t>(kills));
    EXPECT_GT(report.midSave, kills / 2);
}
