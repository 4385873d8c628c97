#pragma once

/// Texts looked at eight bytes at a time.

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace qv {

/// The eight bytes from p on, the first of them lowest.
inline std::uint64_t word_at(const char* p) {
  std::uint64_t word;
  std::memcpy(&word, p, sizeof word);
  if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
  return word;
}

/// The first byte c from p on, or `limit`. Reads up to 7 bytes past the limit, which must be there.
inline const char* find_byte(const char* p, const char* limit, char c) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  const std::uint64_t wanted = kOnes * static_cast<unsigned char>(c);
  for (; p < limit; p += 8) {
    const std::uint64_t x = word_at(p) ^ wanted;
    if (const std::uint64_t zero = (x - kOnes) & ~x & (kOnes << 7)) {
      return std::min(p + std::countr_zero(zero) / 8, limit);
    }
  }
  return limit;
}

}  // namespace qv
