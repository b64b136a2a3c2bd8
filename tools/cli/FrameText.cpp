// The texts zorvik-cli prints, built into the output's buffer with as little work per line as
// possible: numbers are formatted without allocating, and repeating texts are cached.
#include "FrameText.h"

#include "OutputSink.h"

#include <bit>
#include <charconv>
#include <cstdlib>

namespace zorvik::cli {

namespace {

template <typename Number> void appendNumber(std::string& out, Number value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

const std::array<std::string, 256>& byteTexts() {
    static const std::array<std::string, 256> texts = [] {
        std::array<std::string, 256> t;
        for (int i = 0; i < 256; ++i)
            t[static_cast<std::size_t>(i)] = std::to_string(i);
        return t;
    }();
    return texts;
}

void appendStateBytes(std::string& out, const HardwareState& s) {
    const std::pair<std::string_view, std::uint8_t> fields[] = {
        {",\"bytSwitchSetting\":", s.bytSwitchSetting},
        {",\"bytTimebaseDef\":", s.bytTimebaseDef},
        {",\"bytTriggerDef\":", s.bytTriggerDef},
        {",\"bytTriggerLvl\":", s.bytTriggerLvl},
        {",\"bytDVM100\":", s.bytDVM100},
        {",\"bytDVM10\":", s.bytDVM10},
        {",\"bytDVM1\":", s.bytDVM1},
        {",\"bytDVMflags\":", s.bytDVMflags},
    };
    for (const auto& [key, value] : fields) {
        out += key;
        out += byteTexts()[value];
    }
}

void appendPosition(std::string& out, std::string_view key, const std::optional<int>& p) {
    out += key;
    if (p)
        appendNumber(out, *p);
    else
        out += "null";
}

} // namespace

void appendFloat(std::string& out, float value) {
    appendNumber(out, value);
}

std::string floatText(float value) {
    std::string text;
    appendFloat(text, value);
    return text;
}

std::string jsonString(std::string_view text) {
    static constexpr char hex[] = "0123456789abcdef";
    std::string out = "\"";
    for (const char c : text) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (u < 0x20) {
            out += "\\u00";
            out += hex[u >> 4];
            out += hex[u & 0x0F];
        } else {
            out += c;
        }
    }
    out += '"';
    return out;
}

float sampleTime(int sample, float interval) {
    const std::string decimal = floatText(interval);
    const double value = std::strtod(decimal.c_str(), nullptr);
    return static_cast<float>(static_cast<double>(sample) * value);
}

std::string_view csvHeader() {
    return "frame,sample,time_s,count,volts";
}

const std::string& FrameFormatter::voltsText(std::uint8_t count, float volts) {
    CachedVolts& c = volts_[count];
    const auto bits = std::bit_cast<std::uint32_t>(volts);
    if (!c.valid || c.bits != bits) {
        c.valid = true;
        c.bits = bits;
        c.text.clear();
        appendFloat(c.text, volts);
    }
    return c.text;
}

void FrameFormatter::prepareTimes(float interval) {
    const auto bits = std::bit_cast<std::uint32_t>(interval);
    if (timesValid_ && bits == intervalBits_)
        return;
    timesValid_ = true;
    intervalBits_ = bits;
    for (std::size_t i = 0; i < times_.size(); ++i) {
        times_[i].clear();
        appendFloat(times_[i], sampleTime(static_cast<int>(i), interval));
    }
}

void FrameFormatter::frameJson(std::string& out, std::int64_t index, const HardwareState& state,
                               const RawSamples& raw, const AcquisitionValues& values,
                               const IndicatorPositions& positions, const TraceArray& volts) {
    out += "{\"event\":\"frame\",\"index\":";
    appendNumber(out, index);
    appendStateBytes(out, state);
    out += ",\"sngVoltsPerCount\":";
    appendFloat(out, values.sngVoltsPerCount);
    out += ",\"sngSampleInterval\":";
    appendFloat(out, values.sngSampleInterval);
    out += ",\"strSampleRate\":";
    out += jsonString(values.strSampleRate);
    out += ",\"sngTrigLevel\":";
    appendFloat(out, values.sngTrigLevel);
    appendPosition(out, ",\"range\":", positions.range);
    appendPosition(out, ",\"coupling\":", positions.coupling);
    appendPosition(out, ",\"trigger\":", positions.trigger);
    out += ",\"raw\":[";
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (i != 0)
            out += ',';
        out += byteTexts()[raw[i]];
    }
    out += "],\"volts\":[";
    for (std::size_t i = 0; i < volts.size(); ++i) {
        if (i != 0)
            out += ',';
        out += voltsText(raw[i], volts[i]);
    }
    out += "]}";
}

void FrameFormatter::csvRows(OutputSink& sink, std::int64_t index, float sngSampleInterval,
                             const RawSamples& raw, const TraceArray& volts) {
    prepareTimes(sngSampleInterval);
    char frame[24];
    const auto end = std::to_chars(frame, frame + sizeof frame, index).ptr;
    const std::string_view frameText(frame, static_cast<std::size_t>(end - frame));
    for (std::size_t i = 0; i < kSamplesPerFrame; ++i) {
        std::string& out = sink.text();
        out += frameText;
        out += ',';
        out += byteTexts()[i];
        out += ',';
        out += times_[i];
        out += ',';
        out += byteTexts()[raw[i]];
        out += ',';
        out += voltsText(raw[i], volts[i]);
        sink.endLine();
    }
}

void FrameFormatter::rejectedJson(std::string& out, const HardwareState& state) {
    out += "{\"event\":\"rejected\"";
    appendStateBytes(out, state);
    out += '}';
}

void FrameFormatter::eventJson(std::string& out, std::string_view name) {
    out += "{\"event\":";
    out += jsonString(name);
    out += '}';
}

} // namespace zorvik::cli
