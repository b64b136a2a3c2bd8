// zorvik-cli measure: the Measurements window's arithmetic over a recording or a .wdf.
#include "MeasureCommand.h"

#include "ExitStatus.h"
#include "FrameReporter.h"
#include "LoadedWaveform.h"
#include "OutputSink.h"
#include "RecordingInput.h"
#include "StopSignals.h"
#include "StreamDecoder.h"
#include "analysis/Measurements.h"
#include "display/FormatDispData.h"

#include <algorithm>
#include <charconv>
#include <fstream>

namespace zorvik::cli {

namespace {

constexpr CommandOption kOptions[] = {{"format", true, 'f'}, {"output", true, 'o'}};

/// The keys, in the order of the measurements (and of the Measurements window's rows).
constexpr const char* kKeys[kMeasureCount] = {
    "max",       "min",      "peak_to_peak",   "mean",           "rms",
    "ac_rms",    "top",      "base",           "amplitude",      "overshoot",
    "frequency", "period",   "positive_width", "negative_width", "duty_cycle",
    "rise_time", "fall_time"};

constexpr std::string_view kHelp =
    R"(  zorvik-cli measure FILE [-f|--format jsonl|csv] [-o|--output OUT]
      Measures each frame of the recording FILE (read as decode reads it; - for standard
      input) or, for a FILE whose name ends in "wdf", the reference trace of that
      Waveform Data File, with the arithmetic of the Measurements window.
      -f, --format jsonl  (the default) one JSON object a frame:
        {"index":N,"max":V,"min":V,"peak_to_peak":V,"mean":V,"rms":V,"ac_rms":V,
         "top":V,"base":V,"amplitude":V,"overshoot":P,"frequency":H,"period":S,
         "positive_width":S,"negative_width":S,"duty_cycle":P,"rise_time":S,
         "fall_time":S}
        in volts (V), per cent (P), hertz (H) and seconds (S), each the shortest
        decimal text of its value, null where the trace does not have it (the
        frequency of less than one period, the rise time of a DC level). N is the
        frame's number as decode counts it (from 0); a .wdf gives one object, N 0.
      -f, --format csv    the header index,max,min,... and one row a frame, an empty
        field where a value is undefined.
      -o, --output   write to the file OUT instead of standard output; OUT appears, or
                     replaces the file there, only once the whole output is written
      Fails (status 1) as decode and wdf fail for their files.
)";

void number(std::string& out, double v) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, v);
    out.append(text, end.ptr);
}

void record(std::string& out, OutputFormat format, std::int64_t index, const MeasureValues& v) {
    if (format == OutputFormat::Jsonl) {
        out += "{\"index\":";
        out += std::to_string(index);
        for (std::size_t i = 0; i < kMeasureCount; ++i) {
            out += ",\"";
            out += kKeys[i];
            out += "\":";
            if (v[i])
                number(out, *v[i]);
            else
                out += "null";
        }
        out += '}';
    } else {
        out += std::to_string(index);
        for (std::size_t i = 0; i < kMeasureCount; ++i) {
            out += ',';
            if (v[i])
                number(out, *v[i]);
        }
    }
}

std::string header() {
    std::string h = "index";
    for (const char* key : kKeys) {
        h += ',';
        h += key;
    }
    return h;
}

bool isWaveformFile(const std::string& path) {
    if (path.size() < 3)
        return false;
    std::string end = path.substr(path.size() - 3);
    std::transform(end.begin(), end.end(), end.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return end == "wdf";
}

int finish(OutputSink& out, const std::optional<std::string>& output) {
    if (!out.finish())
        return output && !out.closedByReader() ? fileFailure(*output, out.errorText())
                                               : outputFailure(out);
    return kExitOk;
}

} // namespace

const Command& measureCommand() {
    static const Command command{
        "measure", "measure FILE", "print the automatic measurements of each frame",
        kOptions,  kHelp,          &runMeasure,
        false};
    return command;
}

int runMeasure(const ParsedArgs& args) {
    int status = kExitOk;
    const std::optional<RecordingArgs> parsed = recordingArgs("measure", args, status);
    if (!parsed)
        return status;
    const std::string& path = parsed->path;
    const OutputFormat format = parsed->format;
    const std::optional<std::string>& output = parsed->output;

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
        std::string text = format == OutputFormat::Csv ? header() + "\n" : std::string();
        record(text, format, 0,
               measure(loaded.sngRefVolts, loaded.sngRefSampleInterval.value_or(0.0f)));
        out.writeLine(text);
        return finish(out, output);
    }

    std::ifstream in;
    if (!openRecording(path, in))
        return kExitFailure;

    OutputSink out = output ? OutputSink(*output) : OutputSink();
    if (out.failed())
        return fileFailure(*output, out.errorText());
    if (format == OutputFormat::Csv)
        out.writeLine(header());
    AcquisitionValues values;
    std::int64_t frames = 0;
    StreamDecoder decoder(in);
    const auto end = decoder.run(
        [&](ReceiveEvent event, const ReceiveMachine& machine) {
            if (event != ReceiveEvent::Frame)
                return !out.failed();
            // The frame decoded as the window decodes it, then measured as the window does.
            const FormatDispDataResult shown =
                FormatDispData(machine.state(), machine.bytRawData(), values);
            record(out.text(), format, frames++,
                   measure(shown.sngChaVolts, values.sngSampleInterval));
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
