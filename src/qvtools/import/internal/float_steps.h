#pragma once

/// How coarse the floats of records are far from the origin, and where to move what lies there.

#include <algorithm>
#include <cmath>

#include "qvtools/import/internal/output.h"

namespace qv::importing {

inline double millimetres(Unit unit) {
  constexpr double kMillimetres[] = {1, 25.4, 304.8, 1609344, 1, 10, 1000, 1e6};
  return kMillimetres[static_cast<int>(unit)];
}

/// The distance between neighbouring floats at a number.
inline double float_step(double at) {
  const auto f = static_cast<float>(std::fabs(at));
  return static_cast<double>(std::nextafter(f, std::numeric_limits<float>::infinity())) - static_cast<double>(f);
}

/// What to take off, in whole round numbers, so that the steps are a quarter at most; nothing when they are fine as it
/// is or do not become finer. `unit` is the unit of the document.
inline Vec shift_of(const Bounds& bounds, Unit unit) {
  constexpr double kCoarse = 0.1;  // millimetres
  constexpr double kFarthest = 1e15;
  if (bounds.empty() || bounds.farthest() > kFarthest) return {};
  const double step = float_step(bounds.farthest());
  if (step * millimetres(unit) <= kCoarse) return {};
  const double round = std::pow(10.0, std::max(0.0, std::ceil(std::log10(std::max(bounds.size(), 1.0))) - 1));
  const Vec shift{std::floor(bounds.x1 / round) * round, std::floor(bounds.y1 / round) * round, 0};
  const double left = std::max(bounds.x2 - shift.x, bounds.y2 - shift.y);
  return 4 * float_step(left) <= step ? shift : Vec{};
}

}  // namespace qv::importing
