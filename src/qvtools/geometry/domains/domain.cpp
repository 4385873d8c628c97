#include "qvtools/geometry/domains/domain.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>

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

/// The heights between which a vertex lies near a point: those beyond the tolerance, and a little more.
struct Band {
  float low;
  float high;
  Band(float py, float tol) {
    const double reach = tol > 0 ? tol : 0;
    low = static_cast<float>(py - reach);
    high = static_cast<float>(py + reach);
    low -= std::fabs(low) * FLT_EPSILON + FLT_MIN;
    high += std::fabs(high) * FLT_EPSILON + FLT_MIN;
  }
};

/// isArc (as bits), x, y, cx, which lie next to each other in the record.
Lanes first_fields(const CDomainEdge& edge) {
  static_assert(offsetof(CDomainEdge, y) == offsetof(CDomainEdge, isArc) + 2 * sizeof(float));
  return load_lanes(&edge.isArc);
}

/// The box of vertices: x and y in four lanes each, those of any of them.
struct LanesBox {
  Lanes low[2];
  Lanes high[2];
  explicit LanesBox(const CDomainEdge& edge)
      : low{all_lanes(edge.x), all_lanes(edge.y)}, high{all_lanes(edge.x), all_lanes(edge.y)} {}
  void include(Lanes x, Lanes y) {
    low[0] = lower(x, low[0]);
    low[1] = lower(y, low[1]);
    high[0] = higher(x, high[0]);
    high[1] = higher(y, high[1]);
  }
  EdgeBox all() const {
    const Lanes lows = lower(first_halves(low[0], low[1]), second_halves(low[0], low[1]));
    const Lanes highs = higher(first_halves(high[0], high[1]), second_halves(high[0], high[1]));
    const Lanes least = lower(lows, swap_pairs(lows)), most = higher(highs, swap_pairs(highs));
    return {least[0], least[2], most[0], most[2]};
  }
};

/// Up to 64 vertices, a bit each: which lie above the band and below it, and from which an arc leaves. An edge can come
/// within tol of the point, or cross its ray, only when its ends lie neither both above the band nor both below it: as
/// bits they are found without a branch.
class Vertices {
 public:
  static constexpr int kMost = 64;

  Vertices(const CDomainEdge& only, const Band& band)
      : count_(1), above_(only.y > band.high), below_(only.y < band.low), arcs_(only.isArc != 0) {}

  /// n of them, whose box becomes part of the given one.
  Vertices(const CDomainEdge* edges, int n, const Band& band, LanesBox& box) {
    // The odd ones come first, to stand behind the others in the end; the last of them more than once.
    int i = n & ~3;
    if (i < n)
      take_four(edges[i], edges[std::min(i + 1, n - 1)], edges[std::min(i + 2, n - 1)], edges[n - 1], band, box);
    while ((i -= 4) >= 0) take_four(edges[i], edges[i + 1], edges[i + 2], edges[i + 3], band, box);
    count_ = n;
  }
  /// Calls f(i, isArc) for those of the edges that end at vertex i which are arcs or may be near; the first comes from
  /// the last of the vertices before.
  template <class F>
  void for_each_near(const Vertices& before, const F& f) const {
    const auto previous = [&](std::uint64_t bits, std::uint64_t bitsBefore) {
      return bits << 1 | (bitsBefore >> (before.count_ - 1) & 1);
    };
    const std::uint64_t arcs = previous(arcs_, before.arcs_);
    const std::uint64_t beside =
        (above_ & previous(above_, before.above_)) | (below_ & previous(below_, before.below_));
    const int unused = kMost - count_;
    for (std::uint64_t near = (~beside | arcs) << unused >> unused; near; near &= near - 1) {
      const int i = std::countr_zero(near);
      f(i, (arcs >> i & 1) != 0);
    }
  }

 private:
  void take_four(const CDomainEdge& a, const CDomainEdge& b, const CDomainEdge& c, const CDomainEdge& d,
                 const Band& band, LanesBox& box) {
    const Lanes fields[] = {first_fields(a), first_fields(b), first_fields(c), first_fields(d)};
    const Lanes ab = interleave(fields[0], fields[1]), cd = interleave(fields[2], fields[3]);
    const Lanes x = second_halves(ab, cd);
    const Lanes y = first_halves(interleave_last(fields[0], fields[1]), interleave_last(fields[2], fields[3]));
    box.include(x, y);
    above_ = above_ << 4 | bits_of(y > band.high);
    below_ = below_ << 4 | bits_of(y < band.low);
    arcs_ = arcs_ << 4 | bits_of(reinterpret_cast<LaneBits>(first_halves(ab, cd)) != 0);
  }

  int count_ = 0;
  std::uint64_t above_ = 0;
  std::uint64_t below_ = 0;
  std::uint64_t arcs_ = 0;
};

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
  LanesBox box(edges[0]);
  EdgeBox arcs({edges[0].x, edges[0].y});
  Vertices before(edges[n - 1], band);
  for (int first = 0; first < n; first += Vertices::kMost) {
    const Vertices vertices(edges + first, std::min(n - first, Vertices::kMost), band, box);
    vertices.for_each_near(before, [&](int i, bool isArc) {
      const CDomainEdge& next = edges[first + i];
      const CDomainEdge& edge = edges[first + i > 0 ? first + i - 1 : n - 1];
      if (!isArc) return answer.take_straight(edge, next, px, py, tol);
      include_arc(arcs, edge, next);
      answer.take(edge, next, px, py, tol);
    });
    before = vertices;
  }
  arcs.include(box.all());
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
