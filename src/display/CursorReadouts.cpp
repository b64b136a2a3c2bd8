// The VOLTS, TIME and FREQUENCY readouts worked out from the positions of the graph's cursors.
#include "display/CursorReadouts.h"

#include "display/NumberFormat.h"

#include <cmath>

namespace zorvik {

namespace {

/// Volts per division as the panel works with it: the reciprocal of the single-precision
/// gain, itself rounded to single precision. The seven knob gains thus give exactly
/// 20, 10, 5, 2, 1, 0.5 and 0.2 volts per division (in single precision), so that five
/// divisions at 20 V/div read "100.0 V" and not 99.99... . A zero gain, or one so small
/// that volts per division overflow, has no value.
std::optional<double> voltsPerDivision(float sngChaGain) {
    if (sngChaGain == 0.0f)
        return std::nullopt;
    const float perDivision = 1.0f / sngChaGain;
    if (!std::isfinite(perDivision))
        return std::nullopt;
    return static_cast<double>(perDivision);
}

/// Cursor distance in seconds, in double precision; no value for zero divisions per second
/// or a cursor that could not be read.
std::optional<double> cursorSeconds(const CursorInputs& in) {
    if (!in.Cursor1X || !in.Cursor2X || in.lngDivPerSec == 0)
        return std::nullopt;
    const double seconds =
        std::fabs(*in.Cursor2X - *in.Cursor1X) * (1.0 / static_cast<double>(in.lngDivPerSec));
    if (!std::isfinite(seconds))
        return std::nullopt;
    return seconds;
}

} // namespace

std::optional<std::string> voltageText(double deltaVolts) {
    if (deltaVolts >= 100.0)
        return formatWithUnit(deltaVolts, 1, " V");
    if (deltaVolts >= 1.0)
        return formatWithUnit(deltaVolts, 2, " V");
    return formatWithUnit(deltaVolts, 3, " V");
}

std::optional<std::string> timeText(double deltaSeconds, std::int16_t intTimeUnit) {
    switch (intTimeUnit) {
    case 0: {
        const double ns = deltaSeconds * 1000000000.0;
        if (ns < 1000.0)
            return formatWithUnit(ns, 2, " nSec");
        return formatWithUnit(ns / 1000.0, 3, " uSec");
    }
    case 1: {
        const double us = deltaSeconds * 1000000.0;
        if (us < 1.0)
            return formatWithUnit(us * 1000.0, 2, " nSec");
        if (us < 1000.0)
            return formatWithUnit(us, 3, " uSec");
        return formatWithUnit(us / 1000.0, 3, " mSec");
    }
    case 2: {
        const double ms = deltaSeconds * 1000.0;
        if (ms < 1.0)
            return formatWithUnit(ms * 1000.0, 3, " uSec");
        if (ms < 1000.0)
            return formatWithUnit(ms, 3, " mSec");
        return formatWithUnit(ms / 1000.0, 3, " Sec");
    }
    default:
        return std::nullopt;
    }
}

std::optional<std::string> frequencyText(double deltaSeconds) {
    if (deltaSeconds == 0.0)
        return std::nullopt;
    const double kHz = 1.0 / (1000.0 * deltaSeconds);
    if (kHz < 1.0)
        return formatWithUnit(kHz * 1000.0, 1, " Hz");
    if (kHz < 1000.0)
        return formatWithUnit(kHz, 3, " KHz");
    if (kHz < 1000000.0)
        return formatWithUnit(kHz / 1000.0, 3, " MHz");
    return formatWithUnit(kHz / 1000000.0, 3, " GHz");
}

CursorReadouts DisplayCursorData(const CursorInputs& in) noexcept {
    CursorReadouts out;

    // Each step on its own: whatever goes wrong in one leaves its label as it was.
    try {
        if (!in.CWBHCursors) {
            out.lblCVoltage = std::string();
        } else if (in.Cursor3Y && in.Cursor4Y) {
            if (const auto perDivision = voltsPerDivision(in.sngChaGain))
                out.lblCVoltage =
                    voltageText(std::fabs(*in.Cursor3Y - *in.Cursor4Y) * *perDivision);
        }
    } catch (...) {
        out.lblCVoltage.reset();
    }

    try {
        if (!in.CWBVCursors) {
            out.lblCTime = std::string();
            out.lblCFrequency = std::string();
        } else if (const auto seconds = cursorSeconds(in)) {
            out.lblCTime = timeText(*seconds, in.intTimeUnit);
            out.lblCFrequency = frequencyText(*seconds);
        }
    } catch (...) {
        out.lblCTime.reset();
        out.lblCFrequency.reset();
    }
    return out;
}

} // namespace zorvik
