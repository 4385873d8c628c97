#include <algorithm>

#include "qvtools/geometry/functions/internal/jh_figures.h"

// The touch tests, each built from simpler ones in a fixed order and done at the first success. A partial annulus is
// its four corners and four boundary pieces: the inner and the outer arc and the radial segments at both angles.

using namespace qv::detail;

namespace {

/// The output of a crossing function that is only asked how many points there are.
struct Unused {
  float v[4];
};

int crossings(float x1, float y1, float r1, float cx, float cy, float r, float a1, float a2, float tol) {
  Unused u;
  return JH_GetInterPoint_Circle_Arc(x1, y1, r1, cx, cy, r, a1, a2, &u.v[0], &u.v[1], &u.v[2], &u.v[3], tol);
}

/// Calls test(x1, y1, x2, y2) for the edges of a polygon until one succeeds.
bool any_edge(int n, const float* xs, const float* ys, const auto& test) {
  for (int i = n - 1, k = 0; k < n; i = k++) {
    if (test(xs[i], ys[i], xs[k], ys[k])) return true;
  }
  return false;
}

bool any_vertex(int n, const float* xs, const float* ys, const auto& test) {
  for (int i = 0; i < n; ++i) {
    if (test(xs[i], ys[i])) return true;
  }
  return false;
}

struct Annulus {
  float cx, cy, r, w, a1, a2;

  float inner() const { return static_cast<float>(r - w / 2.0); }
  float outer() const { return static_cast<float>(r + w / 2.0); }
  bool contains(float px, float py, float tol) const {
    return JH_TestPointIn_JvBuYuanHuan(px, py, cx, cy, r, w, a1, a2, tol) != 0;
  }
  /// Whether something at the distance d from the centre is out of all reach, roundings included.
  bool out_of_reach(double d, float tol) const {
    return d > (static_cast<double>(r) + std::fabs(w) + tol) * 1.0001 + 1e-5 * (std::fabs(cx) + std::fabs(cy));
  }
  bool out_of_reach(float px, float py, float reach, float tol) const {
    return out_of_reach(JH_GetDistance(px, py, cx, cy) - static_cast<double>((std::max)(reach, 0.0f)), tol);
  }
};

struct Corners {
  ArcPoint p[4];  // at the first angle inner and outer, then at the second
  explicit Corners(const Annulus& a)
      : p{{a.cx, a.cy, a.inner(), a.a1},
          {a.cx, a.cy, a.outer(), a.a1},
          {a.cx, a.cy, a.inner(), a.a2},
          {a.cx, a.cy, a.outer(), a.a2}} {}
  bool any(const auto& test) const {
    return std::any_of(p, p + 4, [&](const ArcPoint& c) { return test(c.x, c.y); });
  }
};

/// Whether one of the boundary pieces passes: arc(r) for the inner and outer arc, segment(x1, y1, x2, y2) for the ends.
template <class Arc, class Ends>
bool any_piece(const Annulus& a, const Corners& c, const Arc& arc, const Ends& segment) {
  return arc(a.inner()) || arc(a.outer()) || segment(c.p[0].x, c.p[0].y, c.p[1].x, c.p[1].y) ||
         segment(c.p[2].x, c.p[2].y, c.p[3].x, c.p[3].y);
}

bool crosses_boundary(const Annulus& a, const Corners& corners, float x1, float y1, float x2, float y2, float tol) {
  return any_piece(
      a, corners,
      [&](float r) { return JH_TestCrossRegon_LineSection_Arc(x1, y1, x2, y2, a.cx, a.cy, r, a.a1, a.a2, tol); },
      [&](float x3, float y3, float x4, float y4) {
        return JH_TestCrossRegon_LineSection_LineSection(x1, y1, x2, y2, x3, y3, x4, y4, tol);
      });
}

bool crosses_boundary(const Annulus& a, const Corners& corners, float cx, float cy, float r, float a1, float a2,
                      float tol) {
  return any_piece(
      a, corners,
      [&](float ring) { return JH_TestCrossRegon_Arc_Arc(cx, cy, r, a1, a2, a.cx, a.cy, ring, a.a1, a.a2, tol); },
      [&](float x1, float y1, float x2, float y2) {
        return JH_TestCrossRegon_LineSection_Arc(x1, y1, x2, y2, cx, cy, r, a1, a2, tol);
      });
}

}  // namespace

int JH_TestCross_Circle_LineSection(float cx, float cy, float r, float x1, float y1, float x2, float y2, float tol) {
  const SegmentFrame segment(x1, y1, x2, y2);
  const double radius = (std::max)(r, 0.0f), d = segment.distance({cx, cy});
  if (!(d - radius < tol)) return 0;
  const double inner = radius - tol;
  return !(inner >= segment.distance_to_start({cx, cy}) && inner >= segment.distance_to_end({cx, cy}));
}

