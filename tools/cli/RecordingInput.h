// What decode and measure share: their FILE, --format and --output, and the recording opened
// for reading, with the failures said the same way.
#pragma once

#include "Commands.h"
#include "FrameReporter.h"
#include "OutputSink.h"

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace zorvik::cli {

/// "zorvik-cli: FILE: WHY" on standard error; returns the failure status.
int fileFailure(const std::string& path, const std::string& why);

/// The arguments of a command that reads a recording and prints jsonl or csv.
struct RecordingArgs {
    std::string path; ///< FILE, "-" for standard input
    OutputFormat format = OutputFormat::Jsonl;
    std::optional<std::string> output; ///< the file of --output
};

/// Reads FILE, --format and --output of `command`; on a usage error prints it and sets
/// `status` to the usage status, returning std::nullopt.
std::optional<RecordingArgs> recordingArgs(std::string_view command, const ParsedArgs& args,
                                           int& status);

/// The end of a recording's decoding that the commands share, when the output failed or the
/// user stopped it (SIGINT, SIGTERM): the status to return, std::nullopt otherwise. A stop
/// hands standard output the whole lines decoded so far; a file named with --output is left as
/// it was, the decoding not being whole.
std::optional<int> interruptedStatus(OutputSink& out, const std::optional<std::string>& output);

/// "zorvik-cli: FILE: cannot be read after byte N"; returns the failure status.
int readFailure(const std::string& path, std::uint64_t bytesRead);

/// Puts the output in place (a file named with --output appears whole) and returns the status.
int finishOutput(OutputSink& out, const std::optional<std::string>& output);

/// Opens the recording `path` ("-": standard input) and makes sure it holds a byte; on failure
/// prints why ("zorvik-cli: FILE: Is a directory", "... is empty") and returns false.
bool openRecording(const std::string& path, std::ifstream& in);

} // namespace zorvik::cli
