// zorvik-cli decode: a recorded byte stream through the receive cycle, printed event by event.
#pragma once

#include "Commands.h"

namespace zorvik::cli {

const Command& decodeCommand();

/// Runs `decode FILE [--format jsonl|csv]`; returns the exit status.
int runDecode(const ParsedArgs& args);

} // namespace zorvik::cli
