// What decode and measure share: their FILE, --format and --output, and the recording opened
// for reading, with the failures said the same way.
#pragma once

#include "Commands.h"
#include "FrameReporter.h"

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

/// Opens the recording `path` ("-": standard input) and makes sure it holds a byte; on failure
/// prints why ("zorvik-cli: FILE: Is a directory", "... is empty") and returns false.
bool openRecording(const std::string& path, std::ifstream& in);

} // namespace zorvik::cli
