// The texts of zorvik-cli --help and --version.
#pragma once

#include "Commands.h"

#include <string>

namespace zorvik::cli {

/// Usage of every command, the output formats and the exit statuses.
std::string fullHelp();
/// Usage of one command, the output format it prints and the exit statuses.
std::string commandHelp(const Command& command);
/// "zorvik-cli " followed by the program's version.
std::string versionText();

} // namespace zorvik::cli
