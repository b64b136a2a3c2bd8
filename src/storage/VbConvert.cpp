// Locale-independent text <-> number conversions of the settings and waveform files.
#include "storage/VbConvert.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace zorvik::VbConvert {

namespace {

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
constexpr bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trimBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

char lowerAscii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalsIgnoreCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (lowerAscii(a[i]) != lowerAscii(b[i]))
            return false;
    }
    return true;
}

// Length of the longest decimal number at the start of `s` (sign, digits, '.', digits,
// exponent); 0 when there is none. An "E" without digits after it is not part of the number.
std::size_t numberLength(std::string_view s) {
    std::size_t p = 0;
    const std::size_t n = s.size();
    if (p < n && (s[p] == '+' || s[p] == '-'))
        ++p;
    std::size_t digits = 0;
    while (p < n && isDigit(s[p])) {
        ++p;
        ++digits;
    }
    if (p < n && s[p] == '.') {
        std::size_t q = p + 1;
        while (q < n && isDigit(s[q])) {
            ++q;
            ++digits;
        }
        if (digits > 0)
            p = q;
    }
    if (digits == 0)
        return 0;
    if (p < n && (s[p] == 'e' || s[p] == 'E')) {
        std::size_t q = p + 1;
        if (q < n && (s[q] == '+' || s[q] == '-'))
            ++q;
        const std::size_t first = q;
        while (q < n && isDigit(s[q]))
            ++q;
        if (q > first)
            p = q;
    }
    return p;
}

// Whether a number that does not fit the target type is large (rather than tiny): the power
// of ten of its first significant digit, once the exponent is applied, is not negative.
bool isHuge(std::string_view number) {
    long intDigits = 0;    // significant digits before the point
    long leadingZeros = 0; // zeros after the point before the first significant digit
    bool significant = false;
    bool seenPoint = false;
    std::size_t p = 0;
    for (; p < number.size() && number[p] != 'e' && number[p] != 'E'; ++p) {
        const char c = number[p];
        if (c == '.') {
            seenPoint = true;
        } else if (!seenPoint) {
            significant = significant || c != '0';
            intDigits += significant ? 1 : 0;
        } else if (!significant) {
            significant = c != '0';
            leadingZeros += significant ? 0 : 1;
        }
    }
    if (!significant)
        return false;
    long exponent = 0;
    if (p < number.size()) {
        std::string_view digits = number.substr(p + 1);
        const bool negative = digits.front() == '-';
        if (digits.front() == '-' || digits.front() == '+')
            digits.remove_prefix(1);
        const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
        if (result.ec == std::errc::result_out_of_range)
            exponent = std::numeric_limits<long>::max() / 2;
        exponent = negative ? -exponent : exponent;
    }
    return (intDigits > 0 ? intDigits - 1 : -leadingZeros - 1) + exponent >= 0;
}

// Parses a number that numberLength accepted completely. Out of range: huge gives infinity,
// tiny gives zero, both with the number's sign.
template <typename T> T parseNumber(std::string_view number) {
    const bool negative = number.front() == '-';
    if (number.front() == '-' || number.front() == '+')
        number.remove_prefix(1);
    T value{};
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range)
        value = isHuge(number) ? std::numeric_limits<T>::infinity() : T(0);
    return negative ? -value : value;
}

double strictDouble(std::string_view text, std::string_view what) {
    const std::string_view number = trimBlanks(text);
    if (number.empty() || numberLength(number) != number.size())
        throw ConversionError(ConversionError::Kind::TypeMismatch,
                              "\"" + std::string(text) + "\" is not " + std::string(what));
    return parseNumber<double>(number);
}

} // namespace

double leadingNumber(std::string_view text) {
    std::size_t p = 0;
    while (p < text.size() && (isBlank(text[p]) || text[p] == '\r' || text[p] == '\n'))
        ++p;
    text.remove_prefix(p);
    const std::size_t length = numberLength(text);
    return length == 0 ? 0.0 : parseNumber<double>(text.substr(0, length));
}

std::int32_t roundToLong(double value) {
    if (std::isnan(value))
        throw ConversionError(ConversionError::Kind::Overflow, "not a number");
    const double below = std::floor(value);
    const double fraction = value - below;
    double rounded = below;
    if (fraction > 0.5 || (fraction == 0.5 && std::fmod(below, 2.0) != 0.0))
        rounded = below + 1.0;
    if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0))
        throw ConversionError(ConversionError::Kind::Overflow, "overflow");
    return static_cast<std::int32_t>(rounded);
}

std::int32_t textToLong(std::string_view text) {
    return roundToLong(strictDouble(text, "a number"));
}

bool textToBoolean(std::string_view text) {
    const std::string_view word = trimBlanks(text);
    if (equalsIgnoreCase(word, "true"))
        return true;
    if (equalsIgnoreCase(word, "false"))
        return false;
    const double number = strictDouble(text, "True, False or a number");
    if (std::isinf(number))
        throw ConversionError(ConversionError::Kind::Overflow, "overflow");
    return number != 0.0;
}

std::string booleanToText(bool value) {
    return value ? "True" : "False";
}

std::string longToText(std::int32_t value) {
    return std::to_string(value);
}

std::string singleToText(float value) {
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::general, 7);
    std::string text(buffer.data(), result.ptr);
    for (char& c : text) {
        if (c == 'e')
            c = 'E';
    }
    return text;
}

float textToSingle(std::string_view text) {
    const std::string_view number = trimBlanks(text);
    if (number.empty() || numberLength(number) != number.size())
        throw ConversionError(ConversionError::Kind::TypeMismatch,
                              "\"" + std::string(text) + "\" is not a number");
    const float value = parseNumber<float>(number);
    if (std::isinf(value))
        throw ConversionError(ConversionError::Kind::Overflow, "overflow");
    if (value == 0.0f) {
        // Too small for a single but perhaps not for a double: a subnormal single or zero.
        const double wide = parseNumber<double>(number);
        return static_cast<float>(wide);
    }
    return value;
}

double textToDouble(std::string_view text) {
    const double value = strictDouble(text, "a number");
    if (std::isinf(value))
        throw ConversionError(ConversionError::Kind::Overflow, "overflow");
    return value;
}

std::string doubleToText(double value) {
    std::array<char, 400> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                      std::chars_format::fixed);
    return std::string(buffer.data(), result.ptr);
}

} // namespace zorvik::VbConvert
