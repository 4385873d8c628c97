#pragma once

/// One edge of a domain relative to the tested point, and the tolerances that domains have. Not part of the public
/// interface. `CPointInDomain` and `CPreparedDomain` answer alike because both use these tests.

#include "qvtools/geometry/domains/domain.h"
#include "qvtools/geometry/values/internal/edge.h"

namespace qv::detail {

struct RelativeEdge : Chord {
  RelativeEdge(const CDomainEdge& edge, const CDomainEdge& next, double px, double py)
      : Chord{{edge.x - px, edge.y - py}, {next.x - px, next.y - py}} {}

  /// Whether the tested point lies less than tol from the segment.
  bool near_segment(double tol) const {
    const Vec d{q.x - p.x, q.y - p.y};
    const double length2 = d.dot(d), tol2 = tol > 0 ? tol * tol : 0, c = cross();
    // For most edges the distance from their line decides.
    if (c * c >= tol2 * length2 && length2 > 0) return false;
    const double parameter = -p.dot(d);
    if (parameter < 0 || length2 == 0) return p.dot(p) < tol2;
    return parameter <= length2 || q.dot(q) < tol2;
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

  /// Whether the tested point lies between chord and arc.
  bool segment_contains() const { return on_arc_side(ccw) && centre.dot(centre) < radius2; }

  /// Whether the tested point lies at most tol from the circle, and in a direction of the arc.
  bool near_arc(double tol) const {
    const double d = centre.length();
    return std::fabs(std::sqrt(radius2) - d) <= tol && sweep().contains({-centre.x, -centre.y});
  }
};

/// Whether the point is on the edge.
inline bool on_edge(const CDomainEdge& edge, const CDomainEdge& next, double px, double py, double tol) {
  if (edge.isArc) return RelativeArc(edge, next, px, py).near_arc(tol);
  return RelativeEdge(edge, next, px, py).near_segment(tol);
}

/// Whether the edge changes the parity of the point.
inline bool changes_parity(const CDomainEdge& edge, const CDomainEdge& next, double px, double py) {
  if (!edge.isArc) return RelativeEdge(edge, next, px, py).crosses_ray();
  const RelativeArc arc(edge, next, px, py);
  return arc.crosses_ray() != arc.segment_contains();
}

inline const CDomainEdge& after(const CDomainEdge* edges, int n, int i) {
  return edges[i + 1 < n ? i + 1 : 0];
}

/// Grows a box by the quadrant points of an edge that is an arc.
inline void include_arc(EdgeBox& box, const CDomainEdge& edge, const CDomainEdge& next) {
  const RelativeArc arc(edge, next, 0, 0);
  const Sweep sweep = arc.sweep();
  box.include_arc(edge.cx, edge.cy, std::sqrt(arc.radius2), [&](int i) { return sweep.contains(kQuadrants[i]); });
}

}  // namespace qv::detail
