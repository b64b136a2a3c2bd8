// Replays a recorded byte stream through the receive cycle, read by read.
#pragma once

#include "instrument/ReceiveMachine.h"

#include <cstdint>
#include <functional>
#include <istream>

namespace zorvik::cli {

/// Feeds a recording through the program's receive cycle as the live link would have
/// delivered it: acquisition is on, and each read the cycle arms finds exactly the bytes it
/// asks for, next in the stream. A recording holds only the bytes that were delivered, so the
/// input reset after a waiting marker discards nothing here. At the end of the stream a read
/// of the rest of a frame gets the bytes that remain (the cycle then reports a short or
/// rejected frame); when none remain (a capture stopped while it awaited the rest) and when a
/// probe would find fewer than two bytes, the replay ends quietly. So a capture's recording
/// replays to exactly the lines the capture printed.
class StreamDecoder {
public:
    enum class End {
        StreamEnded, ///< the whole stream was read
        Stopped,     ///< the listener or the stop check ended the replay
        ReadError,   ///< the stream could not be read
    };
    /// Called after every completed read with the cycle's outcome; false stops the replay.
    using Listener = std::function<bool(ReceiveEvent, const ReceiveMachine&)>;
    /// Asked before every read; true stops the replay.
    using StopCheck = std::function<bool()>;

    explicit StreamDecoder(std::istream& in) : in_(in) {}

    End run(const Listener& listener, const StopCheck& stopCheck = {});

    /// Bytes taken from the stream so far.
    std::uint64_t bytesRead() const { return bytesRead_; }
    const ReceiveMachine& machine() const { return machine_; }

private:
    std::istream& in_;
    ReceiveMachine machine_;
    std::uint64_t bytesRead_ = 0;
};

} // namespace zorvik::cli
