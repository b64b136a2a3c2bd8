// The virtual probe's acquisition: samples of the input for each frame, placed by the trigger,
// and the bytes of a frame as the probe sends them.
#pragma once

#include "instrument/HardwareState.h"
#include "probe/ProbeSettings.h"
#include "probe/Waveform.h"

#include <array>
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

namespace zorvik {

/// Sent instead of a frame while the probe waits for a trigger.
inline constexpr std::array<std::uint8_t, 2> kWaitingMarker = {kSyncByte, kSyncByte};

/// The count of a voltage: round(volts / volts per count) + 31, clipped to 0..62.
std::uint8_t voltsToCount(double volts, float voltsPerCount);

/// The probe's reserved bytes: the line's idle level, never 0 (a zero byte at power-on
/// reads as a silent port) and never the sync byte.
inline constexpr std::uint8_t kReservedByte = 0xFF;

/// A frame's 139 bytes: sync, the four settings bytes, 128 samples, a reserved byte, the four
/// voltmeter bytes and a reserved byte.
std::array<std::uint8_t, kFrameBytes> buildFrame(const HardwareState& state,
                                                 const RawSamples& samples);

/// Produces the probe's frames one after the other. Deterministic: the same settings and
/// seed give the same frames.
///
/// Timing: the first frame starts at time 0. After a frame the probe sends it (139 bytes on
/// the line) and then looks for the start of the next one, so in free run the time runs on by
/// 128 sample intervals plus the frame's time on the line. An internal trigger (IN+ / IN-)
/// starts the frame where the coupled input next crosses the trigger level rising (falling),
/// so triggered frames show a still trace; an input that never crosses the level gives a
/// waiting marker for every frame. An external trigger (EX+ / EX-) starts the frame at the
/// next start of a period of the input (phase 0), as from a generator's sync output.
/// Noise is triggered on its samples: the frame starts at the first sample at or beyond the
/// level after one below it (above it, falling).
class FrameGenerator {
public:
    explicit FrameGenerator(const ProbeSettings& settings = {}, std::uint64_t seed = 1);

    const ProbeSettings& settings() const { return m_settings; }
    /// Changes the signal and the switches from the next frame on; the probe's clock runs on.
    void setSettings(const ProbeSettings& settings);
    const Waveform& waveform() const { return m_waveform; }
    /// The settings and voltmeter bytes that every frame carries.
    const HardwareState& hardwareState() const { return m_state; }

    /// The samples of the next frame, or nothing when the probe is left waiting for a trigger.
    std::optional<RawSamples> nextSamples();
    /// What the probe sends for its next frame: the 139 bytes of a frame, or the waiting
    /// marker.
    std::vector<std::uint8_t> next();
    /// Time of sample 0 of the latest frame, in seconds (within one period for a periodic
    /// input).
    double frameStart() const { return m_frameStart; }

private:
    double uniform();
    std::optional<RawSamples> noiseFrame(TriggerMode mode);

    ProbeSettings m_settings;
    Waveform m_waveform;
    HardwareState m_state;
    std::mt19937_64 m_random;
    double m_sampleInterval;
    double m_level;
    double m_searchFrom = 0.0;
    double m_frameStart = 0.0;
};

} // namespace zorvik
