// The command line of zorvik-probe: what each option sets, its checks and the help text.
#pragma once

#include "probe/ProbeSettings.h"
#include "probe/ProbeStream.h"

#include <optional>
#include <string>
#include <vector>

namespace zorvik {

/// Everything one run of zorvik-probe is asked to do.
struct ProbeCommand {
    ProbeSettings settings;
    StreamOptions stream;
    bool paced = true;
    std::string replayPath; ///< empty: generated frames
    bool loop = false;
    std::string linkPath;
    std::string recordPath;
    bool help = false;
    bool version = false;
};

/// The parsed command, or a one-line error message for a bad command line.
struct ProbeCommandResult {
    std::optional<ProbeCommand> command;
    std::string error;
};

/// Reads the arguments after the program name. Options take their value as the next argument
/// or after "=" ("--freq 50" or "--freq=50"); byte values are decimal or hexadecimal ("0x24").
ProbeCommandResult parseProbeCommand(const std::vector<std::string>& args);

/// The text of --help: every option with its default.
std::string probeHelpText();

} // namespace zorvik
