// Autoset: the H-SCALE and V-SCALE positions and the offset that fit a trace to the screen.
// The probe chooses its own sample rate and range; Autoset chooses the panel's scales to match.
#pragma once

#include "display/TraceArrays.h"

#include <optional>

namespace zorvik {

/// Knob positions and offset that Autoset turns the panel to.
struct AutosetChoice {
    int hScale = 0;      ///< CWKTimeRange position, 1..16
    int vScale = 0;      ///< CWKChaLvl position, 1..7
    double offset = 0.0; ///< CWSCHaOffset value, -4..4 in steps of 0.1

    friend bool operator==(const AutosetChoice&, const AutosetChoice&) = default;
};

/// Number of H-SCALE and V-SCALE positions.
inline constexpr int kHScalePositions = 16;
inline constexpr int kVScalePositions = 7;

/// The 128 samples `volts`, taken `sampleInterval` seconds apart, as the panel should show them
/// (`inverted`: INVERT is on). std::nullopt for a trace that cannot be fitted (no sample
/// interval, or values that are not numbers).
///
/// - H-SCALE: the trace spans 127 sample intervals; the position where that span covers the
///   most divisions up to ten, so that it fills 6 to 10 of them wherever the 1-2-5 steps allow
///   (a span too short even at 200 ns/div takes the fastest position, one too long even at
///   20 ms/div the slowest).
/// - V-SCALE: the position whose peak-to-peak height lies closest to five divisions (by ratio)
///   while staying within 7.5, so the trace stays on the eight-division screen with room
///   above and below; a height above 7.5 even at 20 V/div takes 20 V/div.
/// - Offset: the one that puts the middle of the trace on the centre line, rounded to the
///   slide's step of 0.1 and kept within its range.
/// - A flat trace (a DC level) has no height: V-SCALE is then the most sensitive position at
///   which the offset can still bring the level to the centre line.
std::optional<AutosetChoice> autoset(const TraceArray& volts, float sampleInterval, bool inverted);

} // namespace zorvik
