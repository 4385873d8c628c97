#pragma once

/// Four floats that one instruction works on, where the compiler has such a type. Bench: PointInDomain.

#include <cstring>

namespace qv::detail {

#if defined(__GNUC__)
typedef float Lanes __attribute__((vector_size(16)));
inline Lanes lower(Lanes a, Lanes b) {
  return a < b ? a : b;
}
inline Lanes higher(Lanes a, Lanes b) {
  return a > b ? a : b;
}
#else
struct Lanes {
  float v[4];
  float operator[](int i) const { return v[i]; }
};
inline Lanes lower(const Lanes& a, const Lanes& b) {
  Lanes r;
  for (int i = 0; i < 4; ++i) r.v[i] = a.v[i] < b.v[i] ? a.v[i] : b.v[i];
  return r;
}
inline Lanes higher(const Lanes& a, const Lanes& b) {
  Lanes r;
  for (int i = 0; i < 4; ++i) r.v[i] = a.v[i] > b.v[i] ? a.v[i] : b.v[i];
  return r;
}
#endif

/// The four floats at an address, which needs no alignment.
inline Lanes load_lanes(const void* from) {
  Lanes lanes;
  std::memcpy(&lanes, from, sizeof lanes);
  return lanes;
}

}  // namespace qv::detail
