// Text <-> number conversions of the settings and waveform files. They never look at the
// process locale: the decimal separator is always '.', so files read the same everywhere.
// Conversions that fail throw ConversionError.
#pragma once

#include "storage/ConversionError.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zorvik::VbConvert {

/// The leading numeric part of a text: leading blanks (space, tab, CR, LF) are skipped, then a
/// decimal number is taken, possibly with a sign, a fraction and an exponent ("E" or "e",
/// optional sign, at least one digit). Reading stops at the first character that cannot
/// continue the number, so "7abc" is 7 and "2.5e" is 2.5. A text with no numeric start
/// ("", "abc", "-", ".") counts as 0. Never throws; a number too large for a double gives
/// plus or minus infinity.
double leadingNumber(std::string_view text);

/// Rounds to the nearest 32-bit whole number, halves to even (2.5 -> 2, 3.5 -> 4,
/// -2.5 -> -2). Throws ConversionError (Overflow) outside -2147483648.5 .. 2147483647.5 and
/// for NaN.
std::int32_t roundToLong(double value);

/// A whole text as a decimal number (blanks around it allowed, sign, fraction, exponent),
/// rounded with roundToLong. Anything else is a TypeMismatch.
std::int32_t textToLong(std::string_view text);

/// "True"/"False" in any letter case, or a decimal number (non-zero is true); blanks around
/// the text are allowed. Anything else ("maybe", "", "1x") is a TypeMismatch.
bool textToBoolean(std::string_view text);

/// "True" or "False".
std::string booleanToText(bool value);

/// Decimal text of a whole number ("-42").
std::string longToText(std::int32_t value);

/// A single-precision number as text with at most 7 significant digits, the way C's %G with
/// precision 7 prints it: fixed notation for decimal exponents -4 to 6, otherwise mantissa,
/// "E", a sign and at least two exponent digits; trailing zeros and a bare decimal point are
/// dropped ("0.1587301", "-0.4920633", "355.5554", "0", "5E-08", "1E-07", "1.234568E+07").
std::string singleToText(float value);

/// A text as a single-precision number. Accepted: blanks around it; an optional sign; digits
/// with an optional fraction, or a fraction alone (".5", "-.25"); an optional exponent with
/// "E" or "e" ("-1.587301E-02", "5e-08"). The result is the nearest single to the decimal
/// value. Empty text, letters, a comma as decimal separator and the like are a TypeMismatch;
/// a magnitude beyond the single range is an Overflow.
float textToSingle(std::string_view text);

/// The same rules for a double-precision number.
double textToDouble(std::string_view text);

/// A double as the shortest decimal text in fixed notation that reads back to exactly the
/// same double ("0.5", "-1.25", "3", "0.1", "0.00001"): no rounding, no exponent.
std::string doubleToText(double value);

} // namespace zorvik::VbConvert
