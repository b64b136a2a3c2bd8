// Volts to graph divisions: the decisions and arrays behind the "CHa" and "Ref" plots.
#include "display/ChartA.h"

#include <cmath>
#include <limits>

namespace zorvik {

double xIncrement(float sampleInterval, std::int32_t lngDivPerSec) {
    return static_cast<double>(sampleInterval) * static_cast<double>(lngDivPerSec);
}

std::optional<TraceArray> plotValues(const TraceArray& volts, float sngChaGain, float sngChaOffset,
                                     bool inverted) {
    TraceArray y{};
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i) {
        double value = static_cast<double>(volts[i]) * static_cast<double>(sngChaGain);
        if (inverted)
            value = -value;
        value += static_cast<double>(sngChaOffset);
        if (std::fabs(value) > static_cast<double>(std::numeric_limits<float>::max()))
            return std::nullopt;
        y[i] = static_cast<float>(value);
    }
    return y;
}

ChartAResult ChartA(const ChartInputs& in, const TraceArray& sngChaVolts,
                    const TraceArray& sngRefVolts) {
    ChartAResult result;
    if (!in.blnLiveData && !in.blnRefLoaded) {
        result.CHa.action = PlotAction::Clear;
        return result;
    }

    const double liveStep = xIncrement(in.sngSampleInterval, in.lngDivPerSec);
    const double refStep = xIncrement(in.sngRefSampleInterval, in.lngDivPerSec);

    if (!in.blnLiveData) {
        result.CHa.action = PlotAction::Clear;
    } else {
        const auto y = plotValues(sngChaVolts, in.sngChaGain, in.sngChaOffset, in.CWBChaInv);
        if (!y)
            return result;
        result.CHa = {PlotAction::Plot, *y, 0.0, liveStep};
    }

    if (!in.CWBRef) {
        result.Ref.action = PlotAction::Clear;
        return result;
    }
    if (const auto y = plotValues(sngRefVolts, in.sngChaGain, in.sngChaOffset, in.CWBChaInv))
        result.Ref = {PlotAction::Plot, *y, 0.0, refStep};
    return result;
}

} // namespace zorvik
