// The demonstration tour of the virtual probe.
#include "probe/DemoTour.h"

namespace zorvik {

namespace {

constexpr std::uint8_t kFastestTimebase = 0; // 20Ms/s
constexpr std::uint8_t kRange100V = 0x08;
constexpr std::uint8_t kInternalRising = 0x40;
constexpr std::uint8_t kFreeRun = 0x00;
constexpr std::uint8_t kLevel5V = 16; // +5 V on the 100 V range
constexpr std::uint8_t kLevel25V = 4; // +25 V on the 100 V range

/// How far into its step a period is, from 0 to 1.
double progress(std::uint64_t period) {
    return static_cast<double>(period % kDemoStepFrames) / static_cast<double>(kDemoStepFrames - 1);
}

} // namespace

ProbeSettings demoSettings(std::uint64_t period) {
    ProbeSettings s;
    s.range = kRange100V;
    s.timebase = kFastestTimebase;
    s.coupling = Coupling::Dc;
    s.trigger = kInternalRising;
    s.level = kLevel5V;
    s.signal.shape = Shape::Sine;
    s.signal.frequency = 312500.0;
    s.signal.amplitude = 40.0;
    s.signal.offset = 0.0;
    const double t = progress(period);
    switch ((period / kDemoStepFrames) % kDemoSteps) {
    case 0:
        break;
    case 1:
        s.signal.frequency = 200000.0 + 250000.0 * t;
        break;
    case 2:
        s.signal.shape = Shape::Square;
        s.signal.frequency = 250000.0;
        s.signal.amplitude = 30.0;
        break;
    case 3:
        s.signal.shape = Shape::Triangle;
        s.signal.frequency = 400000.0;
        s.signal.amplitude = 45.0;
        s.trigger = kFreeRun;
        break;
    case 4:
        // For a moment in the middle of the step the signal stays below the level.
        s.signal.amplitude = (t > 0.45 && t < 0.6) ? 20.0 : 40.0;
        s.level = kLevel25V;
        break;
    default:
        s.signal.offset = 15.0;
        s.signal.amplitude = 30.0;
        s.coupling = t < 0.5 ? Coupling::Dc : Coupling::Ac;
        break;
    }
    return s;
}

StreamOptions demoStreamOptions() {
    StreamOptions o;
    o.program = demoSettings;
    return o;
}

StreamOptions DemoTour::streamOptions(const std::shared_ptr<DemoTour>& tour) {
    StreamOptions o;
    o.program = [tour](std::uint64_t period) { return tour->settingsFor(period); };
    return o;
}

ProbeSettings DemoTour::settingsFor(std::uint64_t period) {
    if (restart_.exchange(false))
        origin_ = period;
    return demoSettings(period - origin_);
}

} // namespace zorvik
