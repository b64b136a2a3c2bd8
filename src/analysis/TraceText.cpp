// The texts the program writes traces into.
#include "analysis/TraceText.h"

#include <charconv>
#include <cmath>

namespace zorvik {

void appendSingle(std::string& out, float v) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, v);
    out.append(text, end.ptr);
}

void appendDouble(std::string& out, double v) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, v);
    out.append(text, end.ptr);
}

namespace {

double timeOf(std::size_t i, float interval) {
    return static_cast<double>(i) * static_cast<double>(interval);
}

} // namespace

std::string tracesCsv(const TraceTable& table) {
    std::string out = "# Zorvik traces\n";
    for (const auto& [name, value] : table.facts) {
        out += "# ";
        out += name;
        out += ": ";
        out += value;
        out += '\n';
    }
    const bool both = table.live && table.reference;
    const bool twoTimes = both && table.live->sampleInterval != table.reference->sampleInterval;
    out += twoTimes ? "time,live,reference_time,reference\n" : "time,live,reference\n";
    const TraceColumn* clock = table.live        ? &*table.live
                               : table.reference ? &*table.reference
                                                 : nullptr;
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i) {
        if (clock)
            appendDouble(out, timeOf(i, clock->sampleInterval));
        out += ',';
        if (table.live)
            appendSingle(out, table.live->volts[i]);
        out += ',';
        if (twoTimes) {
            appendDouble(out, timeOf(i, table.reference->sampleInterval));
            out += ',';
        }
        if (table.reference)
            appendSingle(out, table.reference->volts[i]);
        out += '\n';
    }
    return out;
}

std::string recordingHeader(RecordFormat format, bool withMeasurements) {
    if (format == RecordFormat::Jsonl)
        return {};
    std::string h = "index,time,sample_interval,volts_per_count";
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i)
        h += ",v" + std::to_string(i);
    if (withMeasurements) {
        for (std::size_t i = 0; i < kMeasureCount; ++i) {
            h += ',';
            h += measureKey(static_cast<Measure>(i));
        }
    }
    h += '\n';
    return h;
}

std::string recordingLine(RecordFormat format, const RecordedFrame& f) {
    std::string out;
    out.reserve(format == RecordFormat::Jsonl ? 1800 : 1500);
    const bool json = format == RecordFormat::Jsonl;
    if (json)
        out += "{\"index\":";
    out += std::to_string(f.index);
    out += json ? ",\"time\":" : ",";
    appendDouble(out, f.seconds);
    out += json ? ",\"sample_interval\":" : ",";
    appendSingle(out, f.sampleInterval);
    out += json ? ",\"volts_per_count\":" : ",";
    appendSingle(out, f.voltsPerCount);
    out += json ? ",\"volts\":[" : ",";
    for (std::size_t i = 0; i < f.volts.size(); ++i) {
        if (i)
            out += ',';
        appendSingle(out, f.volts[i]);
    }
    if (json)
        out += ']';
    if (f.measurements) {
        for (std::size_t i = 0; i < kMeasureCount; ++i) {
            const std::optional<double>& v = (*f.measurements)[i];
            if (json) {
                out += ",\"";
                out += measureKey(static_cast<Measure>(i));
                out += "\":";
                if (v)
                    appendDouble(out, *v);
                else
                    out += "null";
            } else {
                out += ',';
                if (v)
                    appendDouble(out, *v);
            }
        }
    }
    if (json)
        out += '}';
    out += '\n';
    return out;
}

} // namespace zorvik
