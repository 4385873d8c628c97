#pragma once

/// The library's one formatter and one parser of numbers. Neither looks at the locale.

#include <climits>
#include <cstdarg>
#include <cstddef>
#include <string_view>

#include "qvtools/api.h"

namespace qv {

/// Decimal text to a double with the C library's `atof` results: leading blanks, a sign, digits with a point, an
/// exponent; what follows is ignored, and text that is no number (words, hexadecimal) gives 0. Out of range
/// saturates to an infinity or to 0.
QV_API double parse_real(std::string_view text);

/// Decimal text to an integer with `atoi` results: leading blanks, a sign, digits. Out of range saturates.
QV_API int parse_int(std::string_view text);
QV_API long parse_long(std::string_view text);

/// A double to an int: toward zero, saturating at the int's range, 0 for NaN.
inline int TruncInt(double v) {
  if (v > -2147483649.0 && v < 2147483648.0) return static_cast<int>(v);
  return v > 0 ? INT_MAX : v < 0 ? INT_MIN : 0;
}

/// The room that `format_fixed2` needs.
inline constexpr int kMaxFixed2 = 48;
/// Writes v as "%.2f" prints it (no terminator) and returns the end of the text; what lies behind it in the room may be
/// overwritten.
QV_API char* format_fixed2(char* out, float v);

/// The room that `format_int` needs.
inline constexpr int kMaxInt = 12;
/// Writes v as "%d" prints it (no terminator) and returns the end of the text.
QV_API char* format_int(char* out, int v);

/// Formats as `vsnprintf` does in the "C" locale, whatever the locale is; the text is cut to size - 1 bytes, never
/// within a two-byte character, and terminated. Returns the length of the text that is in `out`. Conversions: all of C
/// but %n, which is passed over.
QV_API int format_list(char* out, std::size_t size, const char* format, std::va_list arguments) QV_FORMAT(3, 0);
QV_API int format_text(char* out, std::size_t size, const char* format, ...) QV_FORMAT(3, 4);

/// A text of less than `size` bytes, formatted likewise.
template <std::size_t size>
struct FormattedText {
  char text[size];  ///< terminated
  int length;       ///< in bytes
  /// Formats it.
  explicit FormattedText(const char* format, ...) QV_FORMAT(2, 3) {
    std::va_list values;
    va_start(values, format);
    length = format_list(text, size, format, values);
    va_end(values);
  }
  /// The text.
  operator const char*() const { return text; }
};

}  // namespace qv
