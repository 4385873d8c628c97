#pragma once

/// What the sources of the function library share: a segment with its own frame, and the angle test of arcs. Not part
/// of the public interface.

#include <cmath>
#include <limits>

#include "qvtools/geometry/functions/jh.h"
#include "qvtools/geometry/values/internal/arc_math.h"

namespace qv::detail {

/// A segment's frame: places along and across it, both multiplied by the segment's length. Comparing the products
/// keeps ends and points on the line exact and needs neither an angle nor a division.
struct Segment {
  double x;
  double y;
  Vec span;
  double length2;
  double length;

  Segment(double x1, double y1, double x2, double y2)
      : x(x1), y(y1), span{x2 - x1, y2 - y1}, length2(span.dot(span)), length(std::sqrt(length2)) {}

  double along(double px, double py) const { return span.dot({px - x, py - y}); }
  double across(double px, double py) const { return span.cross({px - x, py - y}); }
  /// Whether a place along the segment is at most tol beyond its ends.
  bool holds(double place, double tol) const { return -tol * length <= place && place <= length2 + tol * length; }
  Vec at(double place) const { return {x + span.x * (place / length2), y + span.y * (place / length2)}; }
  double distance_to_start(double px, double py) const { return Vec{px - x, py - y}.length(); }
  double distance_to_end(double px, double py) const { return Vec{px - x - span.x, py - y - span.y}.length(); }
  double distance(double px, double py) const {
    const double place = along(px, py);
    if (length2 == 0 || place < 0) return distance_to_start(px, py);
    return place > length2 ? distance_to_end(px, py) : std::fabs(across(px, py)) / length;
  }
};

inline void store(const Vec& v, float* x, float* y) {
  *x = static_cast<float>(v.x);
  *y = static_cast<float>(v.y);
}

inline bool within(double dx, double dy, double reach) {
  return reach > 0 && dx * dx + dy * dy < reach * reach;
}

/// Whether the direction of p from the centre lies in the arc's angles. A radius of 0 leaves only the centre, which has
/// every direction.
inline bool direction_in_arc(float px, float py, float cx, float cy, float r, float a1, float a2, float tol) {
  if (!(r > 0)) return true;
  return JH_TestAngleInArc(JH_GetAngle(cx, cy, px, py), a1, a2, tol / r) != 0;
}

/// The point of an arc's circle in the direction a.
struct ArcPoint {
  float x;
  float y;
  ArcPoint(float cx, float cy, double r, double a)
      : x(static_cast<float>(cx + r * std::cos(a))), y(static_cast<float>(cy + r * std::sin(a))) {}
};

}  // namespace qv::detail
