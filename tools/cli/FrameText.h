// The texts zorvik-cli prints: one JSON object per event, or CSV rows of samples.
#pragma once

#include "display/FormatDispData.h"
#include "instrument/HardwareState.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace zorvik::cli {

/// Positions of the RANGE, COUPLING and TRIGGER indicators (1-based), as last set by a
/// frame; empty until a frame sets them.
struct IndicatorPositions {
    std::optional<int> range;
    std::optional<int> coupling;
    std::optional<int> trigger;
};

/// The shortest text that reads back as the same single-precision value (std::to_chars):
/// 4.9206333, 5e-05, -0.
std::string floatText(float value);
/// A JSON string literal, quotes included.
std::string jsonString(std::string_view text);

/// {"event":"frame","index":N, the eight state bytes, the decoded values, the indicator
/// positions, "raw":[128 counts],"volts":[128 numbers]} on one line.
std::string frameJson(std::int64_t index, const HardwareState& state, const RawSamples& raw,
                      const AcquisitionValues& values, const IndicatorPositions& positions,
                      const TraceArray& volts);
/// {"event":"rejected", the eight state bytes}.
std::string rejectedJson(const HardwareState& state);
/// {"event":"NAME"} for the events that carry nothing else.
std::string eventJson(std::string_view name);

/// The CSV header: frame,sample,time_s,count,volts
std::string csvHeader();
/// One CSV row; time_s is sample x sngSampleInterval in single precision.
std::string csvRow(std::int64_t frame, int sample, float sngSampleInterval, std::uint8_t count,
                   float volts);

} // namespace zorvik::cli
