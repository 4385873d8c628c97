#include "qvtools/geometry/functions/jh.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/random_case.h"

namespace {

using qvtest::Random;

TEST(Jh, AnglesOfAnySizeAreReduced) {
  for (const float a : {1e30f, -1e30f, -1e-30f, 1e6f}) {
    EXPECT_TRUE(JH_Set2PI(a) >= 0 && JH_Set2PI(a) <= TWO_PI_F) << a;
  }
}

/// A figure of each kind, its touch tests against every other kind, and a point in it: random figures that share a
/// sampled point must touch, and figures far apart must not.
struct Kinds {
  float x, y, r, w, a1, a2;  // arc and annulus; the circle (x, y, r)
  float px[4], py[4];        // a convex quadrilateral about (x, y), and a segment from 0 to 2

  Kinds(Random& random, float cx, float cy)
      : x(cx),
        y(cy),
        r(random.real(1, 3)),
        w(random.real(0.1, 1.5)),
        a1(random.real(0, 6)),
        a2(a1 + random.real(0.2, 6)) {
    const float turn = random.real(0, 6);
    for (int i = 0; i < 4; ++i) {
      px[i] = x + r * std::cos(turn + static_cast<float>(i) * HALF_PI_F);
      py[i] = y + r * std::sin(turn + static_cast<float>(i) * HALF_PI_F);
    }
  }
  /// A point of the figure of a kind: 0 circle, 1 segment, 2 arc, 3 polygon, 4 annulus.
  CFPoint point(Random& random, int kind) const {
    // Off the ends, where a near-tangent's one point may fall beyond them.
    const float a = random.real(a1 + 0.08, a2 - 0.08), t = random.real(0.05, 0.95);
    switch (kind) {
      case 0:
        return {x + r * t * std::cos(a), y + r * t * std::sin(a)};
      case 1:
        return {px[0] + (px[2] - px[0]) * t, py[0] + (py[2] - py[0]) * t};
      case 2:
        return {x + r * std::cos(a), y + r * std::sin(a)};
      case 3:
        return {px[1] + (x - px[1]) * t, py[1] + (y - py[1]) * t};
      default:
        return {x + (r + w * (t - 0.5f)) * std::cos(a), y + (r + w * (t - 0.5f)) * std::sin(a)};
    }
  }
  void move(float dx, float dy) {
    x += dx;
    y += dy;
    for (float& v : px) v += dx;
    for (float& v : py) v += dy;
  }
};

int touch(const Kinds& a, int i, const Kinds& b, int k, float tol) {
  if (i > k) return touch(b, k, a, i, tol);
  const float *s = a.px, *t = a.py, *u = b.px, *v = b.py;
  switch (i * 5 + k) {
    case 0:
      return JH_TestCrossRegon_Circle_Circle(a.x, a.y, a.r, b.x, b.y, b.r, tol);
    case 1:
      return JH_TestCrossRegon_Circle_LineSection(a.x, a.y, a.r, u[0], v[0], u[2], v[2], tol);
    case 2:
      return JH_TestCrossRegon_Circle_Arc(a.x, a.y, a.r, b.x, b.y, b.r, b.a1, b.a2, tol);
    case 3:
      return JH_TestCrossRegon_Circle_TuPolygon(a.x, a.y, a.r, 4, u, v, tol);
    case 4:
      return JH_TestCrossRegon_Circle_JvBuYuanHuan(a.x, a.y, a.r, b.x, b.y, b.r, b.w, b.a1, b.a2, tol);
    case 6:
      return JH_TestCrossRegon_LineSection_LineSection(s[0], t[0], s[2], t[2], u[0], v[0], u[2], v[2], tol);
    case 7:
      return JH_TestCrossRegon_LineSection_Arc(s[0], t[0], s[2], t[2], b.x, b.y, b.r, b.a1, b.a2, tol);
    case 8:
      return JH_TestCrossRegon_LineSection_TuPolygon(s[0], t[0], s[2], t[2], 4, u, v, tol);
    case 9:
      return JH_TestCrossRegon_LineSection_JvBuYuanHuan(s[0], t[0], s[2], t[2], b.x, b.y, b.r, b.w, b.a1, b.a2, tol);
    case 12:
      return JH_TestCrossRegon_Arc_Arc(a.x, a.y, a.r, a.a1, a.a2, b.x, b.y, b.r, b.a1, b.a2, tol);
    case 13:
      return JH_TestCrossRegon_Arc_TuPolygon(a.x, a.y, a.r, a.a1, a.a2, 4, u, v, tol);
    case 14:
      return JH_TestCrossRegon_Arc_JvBuYuanHuan(a.x, a.y, a.r, a.a1, a.a2, b.x, b.y, b.r, b.w, b.a1, b.a2, tol);
    case 18:
      return JH_TestCrossRegon_TuPolygon_TuPolygon(4, s, t, 4, u, v, tol);
    case 19:
      return JH_TestCrossRegon_TuPolygon_JvBuYuanHuan(4, s, t, b.x, b.y, b.r, b.w, b.a1, b.a2, tol);
    default:
      return JH_TestCrossRegon_JvBuYuanHuan_JvBuYuanHuan(a.x, a.y, a.r, a.w, a.a1, a.a2, b.x, b.y, b.r, b.w, b.a1, b.a2,
                                                         tol);
  }
}

TEST(Jh, FiguresThatShareAPointTouch) {
  Random random(20281);
  for (int n = 0; n < 20000; ++n) {
    for (int i = 0; i < 5; ++i) {
      for (int k = 0; k < 5; ++k) {
        const Kinds a(random, random.real(-3, 3), random.real(-3, 3));
        Kinds b(random, 0, 0);
        const CFPoint p = a.point(random, i), q = b.point(random, k);
        b.move(p.x - q.x, p.y - q.y);
        ASSERT_EQ(touch(a, i, b, k, 2e-5f), 1) << n << ": " << i << ' ' << k;
        // Moved off along a line by more than both can reach.
        b.move(16, random.real(-1, 1));
        ASSERT_EQ(touch(a, i, b, k, 2e-5f), 0) << n << ": " << i << ' ' << k;
      }
    }
  }
}

}  // namespace
