// zorvik-cli decode: a recorded byte stream through the receive cycle, printed event by event.
#include "DecodeCommand.h"

#include "ExitStatus.h"
#include "FrameReporter.h"
#include "StopSignals.h"
#include "StreamDecoder.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace zorvik::cli {

namespace {

constexpr CommandOption kOptions[] = {{"format", true}};

constexpr std::string_view kHelp =
    R"(  zorvik-cli decode FILE [--format jsonl|csv]
      Feeds the bytes recorded in FILE (a capture --raw recording, or any recording of
      the probe's stream) through the receive cycle exactly as the live link delivers
      them, and prints what the cycle makes of each read. Fails with status 2 when FILE
      is missing, unreadable or empty, or holds neither a frame nor a waiting marker.
)";

} // namespace

const Command& decodeCommand() {
    static const Command command{"decode", kOptions, kHelp, &runDecode, true};
    return command;
}

int runDecode(const ParsedArgs& args) {
    if (args.positionals.size() != 1) {
        printError(std::string(args.positionals.empty() ? "decode: no FILE given"
                                                        : "decode: more than one FILE given") +
                   " (see zorvik-cli --help)");
        return kExitUsage;
    }
    OutputFormat format = OutputFormat::Jsonl;
    if (const auto text = args.value("format")) {
        const auto parsed = parseOutputFormat(*text);
        if (!parsed) {
            printError("decode: --format must be jsonl or csv, not '" + *text +
                       "' (see zorvik-cli --help)");
            return kExitUsage;
        }
        format = *parsed;
    }

    const std::string& path = args.positionals.front();
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) {
        printError("cannot read " + path + ": " + std::strerror(EISDIR));
        return kExitFailure;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        printError("cannot open " + path + ": " + std::strerror(errno));
        return kExitFailure;
    }
    if (in.peek() == std::ifstream::traits_type::eof()) {
        if (in.bad()) {
            printError("cannot read " + path);
            return kExitFailure;
        }
        printError(path + " is empty");
        return kExitFailure;
    }

    LineOutput out;
    FrameReporter reporter(format, out);
    if (!reporter.start())
        return outputFailure(out);
    StreamDecoder decoder(in);
    const auto end = decoder.run(
        [&reporter](ReceiveEvent event, const ReceiveMachine& machine) {
            return reporter.report(event, machine);
        },
        [] { return stopRequested() != 0; });

    if (out.failed())
        return outputFailure(out);
    if (const int status = stopRequested())
        return stopFailure(status);
    if (end == StreamDecoder::End::ReadError) {
        printError("cannot read " + path + " after byte " + std::to_string(decoder.bytesRead()));
        return kExitFailure;
    }
    if (reporter.framesAccepted() == 0 && reporter.waitingMarkers() == 0) {
        printError(path + " holds no probe data: no frame and no waiting marker in " +
                   std::to_string(decoder.bytesRead()) + " bytes");
        return kExitFailure;
    }
    return kExitOk;
}

} // namespace zorvik::cli
