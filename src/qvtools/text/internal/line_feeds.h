#pragma once

/// Where the next line of a text ends.

#include <bit>
#include <cstddef>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qv::detail {

/// The first line feed of the next `longest` bytes; null when there is none. Sixteen bytes can be read, and those of
/// them that are not among the `longest` hold no line feed.
inline const char* find_feed(const char* from, std::size_t longest) {
#if defined(__SSE2__)
  // Nearly all lines of a drawing are shorter.
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
  const auto found = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_set1_epi8('\n'))));
  if (found != 0) return from + std::countr_zero(found);
#endif
  return static_cast<const char*>(std::memchr(from, '\n', longest));
}

}  // namespace qv::detail
