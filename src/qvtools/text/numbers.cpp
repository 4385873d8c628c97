#include "qvtools/text/numbers.h"

#include <algorithm>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <limits>
#include <system_error>
#include <type_traits>

#include "qvtools/text/gbk_text.h"
#include "qvtools/text/internal/fixed2.h"

namespace qv {
namespace {

bool is_blank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

/// Skips blanks and a sign; tells whether the sign was a minus.
bool skip_to_digits(const char*& at, const char* end) {
  while (at != end && is_blank(*at)) ++at;
  const bool negative = at != end && *at == '-';
  if (negative || (at != end && *at == '+')) ++at;
  return negative;
}

/// The value of a number outside the range of a double, infinity or 0: the power of ten of its first digit tells which.
double saturated(const char* number, const char* end) {
  const char* const point = std::find(number, end, '.');
  const char* const letter = std::find_if(number, end, [](char c) { return c == 'e' || c == 'E'; });
  const char* const first = std::find_if(number, letter, [](char c) { return c >= '1' && c <= '9'; });
  const auto power = std::min(point, letter) - first;
  const int exponent = letter == end ? 0 : parse_int({letter + 1, end});
  return static_cast<double>(exponent) + static_cast<double>(power) > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

template <class Int>
Int parse_whole(std::string_view text) {
  using Limits = std::numeric_limits<Int>;
  const char* at = text.data();
  const char* const end = at + text.size();
  const bool negative = skip_to_digits(at, end);
  const auto limit = static_cast<std::uint64_t>(Limits::max()) + negative;
  std::uint64_t v = 0;
  if (std::from_chars(at, end, v).ec == std::errc::result_out_of_range || v > limit)
    return negative ? Limits::min() : Limits::max();
  return static_cast<Int>(negative ? 0 - v : v);
}

}  // namespace

double parse_real(std::string_view text) {
  const char* at = text.data();
  const char* const end = at + text.size();
  const bool negative = skip_to_digits(at, end);
  if (at == end || !(is_digit(*at) || *at == '.')) return 0.0;  // "inf" and "nan" are words here
  double v = 0;
  const auto [stop, error] = std::from_chars(at, end, v);
  if (error == std::errc::invalid_argument) return 0.0;
  if (error == std::errc::result_out_of_range) v = saturated(at, stop);
  return negative ? -v : v;
}

int parse_int(std::string_view text) {
  return parse_whole<int>(text);
}
long parse_long(std::string_view text) {
  return parse_whole<long>(text);
}

char* format_fixed2(char* out, float v) {
  return detail::put_fixed2(out, v);
}

char* detail::put_fixed2_large(char* out, float v) {
  return std::to_chars(out, out + kMaxFixed2, static_cast<double>(v), std::chars_format::fixed, 2).ptr;
}

char* format_int(char* out, int v) {
  return std::to_chars(out, out + kMaxInt, v).ptr;
}

namespace {

/// A va_list by itself, so that functions can take arguments off one list in turn.
struct Arguments {
  std::va_list list;
};

/// One conversion: flags, width, precision (negative: none), length letters and the conversion letter.
struct Conversion {
  char flags[8] = "";
  int width = 0;
  int precision = -1;
  char length[3] = "";
  char letter = 0;

