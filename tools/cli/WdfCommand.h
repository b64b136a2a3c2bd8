// zorvik-cli wdf: a Waveform Data File loaded as the window loads it, printed as JSON or CSV.
#pragma once

#include "Commands.h"

namespace zorvik::cli {

const Command& wdfCommand();

/// Runs `wdf FILE [--format json|csv]`; returns the exit status.
int runWdf(const ParsedArgs& args);

} // namespace zorvik::cli
