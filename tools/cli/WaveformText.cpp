// The texts zorvik-cli wdf prints for a loaded Waveform Data File.
#include "WaveformText.h"

#include "FrameText.h"

#include <array>
#include <charconv>
#include <optional>
#include <string_view>

namespace zorvik::cli {

namespace {

void appendKey(std::string& out, std::string_view key) {
    if (out.size() > 1)
        out += ',';
    out += '"';
    out += key;
    out += "\":";
}

template <typename T, typename MakeText>
void appendValue(std::string& out, std::string_view key, const std::optional<T>& value,
                 MakeText makeText) {
    appendKey(out, key);
    out += value ? makeText(*value) : std::string("null");
}

std::string wholeText(std::int32_t value) {
    return std::to_string(value);
}

std::string byteText(std::uint8_t value) {
    return std::to_string(value);
}

std::string booleanText(bool value) {
    return value ? "true" : "false";
}

} // namespace

std::string doubleText(double value) {
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return std::string(buffer.data(), result.ptr);
}

std::string waveformJson(const LoadedWaveform& w) {
    std::string out = "{";
    out.reserve(2048);
    appendValue(out, "Hscaleindex", w.Hscaleindex, wholeText);
    appendValue(out, "Vscaleindex", w.Vscaleindex, wholeText);
    appendValue(out, "Chaoffset", w.Chaoffset, doubleText);
    appendValue(out, "Invert", w.Invert, booleanText);
    appendValue(out, "Reference", w.Reference, booleanText);
    appendValue(out, "bytSwitchSetting", w.bytSwitchSetting, byteText);
    appendValue(out, "bytTriggerLvl", w.bytTriggerLvl, byteText);
    appendValue(out, "bytTimebaseDef", w.bytTimebaseDef, byteText);
    appendValue(out, "bytTriggerDef", w.bytTriggerDef, byteText);
    appendValue(out, "Tadj", w.sngRefSampleInterval, floatText);
    appendKey(out, "samples");
    out += '[';
    for (std::size_t i = 0; i < w.sngRefVolts.size(); ++i) {
        if (i != 0)
            out += ',';
        out += floatText(w.sngRefVolts[i]);
    }
    out += "]}";
    return out;
}

std::string waveformCsv(const LoadedWaveform& w) {
    std::string out = "sample,time_s,volts";
    out.reserve(128 * 32);
    for (std::size_t i = 0; i < w.sngRefVolts.size(); ++i) {
        out += '\n';
        out += std::to_string(i);
        out += ',';
        if (w.sngRefSampleInterval)
            appendFloat(out, sampleTime(static_cast<int>(i), *w.sngRefSampleInterval));
        out += ',';
        out += floatText(w.sngRefVolts[i]);
    }
    return out;
}

} // namespace zorvik::cli