  bool is(char flag) const { return std::strchr(flags, flag) != nullptr; }
};

int parse_count(const char*& p, Arguments& arguments) {
  if (*p == '*') return ++p, va_arg(arguments.list, int);
  const int n = parse_int(p);
  while (is_digit(*p)) ++p;
  return n;
}

/// Reads the conversion after a percent sign. p then points after its letter, or at the terminator when it has none.
Conversion parse_conversion(const char*& p, Arguments& arguments) {
  Conversion conversion;
  std::size_t flags = 0;
  const auto add_flag = [&](char c) {
    if (!conversion.is(c)) conversion.flags[flags++] = c;
  };
  for (; *p && std::strchr("-+ #0", *p); ++p) add_flag(*p);
  if (*p == '*' || is_digit(*p)) conversion.width = parse_count(p, arguments);
  if (conversion.width < 0) {
    add_flag('-');
    conversion.width = conversion.width == INT_MIN ? INT_MAX : -conversion.width;
  }
  if (*p == '.') {
    ++p;
    conversion.precision = *p == '-' ? -1 : parse_count(p, arguments);
  }
  for (std::size_t n = 0; n < 2 && *p && std::strchr("hlLqjzt", *p); ++p) conversion.length[n++] = *p;
  if (*p) conversion.letter = *p++;
  return conversion;
}

/// Prints one value with the C library, at the conversion's width and precision.
int print_value(char* out, std::size_t size, const Conversion& c, auto value) {
  char directive[24];
  std::snprintf(directive, sizeof directive, "%%%s*.*%s%c", c.flags, c.length, c.letter);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  return std::snprintf(out, size, directive, c.width, c.precision, value);
#pragma GCC diagnostic pop
}

/// Puts a point where the C library printed the locale's decimal mark.
void restore_point(char* text) {
  const char* const mark = std::localeconv()->decimal_point;
  const std::size_t length = std::strlen(mark);
  if (length == 0 || std::strcmp(mark, ".") == 0) return;
  if (char* at = std::strstr(text, mark)) {
    *at = '.';
    std::memmove(at + 1, at + length, std::strlen(at + length) + 1);
  }
}

/// Pads the text at `out` to the conversion's width, within size bytes; returns the length of the whole text.
int pad_real(char* out, std::size_t size, const Conversion& c) {
  const std::size_t length = std::strlen(out);
  const auto width = static_cast<std::size_t>(c.width);
  if (width <= length) return static_cast<int>(length);
  const bool finite = std::strpbrk(out, "nN") == nullptr;
  char* at = out;
  if (c.is('-')) {
    at += length;
  } else if (c.is('0') && finite) {
    at += std::strspn(at, "+- ");
    if (at[0] == '0' && (at[1] == 'x' || at[1] == 'X')) at += 2;
  }
  const std::size_t room = size - 1 - static_cast<std::size_t>(at - out);
  const std::size_t pad = std::min(width - length, room);
  const std::size_t tail = std::min(std::strlen(at), room - pad);
  std::memmove(at + pad, at, tail);
  at[pad + tail] = '\0';
  std::memset(at, c.is('0') && finite && !c.is('-') ? '0' : ' ', pad);
  return c.width;
}

int print_real(char* out, std::size_t size, const Conversion& c, auto value) {
  Conversion bare = c;
  bare.width = 0;
  const int wanted = print_value(out, size, bare, value);
  if (wanted < 0 || static_cast<std::size_t>(wanted) >= size) return wanted;
  restore_point(out);
  return pad_real(out, size, c);
}

/// What a wide character becomes as a variadic argument.
using PromotedWide = std::conditional_t<sizeof(std::wint_t) < sizeof(int), int, std::wint_t>;

int print_signed(char* out, std::size_t size, const Conversion& c, Arguments& arguments) {
  switch (c.length[0]) {
    case 'l':
      return c.length[1] ? print_value(out, size, c, va_arg(arguments.list, long long))
                         : print_value(out, size, c, va_arg(arguments.list, long));
    case 'q':
      return print_value(out, size, c, va_arg(arguments.list, long long));
    case 'j':
      return print_value(out, size, c, va_arg(arguments.list, std::intmax_t));
    case 'z':
    case 't':
      return print_value(out, size, c, va_arg(arguments.list, std::ptrdiff_t));
    default:
      return print_value(out, size, c, va_arg(arguments.list, int));
  }
}

/// Prints one conversion and takes its arguments; returns the length of the whole text.
int print_conversion(char* out, std::size_t size, const Conversion& c, Arguments& arguments) {
  if (!c.letter) return 0;
  if (std::strchr("diouxX", c.letter)) return print_signed(out, size, c, arguments);
  if (std::strchr("aAeEfFgG", c.letter)) {
    return c.length[0] == 'L' ? print_real(out, size, c, va_arg(arguments.list, long double))
                              : print_real(out, size, c, va_arg(arguments.list, double));
  }
  const bool wide = c.length[0] == 'l';
  switch (c.letter) {
    case 'c':
      return wide ? print_value(out, size, c, va_arg(arguments.list, PromotedWide))
                  : print_value(out, size, c, va_arg(arguments.list, int));
    case 's':
      return wide ? print_value(out, size, c, va_arg(arguments.list, const wchar_t*))
                  : print_value(out, size, c, va_arg(arguments.list, const char*));
    case 'p':
      return print_value(out, size, c, va_arg(arguments.list, void*));
    case 'n':
      return va_arg(arguments.list, void*), 0;
    case '%':
      return *out = '%', 1;
    default:
      return 0;
  }
}

/// Prints a text; returns the length that it wants.
std::size_t print_text(char* out, std::size_t room, const char* text) {
  if (!text) text = "(null)";
  const std::size_t length = std::strlen(text);
  std::memcpy(out, text, std::min(length, room));
  return length;
}

/// Prints v with N decimals, at most 9, from the integer nearest to v times 10^N, and returns the end of at most
/// `kMaxDecimals` bytes. Null when the product is too large, or so near a tie that its own rounding could decide.
/// Without it the benchmark WriteDatabase takes twice as long.
constexpr std::size_t kMaxDecimals = 24;
char* put_decimals(char* out, double v, int decimals) {
  constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  const double scaled = std::fabs(v) * kPowersOfTen[decimals];
  if (!(scaled < 1e15)) return nullptr;
  const auto nearest = static_cast<std::int64_t>(scaled + 0.5);
  const double error = std::fabs(scaled - static_cast<double>(nearest));
  if (error >= 0.5 - scaled * std::numeric_limits<double>::epsilon()) return nullptr;
  *out = '-';
  out += std::signbit(v);
  const auto one = static_cast<std::int64_t>(kPowersOfTen[decimals]);
  out = std::to_chars(out, out + kMaxDecimals, nearest / one).ptr;
  if (decimals == 0) return out;
  *out = '.';
  std::int64_t rest = nearest % one;
  for (int i = decimals; i > 0; --i, rest /= 10) out[i] = static_cast<char>('0' + rest % 10);
  return out + decimals + 1;
}

/// Prints v as "%.Nf" does, N at most 9; returns the length that it wants.
std::size_t print_decimals(char* out, std::size_t room, double v, int decimals) {
  if (char* const end = room > kMaxDecimals ? put_decimals(out, v, decimals) : nullptr) {
    return static_cast<std::size_t>(end - out);
  }
  if (std::isfinite(v)) {
    const auto [end, error] = std::to_chars(out, out + room, v, std::chars_format::fixed, decimals);
    if (error == std::errc()) return static_cast<std::size_t>(end - out);
  }
  Conversion conversion;
  conversion.precision = decimals;
  conversion.letter = 'f';
  const int wanted = print_real(out, room, conversion, v);
  return static_cast<std::size_t>(std::max(wanted, 0));
}

/// Prints the conversions that most formats are made of, nearly always free of the C library: %d, %s, and %f alone or
/// with a precision of one digit. Their arguments are what `next` returns for a value of their type. Moves behind the
/// conversion and returns the length that it wants; -1, with nothing taken, for any other.
template <class Next>
std::ptrdiff_t print_plain(char* out, std::size_t room, const char*& format, const Next& next) {
  constexpr const char* kText = nullptr;
  const char letter = format[1];
  if (letter == 's') return format += 2, static_cast<std::ptrdiff_t>(print_text(out, room, next(kText)));
  if (letter == 'd') return room < kMaxInt ? -1 : (format += 2, format_int(out, next(0)) - out);
  const bool precise = letter == '.' && is_digit(format[2]);
  if (format[precise ? 3 : 1] != 'f') return -1;
  const int decimals = precise ? format[2] - '0' : 6;
  format += precise ? 4 : 2;
  return static_cast<std::ptrdiff_t>(print_decimals(out, room, next(0.0), decimals));
}

/// Prints a format whose arguments are what `next` returns, as far as its conversions are plain; moves behind what it
/// printed.
template <class Next>
std::size_t print_while_plain(char* out, std::size_t size, const char*& format, const Next& next) {
  std::size_t used = 0;
  while (*format && used < size) {
    if (*format != '%') {
      out[used++] = *format++;
      continue;
    }
    const std::ptrdiff_t wanted = print_plain(out + used, size - used, format, next);
    if (wanted < 0) break;
    used += static_cast<std::size_t>(wanted);
  }
  return used;
}

/// Prints the rest of a format, which begins with a conversion that is not plain; returns the length that it wants.
std::size_t print_rest(char* out, std::size_t size, const char* format, Arguments& arguments) {
  const auto next = [&arguments](auto type) { return va_arg(arguments.list, decltype(type)); };
  std::size_t used = 0;
  while (*format && used < size) {
    const Conversion conversion = parse_conversion(++format, arguments);
    const std::size_t room = size - used;
    const int wanted = room > 1 ? print_conversion(out + used, room, conversion, arguments) : 1;
    used += static_cast<std::size_t>(wanted < 0 ? 0 : wanted);
    if (used < size) used += print_while_plain(out + used, size - used, format, next);
  }
  return used;
}

/// Terminates a text that did not fit: after at most size - 1 bytes, and never between the two bytes of a character.
int cut_at_end(char* out, std::size_t size) {
  out[size - 1] = '\0';
  std::size_t length = 0;
  std::size_t last = 0;
  for (std::size_t n; (n = char_length(out + length)) != 0; length += n) last = length;
  if (last + 1 == length && is_lead_byte(out[last])) length = last;
  out[length] = '\0';
  return static_cast<int>(length);
}

}  // namespace

int format_list(char* out, std::size_t size, const char* format, std::va_list list) {
  if (size == 0) return 0;
  // Copying the list waits for the stores by which the caller has just filled it. Plain conversions, the most frequent
  // ones, read the list itself.
  std::size_t used = print_while_plain(out, size, format, [&list](auto type) { return va_arg(list, decltype(type)); });
  if (*format && used < size) {
    Arguments arguments;
    va_copy(arguments.list, list);
    used += print_rest(out + used, size - used, format, arguments);
    va_end(arguments.list);
  }
  if (used >= size) return cut_at_end(out, size);
  out[used] = '\0';
  return static_cast<int>(used);
}

int format_text(char* out, std::size_t size, const char* format, ...) {
  std::va_list list;
  va_start(list, format);
  const int length = format_list(out, size, format, list);
  va_end(list);
  return length;
}

}  // namespace qv
