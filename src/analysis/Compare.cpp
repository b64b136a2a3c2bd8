// Comparison of the live trace with the reference.
#include "analysis/Compare.h"

#include <algorithm>
#include <cmath>

namespace zorvik {

std::optional<CompareResult> compareWithReference(const TraceArray& live, float liveInterval,
                                                  const TraceArray& reference,
                                                  float referenceInterval,
                                                  const ToleranceBand& band) {
    const auto [low, high] = std::minmax_element(reference.begin(), reference.end());
    CompareResult r;
    r.halfWidth = band.halfWidth(static_cast<double>(*high) - static_cast<double>(*low));
    const bool byIndex =
        !(liveInterval > 0.0f) || !(referenceInterval > 0.0f) || liveInterval == referenceInterval;
    const double last = static_cast<double>(kSamplesPerFrame - 1);
    double sumSquares = 0.0;
    double largest = -1.0;
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i) {
        double expected = 0.0;
        if (byIndex) {
            expected = reference[i];
        } else {
            const double at = static_cast<double>(i) * static_cast<double>(liveInterval) /
                              static_cast<double>(referenceInterval);
            if (at > last + 1e-9)
                continue;
            const auto k = static_cast<std::size_t>(std::min(std::floor(at), last));
            const double fraction = at - static_cast<double>(k);
            expected = k + 1 < kSamplesPerFrame
                           ? reference[k] + fraction * (static_cast<double>(reference[k + 1]) -
                                                        static_cast<double>(reference[k]))
                           : static_cast<double>(reference[k]);
        }
        const double difference = static_cast<double>(live[i]) - expected;
        r.compared[i] = true;
        ++r.samplesCompared;
        sumSquares += difference * difference;
        if (std::abs(difference) > largest) {
            largest = std::abs(difference);
            r.largestAt = i;
            r.largestDeviation = difference;
        }
        if (std::abs(difference) > r.halfWidth) {
            r.outside[i] = true;
            ++r.samplesOutside;
        }
    }
    if (r.samplesCompared == 0)
        return std::nullopt;
    r.passed = r.samplesOutside == 0;
    r.rmsDifference = std::sqrt(sumSquares / static_cast<double>(r.samplesCompared));
    return r;
}

} // namespace zorvik
