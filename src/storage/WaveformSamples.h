// The reference samples as the Waveform Data File keeps them: seven lines of comma-separated
// numbers with at most 7 significant digits, and the way a number read back becomes a sample.
#pragma once

#include "display/TraceArrays.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zorvik {

class WaveformSamples {
public:
    /// Lines Reftrace1 to Reftrace7.
    static constexpr int kLineCount = 7;
    /// Samples per line; the seventh line holds the last 8.
    static constexpr std::size_t kSamplesPerLine = 20;

    /// Text of line `line` (1 to 7): samples 20 * (line - 1) + 1 onwards, each written with
    /// VbConvert::singleToText and followed by a comma, except the very last sample (128),
    /// which ends line 7 without one.
    static std::string line(const TraceArray& volts, int line);

    /// The text cut at every comma, as many pieces as commas plus one ("a,b," gives "a", "b"
    /// and an empty piece); an empty text gives no piece at all.
    static std::vector<std::string_view> split(std::string_view text);

    /// A sample read back from its text. The text must be a number (VbConvert::textToSingle;
    /// otherwise ConversionError). When it is the 7-digit text of a sample the probe can
    /// deliver, (count - 31) x volts per count for counts 0 to 62, the exact single-precision
    /// product is returned; the ranges are tried in this order: the one of `bytSwitchSetting`
    /// (AND 0x0C) first, then the others from the lowest range code up. Any other number is
    /// returned as read.
    static float read(std::string_view text, std::uint8_t bytSwitchSetting);
};

} // namespace zorvik
