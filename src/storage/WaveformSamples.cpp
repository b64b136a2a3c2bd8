// Sample lines of the Waveform Data File, and the recovery of exact probe samples.
//
// A sample is written with at most 7 significant digits, which is not always enough to bring
// the same single-precision number back: of the 189 volt values the probe can produce (63
// counts in each of three ranges) about two thirds would read back one or two units of the
// last bit away. The reference trace holds probe samples, though, and each of them is
// (count - 31) x volts per count. So when a number read from the file is exactly the 7-digit
// text of one of these products, the product itself is taken: a trace saved and loaded again
// is the same trace, bit for bit, and plots and measures exactly as it did when it was stored.
// Numbers are compared by their decimal value, not by spelling, so "-1.587301E-02" (the form
// older Windows builds wrote) finds the same sample as "-0.01587301". A number that is no
// probe sample (a file edited by hand, a trace from elsewhere) is kept as it reads.
#include "storage/WaveformSamples.h"

#include "instrument/DecodeTables.h"
#include "storage/VbConvert.h"

#include <array>
#include <optional>

namespace zorvik {

namespace {

constexpr int kLowestCountOffset = -31;
constexpr int kHighestCountOffset = 31;
constexpr std::uint8_t kRangeCodes[] = {0x00, 0x04, 0x08};

/// A decimal number reduced to its value: 0.digits x 10^exponent, digits without leading or
/// trailing zeros. Zero has no digits (and no sign).
struct DecimalValue {
    bool negative = false;
    std::string digits;
    long exponent = 0;
    bool operator==(const DecimalValue&) const = default;
};

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The value of a number text that textToSingle has accepted; std::nullopt for an exponent
/// too long to matter (such a number is no probe sample).
std::optional<DecimalValue> decimalValue(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    DecimalValue v;
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        v.negative = text[i++] == '-';
    long integerDigits = 0;
    for (; i < text.size() && isDigit(text[i]); ++i, ++integerDigits)
        v.digits += text[i];
    if (i < text.size() && text[i] == '.') {
        for (++i; i < text.size() && isDigit(text[i]); ++i)
            v.digits += text[i];
    }
    long exponent = 0;
    if (i < text.size() && (text[i] == 'E' || text[i] == 'e')) {
        ++i;
        bool negativeExponent = false;
        if (i < text.size() && (text[i] == '+' || text[i] == '-'))
            negativeExponent = text[i++] == '-';
        for (; i < text.size() && isDigit(text[i]); ++i) {
            exponent = exponent * 10 + (text[i] - '0');
            if (exponent > 100000)
                return std::nullopt;
        }
        if (negativeExponent)
            exponent = -exponent;
    }
    std::size_t leadingZeros = 0;
    while (leadingZeros < v.digits.size() && v.digits[leadingZeros] == '0')
        ++leadingZeros;
    v.digits.erase(0, leadingZeros);
    integerDigits -= static_cast<long>(leadingZeros);
    while (!v.digits.empty() && v.digits.back() == '0')
        v.digits.pop_back();
    if (v.digits.empty())
        return DecimalValue{};
    v.exponent = integerDigits + exponent;
    return v;
}

/// Every sample one range can deliver: its exact value and the value of its 7-digit text.
struct RangeSamples {
    struct Entry {
        DecimalValue text;
        float volts;
    };
    std::uint8_t code = 0;
    std::vector<Entry> entries;
};

const std::array<RangeSamples, 3>& probeSamples() {
    static const std::array<RangeSamples, 3> table = [] {
        std::array<RangeSamples, 3> t;
        for (std::size_t r = 0; r < t.size(); ++r) {
            t[r].code = kRangeCodes[r];
            const float voltsPerCount = *rangeVoltsPerCount(kRangeCodes[r]);
            for (int k = kLowestCountOffset; k <= kHighestCountOffset; ++k) {
                // The same single-precision product as the display takes from a frame.
                const float volts = static_cast<float>(k) * voltsPerCount;
                t[r].entries.push_back({*decimalValue(VbConvert::singleToText(volts)), volts});
            }
        }
        return t;
    }();
    return table;
}

std::optional<float> find(const RangeSamples& range, const DecimalValue& value) {
    for (const auto& e : range.entries) {
        if (e.text == value)
            return e.volts;
    }
    return std::nullopt;
}

} // namespace

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

float WaveformSamples::read(std::string_view text, std::uint8_t bytSwitchSetting) {
    const float asRead = VbConvert::textToSingle(text);
    const std::optional<DecimalValue> value = decimalValue(text);
    if (!value)
        return asRead;
    const std::uint8_t fileRange = bytSwitchSetting & 0x0C;
    const auto& ranges = probeSamples();
    for (const auto& range : ranges) {
        if (range.code == fileRange) {
            if (const auto volts = find(range, *value))
                return *volts;
        }
    }
    // Not a sample of the file's own range (or the file names the unused range code 0x0C):
    // the other ranges in the order 1 V, 10 V, 100 V. A text that two ranges share (-0.4761903
    // is -30 counts at 1 V and -3 counts at 10 V) thus comes back as the lower range's sample;
    // both show the same number.
    for (const auto& range : ranges) {
        if (range.code != fileRange) {
            if (const auto volts = find(range, *value))
                return *volts;
        }
    }
    return asRead;
}

} // namespace zorvik
