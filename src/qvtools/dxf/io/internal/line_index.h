#pragma once

/// Where the lines of a text end, found sixty-four bytes at a time: reading line by line then waits for no line's end
/// before it looks at the next.

#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qv::detail {

/// A set bit for each of the 64 bytes at `text` that is a line feed, the first byte's lowest.
inline std::uint64_t line_feed_mask(const char* text) {
#if defined(__SSE2__)
  const __m128i feed = _mm_set1_epi8('\n');
  std::uint64_t mask = 0;
  for (int i = 0; i < 4; ++i) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text) + i);
    const auto found = static_cast<std::uint16_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, feed)));
    mask |= static_cast<std::uint64_t>(found) << 16 * i;
  }
#else
  std::uint64_t mask = 0;
  for (int i = 0; i < 64; ++i) mask |= static_cast<std::uint64_t>(text[i] == '\n') << i;
#endif
  return mask;
}

/// `std::popcount` in line: without the processor's own instruction it would be a call.
inline unsigned count_bits(std::uint64_t v) {
  v -= v >> 1 & 0x5555555555555555;
  v = (v & 0x3333333333333333) + (v >> 2 & 0x3333333333333333);
  return static_cast<unsigned>(((v + (v >> 4)) & 0x0F0F0F0F0F0F0F0F) * 0x0101010101010101 >> 56);
}

/// What `index_line_feeds` may write behind its last index, and read behind the text.
inline constexpr std::size_t kIndexMargin = 64;

/// Writes the offsets of the line feeds among the first `size` bytes (at most 65536) of the text and returns their end.
inline std::uint16_t* index_line_feeds(const char* text, std::size_t size, std::uint16_t* out) {
  constexpr int kUsual = 16;  // line feeds of 64 bytes of a drawing, or fewer
  for (std::size_t at = 0; at < size; at += 64) {
    std::uint64_t mask = line_feed_mask(text + at);
    if (size - at < 64) mask &= (std::uint64_t{1} << (size - at)) - 1;
    std::uint16_t* const end = out + count_bits(mask);
    const auto put = [&] {
      *out++ = static_cast<std::uint16_t>(at + static_cast<unsigned>(std::countr_zero(mask)));
      mask &= mask - 1;
    };
    // The usual number without a branch; what was written too much is written over.
    for (int i = 0; i < kUsual; ++i) put();
    while (mask) put();
    out = end;
  }
  return out;
}

}  // namespace qv::detail
