// The commands of zorvik-cli and how one is looked up and run.
#include "Commands.h"

#include "CaptureCommand.h"
#include "DecodeCommand.h"
#include "ExitStatus.h"
#include "HelpText.h"
#include "LineOutput.h"
#include "StopSignals.h"
#include "WdfCommand.h"

#include <array>
#include <cstdio>

namespace zorvik::cli {

std::span<const Command> commands() {
    static const std::array<Command, 3> table = {decodeCommand(), captureCommand(), wdfCommand()};
    return table;
}

const Command* findCommand(std::string_view name) {
    for (const Command& c : commands()) {
        if (c.name == name)
            return &c;
    }
    return nullptr;
}

void printError(std::string_view text) {
    std::string line = "zorvik-cli: ";
    line += text;
    line += '\n';
    std::fputs(line.c_str(), stderr);
    std::fflush(stderr);
}

int outputFailure(const LineOutput& out) {
    // A write that a stop signal cut short is the stop, not a failure of the output.
    if (const int status = stopRequested())
        return stopFailure(status);
    if (out.closedByReader()) {
        printError("standard output closed (broken pipe)");
        return kExitOutputClosed;
    }
    printError("cannot write standard output: " + out.errorText());
    return kExitFailure;
}

int stopFailure(int status) {
    printError(status == kExitInterrupted ? "interrupted" : "terminated");
    return status;
}

namespace {

int printText(const std::string& text) {
    LineOutput out;
    // The text ends with a line end of its own; LineOutput adds one per line.
    std::string body = text;
    if (!body.empty() && body.back() == '\n')
        body.pop_back();
    return out.writeLine(body) ? kExitOk : outputFailure(out);
}

int usageError(std::string_view text) {
    printError(std::string(text) + " (see zorvik-cli --help)");
    return kExitUsage;
}

} // namespace

int runCommandLine(std::span<const std::string> args) {
    if (args.empty())
        return usageError("no command given");
    const std::string& first = args.front();
    if (first == "--help" || first == "-h" || first == "help")
        return printText(fullHelp());
    if (first == "--version")
        return printText(versionText());
    const Command* command = findCommand(first);
    if (command == nullptr) {
        if (first.starts_with("-"))
            return usageError("unknown option " + first);
        return usageError("unknown command " + first);
    }
    ParsedArgs parsed;
    std::string error;
    if (!parseArgs(args.subspan(1), command->options, parsed, error))
        return usageError(std::string(command->name) + ": " + error);
    if (parsed.help)
        return printText(commandHelp(*command));
    return command->run(parsed);
}

} // namespace zorvik::cli
