#include "qvtools/geometry/domains/domain.h"

#include <cstddef>

#include "qvtools/geometry/domains/internal/domain_edge.h"
#include "qvtools/geometry/domains/internal/lanes.h"
#include "qvtools/geometry/functions/jh.h"
#include "qvtools/services/internal/out_of_memory.h"

using namespace qv::detail;

namespace {

/// The end angles of an arc, counter-clockwise, as the function library takes them.
struct Angles {
  float from;
  float to;
  Angles(const CDomainEdge& edge, const CDomainEdge& next)
      : from(JH_GetAngle(edge.cx, edge.cy, edge.x, edge.y)), to(JH_GetAngle(edge.cx, edge.cy, next.x, next.y)) {
    if (!edge.ccw) std::swap(from, to);
    if (to < from) to += TWO_PI_F;
  }
};

float radius_of(const CDomainEdge& edge) {
  return JH_GetDistance(edge.cx, edge.cy, edge.x, edge.y);
}

/// Where vertices lie against a band about the tested height: bit 0 for above it, bit 1 for below it. An edge can come
/// within tol of the point, or cross its ray, only when its ends have no bit in common.
struct Band {
  float low;
  float high;
  Band(float py, float tol) {
    const double reach = tol > 0 ? tol : 0;
    low = std::nextafter(static_cast<float>(py - reach), -HUGE_VALF);
    high = std::nextafter(static_cast<float>(py + reach), HUGE_VALF);
  }
  int beside(float y) const { return static_cast<int>(y > high) | static_cast<int>(y < low) << 1; }
};

/// x, y, cx, cy, which lie next to each other in the record.
Lanes coordinates(const CDomainEdge& edge) {
  static_assert(offsetof(CDomainEdge, cy) == offsetof(CDomainEdge, x) + 3 * sizeof(float));
  return load_lanes(reinterpret_cast<const char*>(&edge) + offsetof(CDomainEdge, x));
}

struct Answer {
  bool on = false;
  bool inside = false;
  void take_straight(const CDomainEdge& edge, const CDomainEdge& next, float px, float py, float tol) {
    const RelativeEdge relative(edge, next, px, py);
    inside ^= relative.crosses_ray();
    on |= relative.near_segment(tol);
  }
  void take(const CDomainEdge& edge, const CDomainEdge& next, float px, float py, float tol) {
    inside ^= changes_parity(edge, next, px, py);
    on |= on_edge(edge, next, px, py, tol);
  }
};

}  // namespace

int Region_To_Domain(const CFRegion& region, CArray<CDomainEdge, CDomainEdge&>& edges) {
  if (!unless_out_of_memory([&] { return edges.SetSize(region.GetSize()), true; }, false)) return 0;
  for (int i = 0; i < region.GetSize(); ++i) {
    const CFShoot& v = region[i];
    const CFShape shape = region.GetEdge(i);
    edges[i] = {.x = v.x, .y = v.y};
    if (shape.IsArc() || shape.IsCircle())
      edges[i] = {.isArc = 1, .x = v.x, .y = v.y, .cx = shape.x, .cy = shape.y, .ccw = v.C <= 0};
  }
  return edges.GetSize();
}

int CPointInDomain::Point_In_Domain(int n, const CDomainEdge* edges, float px, float py, float tol) {
  if (n < 1) return 0;
  const Band band(py, tol);
  Answer answer;
  Lanes low = coordinates(edges[0]), high = low;
  EdgeBox arcs({edges[0].x, edges[0].y});
  const CDomainEdge* edge = edges + n - 1;
  int here = band.beside(edge->y);
  for (const CDomainEdge* next = edges; next != edges + n; edge = next++) {
    const Lanes v = coordinates(*next);
    low = lower(v, low);
    high = higher(v, high);
    const int there = band.beside(next->y);
    if (edge->isArc) {
      include_arc(arcs, *edge, *next);
      answer.take(*edge, *next, px, py, tol);
    } else if ((here & there) == 0) {
      answer.take_straight(*edge, *next, px, py, tol);
    }
    here = there;
  }
  arcs.include(low[0], low[1]);
  arcs.include(high[0], high[1]);
  arcs.store(xmin, ymin, xmax, ymax);
  return answer.on || answer.inside;
}

