// The texts zorvik-cli prints: one JSON object per event, or CSV rows of samples, built
// straight into the output's buffer. Texts that repeat (counts, the volts of a count at the
// frame's range, the times of the 128 samples) are made once and reused.
#pragma once

#include "display/FormatDispData.h"
#include "instrument/HardwareState.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zorvik::cli {

class OutputSink;

/// Positions of the RANGE, COUPLING and TRIGGER indicators (1-based), as last set by a
/// frame; empty until a frame sets them.
struct IndicatorPositions {
    std::optional<int> range;
    std::optional<int> coupling;
    std::optional<int> trigger;
};

/// Appends the shortest text that reads back as the same single-precision value: 4.9206333,
/// 5e-05, -0.
void appendFloat(std::string& out, float value);
/// The same as a string.
std::string floatText(float value);
/// A JSON string literal, quotes included.
std::string jsonString(std::string_view text);

/// The time of sample `sample` for a sample interval: the sample's number times the
/// interval's own decimal value (the shortest text of the single), as the nearest single.
/// So sample 3 at 5e-05 s is 0.00015, where a product in single precision gives 0.00014999999.
float sampleTime(int sample, float interval);

/// The CSV header of decode and capture: frame,sample,time_s,count,volts
std::string_view csvHeader();

class FrameFormatter {
public:
    /// {"event":"frame","index":N, the eight state bytes, the decoded values, the indicator
    /// positions, "raw":[128 counts],"volts":[128 numbers]}, appended to `out`.
    void frameJson(std::string& out, std::int64_t index, const HardwareState& state,
                   const RawSamples& raw, const AcquisitionValues& values,
                   const IndicatorPositions& positions, const TraceArray& volts);
    /// The 128 rows of a frame, each ended as a line of `out`.
    void csvRows(OutputSink& out, std::int64_t index, float sngSampleInterval,
                 const RawSamples& raw, const TraceArray& volts);

    /// {"event":"rejected", the eight state bytes}.
    static void rejectedJson(std::string& out, const HardwareState& state);
    /// {"event":"NAME"} for the events that carry nothing else.
    static void eventJson(std::string& out, std::string_view name);

private:
    struct CachedVolts {
        bool valid = false;
        std::uint32_t bits = 0;
        std::string text;
    };
    const std::string& voltsText(std::uint8_t count, float volts);
    void prepareTimes(float interval);

    std::array<CachedVolts, 256> volts_;
    bool timesValid_ = false;
    std::uint32_t intervalBits_ = 0;
    std::array<std::string, kSamplesPerFrame> times_;
};

} // namespace zorvik::cli
