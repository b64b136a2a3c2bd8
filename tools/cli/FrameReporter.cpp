// Prints what the receive cycle made of each read: events as JSON lines, or sample rows.
#include "FrameReporter.h"

namespace zorvik::cli {

std::optional<OutputFormat> parseOutputFormat(std::string_view text) {
    if (text == "jsonl")
        return OutputFormat::Jsonl;
    if (text == "csv")
        return OutputFormat::Csv;
    return std::nullopt;
}

bool FrameReporter::start() {
    if (format_ == OutputFormat::Csv)
        return out_.writeLine(csvHeader());
    return !out_.failed();
}

bool FrameReporter::report(ReceiveEvent event, const ReceiveMachine& machine) {
    const bool json = format_ == OutputFormat::Jsonl;
    switch (event) {
    case ReceiveEvent::Frame:
        return reportFrame(machine);
    case ReceiveEvent::Waiting:
        ++waiting_;
        return !json || out_.writeLine(eventJson("waiting"));
    case ReceiveEvent::Hunt:
        return !json || out_.writeLine(eventJson("hunt"));
    case ReceiveEvent::Rejected:
        return !json || out_.writeLine(rejectedJson(machine.state));
    case ReceiveEvent::Short:
        return !json || out_.writeLine(eventJson("short"));
    case ReceiveEvent::Held:
    case ReceiveEvent::SyncFound:
    case ReceiveEvent::Redraw:
    case ReceiveEvent::TimedOut:
    case ReceiveEvent::Ignored:
        break;
    }
    return !out_.failed();
}

bool FrameReporter::reportFrame(const ReceiveMachine& machine) {
    const FormatDispDataResult shown = FormatDispData(machine.state, machine.bytRawData, values_);
    if (shown.CWSRange)
        positions_.range = shown.CWSRange;
    if (shown.CWSCoupling)
        positions_.coupling = shown.CWSCoupling;
    if (shown.CWSTrigger)
        positions_.trigger = shown.CWSTrigger;
    const std::int64_t index = frames_++;

    if (format_ == OutputFormat::Jsonl) {
        return out_.writeLine(frameJson(index, machine.state, machine.bytRawData, values_,
                                        positions_, shown.sngChaVolts));
    }
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i) {
        if (!out_.writeLine(csvRow(index, static_cast<int>(i), values_.sngSampleInterval,
                                   machine.bytRawData[i], shown.sngChaVolts[i])))
            return false;
    }
    return true;
}

} // namespace zorvik::cli
