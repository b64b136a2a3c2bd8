// Helpers of the waveform file tests: probe samples as the display computes them, records
// filled with them, and the fixture files.
#pragma once

#include "instrument/DecodeTables.h"
#include "storage/VbConvert.h"
#include "storage/WaveformRecord.h"

#include <bit>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <locale.h>
#include <string>

namespace zorvik::testing {

inline constexpr std::uint8_t kRangeCodes[] = {0x00, 0x04, 0x08};
inline constexpr float kSampleIntervals[] = {5e-8f, 1e-7f, 5e-7f, 1e-6f, 5e-6f, 1e-5f,
                                             5e-5f, 1e-4f, 5e-4f, 1e-3f, 2e-3f};

inline std::uint32_t bits(float f) {
    return std::bit_cast<std::uint32_t>(f);
}

/// What the display makes of a raw count in a range: (count - 31) x volts per count.
inline float probeVolts(int count, std::uint8_t range) {
    return static_cast<float>(count - 31) * *rangeVoltsPerCount(range);
}

/// The single nearest to a decimal text, by the C library's own conversion in the "C" locale:
/// a second opinion, independent of the program's, on what a sample text loads as.
inline float nearestSingle(const std::string& text) {
    static const locale_t c = newlocale(LC_ALL_MASK, "C", locale_t{});
    return strtof_l(text.c_str(), nullptr, c);
}

/// What a sample becomes once saved and loaded: the single nearest to its 7-digit text.
inline float asFiled(float volts) {
    return nearestSingle(VbConvert::singleToText(volts));
}

/// A record as a probe trace leaves it: sample i has count (seed + i) % 63, so the counts 0 to
/// 62 all occur; the range in the hardware bytes is the trace's.
inline WaveformRecord probeRecord(std::uint8_t range, int seed = 0) {
    WaveformRecord r;
    r.timeRange = 7;
    r.chaLevel = 3;
    r.graphOffsetValue = 12.5;
    r.chaOffset = -1.5;
    r.invert = true;
    r.reference = true;
    r.state.bytSwitchSetting = static_cast<std::uint8_t>(range | 0x20);
    r.state.bytTimebaseDef = 6;
    r.state.bytTriggerDef = 0x40;
    r.state.bytTriggerLvl = 16;
    r.state.bytDVM100 = 1;
    r.state.bytDVM10 = 2;
    r.state.bytDVM1 = 3;
    r.state.bytDVMflags = 4;
    for (std::size_t i = 0; i < r.volts.size(); ++i)
        r.volts[i] = probeVolts((seed + static_cast<int>(i)) % 63, range);
    r.sampleInterval = 5e-5f;
    return r;
}

/// A record whose every value differs from what the fixtures hold, to see what a load changes.
inline WaveformRecord untouchedRecord() {
    WaveformRecord r;
    r.timeRange = 1;
    r.chaLevel = 1;
    r.chaOffset = 3.25;
    r.invert = false;
    r.reference = false;
    r.state.bytSwitchSetting = 0x18;
    r.state.bytTimebaseDef = 10;
    r.state.bytTriggerDef = 0x08;
    r.state.bytTriggerLvl = 64;
    r.state.bytDVM100 = 9;
    r.volts.fill(99.0f);
    r.sampleInterval = 2e-3f;
    return r;
}

inline std::filesystem::path wdfFixture(const std::string& name) {
    return std::filesystem::path(ZORVIK_TEST_DATA) / "wdf" / name;
}

} // namespace zorvik::testing
