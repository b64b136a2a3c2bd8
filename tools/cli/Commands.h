// The commands of zorvik-cli and how one is looked up and run.
#pragma once

#include "ArgParser.h"

#include <span>
#include <string>
#include <string_view>

namespace zorvik::cli {

/// One command: its name, the options it accepts, its part of the help text and the code
/// that runs it. A new command is one more entry in `commands()`.
struct Command {
    std::string_view name;
    /// The command with its arguments, for the overview ("decode FILE").
    std::string_view synopsis;
    /// What it does, in one line of the overview that zorvik-cli --help prints.
    std::string_view summary;
    std::span<const CommandOption> options;
    /// Usage line(s) and description, as printed by zorvik-cli COMMAND --help.
    std::string_view help;
    /// Runs the parsed command; returns the exit status.
    int (*run)(const ParsedArgs& args);
    /// True for commands that print the receive cycle's events (decode, capture): their help
    /// includes the description of the JSON lines and CSV output.
    bool printsFrames = false;
};

/// Every command, in the order --help lists them.
std::span<const Command> commands();
const Command* findCommand(std::string_view name);

/// Runs zorvik-cli with the arguments that follow the program name; returns the exit status.
int runCommandLine(std::span<const std::string> args);

class OutputSink;

/// Prints "zorvik-cli: TEXT" as one line on standard error.
void printError(std::string_view text);
/// Prints "zorvik-cli: COMMAND: TEXT (see zorvik-cli COMMAND --help)"; returns the usage
/// status.
int usageError(std::string_view command, std::string_view text);
/// Reports a failed output; returns 141 for a closed pipe (quietly, as Unix tools end when
/// their reader has gone), 1 for other errors, and the stop status when a stop signal cut the
/// write short.
int outputFailure(const OutputSink& out);
/// Reports a stop by SIGINT or SIGTERM; returns the status it asks for (130 or 143).
int stopFailure(int status);

} // namespace zorvik::cli
