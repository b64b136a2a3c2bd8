// Prints what the receive cycle made of each read: frames as JSON lines or sample rows, and,
// when asked for, every other outcome of a read.
#pragma once

#include "FrameText.h"
#include "OutputSink.h"
#include "display/FormatDispData.h"
#include "instrument/ReceiveMachine.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace zorvik::cli {

enum class OutputFormat {
    Jsonl, ///< one JSON object per line
    Csv,   ///< one row per sample of accepted frames
};

/// "jsonl" or "csv"; empty for any other text.
std::optional<OutputFormat> parseOutputFormat(std::string_view text);

/// Keeps the display's values between frames, exactly as the main window does: every
/// accepted frame goes through FormatDispData starting from the window's start-up values
/// (zero and empty text), and an indicator that a frame leaves unchanged keeps the position
/// the last frame gave it. Frames are numbered from 0 in the order they were accepted.
class FrameReporter {
public:
    /// `events`: also print, as JSON lines, the reads that bring no frame (waiting markers,
    /// hunts, rejected and short frames).
    FrameReporter(OutputFormat format, bool events, OutputSink& out)
        : format_(format), events_(events), out_(out) {}

    /// Writes the CSV header (nothing for JSON lines); false when the output failed.
    bool start();
    /// Reports the outcome of one completed read of the receive cycle; false when the output
    /// failed.
    bool report(ReceiveEvent event, const ReceiveMachine& machine);

    std::int64_t framesAccepted() const { return frames_; }
    std::int64_t waitingMarkers() const { return waiting_; }

private:
    bool reportFrame(const ReceiveMachine& machine);
    bool reportEvent(std::string_view name);

    OutputFormat format_;
    bool events_;
    OutputSink& out_;
    FrameFormatter formatter_;
    AcquisitionValues values_;
    IndicatorPositions positions_;
    std::int64_t frames_ = 0;
    std::int64_t waiting_ = 0;
};

} // namespace zorvik::cli
