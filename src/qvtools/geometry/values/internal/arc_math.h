#pragma once

/// Vectors and angles shared by the sources of the value classes. Not part of the public interface.

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "qvtools/geometry/values/point.h"

namespace qv::detail {

inline constexpr double kTurn = 6.283185307179586;

struct Vec {
  double x;
  double y;
  double dot(const Vec& v) const { return x * v.x + y * v.y; }
  double cross(const Vec& v) const { return x * v.y - y * v.x; }
  double length() const { return std::sqrt(x * x + y * y); }
  Vec turned_back(double angle) const {
    const double c = std::cos(angle), s = std::sin(angle);
    return {x * c + y * s, y * c - x * s};
  }
  Vec turned(double angle) const { return turned_back(-angle); }
};

inline Vec between(const CFPoint& from, const CFPoint& to) {
  return {static_cast<double>(to.x) - from.x, static_cast<double>(to.y) - from.y};
}

/// The unit vector of a direction that was stored as a float, and the largest sine by which the rounding can have
/// turned it. A direction within that tolerance of an axis becomes the axis, so that tests on vertical and horizontal
/// lines are exact.
struct Direction {
  Vec unit;
  double tolerance;

  explicit Direction(float a)
      : unit{std::cos(static_cast<double>(a)), std::sin(static_cast<double>(a))},
        tolerance(std::fabs(static_cast<double>(a)) * 6e-8) {
    if (std::fabs(unit.x) <= tolerance) *this = Direction(0, unit.y);
    if (std::fabs(unit.y) <= tolerance) *this = Direction(unit.x, 0);
  }

 private:
  Direction(double x, double y)
      : unit{x == 0 ? 0 : std::copysign(1.0, x), y == 0 ? 0 : std::copysign(1.0, y)}, tolerance(0) {}
};

/// The smallest distance that floats of the points' size resolve: one unit in the last place of the largest coordinate.
inline double resolution(std::initializer_list<CFPoint> points) {
  double largest = 0;
  for (const CFPoint& p : points) largest = (std::max)({largest, std::fabs(1.0 * p.x), std::fabs(1.0 * p.y)});
  return largest * 1.2e-7;
}

/// An angle brought into [0, turn). An infinite angle gives NaN.
inline double normalize_angle(double angle) {
  const double rest = std::fmod(angle, kTurn);
  const double lifted = rest < 0 ? rest + kTurn : rest;
  return lifted < kTurn ? lifted : 0;
}

/// The size in [0, turn) of a turn by an angle, clockwise when `sweep` is negative.
inline double along_sweep(double angle, double sweep) {
  return normalize_angle(sweep < 0 ? -angle : angle);
}

}  // namespace qv::detail
