#include "qvtools/geometry/domains/domain.h"
#include "qvtools/geometry/domains/internal/domain_edge.h"
#include "qvtools/services/internal/out_of_memory.h"

// The crossing count as it is defined: edges broken at the test line, sides given to the pieces, changes of side
// counted. The pieces are taken one after the other; no list of them is kept.

using namespace qv::detail;

namespace {

constexpr int kMostSplits = 2;

CDomainEdge start_at(const CDomainEdge& edge, double x) {
  CDomainEdge piece = edge;
  piece.x = static_cast<float>(x);
  piece.y = 0;
  return piece;
}

/// The records that start where the edge crosses the X axis, in order along it.
int split(const CDomainEdge& edge, const CDomainEdge& next, CDomainEdge* out) {
  if (!edge.isArc) {
    if (!((edge.y > 0 && next.y < 0) || (edge.y < 0 && next.y > 0))) return 0;
    const double dy = static_cast<double>(next.y) - edge.y;
    out[0] = start_at(edge, edge.x - edge.y * ((static_cast<double>(next.x) - edge.x) / dy));
    return 1;
  }
  const RelativeArc arc(edge, next, 0, 0);
  const double h2 = arc.radius2 - arc.centre.y * arc.centre.y;
  const Sweep sweep = arc.sweep();
  if (!(h2 > 0) || sweep.is_empty()) return 0;
  const double h = std::sqrt(h2);
  const Vec first{h, -arc.centre.y}, second{-h, -arc.centre.y};
  const bool has_first = sweep.contains(first), has_second = sweep.contains(second);
  // Both: the one that lies in the sweep up to the other comes first counter-clockwise.
  const bool swapped = has_first && has_second && Sweep{sweep.from, first}.contains(second) == arc.ccw;
  int count = 0;
  for (const bool take_first : {!swapped, swapped}) {
    if (take_first ? has_first : has_second) out[count++] = start_at(edge, arc.centre.x + (take_first ? h : -h));
  }
  return count;
}

int side_of_segment(const CDomainEdge& edge, const CDomainEdge& next, double tol) {
  const double a = edge.y, b = next.y;
  if (a > -tol && b > -tol) return 1;
  if (a < tol && b < tol) return -1;
  const bool near_a = std::fabs(a) <= tol, near_b = std::fabs(b) <= tol;
  if (near_a && near_b) return 0;
  if (near_a != near_b) return (near_a ? b : a) >= 0 ? 1 : -1;
  return edge.side;
}

int side_of_arc(const CDomainEdge& edge, const CDomainEdge& next, double tol) {
  const RelativeArc arc(edge, next, 0, 0);
  const double r = std::sqrt(arc.radius2);
  if (!(-r - tol <= edge.cy && edge.cy <= r + tol)) return edge.cy <= -tol ? -1 : 1;
  const Sweep sweep = arc.sweep();
  const Vec middle = sweep.is_empty() ? sweep.from : sweep.middle();
  const double length = middle.length();
  double y = edge.cy + (length > 0 ? middle.y * (r / length) : 0);
  // A piece that only touches the axis in its middle lies on the side of its ends.
  for (const float end : {edge.y, next.y}) {
    if (std::fabs(end) > std::fabs(y)) y = end;
  }
  return y <= 0 ? -1 : 1;
}

int side_of(const CDomainEdge& edge, const CDomainEdge& next, double tol) {
  return edge.isArc ? side_of_arc(edge, next, tol) : side_of_segment(edge, next, tol);
}

/// Counts the changes of side around the outline, pieces on the axis left out.
class Changes {
 public:
  void piece(int side, float start_x) {
    if (side == 0) return;
    if (last_ == 0) {
      first_ = side;
      first_x_ = start_x;
    } else {
      change(last_, side, start_x);
    }
    last_ = side;
  }
  int closed() {
    change(last_, first_, first_x_);
    return count_;
  }

 private:
  void change(int from, int to, float x) { count_ += from != to && x > 0; }
  int first_ = 0;
  int last_ = 0;
  float first_x_ = 0;
  int count_ = 0;
};

CDomainEdge moved(const CDomainEdge& edge, float px, float py) {
  CDomainEdge relative = edge;
  relative.x -= px;
  relative.y -= py;
  relative.cx -= px;
  relative.cy -= py;
  return relative;
}

}  // namespace

int CPointInDomain::Find_Cross_Points_H(int n, const CDomainEdge* edges, float px, float py, float tol) const {
  Changes changes;
  if (n < 1) return 0;
  CDomainEdge pieces[kMostSplits + 2];
  pieces[0] = moved(edges[0], px, py);
  for (int i = 0; i < n; ++i) {
    const CDomainEdge next = moved(after(edges, n, i), px, py);
    const int count = 1 + split(pieces[0], next, pieces + 1);
    pieces[count] = next;
    for (int k = 0; k < count; ++k) changes.piece(side_of(pieces[k], pieces[k + 1], tol), pieces[k].x);
    pieces[0] = next;
  }
  return changes.closed();
}

void CPointInDomain::Find_SegmentPosition(CDomainEdge& edge, const CDomainEdge& next, float tol) const {
  edge.side = side_of(edge, next, tol);
}

int CPointInDomain::Break_The_Edge(CArray<CDomainEdge, CDomainEdge&>& edges, int index) const {
  CDomainEdge pieces[kMostSplits];
  const int count = split(edges[index], after(edges.GetData(), edges.GetSize(), index), pieces);
  const int before = edges.GetSize();
  for (int i = 0; i < count; ++i) {
    const CDomainEdge& p = pieces[i];
    Add_OneBian_AfterPosition(edges, index + i, p.isArc, p.x, p.y, p.cx, p.cy, p.side, p.ccw);
    if (edges.GetSize() == before + i + 1) continue;
    edges.RemoveAt(index + 1, i);  // memory ran out
    return 0;
  }
  return count;
}

void CPointInDomain::Add_OneBian_AfterPosition(CArray<CDomainEdge, CDomainEdge&>& edges, int index, int isArc, float x,
                                               float y, float cx, float cy, int side, int ccw) const {
  const CDomainEdge edge{.side = side, .isArc = isArc, .x = x, .y = y, .cx = cx, .cy = cy, .ccw = ccw};
  unless_out_of_memory([&] { edges.InsertAt(index + 1, edge); });
}
