#pragma once

/// The curves of records in a plane, in double.

#include <numbers>

#include "qvtools/dxf/view/catch.h"
#include "qvtools/dxf/view/internal/outline.h"

namespace qv::detail {

inline PlanePoint exact(const CFPoint& p) {
  return {p.x, p.y};
}
inline double distance(const PlanePoint& a, const PlanePoint& b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

/// A segment, or an arc when its radius is not 0.
struct Figure {
  PlanePoint a;
  PlanePoint b;
  PlanePoint center;
  double radius = 0;
  double start = 0;  ///< radians
  double sweep = 0;  ///< counter-clockwise; a full turn for a circle

  bool is_arc() const { return radius > 0; }
  bool is_circle() const { return sweep >= 2 * std::numbers::pi; }
  PlanePoint at_angle(double angle) const {
    return {center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
  }
  PlanePoint middle() const {
    return is_arc() ? at_angle(start + sweep / 2) : PlanePoint{(a.x + b.x) / 2, (a.y + b.y) / 2};
  }
  double length() const { return is_arc() ? radius * sweep : distance(a, b); }
  /// Whether a direction from the centre lies in the sweep, or within a tolerance beyond its ends.
  bool holds_angle(double angle, double tolerance) const {
    if (is_circle()) return true;
    double turned = std::fmod(angle - start, 2 * std::numbers::pi);
    if (turned < 0) turned += 2 * std::numbers::pi;
    return turned <= sweep + tolerance || turned >= 2 * std::numbers::pi - tolerance;
  }
  /// Whether a point that lies on the line or the circle lies on the figure.
  bool holds(const PlanePoint& p, double tolerance) const;
  /// The point of the figure nearest to p.
  PlanePoint nearest(const PlanePoint& p) const;

  static Figure line(const PlanePoint& from, const PlanePoint& to) {
    Figure f;
    f.a = from;
    f.b = to;
    return f;
  }
  static Figure arc(const PlanePoint& c, double r, double startAngle, double sweepAngle) {
    Figure f;
    f.center = c;
    f.radius = std::fabs(r);
    f.start = startAngle;
    f.sweep = std::min(sweepAngle, 2 * std::numbers::pi);
    f.a = f.at_angle(startAngle);
    f.b = f.at_angle(startAngle + f.sweep);
    return f;
  }
  /// The arc of a polyline's segment; its ends are the vertices themselves.
  static Figure bulged(const PlanePoint& from, const PlanePoint& to, double bulge);
};

/// Calls f for the curves of a record: none for a point, a text and an insert.
void for_each_figure(const auto& r, const Plane& plane, const auto& f) {
  if constexpr (requires { r.m_Start; }) {
    f(Figure::line(exact(plane(r.m_Start)), exact(plane(r.m_End))));
  } else if constexpr (requires { r.m_fStartAngle; }) {
    constexpr double kRadian = std::numbers::pi / 180;
    double sweep = (double{r.m_fEndAngle} - r.m_fStartAngle) * kRadian;
    if (sweep < 0) sweep += 2 * std::numbers::pi;
    if (sweep != 0) f(Figure::arc(exact(plane(r.m_Center)), r.m_fRadius, r.m_fStartAngle * kRadian, sweep));
  } else if constexpr (requires { r.m_fRadius; }) {
    f(Figure::arc(exact(plane(r.m_Center)), r.m_fRadius, 0, 2 * std::numbers::pi));
  } else if constexpr (requires { r.m_Vertices; }) {
    for_each_segment(r, plane, [&](const Segment& s) {
      f(s.is_straight() ? Figure::line(exact(s.from), exact(s.to))
                        : Figure::bulged(exact(s.from), exact(s.to), s.bulge));
    });
  } else if constexpr (requires { r.m_Corner; }) {
    constexpr bool kZigzag = std::is_same_v<std::decay_t<decltype(r)>, ACAD_SOLID>;
    constexpr int kCycle[] = {0, 1, kZigzag ? 3 : 2, kZigzag ? 2 : 3};
    for (int i = 0; i < 4; ++i) {
      const PlanePoint from = exact(plane(r.m_Corner[kCycle[i]]));
      const PlanePoint to = exact(plane(r.m_Corner[kCycle[(i + 1) % 4]]));
      if (from != to) f(Figure::line(from, to));
    }
  }
}

}  // namespace qv::detail
