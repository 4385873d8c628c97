#pragma once

/// Four floats that one instruction works on. Benchmark: PointInDomain.

#include <cstring>

namespace qv::detail {

typedef float Lanes __attribute__((vector_size(16)));

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

}  // namespace qv::detail
