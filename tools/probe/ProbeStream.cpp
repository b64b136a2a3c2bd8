// Frame periods, waiting markers, faults and replay of the virtual probe's byte schedule.
#include "probe/ProbeStream.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace zorvik {

namespace {

/// The faults draw from their own generator, so that asking for a fault never changes the
/// samples of the frames.
constexpr std::uint64_t kFaultSeedMix = 0x9E3779B97F4A7C15ull;

} // namespace

ProbeStream::ProbeStream(const ProbeSettings& settings, const StreamOptions& options)
    : ProbeStream(settings, options, {}, false) {}

ProbeStream::ProbeStream(const ProbeSettings& settings, const StreamOptions& options,
                         std::vector<std::uint8_t> replayBytes, bool loop)
    : m_options(options), m_generator(settings, options.seed), m_replay(std::move(replayBytes)),
      m_loop(loop), m_random(options.seed ^ kFaultSeedMix) {
    if (m_options.garbageEvery == 0)
        m_options.garbageEvery = 1;
}

ProbeStream ProbeStream::replay(std::vector<std::uint8_t> bytes, bool loop,
                                const StreamOptions& options) {
    ProbeStream stream(ProbeSettings{}, options, std::move(bytes), loop);
    stream.m_replaying = true;
    return stream;
}

bool ProbeStream::isFinite() const {
    return m_options.frames || m_options.disconnectAfter ||
           (m_replaying && (!m_loop || m_replay.empty()));
}

double ProbeStream::uniform() {
    return static_cast<double>(m_random() >> 11) * 0x1.0p-53;
}

std::vector<std::uint8_t> ProbeStream::randomBytes(std::size_t count) {
    std::vector<std::uint8_t> bytes(count);
    for (auto& byte : bytes)
        byte = static_cast<std::uint8_t>(m_random() >> 56);
    return bytes;
}

std::size_t ProbeStream::dropBytes(std::vector<std::uint8_t>& bytes) {
    if (m_options.dropProbability <= 0.0)
        return 0;
    std::vector<std::uint8_t> kept;
    kept.reserve(bytes.size());
    for (const auto byte : bytes) {
        if (uniform() >= m_options.dropProbability)
            kept.push_back(byte);
    }
    const std::size_t dropped = bytes.size() - kept.size();
    bytes = std::move(kept);
    m_counters.bytesDropped += dropped;
    return dropped;
}

void ProbeStream::pushPeriod(std::vector<std::uint8_t> bytes, std::size_t lineBytes, bool frame) {
    // The stall cuts the period in two at the middle of its bytes.
    const bool stall = m_options.stallAfter && *m_options.stallAfter == m_counters.framePeriods;
    std::vector<std::vector<std::uint8_t>> parts;
    if (stall) {
        const auto middle = bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 2);
        parts.emplace_back(bytes.begin(), middle);
        parts.emplace_back(middle, bytes.end());
        ++m_counters.stalls;
    } else {
        parts.push_back(std::move(bytes));
    }
    std::size_t dropped = 0;
    std::size_t lineLeft = lineBytes;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const bool last = i + 1 == parts.size();
        StreamChunk chunk;
        chunk.lineBytes = last ? lineLeft : parts[i].size();
        lineLeft -= chunk.lineBytes;
        dropped += dropBytes(parts[i]);
        chunk.bytes = std::move(parts[i]);
        chunk.stallAfter = last ? std::chrono::milliseconds{0} : m_options.stallFor;
        chunk.endsFrame = last && frame;
        m_pending.push_back(std::move(chunk));
    }
    if (frame) {
        ++m_counters.framesSent;
        if (dropped == 0)
            ++m_counters.framesIntact;
    }
}

void ProbeStream::produceFramePeriod() {
    if (m_replaying && m_replayPos >= m_replay.size()) {
        if (!m_loop || m_replay.empty()) {
            m_end = StreamEnd::Finished;
            return;
        }
        m_replayPos = 0;
    }
    const std::uint64_t period = m_counters.framePeriods;
    if (m_options.garbageBytes > 0 && !m_options.garbageOnly && period > 0 &&
        period % m_options.garbageEvery == 0) {
        StreamChunk garbage;
        garbage.bytes = randomBytes(m_options.garbageBytes);
        garbage.lineBytes = garbage.bytes.size();
        m_counters.garbageBytes += garbage.bytes.size();
        dropBytes(garbage.bytes);
        m_pending.push_back(std::move(garbage));
    }

    if (m_replaying) {
        const std::size_t count = std::min(kFrameBytes, m_replay.size() - m_replayPos);
        const auto first = m_replay.begin() + static_cast<std::ptrdiff_t>(m_replayPos);
        m_replayPos += count;
        pushPeriod({first, first + static_cast<std::ptrdiff_t>(count)}, count, false);
    } else if (m_options.garbageOnly) {
        auto bytes = randomBytes(kFrameBytes);
        m_counters.garbageBytes += bytes.size();
        pushPeriod(std::move(bytes), kFrameBytes, false);
    } else {
        if (period > 0) {
            for (std::size_t i = 0; i < m_options.waitingBetween; ++i) {
                StreamChunk marker;
                marker.bytes.assign(kWaitingMarker.begin(), kWaitingMarker.end());
                marker.lineBytes = kFrameBytes;
                dropBytes(marker.bytes);
                ++m_counters.waitingMarkers;
                m_pending.push_back(std::move(marker));
            }
        }
        if (m_options.program) {
            const ProbeSettings wanted = m_options.program(period);
            if (!(wanted == m_generator.settings()))
                m_generator.setSettings(wanted);
        }
        auto bytes = m_generator.next();
        const bool frame = bytes.size() == kFrameBytes;
        if (!frame)
            ++m_counters.waitingMarkers;
        pushPeriod(std::move(bytes), kFrameBytes, frame);
    }
    ++m_counters.framePeriods;
}

std::optional<StreamChunk> ProbeStream::next() {
    if (m_pending.empty() && m_end == StreamEnd::Running) {
        const std::uint64_t done = m_counters.framePeriods;
        if (m_options.disconnectAfter && done >= *m_options.disconnectAfter)
            m_end = StreamEnd::Disconnected;
        else if (m_options.frames && done >= *m_options.frames)
            m_end = StreamEnd::Finished;
        else
            produceFramePeriod();
    }
    if (m_pending.empty())
        return std::nullopt;
    StreamChunk chunk = std::move(m_pending.front());
    m_pending.pop_front();
    m_counters.bytesSent += chunk.bytes.size();
    return chunk;
}

std::vector<std::uint8_t> ProbeStream::drain() {
    if (!isFinite())
        throw std::logic_error("drain() of an endless probe stream");
    std::vector<std::uint8_t> bytes;
    while (auto chunk = next())
        bytes.insert(bytes.end(), chunk->bytes.begin(), chunk->bytes.end());
    return bytes;
}

std::vector<std::uint8_t> makeProbeBytes(const ProbeSettings& settings, std::uint64_t frames,
                                         std::size_t waitingBetween, std::uint64_t seed) {
    StreamOptions options;
    options.seed = seed;
    options.frames = frames;
    options.waitingBetween = waitingBetween;
    return ProbeStream(settings, options).drain();
}

} // namespace zorvik
