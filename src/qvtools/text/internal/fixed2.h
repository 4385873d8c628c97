#pragma once

/// Reals of two decimals, which is what nearly all of a drawing file is made of: printed and read without the general
/// functions. Benchmarks: SaveDocument, ReadDocument.

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "qvtools/api.h"

namespace qv::detail {

/// `put_fixed2` for 1,000,000 and more, and for what is not finite.
QV_API char* put_fixed2_large(char* out, float v);

/// `format_fixed2`, inline. The product v * 100 is exact in double, so rounding it to the nearest even integer gives
/// the digits that exact decimal rounding gives.
inline char* put_fixed2(char* out, float v) {
  if (std::bit_cast<std::uint32_t>(v) == 0) {  // as most Z coordinates are
    std::memcpy(out, "0.00", 4);
    return out + 4;
  }
  const double magnitude = std::fabs(static_cast<double>(v) * 100.0);
  if (!(magnitude < 99999999.0)) return put_fixed2_large(out, v);
  *out = '-';
  out += std::signbit(v);
  constexpr double kTwoTo52 = 4503599627370496.0;  // doubles from here on are whole: adding it rounds
  const auto hundredths = static_cast<std::uint32_t>(magnitude + kTwoTo52 - kTwoTo52);
  // Eight digits at once, the first in the lowest byte: two fours are split into pairs, and pairs into single digits.
  // The divisions by 100 and 10 are products with a rounded-up inverse, exact for numbers of so few digits.
  const std::uint64_t fours = hundredths / 10000 | static_cast<std::uint64_t>(hundredths % 10000) << 32;
  const std::uint64_t hundreds = fours * 10486 >> 20 & 0x0000007F0000007F;
  const std::uint64_t pairs = hundreds | (fours - hundreds * 100) << 16;
  const std::uint64_t tens = pairs * 103 >> 10 & 0x000F000F000F000F;
  const std::uint64_t digits = tens | (pairs - tens * 10) << 8;
  // Leading zeros go, but the three last digits stay.
  const int leading = std::countr_zero(digits | std::uint64_t{1} << 40) & 56;
  const std::uint64_t text = digits | 0x3030303030303030;
  const std::uint64_t shown = text >> leading;
  const auto decimals = static_cast<std::uint16_t>(text >> 48);
  std::memcpy(out, &shown, sizeof shown);
  char* const point = out + 6 - leading / 8;
  *point = '.';
  std::memcpy(point + 1, &decimals, sizeof decimals);
  return point + 3;
}

/// Reads a text such as "-1234.56", with one to six digits before the point and two behind it, eight digits at a time,
/// as its sign and its hundredths; false for any other text. Up to 16 bytes from the beginning of the text are read,
/// however short it is.
inline bool parse_hundredths(std::string_view text, bool& negative, std::int32_t& hundredths) {
  static_assert(std::endian::native == std::endian::little);
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  negative = !text.empty() && text[0] == '-';
  const char* const first = text.data() + negative;
  const std::size_t length = text.size() - negative;
  if (length - 4 > 5 || first[length - 3] != '.') return false;
  const std::size_t before = length - 3;
  std::uint64_t digits;
  std::uint16_t decimals;
  std::memcpy(&digits, first, sizeof digits);
  std::memcpy(&decimals, first + before + 1, sizeof decimals);
  // Exclusive or with '0' makes each digit a byte from 0 to 9. The digits before the point move up until the last of
  // them lies just below the two decimals, and zeros fill the bytes in front of the first.
  digits = (digits ^ kOnes * '0') << 8 * (8 - before) >> 16 | static_cast<std::uint64_t>(decimals ^ 0x3030) << 48;
  // A byte above 9 is no digit: adding 118 to it sets its highest bit.
  if (((digits | (digits + kOnes * 118)) & kOnes << 7) != 0) return false;
  // Two digits are joined to a pair, pairs to fours, and both fours to the number.
  digits = digits * 10 + (digits >> 8);
  digits = ((digits & 0x000000FF000000FF) * 0x000F424000000064 +
            ((digits >> 16) & 0x000000FF000000FF) * 0x0000271000000001) >>
           32;
  hundredths = static_cast<std::int32_t>(digits);
  return true;
}

/// The same as a float.
inline bool parse_fixed2(std::string_view text, float& value) {
  bool negative;
  std::int32_t hundredths;
  if (!parse_hundredths(text, negative, hundredths)) return false;
  // The product is not always the double nearest to the decimal, but it always rounds to the float nearest to it: a
  // decimal of this length that is not a tie between two floats is farther from a tie than the product's error.
  const auto magnitude = static_cast<float>(hundredths * 0.01);
  value = negative ? -magnitude : magnitude;
  return true;
}

}  // namespace qv::detail
