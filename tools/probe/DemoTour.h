// What `zorvik --demo` (and zorvik-probe --tour) shows: a signal that looks alive at the front
// panel's start-up positions and then tours the probe's settings, so that the panel's trigger
// indicator, lamps, cursors and scales all have something to show.
#pragma once

#include "probe/ProbeSettings.h"
#include "probe/ProbeStream.h"

#include <atomic>
#include <cstdint>
#include <memory>

namespace zorvik {

/// Frame periods of one step of the tour (about five seconds at the line rate).
inline constexpr std::uint64_t kDemoStepFrames = 70;
/// Steps of the tour; it then starts again.
inline constexpr std::uint64_t kDemoSteps = 6;

/// The probe's settings for frame period `period` of the tour.
///
/// Every step uses the fastest time base (20Ms/s: the 128 samples span 6.4 us, 6.4 of the
/// graph's 10 divisions at the start-up H-SCALE of 1 us/div) and the 100 V range with signals
/// of 30 to 45 V peak (1.5 to 2.25 divisions either side of zero at the start-up V-SCALE of
/// 20 V/div), a few hundred kilohertz, so whenever POWER is pressed the first trace is a clear
/// waveform across most of the graph. The steps:
///  0. a 312.5 kHz sine of 40 V, triggered rising at 5 V: two still periods;
///  1. the same sine gliding from 200 to 450 kHz: the trace breathes;
///  2. a 250 kHz square of 30 V, triggered rising;
///  3. a 400 kHz triangle of 45 V running free (trigger FR): the trace wanders;
///  4. the sine of 40 V with the trigger level at 25 V, for a moment (about a second) in the
///     middle only 20 V: waiting markers (the WAIT lamp) while it stays below the level, then
///     triggered frames (TRIG) again; the trace on screen stays meanwhile;
///  5. the sine 15 V above zero, first with DC coupling, then with AC coupling, which takes
///     the offset away.
ProbeSettings demoSettings(std::uint64_t period);

/// A stream that plays the tour without end, frame period by frame period.
StreamOptions demoStreamOptions();

/// The tour with a restart: `zorvik --demo` restarts it whenever POWER finds the probe, so a
/// user always meets its first step (the still sine) first, however long the window was open.
class DemoTour {
public:
    /// The stream options that play this tour.
    static StreamOptions streamOptions(const std::shared_ptr<DemoTour>& tour);

    /// The settings for frame period `period` of the stream (called by the stream's thread).
    ProbeSettings settingsFor(std::uint64_t period);
    /// The next frame period plays the tour's first step again (any thread).
    void restart() { restart_ = true; }

private:
    std::atomic<bool> restart_{false};
    std::uint64_t origin_ = 0;
};

} // namespace zorvik