int CPointInDomain::Point_In_OutLook_Domain(int n, const CDomainEdge* edges, float px, float py, float tol) {
  if (n < 1) return 0;
  Get_OutLook_Domain(n, edges, xmin, ymin, xmax, ymax);
  return JH_TestPointIn_Rect(xmin, ymin, xmax, ymax, px, py, tol);
}

int CPointInDomain::Point_On_Edge_Domain(int n, const CDomainEdge* edges, float px, float py, float tol) const {
  for (int i = 0; i < n; ++i) {
    if (Point_On_One_Edge(edges[i], after(edges, n, i), px, py, tol)) return 1;
  }
  return 0;
}

int CPointInDomain::Point_On_One_Edge(const CDomainEdge& edge, const CDomainEdge& next, float px, float py,
                                      float tol) const {
  return on_edge(edge, next, px, py, tol);
}

int CPointInDomain::Point_Into_Domain(int n, const CDomainEdge* edges, float px, float py, float tol) const {
  return Find_Cross_Points_H(n, edges, px, py, tol) & 1;
}

void CPointInDomain::Get_OutLook_One_Edge(const CDomainEdge& edge, const CDomainEdge& next, float& x1, float& y1,
                                          float& x2, float& y2) const {
  EdgeBox box({edge.x, edge.y});
  box.include(next.x, next.y);
  if (edge.isArc) include_arc(box, edge, next);
  box.store(x1, y1, x2, y2);
}

void CPointInDomain::Get_OutLook_Domain(int n, const CDomainEdge* edges, float& x1, float& y1, float& x2,
                                        float& y2) const {
  if (n < 1) return;
  EdgeBox box({edges[0].x, edges[0].y});
  for (int i = 0; i < n; ++i) {
    box.include(edges[i].x, edges[i].y);
    if (edges[i].isArc) include_arc(box, edges[i], after(edges, n, i));
  }
  box.store(x1, y1, x2, y2);
}

int CPointInDomain::Test_CrossRegon_Domain_Circle(int n, const CDomainEdge* edges, float cx, float cy, float r,
                                                  float tol) {
  if (Point_In_Domain(n, edges, cx, cy, tol)) return 1;
  for (int i = 0; i < n; ++i) {
    const CDomainEdge &edge = edges[i], &next = after(edges, n, i);
    if (edge.isArc) {
      const Angles a(edge, next);
      if (JH_TestCrossRegon_Circle_Arc(cx, cy, r, edge.cx, edge.cy, radius_of(edge), a.from, a.to, tol)) return 1;
    } else if (JH_TestCrossRegon_Circle_LineSection(cx, cy, r, edge.x, edge.y, next.x, next.y, tol)) {
      return 1;
    }
  }
  return 0;
}

namespace {

bool crosses_rect(const CDomainEdge& edge, const CDomainEdge& next, const float* xs, const float* ys, float tol) {
  for (int i = 3, k = 0; k < 4; i = k++) {
    if (edge.isArc) {
      const Angles a(edge, next);
      if (JH_TestCrossRegon_LineSection_Arc(xs[i], ys[i], xs[k], ys[k], edge.cx, edge.cy, radius_of(edge), a.from, a.to,
                                            tol)) {
        return true;
      }
    } else if (JH_TestCrossRegon_LineSection_LineSection(edge.x, edge.y, next.x, next.y, xs[i], ys[i], xs[k], ys[k],
                                                         tol)) {
      return true;
    }
  }
  return false;
}

}  // namespace

int CPointInDomain::Test_CrossRegon_Domain_Rect(int n, const CDomainEdge* edges, const float* xs, const float* ys,
                                                float tol) {
  for (int i = 0; i < 4; ++i) {
    if (Point_In_Domain(n, edges, xs[i], ys[i], tol)) return 1;
  }
  float rx[4], ry[4];
  const bool clockwise = JH_GetDet_Tri(xs[0], ys[0], xs[1], ys[1], xs[2], ys[2]) < 0;
  for (int i = 0; i < 4; ++i) {
    rx[i] = xs[clockwise ? 3 - i : i];
    ry[i] = ys[clockwise ? 3 - i : i];
  }
  for (int i = 0; i < n; ++i) {
    if (JH_TestPointIn_TuPolygon(edges[i].x, edges[i].y, 4, rx, ry, tol)) return 1;
  }
  for (int i = 0; i < n; ++i) {
    if (crosses_rect(edges[i], after(edges, n, i), rx, ry, tol)) return 1;
  }
  return 0;
}
