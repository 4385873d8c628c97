#pragma once

/// The geometry of one edge, a segment or an arc, in doubles: what regions, domains, shapes and the function library
/// ask alike. Nothing here has a tolerance; each of them adds its own. Not part of the public interface.

#include <algorithm>
#include <cmath>

#include "qvtools/geometry/values/internal/arc_math.h"

namespace qv::detail {

/// A line, or the segment from `base` along `span`. Parameters along it and offsets across it are multiplied by the
/// length of `span`. Comparing the products keeps ends and points on the line exact and needs neither an angle nor a
/// division. A unit span is given by `with_unit`, since its squared length need not round to 1.
struct LineFrame {
  Vec base;
  Vec span;
  double length2;

  LineFrame(const Vec& from, const Vec& to_end) : base(from), span(to_end), length2(to_end.dot(to_end)) {}
  static LineFrame with_unit(const Vec& from, const Vec& unit) { return {from, unit, 1}; }

  double along(const Vec& p) const { return span.dot({p.x - base.x, p.y - base.y}); }
  /// Positive to the left.
  double across(const Vec& p) const { return span.cross({p.x - base.x, p.y - base.y}); }
  Vec at(double along) const { return {base.x + span.x * (along / length2), base.y + span.y * (along / length2)}; }

 private:
  LineFrame(const Vec& from, const Vec& direction, double squared) : base(from), span(direction), length2(squared) {}
};

/// Half the chord that a circle cuts out of a line, from the squares of the radius and of the line's distance from the
/// centre; 0 where the line passes outside.
inline double half_chord(double radius2, double distance2) {
  return std::sqrt((std::max)(0.0, radius2 - distance2));
}

/// The line through the centres of two circles, a distance apart that is not 0.
struct CentreLine {
  Vec centre;
  Vec unit;
  double distance;

  CentreLine(const Vec& from, const Vec& to, double apart)
      : centre(from), unit{(to.x - from.x) / apart, (to.y - from.y) / apart}, distance(apart) {}
  /// Where the common chord of circles of these radii crosses the line, from the first centre.
  double foot(double r1, double r2) const { return (distance * distance - r2 * r2 + r1 * r1) / (2 * distance); }
  Vec at(double along, double left) const {
    return {centre.x + unit.x * along - unit.y * left, centre.y + unit.y * along + unit.x * left};
  }
};

/// The chord of an edge from p to q, both relative to the tested point, which is the origin.
struct Chord {
  Vec p;
  Vec q;

  /// Twice the signed area of the tested point with the chord: positive to its left.
  double cross() const { return p.cross(q); }

  /// The same with the tie decided: a point on the line of the chord counts as shifted right by less than any distance
  /// and up by still less. It is 0 only for a chord without length.
  double side() const {
    const double c = cross();
    if (c != 0) return c;
    return p.y != q.y ? p.y - q.y : q.x - p.x;
  }

  /// Whether the ray to the right crosses the chord. The rule is half-open in y, so that a ray through a vertex counts
  /// the vertex once, and the tie is that of `side`: a point on the chord lies to its right.
  bool crosses_ray() const {
    const bool up = q.y > 0;
    const double c = up ? cross() : -cross();
    return static_cast<bool>(static_cast<int>((p.y > 0) != up) & static_cast<int>(c > 0));
  }

  /// Whether the tested point lies on that side of the chord on which its arc is.
  bool on_arc_side(bool counterclockwise) const { return counterclockwise ? side() < 0 : side() > 0; }
};

/// A sweep from one direction to another, counter-clockwise. The vectors need no unit length.
struct Sweep {
  Vec from;
  Vec to;

  bool is_empty() const { return from.cross(to) == 0 && from.dot(to) >= 0; }
  bool contains(const Vec& v) const {
    const double turn = from.cross(to), after = from.cross(v), before = v.cross(to);
    if (turn < 0) return !(after < 0 && before < 0);
    if (turn == 0 && from.dot(to) >= 0) return after == 0 && from.dot(v) > 0;
    return after >= 0 && before >= 0;
  }
  /// The size of the turn in [0, 2 pi).
  double angle() const { return normalize_angle(std::atan2(from.cross(to), from.dot(to))); }
  /// The direction half-way, as a vector of no particular length.
  Vec middle() const {
    const double a = from.length(), b = to.length();
    const Vec u{from.x / a, from.y / a}, v{to.x / b, to.y / b}, chord{v.x - u.x, v.y - u.y};
    if (chord.dot(chord) > 1) return {chord.y, -chord.x};
    const double sign = u.cross(v) < 0 ? -1 : 1;
    return {(u.x + v.x) * sign, (u.y + v.y) * sign};
  }
};

/// Twice the area between an arc of radius 1 and its chord, from half the arc's angle.
inline double unit_segment_area(double half) {
  return 2 * half - std::sin(2 * half);
}

/// The directions of a circle's quadrant points.
inline constexpr Vec kQuadrants[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};

/// The bounding box of edges.
struct EdgeBox {
  float x1;
  float y1;
  float x2;
  float y2;

  EdgeBox(float left, float bottom, float right, float top) : x1(left), y1(bottom), x2(right), y2(top) {}
  explicit EdgeBox(const CFPoint& p) : EdgeBox(p.x, p.y, p.x, p.y) {}
  void include(float x, float y) {
    x1 = x < x1 ? x : x1;
    y1 = y < y1 ? y : y1;
    x2 = x > x2 ? x : x2;
    y2 = y > y2 ? y : y2;
  }
  void include(const EdgeBox& box) {
    include(box.x1, box.y1);
    include(box.x2, box.y2);
  }
  void store(float& left, float& bottom, float& right, float& top) const {
    left = x1;
    bottom = y1;
    right = x2;
    top = y2;
  }
  /// Includes the quadrant points of an arc: those kQuadrants[i] for which passes(i) is true.
  void include_arc(double cx, double cy, double r, const auto& passes) {
    const float right = static_cast<float>(cx + r), top = static_cast<float>(cy + r);
    const float left = static_cast<float>(cx - r), bottom = static_cast<float>(cy - r);
    if (passes(0)) x2 = right > x2 ? right : x2;
    if (passes(1)) y2 = top > y2 ? top : y2;
    if (passes(2)) x1 = left < x1 ? left : x1;
    if (passes(3)) y1 = bottom < y1 ? bottom : y1;
  }
};

}  // namespace qv::detail
