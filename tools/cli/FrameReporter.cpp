// Prints what the receive cycle made of each read.
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

bool FrameReporter::reportEvent(std::string_view name) {
    if (!events_ || format_ != OutputFormat::Jsonl)
        return !out_.failed();
    FrameFormatter::eventJson(out_.text(), name);
    out_.endLine();
    return !out_.failed();
}

bool FrameReporter::report(ReceiveEvent event, const ReceiveMachine& machine) {
    switch (event) {
    case ReceiveEvent::Frame:
        return reportFrame(machine);
    case ReceiveEvent::Waiting:
        ++waiting_;
        return reportEvent("waiting");
    case ReceiveEvent::Hunt:
        return reportEvent("hunt");
    case ReceiveEvent::Rejected:
        if (events_ && format_ == OutputFormat::Jsonl) {
            FrameFormatter::rejectedJson(out_.text(), machine.state());
            out_.endLine();
        }
        return !out_.failed();
    case ReceiveEvent::Short:
        return reportEvent("short");
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
    const FormatDispDataResult shown =
        FormatDispData(machine.state(), machine.bytRawData(), values_);
    if (shown.CWSRange)
        positions_.range = shown.CWSRange;
    if (shown.CWSCoupling)
        positions_.coupling = shown.CWSCoupling;
    if (shown.CWSTrigger)
        positions_.trigger = shown.CWSTrigger;
    const std::int64_t index = frames_++;

    if (format_ == OutputFormat::Jsonl) {
        formatter_.frameJson(out_.text(), index, machine.state(), machine.bytRawData(), values_,
                             positions_, shown.sngChaVolts);
        out_.endLine();
    } else {
        formatter_.csvRows(out_, index, values_.sngSampleInterval, machine.bytRawData(),
                           shown.sngChaVolts);
    }
    return !out_.failed();
}

} // namespace zorvik::cli
