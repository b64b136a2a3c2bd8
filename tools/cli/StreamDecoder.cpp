// Replays a recorded byte stream through the receive cycle, read by read.
#include "StreamDecoder.h"

#include <vector>

namespace zorvik::cli {

StreamDecoder::End StreamDecoder::run(const Listener& listener, const StopCheck& stopCheck) {
    machine_.blnAcquire = true;
    machine_.arm();
    std::vector<std::uint8_t> buffer;
    while (true) {
        if (stopCheck && stopCheck())
            return End::Stopped;
        const ReadRequest request = machine_.pending();
        if (request.count <= 0)
            return End::StreamEnded;
        buffer.resize(static_cast<std::size_t>(request.count));
        in_.read(reinterpret_cast<char*>(buffer.data()), request.count);
        if (in_.bad())
            return End::ReadError;
        const auto got = static_cast<std::size_t>(in_.gcount());
        bytesRead_ += got;
        const bool complete = got == buffer.size();
        // A probe needs its two bytes; a single trailing byte while hunting is no event. A
        // stream that ends right where the rest of a frame was awaited is a capture that was
        // stopped while it waited: that read never completed, so nothing is reported for it.
        if (!complete && (!request.timed || got == 0))
            return End::StreamEnded;
        buffer.resize(got);
        const ReceiveStep step = machine_.onData(buffer);
        if (listener && !listener(step.event, machine_))
            return End::Stopped;
        if (!complete)
            return End::StreamEnded;
    }
}

} // namespace zorvik::cli
