// Benchmarks of the display arithmetic in the core: ChartA turning volts into the plot arrays
// of both traces, the trigger-level pointers, and the cursor readout texts.
#include "display/ChartA.h"
#include "display/CursorReadouts.h"
#include "display/GraphFurniture.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

using namespace zorvik;

TraceArray sineVolts(float amplitude) {
    TraceArray v{};
    for (std::size_t i = 0; i < v.size(); ++i)
        v[i] = amplitude * static_cast<float>(std::sin(0.1 * static_cast<double>(i)));
    return v;
}

/// The panel a user measures with: live trace and reference, 1 V/div, 1 ms/div, inverted
/// or not by the benchmark's argument.
ChartInputs measuringPanel(bool inverted) {
    ChartInputs in;
    in.blnLiveData = true;
    in.CWBRef = true;
    in.CWBChaInv = inverted;
    in.sngChaGain = 1.0f;
    in.sngChaOffset = 0.4f;
    in.lngDivPerSec = 1000;
    in.sngSampleInterval = 5e-5f;
    in.sngRefSampleInterval = 1e-4f;
    return in;
}

/// ChartA with both traces shown: 2 x 128 points into divisions.
void BM_ChartA(benchmark::State& state) {
    const ChartInputs in = measuringPanel(state.range(0) != 0);
    const TraceArray live = sineVolts(1.5f);
    const TraceArray ref = sineVolts(0.8f);
    for (auto _ : state) {
        ChartAResult r = ChartA(in, live, ref);
        benchmark::DoNotOptimize(r);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_ChartA)->ArgName("inverted")->Arg(0)->Arg(1);

/// ShowTrigLevel's arithmetic: the two pointers of the side scale.
void BM_ShowTrigLevel(benchmark::State& state) {
    float level = 0.5f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(level);
        TrigIndicatorPointers p = ShowTrigLevel(level, 1.0f, 0.4f, true, 0.4);
        benchmark::DoNotOptimize(p);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_ShowTrigLevel);

/// DisplayCursorData with both pairs on: the VOLTS, TIME and FREQUENCY texts. The argument
/// is the H-SCALE range (0 ns, 1 us, 2 ms).
void BM_DisplayCursorData(benchmark::State& state) {
    CursorInputs in;
    in.CWBHCursors = true;
    in.CWBVCursors = true;
    in.Cursor1X = 2.0;
    in.Cursor2X = 7.3;
    in.Cursor3Y = -1.2;
    in.Cursor4Y = 2.6;
    in.sngChaGain = 1.0f;
    in.intTimeUnit = static_cast<std::int16_t>(state.range(0));
    in.lngDivPerSec = in.intTimeUnit == 0 ? 5000000 : in.intTimeUnit == 1 ? 100000 : 1000;
    for (auto _ : state) {
        CursorReadouts r = DisplayCursorData(in);
        benchmark::DoNotOptimize(r);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_DisplayCursorData)->ArgName("timeunit")->Arg(0)->Arg(1)->Arg(2);

} // namespace