int JH_TestCross_LineSection_Arc(float x1, float y1, float x2, float y2, float cx, float cy, float r, float a1,
                                 float a2, float tol) {
  return JH_TestCross_Circle_LineSection(cx, cy, r, x1, y1, x2, y2, tol) &&
         JH_TestCrossRegon_LineSection_Arc(x1, y1, x2, y2, cx, cy, r, a1, a2, tol);
}

int JH_TestCrossRegon_Circle_Circle(float x1, float y1, float r1, float x2, float y2, float r2, float tol) {
  return within(static_cast<double>(x2) - x1, static_cast<double>(y2) - y1,
                static_cast<double>((std::max)(r1, 0.0f)) + (std::max)(r2, 0.0f) + tol);
}

int JH_TestCrossRegon_Circle_LineSection(float cx, float cy, float r, float x1, float y1, float x2, float y2,
                                         float tol) {
  return SegmentFrame(x1, y1, x2, y2).distance({cx, cy}) - (std::max)(r, 0.0f) < tol;
}

int JH_TestCrossRegon_Circle_Arc(float x1, float y1, float r1, float cx, float cy, float r, float a1, float a2,
                                 float tol) {
  const float reach = (std::max)(r1, 0.0f) + (std::max)(r, 0.0f) + tol;
  if (JH_GetDistance(x1, y1, cx, cy) > reach * 1.0001f + 1e-5f * (std::fabs(cx) + std::fabs(cy))) return 0;
  for (const float a : {a1, a2}) {
    const ArcPoint end(cx, cy, r, a);
    if (JH_TestPointIn_Circle(end.x, end.y, x1, y1, r1, tol)) return 1;
  }
  return crossings(x1, y1, r1, cx, cy, r, a1, a2, tol) != 0;
}

int JH_TestCrossRegon_Circle_TuPolygon(float cx, float cy, float r, int n, const float* xs, const float* ys,
                                       float tol) {
  if (n < 3) return 0;
  return JH_TestPointIn_TuPolygon(cx, cy, n, xs, ys, tol) ||
         any_vertex(n, xs, ys, [&](float x, float y) { return JH_TestPointIn_Circle(x, y, cx, cy, r, tol); }) ||
         any_edge(n, xs, ys, [&](float x1, float y1, float x2, float y2) {
           return JH_TestCrossRegon_Circle_LineSection(cx, cy, r, x1, y1, x2, y2, tol);
         });
}

int JH_TestCrossRegon_Circle_JvBuYuanHuan(float x1, float y1, float r1, float cx, float cy, float r, float w, float a1,
                                          float a2, float tol) {
  const Annulus ring{cx, cy, r, w, a1, a2};
  if (ring.out_of_reach(x1, y1, r1, tol)) return 0;
  if (ring.contains(x1, y1, tol)) return 1;
  const Corners corners(ring);
  return corners.any([&](float x, float y) { return JH_TestPointIn_Circle(x, y, x1, y1, r1, tol); }) ||
         any_piece(
             ring, corners, [&](float radius) { return crossings(x1, y1, r1, cx, cy, radius, a1, a2, tol) != 0; },
             [&](float x3, float y3, float x4, float y4) {
               return JH_TestCrossRegon_Circle_LineSection(x1, y1, r1, x3, y3, x4, y4, tol);
             });
}

int JH_TestCrossRegon_LineSection_LineSection(float x1, float y1, float x2, float y2, float x3, float y3, float x4,
                                              float y4, float tol) {
  float x, y;
  return JH_GetInterPoint_LineSection_LineSection(x1, y1, x2, y2, x3, y3, x4, y4, &x, &y, tol) != 0;
}

int JH_TestCrossRegon_LineSection_Arc(float x1, float y1, float x2, float y2, float cx, float cy, float r, float a1,
                                      float a2, float tol) {
  Unused u;
  return JH_GetInterPoint_LineSection_Arc(x1, y1, x2, y2, cx, cy, r, a1, a2, &u.v[0], &u.v[1], &u.v[2], &u.v[3], tol) !=
         0;
}

int JH_TestCrossRegon_LineSection_TuPolygon(float x1, float y1, float x2, float y2, int n, const float* xs,
                                            const float* ys, float tol) {
  if (n < 3) return 0;
  return JH_TestPointIn_TuPolygon(x1, y1, n, xs, ys, tol) || JH_TestPointIn_TuPolygon(x2, y2, n, xs, ys, tol) ||
         any_edge(n, xs, ys, [&](float x3, float y3, float x4, float y4) {
           return JH_TestCrossRegon_LineSection_LineSection(x1, y1, x2, y2, x3, y3, x4, y4, tol);
         });
}

int JH_TestCrossRegon_LineSection_JvBuYuanHuan(float x1, float y1, float x2, float y2, float cx, float cy, float r,
                                               float w, float a1, float a2, float tol) {
  const Annulus ring{cx, cy, r, w, a1, a2};
  if (ring.out_of_reach(SegmentFrame(x1, y1, x2, y2).distance({cx, cy}), tol)) return 0;
  return ring.contains(x1, y1, tol) || ring.contains(x2, y2, tol) ||
         crosses_boundary(ring, Corners(ring), x1, y1, x2, y2, tol);
}

