// One frame as the receive cycle hands it on: the probe's settings, its samples, and the kind
// of read that produced it. A value: whoever receives it keeps a copy, nobody shares the
// decoder's own record.
#pragma once

#include "instrument/HardwareState.h"

namespace zorvik {

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

/// The record the display is to show: after a whole frame (`Frame`) or again after a probe of
/// other than two bytes (`Redraw`, the decoder's present record, which may carry the state
/// bytes of a rejected or short read since the last frame).
struct DecodedFrame {
    ReceiveEvent kind = ReceiveEvent::Frame;
    HardwareState state;
    RawSamples bytRawData{};

    friend bool operator==(const DecodedFrame&, const DecodedFrame&) = default;
};

} // namespace zorvik
