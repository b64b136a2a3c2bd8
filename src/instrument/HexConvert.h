// Hexadecimal texts to numbers, for values kept as hex digits.
#pragma once

#include <cstdint>
#include <string_view>

namespace zorvik {

/// The text read as hexadecimal digits (upper or lower case), as a byte. Up to four digits
/// are read as a signed 16-bit value, five to eight as a signed 32-bit value, so "FFFF" is
/// -1. A value that does not fit a byte (0..255), such as "1FF" or "FFFF", gives 0 rather
/// than its low byte; so do an empty text, more than eight digits and any character that is
/// not a hex digit (blanks and signs included). Never throws.
std::uint8_t HexToByte(std::string_view num) noexcept;

/// The text read as hexadecimal digits, as a signed 32-bit value. A text of exactly four
/// characters is taken as (value of its first digit) x 4096 + (value of its last three), so
/// four digits are never negative: "FFFF" gives 65535. Other lengths read as in HexToByte:
/// up to four digits 16-bit signed, five to eight 32-bit signed ("FFFFFFFF" gives -1).
/// An empty text, more than eight digits or a character that is not a hex digit gives 0.
/// Never throws.
std::int32_t HexToLng(std::string_view num) noexcept;

} // namespace zorvik
