// Fixed-decimal number texts for the readouts.
#include "display/NumberFormat.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace zorvik {

namespace {

constexpr int kSignificantDigits = 15;

/// Adds one to a string of decimal digits, growing it when the carry runs off the front.
void incrementDigits(std::string& digits) {
    for (auto it = digits.rbegin(); it != digits.rend(); ++it) {
        if (*it != '9') {
            ++*it;
            return;
        }
        *it = '0';
    }
    digits.insert(digits.begin(), '1');
}

} // namespace

std::optional<std::string> formatDecimals(double value, int decimals) {
    if (!std::isfinite(value) || decimals < 0 || decimals > 15)
        return std::nullopt;

    // 15 significant digits in the form d.dddddddddddddde±xx, independent of the locale.
    char buf[64];
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, std::fabs(value),
                                         std::chars_format::scientific, kSignificantDigits - 1);
    if (ec != std::errc())
        return std::nullopt;
    const std::string_view text(buf, static_cast<std::size_t>(end - buf));
    const std::size_t ePos = text.find('e');
    std::string digits;
    digits.reserve(kSignificantDigits);
    for (char c : text.substr(0, ePos)) {
        if (c != '.')
            digits.push_back(c);
    }
    std::string_view exponentText = text.substr(ePos + 1);
    if (!exponentText.empty() && exponentText.front() == '+')
        exponentText.remove_prefix(1);
    int exponent = 0;
    std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);

    // The number is 0.<digits> x 10^(exponent + 1); keep the digits down to the last decimal
    // and round on the first digit dropped. The leading '0' takes the carry of 9.99 -> 10.00.
    const int keep = exponent + 1 + decimals;
    std::string kept(1, '0');
    if (keep > 0) {
        kept.append(digits, 0, static_cast<std::size_t>(std::min(keep, kSignificantDigits)));
        if (keep > kSignificantDigits)
            kept.append(static_cast<std::size_t>(keep - kSignificantDigits), '0');
    }
    if (keep >= 0 && keep < kSignificantDigits && digits[static_cast<std::size_t>(keep)] >= '5')
        incrementDigits(kept);

    // kept holds the value in units of 10^-decimals; drop the leading zeros but keep one
    // digit before the decimal point.
    const auto width = static_cast<std::size_t>(decimals) + 1;
    if (kept.size() < width)
        kept.insert(0, width - kept.size(), '0');
    kept.erase(0, std::min(kept.find_first_not_of('0'), kept.size() - width));

    std::string result;
    const bool isZero = kept.find_first_not_of('0') == std::string::npos;
    if (value < 0 && !isZero)
        result.push_back('-');
    result.append(kept, 0, kept.size() - static_cast<std::size_t>(decimals));
    if (decimals > 0) {
        result.push_back('.');
        result.append(kept, kept.size() - static_cast<std::size_t>(decimals));
    }
    return result;
}

std::optional<std::string> formatWithUnit(double value, int decimals, std::string_view unit) {
    auto text = formatDecimals(value, decimals);
    if (text)
        text->append(unit);
    return text;
}

} // namespace zorvik
