// Sample lines of the Waveform Data File: seven lines of comma-separated numbers, and the way
// each piece becomes a sample again.
#include "storage/WaveformSamples.h"

#include "storage/VbConvert.h"

namespace zorvik {

std::string WaveformSamples::line(const TraceArray& volts, int line) {
    std::string text;
    const std::size_t first = static_cast<std::size_t>(line - 1) * kSamplesPerLine;
    for (std::size_t i = first; i < first + kSamplesPerLine && i < volts.size(); ++i) {
        text += VbConvert::singleToText(volts[i]);
        if (i + 1 < volts.size())
            text += ',';
    }
    return text;
}

std::vector<std::string_view> WaveformSamples::split(std::string_view text) {
    std::vector<std::string_view> pieces;
    if (text.empty())
        return pieces;
    for (;;) {
        const std::size_t comma = text.find(',');
        pieces.push_back(text.substr(0, comma));
        if (comma == std::string_view::npos)
            break;
        text.remove_prefix(comma + 1);
    }
    return pieces;
}

float WaveformSamples::read(std::string_view text) {
    const float volts = VbConvert::textToSingle(text);
    // "-0" and "-0.000" are the number zero, which is the zero sample the probe delivers.
    return volts == 0.0f ? 0.0f : volts;
}

} // namespace zorvik
