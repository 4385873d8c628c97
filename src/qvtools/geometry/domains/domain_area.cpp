#include "qvtools/geometry/domains/domain.h"
#include "qvtools/geometry/domains/internal/domain_edge.h"
#include "qvtools/geometry/numerics/numeric.h"

using namespace qv::detail;

namespace {

/// An area with its centroid.
struct Piece {
  double area;
  Vec centroid;
};

Piece triangle(const CDomainEdge& edge, const CDomainEdge& next, double x0, double y0) {
  return {area_tri(x0, y0, edge.x, edge.y, next.x, next.y), {(x0 + edge.x + next.x) / 3, (y0 + edge.y + next.y) / 3}};
}

/// The segment between an arc and its chord.
Piece arc_segment(const CDomainEdge& edge, const CDomainEdge& next) {
  const Piece nothing{0, {(1.0 * edge.x + next.x) / 2, (1.0 * edge.y + next.y) / 2}};
  if (!edge.isArc) return nothing;
  const RelativeArc arc(edge, next, 0, 0);
  const Sweep sweep = arc.sweep();
  const double h = sweep.angle() / 2, doubled = unit_segment_area(h);
  if (arc.radius2 == 0 || sweep.is_empty() || !(doubled > 0)) return nothing;
  const double r = std::sqrt(arc.radius2), m = std::atan2(sweep.from.y, sweep.from.x) + h, s = std::sin(h);
  // Below this the quotient loses its digits; the segment's centroid is then as good as on the arc.
  const double d = h < 1e-3 ? r : 4 * r / 3 * s * s * s / doubled;
  // Quirk: a clockwise arc adds nothing; see the header.
  return {edge.ccw ? doubled * arc.radius2 / 2 : 0, {edge.cx + d * std::cos(m), edge.cy + d * std::sin(m)}};
}

void store(const Piece& piece, float& area, float& cx, float& cy) {
  area = static_cast<float>(piece.area);
  cx = static_cast<float>(piece.centroid.x);
  cy = static_cast<float>(piece.centroid.y);
}

/// The sums of areas and of areas times centroids over all edges.
Piece sum_pieces(int n, const CDomainEdge* edges) {
  Piece sum{0, {0, 0}};
  for (int i = 0; i < n; ++i) {
    const CDomainEdge& next = after(edges, n, i);
    for (const Piece& piece : {triangle(edges[i], next, 0, 0), arc_segment(edges[i], next)}) {
      sum.area += piece.area;
      sum.centroid.x += piece.area * piece.centroid.x;
      sum.centroid.y += piece.area * piece.centroid.y;
    }
  }
  return sum;
}

}  // namespace

float CPointInDomain::Get_Area(int n, const CDomainEdge* edges) const {
  return static_cast<float>(sum_pieces(n, edges).area);
}

void CPointInDomain::Get_Centroid(int n, const CDomainEdge* edges, float& x, float& y) const {
  const Piece sum = sum_pieces(n, edges);
  // Quirk: see the header.
  const double area = sum.area < 1e-5 ? 1e-5 : sum.area;
  x = static_cast<float>(sum.centroid.x / area);
  y = static_cast<float>(sum.centroid.y / area);
}

void CPointInDomain::Get_Tri_Area(const CDomainEdge& edge, const CDomainEdge& next, float x0, float y0, float& area,
                                  float& cx, float& cy) const {
  store(triangle(edge, next, x0, y0), area, cx, cy);
}

void CPointInDomain::Get_Arc_Para(const CDomainEdge& edge, const CDomainEdge& next, float& area, float& cx,
                                  float& cy) const {
  store(arc_segment(edge, next), area, cx, cy);
}
