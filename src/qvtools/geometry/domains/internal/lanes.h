#pragma once

/// Four floats that one instruction works on. Benchmark: PointInDomain.

#include <cstdint>
#include <cstring>

#ifdef __SSE__
#include <xmmintrin.h>
#endif

namespace qv::detail {

typedef float Lanes __attribute__((vector_size(16)));
typedef std::int32_t LaneBits __attribute__((vector_size(16)));

inline Lanes lower(Lanes a, Lanes b) {
  return a < b ? a : b;
}
inline Lanes higher(Lanes a, Lanes b) {
  return a > b ? a : b;
}

/// The four floats at an address, which needs no alignment.
inline Lanes load_lanes(const void* from) {
  Lanes lanes;
  std::memcpy(&lanes, from, sizeof lanes);
  return lanes;
}

inline Lanes all_lanes(float v) {
  return Lanes{v, v, v, v};
}
/// The first two lanes of two, in turns: a0 b0 a1 b1.
inline Lanes interleave(Lanes a, Lanes b) {
  return Lanes{a[0], b[0], a[1], b[1]};
}
/// The last two lanes of two, in turns: a2 b2 a3 b3.
inline Lanes interleave_last(Lanes a, Lanes b) {
  return Lanes{a[2], b[2], a[3], b[3]};
}
inline Lanes swap_pairs(Lanes a) {
  return Lanes{a[1], a[0], a[3], a[2]};
}
/// The first two lanes of two, or their last two.
inline Lanes first_halves(Lanes a, Lanes b) {
  return Lanes{a[0], a[1], b[0], b[1]};
}
inline Lanes second_halves(Lanes a, Lanes b) {
  return Lanes{a[2], a[3], b[2], b[3]};
}

/// A bit for each lane in which a comparison holds.
inline std::uint64_t bits_of(LaneBits holds) {
#ifdef __SSE__
  return static_cast<std::uint64_t>(_mm_movemask_ps(reinterpret_cast<Lanes>(holds)));
#else
  return static_cast<std::uint64_t>((holds[0] & 1) | (holds[1] & 2) | (holds[2] & 4) | (holds[3] & 8));
#endif
}

}  // namespace qv::detail
