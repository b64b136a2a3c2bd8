// What measure and spectrum share: the traces of FILE handed one by one to a command.
#include "TraceInput.h"

#include "ExitStatus.h"
#include "LoadedWaveform.h"
#include "OutputSink.h"
#include "StopSignals.h"
#include "StreamDecoder.h"
#include "display/FormatDispData.h"

#include <charconv>
#include <fstream>

namespace zorvik::cli {

void appendNumber(std::string& out, double v) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, v);
    out.append(text, end.ptr);
}

int writeTraceRecords(const RecordingArgs& args, const std::string& csvHeader,
                      const TraceRecord& record) {
    const std::string& path = args.path;
    const std::optional<std::string>& output = args.output;
    const bool csv = args.format == OutputFormat::Csv;

    if (WaveformFile::hasWaveformExtension(path)) {
        const LoadedWaveform loaded = loadWaveform(path);
        if (loaded.result != WaveformLoadResult::Loaded) {
            if (loaded.result == WaveformLoadResult::NotForThisApplication)
                printError(path + ": " + WaveformFile::kNotForThisApplicationText);
            return fileFailure(path, WaveformFile::kLoadErrorText);
        }
        OutputSink out = output ? OutputSink(*output) : OutputSink();
        if (out.failed())
            return fileFailure(*output, out.errorText());
        std::string text = csv ? csvHeader + "\n" : std::string();
        record(text, 0, loaded.sngRefVolts, loaded.sngRefSampleInterval.value_or(0.0f));
        out.writeLine(text);
        return finishOutput(out, output);
    }

    std::ifstream in;
    if (!openRecording(path, in))
        return kExitFailure;

    OutputSink out = output ? OutputSink(*output) : OutputSink();
    if (out.failed())
        return fileFailure(*output, out.errorText());
    if (csv)
        out.writeLine(csvHeader);
    AcquisitionValues values;
    std::int64_t frames = 0;
    StreamDecoder decoder(in);
    const auto end = decoder.run(
        [&](ReceiveEvent event, const ReceiveMachine& machine) {
            if (event != ReceiveEvent::Frame)
                return !out.failed();
            // The frame decoded as the window decodes it.
            const FormatDispDataResult shown =
                FormatDispData(machine.state(), machine.bytRawData(), values);
            record(out.text(), frames++, shown.sngChaVolts, values.sngSampleInterval);
            out.endLine();
            return !out.failed();
        },
        [] { return stopRequested() != 0; });
    if (const std::optional<int> status = interruptedStatus(out, output))
        return *status;
    if (end == StreamDecoder::End::ReadError)
        return readFailure(path, decoder.bytesRead());
    if (frames == 0)
        return fileFailure(path,
                           "holds no frame in " + std::to_string(decoder.bytesRead()) + " bytes");
    return finishOutput(out, output);
}

} // namespace zorvik::cli
