// Samples, trigger placement and frame bytes of the virtual probe.
#include "probe/FrameGenerator.h"

#include <algorithm>
#include <cmath>

namespace zorvik {

namespace {

constexpr int kZeroCount = 31;
constexpr int kMaxCount = 62;
/// How many noise samples the trigger inspects for one frame before it gives up and sends a
/// waiting marker (about 50 ms of samples at the fastest time base).
constexpr int kNoiseTriggerSearch = 1 << 20;

} // namespace

std::uint8_t voltsToCount(double volts, float voltsPerCount) {
    const double steps = volts / static_cast<double>(voltsPerCount);
    if (std::isnan(steps))
        return kZeroCount;
    const double clipped = std::clamp(steps, -100.0, 100.0);
    const long count = std::lround(clipped) + kZeroCount;
    return static_cast<std::uint8_t>(std::clamp<long>(count, 0, kMaxCount));
}

std::array<std::uint8_t, kFrameBytes> buildFrame(const HardwareState& state,
                                                 const RawSamples& samples) {
    std::array<std::uint8_t, kFrameBytes> frame{};
    frame[0] = kSyncByte;
    frame[1] = state.bytSwitchSetting;
    frame[2] = state.bytTimebaseDef;
    frame[3] = state.bytTriggerDef;
    frame[4] = state.bytTriggerLvl;
    std::copy(samples.begin(), samples.end(), frame.begin() + 5);
    frame[133] = kReservedByte;
    frame[134] = state.bytDVM100;
    frame[135] = state.bytDVM10;
    frame[136] = state.bytDVM1;
    frame[137] = state.bytDVMflags;
    frame[138] = kReservedByte;
    return frame;
}

FrameGenerator::FrameGenerator(const ProbeSettings& settings, std::uint64_t seed)
    : m_settings(settings), m_waveform(settings.signal, settings.coupling), m_random(seed),
      m_sampleInterval(settings.sampleInterval()), m_level(settings.triggerVolts()) {
    setSettings(settings);
}

void FrameGenerator::setSettings(const ProbeSettings& settings) {
    m_settings = settings;
    m_waveform = Waveform(settings.signal, settings.coupling);
    m_sampleInterval = settings.sampleInterval();
    m_level = settings.triggerVolts();
    const auto dvm = settings.dvm.value_or(voltmeterBytes(m_waveform.mean(), settings.range));
    m_state = HardwareState{settings.switchSetting(),
                            settings.timebase,
                            settings.trigger,
                            settings.level,
                            dvm[0],
                            dvm[1],
                            dvm[2],
                            dvm[3]};
}

double FrameGenerator::uniform() {
    // 53 random bits to [0, 1): the same numbers with every standard library.
    return static_cast<double>(m_random() >> 11) * 0x1.0p-53;
}

std::optional<RawSamples> FrameGenerator::noiseFrame(TriggerMode mode) {
    const float vpc = m_settings.voltsPerCount();
    RawSamples samples{};
    std::size_t first = 0;
    if (mode == TriggerMode::InternalRising || mode == TriggerMode::InternalFalling) {
        if (!m_waveform.crosses(m_level))
            return std::nullopt;
        const bool rising = mode == TriggerMode::InternalRising;
        double previous = m_waveform.noiseValue(uniform());
        bool found = false;
        for (int i = 0; i < kNoiseTriggerSearch && !found; ++i) {
            const double value = m_waveform.noiseValue(uniform());
            found = rising ? previous < m_level && value >= m_level
                           : previous > m_level && value <= m_level;
            if (found)
                samples[first++] = voltsToCount(value, vpc);
            previous = value;
        }
        if (!found)
            return std::nullopt;
    }
    for (std::size_t i = first; i < kSamplesPerFrame; ++i)
        samples[i] = voltsToCount(m_waveform.noiseValue(uniform()), vpc);
    return samples;
}

std::optional<RawSamples> FrameGenerator::nextSamples() {
    const TriggerMode mode = m_settings.triggerMode();
    const bool internal =
        mode == TriggerMode::InternalRising || mode == TriggerMode::InternalFalling;
    if (m_waveform.isNoise())
        return noiseFrame(mode);
    if (internal && !m_waveform.crosses(m_level))
        return std::nullopt;

    double start = m_searchFrom;
    if (internal)
        start = m_waveform.nextCrossing(start, m_level, mode == TriggerMode::InternalRising);
    else if (mode != TriggerMode::FreeRun && m_waveform.isPeriodic())
        start = m_waveform.nextPeriodStart(start);
    m_frameStart = start;

    const float vpc = m_settings.voltsPerCount();
    RawSamples samples{};
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i)
        samples[i] = voltsToCount(m_waveform.valueAt(start + i * m_sampleInterval), vpc);

    m_searchFrom = start + kSamplesPerFrame * m_sampleInterval + kFrameBytes / kLineBytesPerSecond;
    // The input repeats every period: keeping the clock within one period keeps its precision
    // over long runs.
    if (m_waveform.isPeriodic())
        m_searchFrom = std::fmod(m_searchFrom, m_waveform.period());
    return samples;
}

std::vector<std::uint8_t> FrameGenerator::next() {
    const auto samples = nextSamples();
    if (!samples)
        return {kWaitingMarker.begin(), kWaitingMarker.end()};
    const auto frame = buildFrame(m_state, *samples);
    return {frame.begin(), frame.end()};
}

} // namespace zorvik
