#pragma once

/// Printing of digits two at a time, inline since whole drawings are printed through it.

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "qvtools/api.h"

namespace qv::detail {

/// From here on every double is a whole number; below it, adding and taking it away rounds to the nearest even one.
inline constexpr double kTwoTo52 = 4503599627370496.0;

/// "00" to "99".
inline constexpr std::array<char, 200> kDigitPairs = [] {
  std::array<char, 200> pairs{};
  for (unsigned i = 0; i < 100; ++i) {
    pairs[2 * i] = static_cast<char>('0' + i / 10);
    pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
  }
  return pairs;
}();

inline void put_pair(char* out, std::uint32_t v) {
  std::memcpy(out, kDigitPairs.data() + 2 * v, 2);
}

/// The number of decimal digits of v, 1 for 0.
inline int digit_count(std::uint32_t v) {
  if (v < 100) return 1 + (v >= 10);
  if (v < 10000) return 3 + (v >= 1000);
  if (v < 1000000) return 5 + (v >= 100000);
  if (v < 100000000) return 7 + (v >= 10000000);
  return 9 + (v >= 1000000000);
}

/// Writes v in decimal and returns the end.
inline char* put_unsigned(char* out, std::uint32_t v) {
  char* const end = out + digit_count(v);
  char* p = end;
  for (; v >= 100; v /= 100) put_pair(p -= 2, v % 100);
  if (v >= 10) {
    put_pair(p - 2, v);
  } else {
    p[-1] = static_cast<char>('0' + v);
  }
  return end;
}

/// Writes v, below 2^53, in decimal and returns the end.
inline char* put_unsigned_wide(char* out, std::uint64_t v) {
  constexpr std::uint32_t kBillion = 1000000000;
  if (v < kBillion) return put_unsigned(out, static_cast<std::uint32_t>(v));
  out = put_unsigned(out, static_cast<std::uint32_t>(v / kBillion));
  auto rest = static_cast<std::uint32_t>(v % kBillion);
  for (int at = 7; at > 0; at -= 2, rest /= 100) put_pair(out + at, rest % 100);
  *out = static_cast<char>('0' + rest);
  return out + 9;
}

/// The eight digits of v, below 10^8, as numbers in the bytes of a word, the first in the lowest. All are split at once
/// in lanes: pairs of four digits, of two, then single ones; divisions are products with a rounded-up inverse, exact
/// within their lane's range.
inline std::uint64_t eight_digits(std::uint32_t v) {
  const std::uint64_t fours = v / 10000 | static_cast<std::uint64_t>(v % 10000) << 32;
  const std::uint64_t hundreds = fours * 10486 >> 20 & 0x0000007F0000007F;
  const std::uint64_t twos = hundreds | (fours - hundreds * 100) << 16;
  const std::uint64_t tens = twos * 103 >> 10 & 0x000F000F000F000F;
  return tens | (twos - tens * 10) << 8;
}

/// Writes v, below 10^8, in decimal and returns the end. Eight bytes are written whatever the length.
inline char* put_eight_digits(char* out, std::uint32_t v) {
  const std::uint64_t digits = eight_digits(v);
  const int leading = std::countr_zero(digits | std::uint64_t{1} << 56) & 56;
  const std::uint64_t text = (digits | 0x3030303030303030) >> leading;
  std::memcpy(out, &text, sizeof text);
  return out + 8 - leading / 8;
}

/// Writes hundredths, below 2^53 of them, as a number with two decimals and returns the end. Up to four bytes
/// behind it are written.
inline char* put_hundredths(char* out, std::uint64_t hundredths) {
  if (hundredths < 100000000) {
    const std::uint64_t digits = eight_digits(static_cast<std::uint32_t>(hundredths));
    // Three digits stay, whatever they are.
    const int leading = std::countr_zero(digits | std::uint64_t{1} << 40) & 56;
    const std::uint64_t text = digits | 0x3030303030303030;
    const std::uint64_t shown = text >> leading;
    const auto decimals = static_cast<std::uint16_t>(text >> 48);
    std::memcpy(out, &shown, sizeof shown);
    out += 6 - leading / 8;
    *out = '.';
    std::memcpy(out + 1, &decimals, sizeof decimals);
    return out + 3;
  }
  const std::uint64_t whole = hundredths / 100;
  out = put_unsigned_wide(out, whole);
  *out = '.';
  put_pair(out + 1, static_cast<std::uint32_t>(hundredths - whole * 100));
  return out + 3;
}

/// `format_fixed2` for what is no number or too large for `put_hundredths`.
QV_API char* format_fixed2_unusual(char* out, float v);

}  // namespace qv::detail
