// The receive cycle that cuts the probe's byte stream into frames.
//
// The cycle reads the stream in two-byte probes. A probe that holds the sync byte 0x7D in
// place 0 or 1 is followed by one read of the rest of the frame (137 or 139 bytes); two sync
// bytes in a row are the probe's waiting marker. The machine only decides: the serial link
// performs the reads it asks for and feeds back what arrived.
#pragma once

#include "instrument/HardwareState.h"

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

/// What one completed read meant.
enum class ReceiveEvent {
    Held,      ///< a two-byte probe arrived while acquisition is held: stored in Value only
    Waiting,   ///< waiting marker 0x7D 0x7D: input discarded, probe again
    Hunt,      ///< no sync byte in the probe: two bytes dropped, probe again
    SyncFound, ///< sync byte in place 0 or 1: the rest of the frame is being read
    Frame,     ///< a whole frame was stored: decode and show it
    Rejected,  ///< read after a sync in place 1 failed its check: state bytes kept, no samples
    Short,     ///< the rest of the frame came short: not shown
    Redraw,    ///< a probe of other than two bytes: the last record is shown again
    TimedOut,  ///< the rest of a frame did not arrive in time: the link's failure path
    Ignored,   ///< bytes arrived with no read armed
};

/// The machine's decision for one event, for the form and the link to carry out in order.
struct ReceiveStep {
    ReceiveEvent event = ReceiveEvent::Ignored;
    std::optional<int> pointer1; ///< new value of the trigger indicator's "Pointer-1"
    bool disablePrint = false;   ///< PRINT is disabled while live frames arrive
    bool resetInput = false;     ///< discard the port's buffered input before the next read
    bool show = false;           ///< run FormatDispData, ChartA and ShowTrigLevel on the record
    ReadRequest next;            ///< the read to arm afterwards
};

class ReceiveMachine {
public:
    /// Frames are accepted only while this is set; a probe arriving while it is clear pauses
    /// reception (no read is re-armed) until the holder re-arms.
    bool blnAcquire = false;
    /// The hardware-state record of the last stored frame.
    HardwareState state;
    /// Samples of the last shown frame.
    RawSamples bytRawData{};
    /// The bytes delivered by the latest read.
    std::vector<std::uint8_t> Value;
    /// Next sample slot (1..128) while a frame is copied.
    int intFrameIndex = 0;

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
};

} // namespace zorvik
