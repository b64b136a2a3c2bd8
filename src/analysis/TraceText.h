// The texts the program writes traces into: the CSV of the traces on screen (a header of
// comment lines, then time and volts of the live trace and the reference) and the lines of a
// recording (CSV or JSON Lines, one line a frame, with the frame's measurements if chosen).
// Numbers are written with '.' whatever the locale, each the shortest text that reads back
// as the same value.
#pragma once

#include "analysis/Measurements.h"
#include "display/TraceArrays.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace zorvik {

/// One trace to write: its volts and the seconds between its samples.
struct TraceColumn {
    TraceArray volts{};
    float sampleInterval = 0.0f;
};

/// The traces on screen and what to say about them.
struct TraceTable {
    /// Lines of the header, each written as "# NAME: VALUE".
    std::vector<std::pair<std::string, std::string>> facts;
    std::optional<TraceColumn> live;
    std::optional<TraceColumn> reference;
};

/// The CSV text of `table`: a first comment line "# Zorvik traces", one comment line a fact,
/// then a header and 128 rows. With one sample interval for both traces (or only one trace)
/// the columns are time,live,reference; with two, time,live,reference_time,reference. The
/// field of a trace that is not there is empty. Lines end in "\n".
std::string tracesCsv(const TraceTable& table);

/// The shortest text of a single that reads back as the same single ("0.1587301").
void appendSingle(std::string& out, float v);
/// The shortest text of a double that reads back as the same double.
void appendDouble(std::string& out, double v);

enum class RecordFormat { Csv, Jsonl };

/// One frame of a recording.
struct RecordedFrame {
    long long index = 0;  ///< frames recorded before it
    double seconds = 0.0; ///< since the recording started
    float sampleInterval = 0.0f;
    float voltsPerCount = 0.0f;
    TraceArray volts{};
    std::optional<MeasureValues> measurements; ///< when they are recorded
};

/// The first line of a recording ("" for JSON Lines, which has none): index, time,
/// sample_interval, volts_per_count, v0 .. v127, then the measurements' keys when chosen.
std::string recordingHeader(RecordFormat format, bool withMeasurements);
/// The line of one frame, with its "\n". In JSON Lines:
/// {"index":N,"time":T,"sample_interval":S,"volts_per_count":V,"volts":[...],"max":..}, the
/// measurements (when recorded) under their keys, null where undefined; in CSV the same
/// values in the header's order, an empty field where a measurement is undefined.
std::string recordingLine(RecordFormat format, const RecordedFrame& frame);

} // namespace zorvik
