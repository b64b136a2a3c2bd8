// Fixed-decimal number texts for the readouts: "0.00"-style patterns with a unit behind them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zorvik {

/// The number with exactly `decimals` decimals (0..15), '.' as the decimal separator
/// whatever the locale, no thousands separators, at least one digit before the point.
///
/// Rounding is half away from zero on the decimal value of the number: 0.0005 with three
/// decimals gives "0.001", 2.5 with none gives "3". A double is not exact in binary (1.0005
/// is stored as 1.000499999...), so the number is first taken as its 15 significant
/// decimal digits, the precision a double reliably carries, and that decimal text is then
/// rounded. This way 1.0005 shows as "1.001", and so does a value that arithmetic noise
/// has pushed one or two units of the last binary place below a half.
///
/// A value that rounds to zero has no sign; other negative values start with '-'.
/// Infinity and NaN have no text: the result is empty (std::nullopt).
std::optional<std::string> formatDecimals(double value, int decimals);

/// formatDecimals() followed by `unit` exactly as written (" nSec" stays " nSec": the
/// unit is plain text, never read as format codes).
std::optional<std::string> formatWithUnit(double value, int decimals, std::string_view unit);

} // namespace zorvik
