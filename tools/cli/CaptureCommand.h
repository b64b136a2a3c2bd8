// zorvik-cli capture: frames from the probe on a serial port, printed as they arrive.
#pragma once

#include "Commands.h"

#include <optional>
#include <string_view>

namespace zorvik::cli {

const Command& captureCommand();

/// Runs `capture [--port COMn|DEVICE] [--frames N] [--seconds S] [--format jsonl|csv]
/// [--raw FILE]`; returns the exit status.
int runCapture(const ParsedArgs& args);

/// n for "COM1".."COM8" (any case); empty for any other text.
std::optional<int> comPortNumber(std::string_view text);

} // namespace zorvik::cli
