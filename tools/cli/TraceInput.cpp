// What measure and spectrum share: the traces of FILE handed one by one to a command.
#include "TraceInput.h"

#include "ExitStatus.h"
#include "LoadedWaveform.h"
#include "OutputSink.h"
#include "StopSignals.h"
#include "StreamDecoder.h"
#include "display/FormatDispData.h"

#include <algorithm>
#include <charconv>
#include <fstream>

namespace zorvik::cli {

namespace {

int finish(OutputSink& out, const std::optional<std::string>& output) {
    if (!out.finish())
        return output && !out.closedByReader() ? fileFailure(*output, out.errorText())
                                               : outputFailure(out);
    return kExitOk;
}

} // namespace

bool isWaveformFile(const std::string& path) {
    if (path.size() < 3)
        return false;
    std::string end = path.substr(path.size() - 3);
    std::transform(end.begin(), end.end(), end.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return end == "wdf";
}

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

    if (isWaveformFile(path)) {
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
        return finish(out, output);
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
    if (out.failed())
        return outputFailure(out);
    if (const int status = stopRequested()) {
        if (!output)
            out.flush();
        return stopFailure(status);
    }
    if (end == StreamDecoder::End::ReadError)
        return fileFailure(path,
                           "cannot be read after byte " + std::to_string(decoder.bytesRead()));
    if (frames == 0)
        return fileFailure(path,
                           "holds no frame in " + std::to_string(decoder.bytesRead()) + " bytes");
    return finish(out, output);
}

} // namespace zorvik::cli
