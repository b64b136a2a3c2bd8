// The texts zorvik-cli prints: one JSON object per event, or CSV rows of samples.
#include "FrameText.h"

#include <array>
#include <charconv>

namespace zorvik::cli {

namespace {

void appendStateBytes(std::string& out, const HardwareState& s) {
    const std::pair<std::string_view, std::uint8_t> fields[] = {
        {"bytSwitchSetting", s.bytSwitchSetting},
        {"bytTimebaseDef", s.bytTimebaseDef},
        {"bytTriggerDef", s.bytTriggerDef},
        {"bytTriggerLvl", s.bytTriggerLvl},
        {"bytDVM100", s.bytDVM100},
        {"bytDVM10", s.bytDVM10},
        {"bytDVM1", s.bytDVM1},
        {"bytDVMflags", s.bytDVMflags},
    };
    for (const auto& [name, value] : fields) {
        out += ",\"";
        out += name;
        out += "\":";
        out += std::to_string(value);
    }
}

void appendPosition(std::string& out, std::string_view name, const std::optional<int>& p) {
    out += ",\"";
    out += name;
    out += "\":";
    out += p ? std::to_string(*p) : std::string("null");
}

} // namespace

std::string floatText(float value) {
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return std::string(buffer.data(), result.ptr);
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

std::string frameJson(std::int64_t index, const HardwareState& state, const RawSamples& raw,
                      const AcquisitionValues& values, const IndicatorPositions& positions,
                      const TraceArray& volts) {
    std::string out;
    out.reserve(2048);
    out += "{\"event\":\"frame\",\"index\":";
    out += std::to_string(index);
    appendStateBytes(out, state);
    out += ",\"sngVoltsPerCount\":" + floatText(values.sngVoltsPerCount);
    out += ",\"sngSampleInterval\":" + floatText(values.sngSampleInterval);
    out += ",\"strSampleRate\":" + jsonString(values.strSampleRate);
    out += ",\"sngTrigLevel\":" + floatText(values.sngTrigLevel);
    appendPosition(out, "range", positions.range);
    appendPosition(out, "coupling", positions.coupling);
    appendPosition(out, "trigger", positions.trigger);
    out += ",\"raw\":[";
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (i != 0)
            out += ',';
        out += std::to_string(raw[i]);
    }
    out += "],\"volts\":[";
    for (std::size_t i = 0; i < volts.size(); ++i) {
        if (i != 0)
            out += ',';
        out += floatText(volts[i]);
    }
    out += "]}";
    return out;
}

std::string rejectedJson(const HardwareState& state) {
    std::string out = "{\"event\":\"rejected\"";
    appendStateBytes(out, state);
    out += '}';
    return out;
}

std::string eventJson(std::string_view name) {
    return "{\"event\":" + jsonString(name) + "}";
}

std::string csvHeader() {
    return "frame,sample,time_s,count,volts";
}

std::string csvRow(std::int64_t frame, int sample, float sngSampleInterval, std::uint8_t count,
                   float volts) {
    const float time = static_cast<float>(sample) * sngSampleInterval;
    std::string out = std::to_string(frame);
    out += ',';
    out += std::to_string(sample);
    out += ',';
    out += floatText(time);
    out += ',';
    out += std::to_string(count);
    out += ',';
    out += floatText(volts);
    return out;
}

} // namespace zorvik::cli
