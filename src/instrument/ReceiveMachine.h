// The receive cycle that cuts the probe's byte stream into frames.
//
// The cycle reads the stream in two-byte probes. A probe that holds the sync byte 0x7D in
// place 0 or 1 is followed by one read of the rest of the frame (137 or 139 bytes); two sync
// bytes in a row are the probe's waiting marker. The machine only decides: the serial link
// performs the reads it asks for and feeds back what arrived.
#pragma once

#include "instrument/DecodedFrame.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace zorvik {

/// The read the receive cycle wants armed next.
struct ReadRequest {
    int count = 0;      ///< bytes to read; 0: no read armed (reception paused)
    bool timed = false; ///< true: the read of the rest of a frame, bounded by the frame time-out

    friend bool operator==(const ReadRequest&, const ReadRequest&) = default;
};

/// Time-out of the read of the rest of a frame, in milliseconds.
inline constexpr int kFrameTimeoutMs = 3000;
/// Value of the trigger indicator's "Pointer-1" while the probe waits for a trigger.
inline constexpr int kPointerWaiting = 300;
/// Value of "Pointer-1" for a triggered frame.
inline constexpr int kPointerTriggered = 0;

/// The machine's decision for one event, for the form and the link to carry out in order.
struct ReceiveStep {
    ReceiveEvent event = ReceiveEvent::Ignored;
    std::optional<int> pointer1; ///< new value of the trigger indicator's "Pointer-1"
    bool disablePrint = false;   ///< PRINT is disabled while live frames arrive
    bool resetInput = false;     ///< discard the port's buffered input before the next read
    /// The record is to be shown (Frame and Redraw): the machine's frame() hands it on.
    bool show = false;
    ReadRequest next; ///< the read to arm afterwards
};

class ReceiveMachine {
public:
    /// Frames are accepted only while this is set; a probe arriving while it is clear pauses
    /// reception (no read is re-armed) until the holder re-arms.
    bool blnAcquire = false;

    /// The hardware-state record of the last stored frame (a rejected or short read keeps the
    /// state bytes it brought).
    const HardwareState& state() const { return record_.state; }
    /// Samples of the last frame (a short read leaves the samples it brought).
    const RawSamples& bytRawData() const { return record_.bytRawData; }
    /// The record as a frame value, with the kind of read that last showed it: what a step
    /// with `show` hands on (valid until the next read completes; a consumer copies it).
    const DecodedFrame& frame() const { return record_; }
    /// The bytes delivered by the latest read.
    const std::vector<std::uint8_t>& Value() const { return Value_; }
    /// Next sample slot (1..128) after the last frame was copied.
    int intFrameIndex() const { return intFrameIndex_; }

    /// Starts (or restarts) the cycle: the two-byte probe.
    ReadRequest arm();
    /// Reception stopped: no read is pending any more.
    void stop();
    /// The read that is pending now.
    ReadRequest pending() const { return pending_; }

    /// A pending read completed with these bytes (fewer than asked for only when the stream
    /// ended inside a frame).
    ReceiveStep onData(std::span<const std::uint8_t> bytes);
    /// The pending timed read ran out of time.
    ReceiveStep onTimeout();

private:
    enum class Expect { Nothing, Probe, Rest137, Rest139 };

    ReceiveStep onProbe();
    ReceiveStep onRest(bool syncInPlace1);
    bool copySamples(int first, int last);

    Expect expect_ = Expect::Nothing;
    std::uint8_t syncField_ = 0; // the byte after a sync in place 0: bytSwitchSetting
    ReadRequest pending_;
    DecodedFrame record_;
    std::vector<std::uint8_t> Value_;
    int intFrameIndex_ = 0;
};

} // namespace zorvik
