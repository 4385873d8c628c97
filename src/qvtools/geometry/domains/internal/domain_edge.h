#pragma once

/// Exact geometry of one domain edge, in doubles relative to the tested point, which is the origin. Not part of the
/// public interface. `CPointInDomain` and `CPreparedDomain` answer alike because both stand on these tests.

#include <algorithm>
#include <cmath>

#include "qvtools/geometry/domains/domain.h"
#include "qvtools/geometry/values/internal/arc_math.h"

namespace qv::detail {

/// A sweep from one direction to another, counter-clockwise. The vectors need no unit length.
struct Sweep {
  Vec from;
  Vec to;

  bool none() const { return from.cross(to) == 0 && from.dot(to) >= 0; }
  bool holds(const Vec& v) const {
    const double turn = from.cross(to), after = from.cross(v), before = v.cross(to);
    if (turn < 0) return !(after < 0 && before < 0);
    if (turn == 0 && from.dot(to) >= 0) return after == 0 && from.dot(v) > 0;
    return after >= 0 && before >= 0;
  }
  /// The size of the turn in [0, 2 pi).
  double angle() const { return full_turn(std::atan2(from.cross(to), from.dot(to))); }
  /// The direction half-way, as a vector of no particular length.
  Vec middle() const {
    const double a = from.length(), b = to.length();
    const Vec u{from.x / a, from.y / a}, v{to.x / b, to.y / b}, chord{v.x - u.x, v.y - u.y};
    if (chord.dot(chord) > 1) return {chord.y, -chord.x};
    const double sign = u.cross(v) < 0 ? -1 : 1;
    return {(u.x + v.x) * sign, (u.y + v.y) * sign};
  }
};

/// An edge from p to q, relative to the tested point.
struct RelativeEdge {
  Vec p;
  Vec q;

  RelativeEdge(const CDomainEdge& edge, const CDomainEdge& next, double px, double py)
      : p{edge.x - px, edge.y - py}, q{next.x - px, next.y - py} {}

  /// Twice the signed area of the tested point with the chord: positive to its left.
  double cross() const { return p.cross(q); }

  /// Whether the ray to the right crosses the chord: half-open in y, and a point on the chord lies to its right.
  bool chord_crosses() const {
    const bool up = q.y > 0;
    const double c = up ? cross() : -cross();
    return static_cast<bool>(static_cast<int>((p.y > 0) != up) & static_cast<int>(c > 0));
  }

  bool within_of_segment(double tol) const {
    const Vec d{q.x - p.x, q.y - p.y};
    const double length2 = d.dot(d), tol2 = tol > 0 ? tol * tol : 0, c = cross();
    // Most edges are told apart by their line alone.
    if (c * c >= tol2 * length2 && length2 > 0) return false;
    const double place = -p.dot(d);
    if (place < 0 || length2 == 0) return p.dot(p) < tol2;
    return place <= length2 || q.dot(q) < tol2;
  }
};

struct RelativeArc : RelativeEdge {
  Vec centre;
  bool ccw;
  double radius2;

  RelativeArc(const CDomainEdge& edge, const CDomainEdge& next, double px, double py)
      : RelativeEdge(edge, next, px, py),
        centre{edge.cx - px, edge.cy - py},
        ccw(edge.ccw != 0),
        radius2(from_centre(p).dot(from_centre(p))) {}

  Vec from_centre(const Vec& v) const { return {v.x - centre.x, v.y - centre.y}; }
  Sweep sweep() const {
    const Vec first = from_centre(p), last = from_centre(q);
    return ccw ? Sweep{first, last} : Sweep{last, first};
  }

  /// Whether the tested point lies between chord and arc. A point on the chord is taken to its right, or above a level
  /// one, as the crossing rule has it.
  bool segment_holds() const {
    double side = cross();
    if (side == 0) side = p.y != q.y ? p.y - q.y : q.x - p.x;
    return (ccw ? side < 0 : side > 0) && centre.dot(centre) < radius2;
  }

  bool within_of_arc(double tol) const {
    const double d = centre.length();
    return std::fabs(std::sqrt(radius2) - d) <= tol && sweep().holds({-centre.x, -centre.y});
  }
};

/// Whether the tested point, at the origin of the edge's frame, is on the edge.
inline bool on_edge(const CDomainEdge& edge, const CDomainEdge& next, double px, double py, double tol) {
  if (edge.isArc) return RelativeArc(edge, next, px, py).within_of_arc(tol);
  return RelativeEdge(edge, next, px, py).within_of_segment(tol);
}

/// What the edge adds to the parity of the tested point.
inline bool toggles(const CDomainEdge& edge, const CDomainEdge& next, double px, double py) {
  if (!edge.isArc) return RelativeEdge(edge, next, px, py).chord_crosses();
  const RelativeArc arc(edge, next, px, py);
  return arc.chord_crosses() != arc.segment_holds();
}

inline const CDomainEdge& after(const CDomainEdge* edges, int n, int i) {
  return edges[i + 1 < n ? i + 1 : 0];
}

struct EdgeBox {
  float x1;
  float y1;
  float x2;
  float y2;

  void include(float x, float y) {
    x1 = x < x1 ? x : x1;
    y1 = y < y1 ? y : y1;
    x2 = x > x2 ? x : x2;
    y2 = y > y2 ? y : y2;
  }
  /// Takes in the quadrant points of an arc.
  void include_arc(const CDomainEdge& edge, const CDomainEdge& next) {
    const RelativeArc arc(edge, next, 0, 0);
    const Sweep sweep = arc.sweep();
    const double r = std::sqrt(arc.radius2);
    if (sweep.holds({1, 0})) include(static_cast<float>(edge.cx + r), edge.cy);
    if (sweep.holds({0, 1})) include(edge.cx, static_cast<float>(edge.cy + r));
    if (sweep.holds({-1, 0})) include(static_cast<float>(edge.cx - r), edge.cy);
    if (sweep.holds({0, -1})) include(edge.cx, static_cast<float>(edge.cy - r));
  }
};

}  // namespace qv::detail
