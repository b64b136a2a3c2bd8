// Volts to graph divisions: the decisions and arrays behind the "CHa" and "Ref" plots.
#pragma once

#include "display/TraceArrays.h"

#include <cstdint>
#include <optional>

namespace zorvik {

/// The main window's values that ChartA reads.
struct ChartInputs {
    bool blnLiveData = false;  ///< the instrument link is up
    bool blnRefLoaded = false; ///< the reference came from a waveform file
    bool CWBRef = false;       ///< REF button on: show the reference
    bool CWBChaInv = false;    ///< invert button on
    float sngChaGain = 0.0f;   ///< divisions per volt
    float sngChaOffset = 0.0f; ///< vertical offset in divisions
    std::int32_t lngDivPerSec = 0;
    float sngSampleInterval = 0.0f;
    float sngRefSampleInterval = 0.0f;
};

/// What happens to one plot of the graph.
enum class PlotAction {
    Unchanged, ///< leave the plot as it is
    Clear,     ///< clear the plot's data
    Plot,      ///< plot `y` from X = firstX in steps of xStep
};

struct PlotUpdate {
    PlotAction action = PlotAction::Unchanged;
    /// The Y values in divisions (the window's sngChaPlot / sngRefPlot); set for Plot only.
    TraceArray y{};
    double firstX = 0.0;
    double xStep = 0.0;
};

/// Apply CHa first, then Ref.
struct ChartAResult {
    PlotUpdate CHa;
    PlotUpdate Ref;
};

/// X distance between two samples in divisions: seconds per sample x divisions per second,
/// in double precision.
double xIncrement(float sampleInterval, std::int32_t lngDivPerSec);

/// Y of each sample in divisions: volts x gain, negated when inverted, plus the offset,
/// worked out in double precision and kept in single precision. std::nullopt when a value
/// does not fit a single-precision number (only reachable with absurd gains).
std::optional<TraceArray> plotValues(const TraceArray& volts, float sngChaGain, float sngChaOffset,
                                     bool inverted);

/// Both traces start at X = 0. The live trace steps by its own sample interval, the
/// reference by the interval it was taken with, so a reference from another sample rate
/// keeps its spacing; both follow the present gain, offset and inversion.
///
/// Without live data and without a loaded reference only "CHa" is cleared and "Ref" is left
/// as it is. Without live data "CHa" is cleared; with REF off "Ref" is cleared.
/// If a plot's values do not fit single precision the drawing stops there: that plot and
/// the ones after it stay as they were.
ChartAResult ChartA(const ChartInputs& in, const TraceArray& sngChaVolts,
                    const TraceArray& sngRefVolts);

} // namespace zorvik
