#pragma once

/// What the sources of the function library share: a segment, and the angle test of arcs. Not part of the public
/// interface.

#include <cmath>

#include "qvtools/geometry/functions/jh.h"
#include "qvtools/geometry/values/internal/edge.h"

namespace qv::detail {

/// A segment with the tolerances that the function library has at its ends and beside it.
struct SegmentFrame : LineFrame {
  double length;

  SegmentFrame(double x1, double y1, double x2, double y2)
      : LineFrame({x1, y1}, {x2 - x1, y2 - y1}), length(std::sqrt(length2)) {}

  double distance_to_start(const Vec& p) const { return Vec{p.x - base.x, p.y - base.y}.length(); }
  double distance_to_end(const Vec& p) const { return Vec{p.x - base.x - span.x, p.y - base.y - span.y}.length(); }
  double distance(const Vec& p) const {
    const double parameter = along(p);
    if (length2 == 0 || parameter < 0) return distance_to_start(p);
    return parameter > length2 ? distance_to_end(p) : std::fabs(across(p)) / length;
  }
  /// Whether a parameter along the segment is at most tol beyond its ends.
  bool contains(double parameter, double tol) const {
    return -tol * length <= parameter && parameter <= length2 + tol * length;
  }
  /// Whether a point is at most tol beyond the ends and at most tol beside the line.
  bool contains(const Vec& p, double tol) const {
    return contains(along(p), tol) && std::fabs(across(p)) <= tol * length;
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
