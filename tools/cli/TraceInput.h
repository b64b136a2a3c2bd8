// What measure and spectrum share: the traces of FILE, each frame of a recording decoded as
// the window decodes it (or the reference trace of a .wdf), handed to a command that writes one
// record a trace, with the failures said as decode and wdf say them.
#pragma once

#include "FrameReporter.h"
#include "RecordingInput.h"
#include "display/TraceArrays.h"

#include <cstdint>
#include <functional>
#include <string>

namespace zorvik::cli {

/// Appends the record of trace `index` (volts of its samples, `sampleInterval` seconds apart)
/// to `out`, without the end of line.
using TraceRecord = std::function<void(std::string& out, std::int64_t index,
                                       const TraceArray& volts, float sampleInterval)>;

/// Writes `csvHeader` first in CSV, then the records of every trace of `args.path` to standard
/// output or `--output`; returns the exit status. A FILE whose name ends in "wdf" (any case) is
/// a Waveform Data File and gives its reference trace.
int writeTraceRecords(const RecordingArgs& args, const std::string& csvHeader,
                      const TraceRecord& record);

/// The shortest decimal text that reads back as `v`.
void appendNumber(std::string& out, double v);

} // namespace zorvik::cli
