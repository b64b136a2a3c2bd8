// Runs the program's receive cycle on a scripted line (bytes arriving in chunks, the window
// holding and resuming between them) and compares its decisions with the plain reading of
// the frame rules.
#pragma once

#include "NaiveFrameDecoder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zorvik::fuzz {

/// The decisions of ReceiveMachine on the script, with a serial buffer that a completed read
/// takes from and that "reset input" empties, as the serial link does.
std::vector<CycleRecord> runReceiveMachine(const LineScript& script);

/// A fuzz input as a line script. Byte 0: the stream's ending (value % 3), how often the
/// window acts between chunks (bits 2-5) and how the stream is cut (bits 6-7: small chunks,
/// chunks up to 300 bytes, one chunk, single bytes); bytes 1-2 seed the cut and the actions;
/// the rest is the stream.
LineScript lineScriptFromFuzzInput(const std::uint8_t* data, std::size_t size);

/// The first place where the two lists of decisions differ, described; nothing when equal.
std::optional<std::string> firstDifference(const std::vector<CycleRecord>& program,
                                           const std::vector<CycleRecord>& reference);

} // namespace zorvik::fuzz
