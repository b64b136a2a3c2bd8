// Comparison of the live trace with the reference inside a tolerance band: the band is the
// reference plus and minus a half-width of so many volts and so many per cent of the
// reference's peak-to-peak (the two added, either may be 0); a frame passes when every sample
// compared lies inside it.
#pragma once

#include "display/TraceArrays.h"

#include <array>
#include <cstddef>
#include <optional>

namespace zorvik {

struct ToleranceBand {
    double volts = 0.0;   ///< plus and minus this many volts
    double percent = 0.0; ///< plus and minus this share of the reference's peak-to-peak

    /// The half-width in volts about a reference whose peak-to-peak is `referencePeakToPeak`.
    double halfWidth(double referencePeakToPeak) const {
        return volts + percent / 100.0 * referencePeakToPeak;
    }
};

struct CompareResult {
    bool passed = true;
    /// Per live sample: compared at all (it falls within the reference's time span), and
    /// outside the band.
    std::array<bool, kSamplesPerFrame> compared{};
    std::array<bool, kSamplesPerFrame> outside{};
    std::size_t samplesCompared = 0;
    std::size_t samplesOutside = 0;
    double halfWidth = 0.0; ///< of the band, in volts
    /// The live sample farthest from the reference: its index and the difference (live minus
    /// reference, volts, with its sign).
    std::size_t largestAt = 0;
    double largestDeviation = 0.0;
    /// The RMS of the differences over the samples compared.
    double rmsDifference = 0.0;
};

/// Compares `live` (samples `liveInterval` seconds apart) with `reference` (`referenceInterval`
/// apart). Each live sample is compared with the reference at the same time from the first
/// sample, read between two reference samples by straight-line interpolation when the
/// intervals differ; live samples later than the reference's last one are not compared. With
/// an interval that is not positive, samples are compared index by index. A band of zero
/// width passes only an exact copy. std::nullopt when no sample can be compared.
std::optional<CompareResult> compareWithReference(const TraceArray& live, float liveInterval,
                                                  const TraceArray& reference,
                                                  float referenceInterval,
                                                  const ToleranceBand& band);

/// Counts of frames compared since the last reset.
struct CompareCounts {
    std::size_t passed = 0;
    std::size_t failed = 0;
    void add(const CompareResult& r) { ++(r.passed ? passed : failed); }
};

} // namespace zorvik
