// What decode and measure share: arguments and the recording opened for reading.
#include "RecordingInput.h"

#include "ExitStatus.h"
#include "StopSignals.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace zorvik::cli {

int fileFailure(const std::string& path, const std::string& why) {
    printError(path + ": " + why);
    return kExitFailure;
}

std::optional<RecordingArgs> recordingArgs(std::string_view command, const ParsedArgs& args,
                                           int& status) {
    if (args.positionals.size() != 1) {
        status = usageError(command, args.positionals.empty() ? "no FILE given"
                                                              : "more than one FILE given");
        return std::nullopt;
    }
    RecordingArgs r;
    r.path = args.positionals.front();
    if (const auto text = args.value("format")) {
        const auto parsed = parseOutputFormat(*text);
        if (!parsed) {
            status = usageError(command, "--format must be jsonl or csv, not '" + *text + "'");
            return std::nullopt;
        }
        r.format = *parsed;
    }
    r.output = args.value("output");
    if (r.output && r.output->empty()) {
        status = usageError(command, "--output needs a file name");
        return std::nullopt;
    }
    return r;
}

std::optional<int> interruptedStatus(OutputSink& out, const std::optional<std::string>& output) {
    if (out.failed())
        return outputFailure(out);
    if (const int status = stopRequested()) {
        if (!output)
            out.flush();
        return stopFailure(status);
    }
    return std::nullopt;
}

int readFailure(const std::string& path, std::uint64_t bytesRead) {
    return fileFailure(path, "cannot be read after byte " + std::to_string(bytesRead));
}

int finishOutput(OutputSink& out, const std::optional<std::string>& output) {
    if (!out.finish())
        return output && !out.closedByReader() ? fileFailure(*output, out.errorText())
                                               : outputFailure(out);
    return kExitOk;
}

bool openRecording(const std::string& path, std::ifstream& in) {
    const std::string input = path == "-" ? std::string("/dev/stdin") : path;
    std::error_code ec;
    if (std::filesystem::is_directory(input, ec)) {
        fileFailure(path, std::strerror(EISDIR));
        return false;
    }
    in.open(input, std::ios::binary);
    if (!in) {
        fileFailure(path, std::strerror(errno));
        return false;
    }
    if (in.peek() == std::ifstream::traits_type::eof()) {
        fileFailure(path, in.bad() ? "cannot be read" : "is empty");
        return false;
    }
    return true;
}

} // namespace zorvik::cli
