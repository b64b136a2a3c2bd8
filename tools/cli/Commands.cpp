// The commands of zorvik-cli and how one is looked up and run.
#include "Commands.h"

#include "CaptureCommand.h"
#include "DecodeCommand.h"
#include "ExitStatus.h"
#include "HelpText.h"
#include "MeasureCommand.h"
#include "OutputSink.h"
#include "PortsCommand.h"
#include "SpectrumCommand.h"
#include "StopSignals.h"
#include "WdfCommand.h"

#include <array>
#include <cstdio>

namespace zorvik::cli {

std::span<const Command> commands() {
    static const std::array<Command, 6> table = {decodeCommand(),   captureCommand(),
                                                 wdfCommand(),      measureCommand(),
                                                 spectrumCommand(), portsCommand()};
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

int usageError(std::string_view command, std::string_view text) {
    std::string line(command);
    line += ": ";
    line += text;
    line += " (see zorvik-cli ";
    line += command;
    line += " --help)";
    printError(line);
    return kExitUsage;
}

int outputFailure(const OutputSink& out) {
    // A write that a stop signal cut short is the stop, not a failure of the output.
    if (const int status = stopRequested())
        return stopFailure(status);
    // The reader has gone (a pipe into head): the program ends quietly.
    if (out.closedByReader())
        return kExitOutputClosed;
    printError("cannot write the output: " + out.errorText());
    return kExitFailure;
}

int stopFailure(int status) {
    printError(status == kExitInterrupted ? "interrupted" : "terminated");
    return status;
}

namespace {

int printText(const std::string& text) {
    OutputSink out;
    out.text() += text;
    return out.finish() ? kExitOk : outputFailure(out);
}

int topLevelUsageError(std::string_view text) {
    printError(std::string(text) + " (see zorvik-cli --help)");
    return kExitUsage;
}

} // namespace

int runCommandLine(std::span<const std::string> args) {
    if (args.empty())
        return topLevelUsageError("no command given");
    const std::string& first = args.front();
    if (first == "--help" || first == "-h" || first == "help")
        return printText(fullHelp());
    if (first == "--version")
        return printText(versionText());
    const Command* command = findCommand(first);
    if (command == nullptr) {
        if (first.starts_with("-"))
            return topLevelUsageError("unknown option " + first);
        return topLevelUsageError("unknown command " + first);
    }
    ParsedArgs parsed;
    std::string error;
    if (!parseArgs(args.subspan(1), command->options, parsed, error))
        return usageError(command->name, error);
    if (parsed.help)
        return printText(commandHelp(*command));
    return command->run(parsed);
}

} // namespace zorvik::cli
