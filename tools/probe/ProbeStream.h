// The byte schedule of the virtual probe: back-to-back frames, waiting markers, and faults on
// request (dropped bytes, a stall mid-frame, garbage, a disconnect), or the replay of a
// recorded byte file.
#pragma once

#include "probe/FrameGenerator.h"
#include "probe/ProbeSettings.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <random>
#include <vector>

namespace zorvik {

/// What the stream sends and which faults it injects.
///
/// A "frame period" is one frame's turn on the line: a frame, the waiting marker sent in its
/// place, a 139-byte piece of a replayed file or of a garbage-only stream. The counts below
/// (stop, stall, garbage, disconnect) count frame periods; the extra waiting markers asked for
/// by `waitingBetween` do not.
struct StreamOptions {
    std::uint64_t seed = 1;
    /// Waiting markers between two frames; each takes a frame period on the line.
    std::size_t waitingBetween = 0;
    /// End the stream after this many frame periods.
    std::optional<std::uint64_t> frames;
    /// Each byte is lost with this probability (the line time still passes).
    double dropProbability = 0.0;
    /// After this many frame periods, stop for `stallFor` in the middle of the next one.
    std::optional<std::uint64_t> stallAfter;
    std::chrono::milliseconds stallFor{500};
    /// Inject this many random bytes after every `garbageEvery` frame periods.
    std::size_t garbageBytes = 0;
    std::uint64_t garbageEvery = 1;
    /// Send nothing but random bytes.
    bool garbageOnly = false;
    /// Disconnect after this many frame periods.
    std::optional<std::uint64_t> disconnectAfter;
    /// The settings for each frame period, for a probe whose signal or switches change as it
    /// runs (the demonstration tour); empty: the settings the stream was made with, always.
    std::function<ProbeSettings(std::uint64_t period)> program;
};

/// A piece of the schedule.
struct StreamChunk {
    std::vector<std::uint8_t> bytes;
    /// Byte times the piece takes on a paced line; more than bytes.size() when bytes were
    /// dropped, or for a waiting marker, after which the line stays quiet for the rest of its
    /// frame period.
    std::size_t lineBytes = 0;
    /// The line stops for this long after the piece (a stall).
    std::chrono::milliseconds stallAfter{0};
    /// The piece completes a frame of samples.
    bool endsFrame = false;
};

struct StreamCounters {
    std::uint64_t framePeriods = 0;   ///< frame periods begun
    std::uint64_t framesSent = 0;     ///< frames of samples sent, whole or damaged
    std::uint64_t framesIntact = 0;   ///< of those, frames that lost no byte
    std::uint64_t waitingMarkers = 0; ///< waiting markers, in place of frames or between them
    std::uint64_t garbageBytes = 0;   ///< random bytes injected
    std::uint64_t bytesDropped = 0;   ///< bytes lost on purpose
    std::uint64_t bytesSent = 0;      ///< bytes handed out in chunks
    std::uint64_t stalls = 0;
};

enum class StreamEnd { Running, Finished, Disconnected };

class ProbeStream {
public:
    explicit ProbeStream(const ProbeSettings& settings = {}, const StreamOptions& options = {});
    /// Sends the bytes of a recorded file, in 139-byte pieces, once or over and over.
    static ProbeStream replay(std::vector<std::uint8_t> bytes, bool loop,
                              const StreamOptions& options = {});

    /// The next piece of the schedule; nothing once the stream has ended.
    std::optional<StreamChunk> next();
    /// Why the stream ended, or Running.
    StreamEnd end() const { return m_end; }
    const StreamCounters& counters() const { return m_counters; }
    /// The stream ends by itself (a frame count, a disconnect, or a replay without loop).
    bool isFinite() const;
    /// Every byte up to the end of a finite stream (std::logic_error for an endless one).
    std::vector<std::uint8_t> drain();

private:
    ProbeStream(const ProbeSettings& settings, const StreamOptions& options,
                std::vector<std::uint8_t> replayBytes, bool loop);
    void produceFramePeriod();
    void pushPeriod(std::vector<std::uint8_t> bytes, std::size_t lineBytes, bool frame);
    std::size_t dropBytes(std::vector<std::uint8_t>& bytes);
    std::vector<std::uint8_t> randomBytes(std::size_t count);
    double uniform();

    StreamOptions m_options;
    FrameGenerator m_generator;
    std::vector<std::uint8_t> m_replay;
    bool m_replaying = false;
    bool m_loop = false;
    std::size_t m_replayPos = 0;
    std::mt19937_64 m_random;
    std::deque<StreamChunk> m_pending;
    StreamCounters m_counters;
    StreamEnd m_end = StreamEnd::Running;
};

/// The bytes of `frames` frame periods of a probe with these settings, with `waitingBetween`
/// waiting markers between frames: a ready-made input for tests of the receiving side.
std::vector<std::uint8_t> makeProbeBytes(const ProbeSettings& settings, std::uint64_t frames,
                                         std::size_t waitingBetween = 0, std::uint64_t seed = 1);

} // namespace zorvik
