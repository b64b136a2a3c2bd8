// The reference samples as the Waveform Data File keeps them: seven lines of comma-separated
// numbers with at most 7 significant digits, and the way a number read back becomes a sample.
// A sample saved and loaded again is the single nearest to its 7-digit text, which may differ
// from the sample that was saved in the last bit: that is all the file keeps.
#pragma once

#include "display/TraceArrays.h"

#include <cstddef>
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

    /// A sample read back from its text: the single-precision number nearest to the decimal
    /// value of the text (VbConvert::textToSingle, whatever the locale); a text that is no
    /// number throws ConversionError.
    static float read(std::string_view text);
};

} // namespace zorvik
