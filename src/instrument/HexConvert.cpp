// Hexadecimal texts to numbers, for values kept as hex digits.
#include "instrument/HexConvert.h"

#include <optional>

namespace zorvik {

namespace {

std::optional<std::uint32_t> hexDigitsValue(std::string_view digits) {
    if (digits.empty() || digits.size() > 8)
        return std::nullopt;
    std::uint32_t value = 0;
    for (char c : digits) {
        std::uint32_t digit = 0;
        if (c >= '0' && c <= '9')
            digit = static_cast<std::uint32_t>(c - '0');
        else if (c >= 'A' && c <= 'F')
            digit = static_cast<std::uint32_t>(c - 'A' + 10);
        else if (c >= 'a' && c <= 'f')
            digit = static_cast<std::uint32_t>(c - 'a' + 10);
        else
            return std::nullopt;
        value = value * 16 + digit;
    }
    return value;
}

/// A hex number as the program reads one: up to four digits make a signed 16-bit value,
/// five to eight a signed 32-bit value (the top digit carries the sign in both).
std::optional<std::int32_t> hexValue(std::string_view digits) {
    const auto raw = hexDigitsValue(digits);
    if (!raw)
        return std::nullopt;
    if (digits.size() <= 4)
        return static_cast<std::int32_t>(static_cast<std::int16_t>(*raw));
    return static_cast<std::int32_t>(*raw);
}

} // namespace

std::uint8_t HexToByte(std::string_view num) noexcept {
    const auto value = hexValue(num);
    if (!value || *value < 0 || *value > 255)
        return 0;
    return static_cast<std::uint8_t>(*value);
}

std::int32_t HexToLng(std::string_view num) noexcept {
    if (num.size() == 4) {
        const auto high = hexValue(num.substr(0, 1));
        const auto low = hexValue(num.substr(1));
        if (!high || !low)
            return 0;
        return *high * 4096 + *low;
    }
    return hexValue(num).value_or(0);
}

} // namespace zorvik
