// Benchmarks of the receive path in the core: the receive cycle cutting the byte stream into
// frames, the decode of the state bytes and the samples turned into volts, alone and together.
#include "CoreBenchFrames.h"
#include "display/FormatDispData.h"
#include "instrument/DecodeTables.h"
#include "instrument/ReceiveMachine.h"

#include <benchmark/benchmark.h>

#include <span>

namespace {

using namespace zorvik;

constexpr std::size_t kFramesInStream = 256;

/// Feeds the stream to the machine read by read, exactly as the serial link completes the
/// reads the machine asks for, and calls `onFrame` for every frame to be shown.
template <typename OnFrame>
void runReceive(benchmark::State& state, ReceiveMachine& machine, OnFrame onFrame) {
    const std::vector<std::uint8_t> stream = bench::noiseFrames(kFramesInStream);
    machine.blnAcquire = true;
    ReadRequest next = machine.arm();
    std::size_t pos = 0;
    std::int64_t frames = 0;
    for (auto _ : state) {
        // One frame per iteration: the two-byte probe, then the rest of the frame.
        for (int read = 0; read < 2; ++read) {
            if (pos + static_cast<std::size_t>(next.count) > stream.size())
                pos = 0;
            const ReceiveStep step = machine.onData(
                std::span(stream.data() + pos, static_cast<std::size_t>(next.count)));
            pos += static_cast<std::size_t>(next.count);
            next = step.next;
            if (step.show) {
                onFrame();
                ++frames;
            }
        }
    }
    if (frames != static_cast<std::int64_t>(state.iterations()))
        state.SkipWithError("the receive cycle lost frame lock");
    state.SetItemsProcessed(frames);
    state.SetBytesProcessed(frames * static_cast<std::int64_t>(kFrameBytes));
}

/// The receive cycle alone: two-byte probe, sync found, the rest of the frame stored.
void BM_ReceiveMachine(benchmark::State& state) {
    ReceiveMachine machine;
    runReceive(state, machine, [&] { benchmark::DoNotOptimize(machine.bytRawData()); });
}
BENCHMARK(BM_ReceiveMachine);

/// FormatDispData alone on a stored frame: state bytes decoded, samples to volts.
void BM_FormatDispData(benchmark::State& state) {
    const std::vector<std::uint8_t> stream = bench::noiseFrames(1);
    HardwareState hw{stream[1], stream[2], stream[3], stream[4], 0, 0, 0, 0};
    RawSamples raw{};
    std::copy_n(stream.begin() + 5, raw.size(), raw.begin());
    AcquisitionValues values;
    for (auto _ : state) {
        FormatDispDataResult r = FormatDispData(hw, raw, values);
        benchmark::DoNotOptimize(r);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_FormatDispData);

/// The decode tables alone: range, trigger level, time base, the three indicator positions.
void BM_DecodeTables(benchmark::State& state) {
    std::uint8_t sw = 0x24;
    for (auto _ : state) {
        benchmark::DoNotOptimize(rangeVoltsPerCount(sw));
        benchmark::DoNotOptimize(triggerLevel(sw, 16));
        benchmark::DoNotOptimize(timeBase(6));
        benchmark::DoNotOptimize(couplingPosition(sw));
        benchmark::DoNotOptimize(rangePosition(sw));
        benchmark::DoNotOptimize(triggerPosition(0x40));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()));
}
BENCHMARK(BM_DecodeTables);

/// What the window's core does per frame: receive, decode and volts. Goal: at least
/// 10 million frames per second on one core.
void BM_ReceiveDecodeVolts(benchmark::State& state) {
    ReceiveMachine machine;
    AcquisitionValues values;
    runReceive(state, machine, [&] {
        FormatDispDataResult r = FormatDispData(machine.state(), machine.bytRawData(), values);
        benchmark::DoNotOptimize(r);
    });
}
BENCHMARK(BM_ReceiveDecodeVolts);

} // namespace
