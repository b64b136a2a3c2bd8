// Automatic measurements of a trace: levels, timing and edges, worked out from the 128 samples
// of a frame, with statistics over the frames measured since the last reset.
#pragma once

#include "display/TraceArrays.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace zorvik {

/// The measurements, in the order the Measurements window lists them.
enum class Measure {
    Maximum,
    Minimum,
    PeakToPeak,
    Mean,
    Rms,   ///< RMS of the whole signal (DC + AC)
    AcRms, ///< RMS about the mean
    Top,   ///< the high state level (the histogram's mode above the middle)
    Base,  ///< the low state level (the histogram's mode below the middle)
    Amplitude,
    Overshoot, ///< (maximum - top) / amplitude, in per cent
    Frequency,
    Period,
    PositiveWidth,
    NegativeWidth,
    DutyCycle, ///< positive width / period, in per cent
    RiseTime,  ///< 10 % to 90 % of the amplitude
    FallTime,  ///< 90 % to 10 % of the amplitude
};
inline constexpr std::size_t kMeasureCount = 17;

/// The name and unit of a measurement as the window shows them ("Frequency", "Hz").
const char* measureName(Measure m);
const char* measureUnit(Measure m);
/// The key of a measurement in files and on the command line ("peak_to_peak", "rise_time").
const char* measureKey(Measure m);

/// One trace's measurements; std::nullopt where a measurement is undefined for it (the
/// frequency of less than one period, the rise time of a DC level, ...).
using MeasureValues = std::array<std::optional<double>, kMeasureCount>;

/// Measures the samples `volts`, `sampleInterval` seconds apart.
///
/// Top and base are the state levels of IEEE 181's histogram method: the most frequent value
/// above and below the middle of the range (the one nearer the extreme on a tie); a half in
/// which no value repeats takes its extreme. The timing uses the crossings of the middle
/// level, (top + base) / 2, with a hysteresis of a tenth of the amplitude so noise does not
/// count as an edge, each crossing placed by linear interpolation between two samples. The
/// period is the mean distance between successive crossings in the same direction (rising ones
/// when there are two, else falling ones); the widths are the means over the whole pulses in
/// the frame; rise and fall times the means over the whole edges that pass from 10 % to 90 % of
/// the amplitude (or back).
MeasureValues measure(const TraceArray& volts, float sampleInterval);

/// Statistics of one measurement over the frames measured since the last reset; frames for
/// which it was undefined are not counted.
struct MeasureStatistics {
    std::optional<double> current;
    double minimum = 0.0;
    double maximum = 0.0;
    double mean = 0.0;
    double standardDeviation = 0.0; ///< of the values counted (population)
    std::size_t count = 0;

    void add(std::optional<double> value);

private:
    double m2_ = 0.0; // Welford's running sum of squared differences
};

/// A value with an SI prefix and four significant digits ("1.000 kHz", "-12.35 mV",
/// "3.200 µs"); "—" for an undefined one.
std::string formatMeasure(std::optional<double> value, const char* unit);

} // namespace zorvik
