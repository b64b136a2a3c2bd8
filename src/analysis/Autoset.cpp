// Autoset: scales and offset that fit a trace to the screen.
#include "analysis/Autoset.h"

#include "display/ChartA.h"
#include "display/ScaleTables.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zorvik {

namespace {

/// Divisions the trace is to fill at most across, and the height it may take up.
constexpr double kMostDivisionsAcross = 10.0;
constexpr double kMostDivisionsHigh = 7.5;
constexpr double kWantedDivisionsHigh = 5.0;
/// The offset slide's range, and its steps per unit (a step is 0.1).
constexpr double kOffsetLimit = 4.0;
constexpr double kOffsetStepsPerUnit = 10.0;

int hScaleFor(float sampleInterval) {
    int best = 1;
    double bestSpan = -1.0;
    for (int position = 1; position <= kHScalePositions; ++position) {
        const auto scale = timeScaleForPosition(position);
        if (!scale)
            continue;
        const double span =
            (kSamplesPerFrame - 1) * xIncrement(sampleInterval, scale->lngDivPerSec);
        if (span <= kMostDivisionsAcross + 1e-9 && span > bestSpan) {
            best = position;
            bestSpan = span;
        }
    }
    // Longer than ten divisions even at the slowest position: the slowest position.
    return bestSpan < 0.0 ? kHScalePositions : best;
}

double roundedOffset(double offset) {
    // Divided, not multiplied by 0.1: 24 / 10 is the number nearest 2.4, so the settings file
    // keeps "2.4" and not "2.4000000000000004".
    const double r = std::round(offset * kOffsetStepsPerUnit) / kOffsetStepsPerUnit;
    return std::clamp(r, -kOffsetLimit, kOffsetLimit);
}

} // namespace

std::optional<AutosetChoice> autoset(const TraceArray& volts, float sampleInterval, bool inverted) {
    if (!(sampleInterval > 0.0f) || !std::isfinite(sampleInterval))
        return std::nullopt;
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    for (float v : volts) {
        if (!std::isfinite(v))
            return std::nullopt;
        low = std::min(low, static_cast<double>(v));
        high = std::max(high, static_cast<double>(v));
    }
    const double middle = (low + high) / 2.0;
    const double height = high - low;

    AutosetChoice choice;
    choice.hScale = hScaleFor(sampleInterval);

    if (height <= 0.0) {
        // A DC level: the most sensitive position at which the offset still centres it.
        choice.vScale = 1;
        for (int position = kVScalePositions; position >= 1; --position) {
            if (std::fabs(middle) * static_cast<double>(*chaGainForPosition(position)) <=
                kOffsetLimit) {
                choice.vScale = position;
                break;
            }
        }
    } else {
        choice.vScale = 1;
        double bestDistance = std::numeric_limits<double>::infinity();
        for (int position = 1; position <= kVScalePositions; ++position) {
            const double divisions = height * static_cast<double>(*chaGainForPosition(position));
            if (divisions > kMostDivisionsHigh)
                continue;
            const double distance = std::fabs(std::log(divisions / kWantedDivisionsHigh));
            if (distance < bestDistance) {
                bestDistance = distance;
                choice.vScale = position;
            }
        }
    }
    const double gain = static_cast<double>(*chaGainForPosition(choice.vScale));
    choice.offset = roundedOffset(inverted ? middle * gain : -middle * gain);
    if (choice.offset == 0.0)
        choice.offset = 0.0; // no "-0" in the settings file
    return choice;
}

} // namespace zorvik
