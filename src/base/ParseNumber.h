#pragma once

#include <cstdint>

// Numbers of text files. The C library's own conversion depends on the locale and differs in the
// last bit between libraries; these give the same bits on every host.

/// Converts the number at the start of [begin, end) by the rules of `strtod` in the C locale:
/// leading white space, a sign, decimal digits with an exponent, hexadecimal floats, `inf`,
/// `infinity` and `nan` in any case. Rounds to nearest even; too large gives an infinity, too small
/// a subnormal or zero of the right sign. What follows the number is ignored; no number gives 0.
/// The payload in `nan(...)` is ignored.
double ParseDouble(const char* begin, const char* end);

/// Truncates towards zero. A value outside the range of int32 gives the nearest end of the range; NaN
/// gives 0.
int32_t ToInt32(double value);
