// zorvik-cli decode: a recorded byte stream through the receive cycle, its frames printed.
#include "DecodeCommand.h"

#include "ExitStatus.h"
#include "FrameReporter.h"
#include "RecordingInput.h"
#include "StopSignals.h"
#include "StreamDecoder.h"

#include <fstream>

namespace zorvik::cli {

namespace {

constexpr CommandOption kOptions[] = {
    {"format", true, 'f'}, {"output", true, 'o'}, {"events", false, '\0'}};

constexpr std::string_view kHelp =
    R"(  zorvik-cli decode FILE [-f|--format jsonl|csv] [--events] [-o|--output OUT]
      Feeds the bytes recorded in FILE (a capture --raw recording, or any recording of
      the probe's stream; - for standard input) through the receive cycle exactly as the
      live link delivers them, and prints the frames it accepts.
      -f, --format   jsonl (the default) or csv, below
      --events       also every read that brings no frame: waiting markers, hunts,
                     rejected and short frames (JSON lines only)
      -o, --output   write to the file OUT instead of standard output; OUT appears, or
                     replaces the file there, only once the whole output is written
      Fails (status 1) when FILE is missing, unreadable or empty, or holds neither a
      frame nor a waiting marker; the error is "zorvik-cli: FILE: why".
)";

} // namespace

const Command& decodeCommand() {
    static const Command command{
        "decode",   "decode FILE", "print the frames of a recorded byte stream", kOptions, kHelp,
        &runDecode, true};
    return command;
}

int runDecode(const ParsedArgs& args) {
    int status = kExitOk;
    const std::optional<RecordingArgs> parsed = recordingArgs("decode", args, status);
    if (!parsed)
        return status;
    const std::string& path = parsed->path;
    const OutputFormat format = parsed->format;
    const std::optional<std::string>& output = parsed->output;
    std::ifstream in;
    if (!openRecording(path, in))
        return kExitFailure;

    OutputSink out = output ? OutputSink(*output) : OutputSink();
    if (out.failed())
        return fileFailure(*output, out.errorText());
    FrameReporter reporter(format, args.has("events"), out);
    if (!reporter.start())
        return outputFailure(out);
    StreamDecoder decoder(in);
    const auto end = decoder.run(
        [&reporter](ReceiveEvent event, const ReceiveMachine& machine) {
            return reporter.report(event, machine);
        },
        [] { return stopRequested() != 0; });

    if (const std::optional<int> status = interruptedStatus(out, output))
        return *status;
    // Standard output gets what was decoded also when the stream then fails; a file named with
    // --output is only put in place for a stream decoded whole.
    if (!output && !out.flush())
        return outputFailure(out);
    if (end == StreamDecoder::End::ReadError)
        return readFailure(path, decoder.bytesRead());
    if (reporter.framesAccepted() == 0 && reporter.waitingMarkers() == 0)
        return fileFailure(path, "holds no probe data: no frame and no waiting marker in " +
                                     std::to_string(decoder.bytesRead()) + " bytes");
    return finishOutput(out, output);
}

} // namespace zorvik::cli
