// zorvik-cli measure: the Measurements window's arithmetic over a recording or a .wdf.
#include "MeasureCommand.h"

#include "ExitStatus.h"
#include "TraceInput.h"
#include "analysis/Measurements.h"

namespace zorvik::cli {

namespace {

constexpr CommandOption kOptions[] = {{"format", true, 'f'}, {"output", true, 'o'}};

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

void record(std::string& out, OutputFormat format, std::int64_t index, const MeasureValues& v) {
    if (format == OutputFormat::Jsonl) {
        out += "{\"index\":";
        out += std::to_string(index);
        for (std::size_t i = 0; i < kMeasureCount; ++i) {
            out += ",\"";
            out += measureKey(static_cast<Measure>(i));
            out += "\":";
            if (v[i])
                appendNumber(out, *v[i]);
            else
                out += "null";
        }
        out += '}';
    } else {
        out += std::to_string(index);
        for (std::size_t i = 0; i < kMeasureCount; ++i) {
            out += ',';
            if (v[i])
                appendNumber(out, *v[i]);
        }
    }
}

std::string header() {
    std::string h = "index";
    for (std::size_t i = 0; i < kMeasureCount; ++i) {
        h += ',';
        h += measureKey(static_cast<Measure>(i));
    }
    return h;
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
    const OutputFormat format = parsed->format;
    return writeTraceRecords(*parsed, header(),
                             [format](std::string& out, std::int64_t index, const TraceArray& volts,
                                      float sampleInterval) {
                                 record(out, format, index, measure(volts, sampleInterval));
                             });
}

} // namespace zorvik::cli