int JH_TestCrossRegon_Arc_Arc(float x1, float y1, float r1, float a1, float b1, float x2, float y2, float r2, float a2,
                              float b2, float tol) {
  Unused u;
  return JH_GetInterPoint_Arc_Arc(x1, y1, r1, a1, b1, x2, y2, r2, a2, b2, &u.v[0], &u.v[1], &u.v[2], &u.v[3], tol) != 0;
}

int JH_TestCrossRegon_Arc_TuPolygon(float cx, float cy, float r, float a1, float a2, int n, const float* xs,
                                    const float* ys, float tol) {
  if (n < 3) return 0;
  for (const float a : {a1, a2}) {
    const ArcPoint end(cx, cy, r, a);
    if (JH_TestPointIn_TuPolygon(end.x, end.y, n, xs, ys, tol)) return 1;
  }
  return any_edge(n, xs, ys, [&](float x1, float y1, float x2, float y2) {
    return JH_TestCrossRegon_LineSection_Arc(x1, y1, x2, y2, cx, cy, r, a1, a2, tol);
  });
}

int JH_TestCrossRegon_Arc_JvBuYuanHuan(float x1, float y1, float r1, float a1, float b1, float cx, float cy, float r,
                                       float w, float a2, float b2, float tol) {
  const Annulus ring{cx, cy, r, w, a2, b2};
  if (ring.out_of_reach(x1, y1, r1, tol)) return 0;
  for (const float a : {a1, b1}) {
    const ArcPoint end(x1, y1, r1, a);
    if (ring.contains(end.x, end.y, tol)) return 1;
  }
  return crosses_boundary(ring, Corners(ring), x1, y1, r1, a1, b1, tol);
}

int JH_TestCrossRegon_TuPolygon_TuPolygon(int n1, const float* xs1, const float* ys1, int n2, const float* xs2,
                                          const float* ys2, float tol) {
  if (n1 < 3 || n2 < 3) return 0;
  const auto [left1, right1] = std::minmax_element(xs1, xs1 + n1);
  const auto [low1, high1] = std::minmax_element(ys1, ys1 + n1);
  const auto [left2, right2] = std::minmax_element(xs2, xs2 + n2);
  const auto [low2, high2] = std::minmax_element(ys2, ys2 + n2);
  if (!JH_TestCrossRegon_Rect(*left1, *low1, *right1, *high1, *left2, *low2, *right2, *high2, tol)) return 0;
  constexpr float kVertexTol = 1e-5f;
  return any_vertex(n1, xs1, ys1,
                    [&](float x, float y) { return JH_TestPointIn_TuPolygon(x, y, n2, xs2, ys2, kVertexTol); }) ||
         any_vertex(n2, xs2, ys2,
                    [&](float x, float y) { return JH_TestPointIn_TuPolygon(x, y, n1, xs1, ys1, kVertexTol); }) ||
         any_edge(n1, xs1, ys1, [&](float x1, float y1, float x2, float y2) {
           return any_edge(n2, xs2, ys2, [&](float x3, float y3, float x4, float y4) {
             return JH_TestCrossRegon_LineSection_LineSection(x1, y1, x2, y2, x3, y3, x4, y4, tol);
           });
         });
}

int JH_TestCrossRegon_TuPolygon_JvBuYuanHuan(int n, const float* xs, const float* ys, float cx, float cy, float r,
                                             float w, float a1, float a2, float tol) {
  if (n < 3) return 0;
  const Annulus ring{cx, cy, r, w, a1, a2};
  const Corners corners(ring);
  return corners.any([&](float x, float y) { return JH_TestPointIn_TuPolygon(x, y, n, xs, ys, tol); }) ||
         any_vertex(n, xs, ys, [&](float x, float y) { return ring.contains(x, y, tol); }) ||
         any_edge(n, xs, ys, [&](float x1, float y1, float x2, float y2) {
           return crosses_boundary(ring, corners, x1, y1, x2, y2, tol);
         });
}

int JH_TestCrossRegon_JvBuYuanHuan_JvBuYuanHuan(float x1, float y1, float r1, float w1, float a1, float b1, float x2,
                                                float y2, float r2, float w2, float a2, float b2, float tol) {
  const Annulus first{x1, y1, r1, w1, a1, b1}, second{x2, y2, r2, w2, a2, b2};
  if (second.out_of_reach(x1, y1, r1 + std::fabs(w1), tol)) return 0;
  const Corners corners1(first), corners2(second);
  return corners1.any([&](float x, float y) { return second.contains(x, y, tol); }) ||
         corners2.any([&](float x, float y) { return first.contains(x, y, tol); }) ||
         any_piece(
             first, corners1, [&](float r) { return crosses_boundary(second, corners2, x1, y1, r, a1, b1, tol); },
             [&](float x3, float y3, float x4, float y4) {
               return crosses_boundary(second, corners2, x3, y3, x4, y4, tol);
             });
}
