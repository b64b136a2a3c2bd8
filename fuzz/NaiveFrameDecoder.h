// A second, deliberately plain reading of the probe's frame rules, kept only to check the
// receive cycle against. The whole byte stream lies in one array and a cursor walks it; the
// bytes "arrive" in the chunks the line delivered them in, so that discarding the port's
// input drops exactly what had arrived by then. No pending reads, no events: one loop.
#pragma once

#include "instrument/HardwareState.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zorvik::fuzz {

/// What the window does just before a chunk of bytes arrives.
enum class LineAction : std::uint8_t {
    None,
    ClearAcquire, ///< blnAcquire is cleared; the pending read stays armed
    Hold,         ///< STORE: blnAcquire cleared and reception stopped (buffered bytes stay)
    Resume,       ///< blnAcquire set, the port's input discarded, the two-byte probe armed
};

/// What happens when the line has nothing more and the pending read is still short of bytes.
enum class StreamEnding : std::uint8_t {
    Silent,  ///< nothing: the read stays pending
    Partial, ///< the read completes with the bytes that did arrive
    TimeOut, ///< the read runs out of time (only the read of a frame's rest has a time-out)
};

/// A byte stream as the line delivers it.
struct LineScript {
    std::vector<std::uint8_t> bytes;
    std::vector<std::size_t> chunks; ///< sizes in arrival order, adding up to bytes.size()
    std::vector<LineAction> actions; ///< one per chunk
    StreamEnding ending = StreamEnding::Silent;
};

enum class CycleKind : std::uint8_t {
    Held,     ///< a probe arrived while acquisition is held
    Waiting,  ///< 0x7D 0x7D
    Hunt,     ///< no sync byte in the probe
    Sync,     ///< sync in place 0 or 1: the frame's rest is read next
    Frame,    ///< a frame was stored and is shown
    Rejected, ///< the frame read after a sync in place 1 failed its check
    Short,    ///< the frame's rest came short
    Redraw,   ///< a probe of other than two bytes
    TimedOut, ///< the frame's rest did not come in time
};

/// One decision of the receive cycle and the record it leaves behind.
struct CycleRecord {
    CycleKind kind = CycleKind::Hunt;
    int pointer = -1; ///< value given to "Pointer-1"; -1 when left alone
    bool disablePrint = false;
    bool resetInput = false;
    bool show = false;
    int nextCount = 0; ///< bytes of the read armed afterwards; 0 none
    bool nextTimed = false;
    HardwareState state;
    RawSamples samples{};

    friend bool operator==(const CycleRecord&, const CycleRecord&) = default;
};

std::string describe(const CycleRecord& record);

/// Every decision the frame rules take on this stream, in order.
std::vector<CycleRecord> naiveDecode(const LineScript& script);

} // namespace zorvik::fuzz
