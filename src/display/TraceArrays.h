// The per-sample arrays of the trace display: volts of a frame and the Y values of a plot.
#pragma once

#include "instrument/HardwareState.h"

#include <array>

namespace zorvik {

/// 128 single-precision values, one per sample of a frame (volts, or plot Y in divisions).
using TraceArray = std::array<float, kSamplesPerFrame>;

/// The visible horizontal window of the graph is always this many divisions wide.
inline constexpr double kVisibleDivisions = 10.0;

} // namespace zorvik
