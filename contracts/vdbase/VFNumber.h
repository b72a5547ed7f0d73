#pragma once

#include "vdbase/VDString.h"

#include <cstdint>

/// Numbers and their texts. The locale never matters.

/// Reads a whole text as a decimal number; blanks around it are passed over, and a leading "+" is taken.
/// @return false, and `out` untouched, for anything else and for a value outside the type's range
VDBASE_API bool VFAscToNum(const char* text, int* out);
VDBASE_API bool VFAscToNum(const char* text, std::int64_t* out);
VDBASE_API bool VFAscToNum(const char* text, std::uint64_t* out);
/// Also "inf", "infinity" and "nan" without regard to case; a value too small for the type is a zero.
VDBASE_API bool VFAscToNum(const char* text, double* out);
VDBASE_API bool VFAscToNum(const char* text, float* out);
/// Reads a whole text of 1 to 8 hexadecimal digits, with or without "0x" before them, as the bits of a number; blanks around
/// it are passed over. False, and `out` untouched, for anything else.
VDBASE_API bool VFHexToNum(const char* text, int* out);
/// Reads "True" or "False" without regard to case.
VDBASE_API bool VFAscToBoolean(const char* text, bool* out);

/// A whole number as text.
/// @param base   2 to 36; the text is empty for any other
/// @param width  at least this many characters, filled with zeros behind the sign; 0 for none
VDBASE_API VDString VFFormat64(std::int64_t value, int base, int width);

/// A number as text with at most `digits` significant digits: plain while the decimal exponent lies between `minExponent`
/// and `maxExponent`, else with an exponent.
/// @param trailingZeros  0 drops trailing zeros of the fraction
/// @param maxLength      a longer result loses digits of its fraction until it fits; if it can't, it is written with an
///                       exponent where that is shorter. 0 for no limit
/// @return "nan", "inf" or "-inf" for what is no finite number
VDBASE_API VDString VFFormatDouble(double value, int digits, int minExponent, int maxExponent, int trailingZeros, int maxLength);

/// Whether two values differ by no more than the ratio `tolerance` (1.001 for 0.1 %).
VDBASE_API bool VFRequal(double left, double right, double tolerance);

/// Tidies a text in place. The mode's bits: 1 removes blanks and tabs at the end, 2 those at the beginning, 8 makes both and
/// each run of blanks, tabs and line ends inside one blank.
VDBASE_API void VFSqueeze(VDString* text, int mode);

/// A text whose byte order puts the numbers inside the original in numeric order: each run of digits is widened.
VDBASE_API VDString VFMakeNumericallySortableString(const char* text);
