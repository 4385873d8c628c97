#include "qvtools/geometry/functions/jh.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/random_case.h"

namespace {

using qvtest::Random;

TEST(Jh, Angles) {
  EXPECT_EQ(JH_GetAngle(0, 0, 0, 0), HALF_PI_F);
  EXPECT_EQ(JH_GetAngle(0, 0, 0, -1), THREE_HALF_PI_F);
  EXPECT_EQ(JH_GetAngle(0, 0, -1, 0), PI_F);
  EXPECT_FLOAT_EQ(JH_GetAngle(0, 0, 1, -1), 5.4977872f);
  EXPECT_EQ(JH_Set2PI(-0.5f), TWO_PI_F - 0.5f);
  EXPECT_FLOAT_EQ(JH_Set2PI(10), 10 - TWO_PI_F);
  EXPECT_EQ(JH_Set2PI(INFINITY), 0);
  EXPECT_EQ(JH_Set2PI(NAN), 0);
  for (const float a : {1e30f, -1e30f, -1e-30f, 1e6f}) {
    EXPECT_TRUE(JH_Set2PI(a) >= 0 && JH_Set2PI(a) <= TWO_PI_F) << a;
  }
  EXPECT_EQ(JH_TestAngleInArc(0.1f, 6, 6.5f, 0), 1);
  EXPECT_EQ(JH_TestAngleInArc(0.3f, 6, 6.5f, 0), 0);
  EXPECT_EQ(JH_TestAngleInArc(1, 1.5f, 2, 0.5f), 0) << "lifted by a turn";
  EXPECT_EQ(JH_TestAngleInArc(1.25f, 1.5f, 2, 0.5f), 1);
  EXPECT_EQ(JH_TestAngleInArc(2.5f, 1.5f, 2, 0.5f), 1) << "inclusive";
  float x = 0, y = 1;
  JH_RotatePoint0(&x, &y, HALF_PI_F);
  EXPECT_NEAR(x, 1, 1e-6) << "clockwise";
  EXPECT_FLOAT_EQ(JH_GetLenArc(0, 0, 0, 2, 2, 0), 3 * PI_F);
}

TEST(Jh, PointTestsAtTheirBounds) {
  const float xs[] = {0, 4, 4, 0}, ys[] = {0, 0, 4, 4};
  const struct {
    const char* what;
    int answer, expected;
  } cases[] = {
      {"circle strict", JH_TestPointIn_Circle(3, 4, 0, 0, 5, 0), 0},
      {"circle in tol", JH_TestPointIn_Circle(3, 4, 0, 0, 5, 0.01f), 1},
      {"no radius", JH_TestPointIn_Circle(0, 0, 0, 0, -3, 0.01f), 1},
      {"rect inclusive", JH_TestPointIn_Rect(0, 0, 4, 4, 4.5f, -0.5f, 0.5f), 1},
      {"segment end", JH_TestPointIn_LineSection(3, 4, 0, 0, 3, 4, 0), 1},
      {"segment beyond", JH_TestPointIn_LineSection(-1, 0, 0, 0, 4, 0, 1), 1},
      {"segment sideways", JH_TestPointIn_LineSection(2, 1, 0, 0, 4, 0, 1), 1},
      {"segment too far", JH_TestPointIn_LineSection(2, 1.01f, 0, 0, 4, 0, 1), 0},
      {"arc", JH_TestPointIn_Arc(0, 2.5f, 0, 0, 2, 0, 2, 0.5f), 1},
      {"arc end by tol / r", JH_TestPointIn_Arc(1.3934f, 1.4347f, 0, 0, 2, 1, 2, 0.6f), 1},
      {"arc behind", JH_TestPointIn_Arc(-2, 0, 0, 0, 2, 0, 2, 0.1f), 0},
      {"polygon edge", JH_TestPointIn_TuPolygon(2, 0, 4, xs, ys, 0), 1},
      {"polygon tol", JH_TestPointIn_TuPolygon(2, -0.5f, 4, xs, ys, 0.5f), 1},
      {"polygon out", JH_TestPointIn_TuPolygon(2, -0.6f, 4, xs, ys, 0.5f), 0},
      {"annulus", JH_TestPointIn_JvBuYuanHuan(0, 2, 0, 0, 2, 1, 0, 2, 0), 1},
      {"annulus strict", JH_TestPointIn_JvBuYuanHuan(0, 2.5f, 0, 0, 2, 1, 0, 2, 0), 0},
      {"annulus hole", JH_TestPointIn_JvBuYuanHuan(0, 1.4f, 0, 0, 2, 1, 0, 2, 0), 0},
      {"reserved", JH_TestPointIn_Polygon(2, 2, 4, xs, ys, 0), 0},
      {"intervals alike", JH_TestCross_Float_Domain(0, 1, 0, 1, 0), 0},
      {"intervals in tol", JH_TestCross_Float_Domain(0, 1, 0, 1, 1e-3f), 1},
      {"intervals nested", JH_TestCross_Float_Domain(0, 3, 1, 2, 0), 1},
      {"rects alike", JH_TestCrossRegon_Rect(0, 0, 1, 1, 0, 0, 1, 1, 0), 0},
      {"rects in tol", JH_TestCrossRegon_Rect(0, 0, 1, 1, 0, 0, 1, 1, 0.001f), 1},
  };
  for (const auto& c : cases) EXPECT_EQ(c.answer, c.expected) << c.what;
}

TEST(Jh, FeetAndDistances) {
  float x = -1, y = -1;
  EXPECT_EQ(JH_GetCuiZu_PointToLineSection(5, 3, 0, 0, 4, 0, &x, &y, 0.5f), 0);
  EXPECT_EQ(x, -1);
  EXPECT_EQ(JH_GetCuiZu_PointToLineSection(5, 3, 0, 0, 4, 0, &x, &y, 1), 1);
  EXPECT_TRUE(x == 5 && y == 0);
  EXPECT_EQ(JH_GetCuiZu_PointToArc(0, 9, 0, 0, 2, 0, 3, &x, &y, 0), 1);
  EXPECT_TRUE(x == 0 && y == 2);
  EXPECT_EQ(JH_GetCuiZu_PointToArc(0, -9, 0, 0, 2, 0, 3, &x, &y, 0), 0);
  EXPECT_EQ(JH_GetMinDist_PointToLineSection(-3, 4, 0, 0, 4, 0), 5);
  EXPECT_EQ(JH_GetMinDist_PointToLine(-3, 4, 0, 0, 4, 0), 4);
  EXPECT_EQ(JH_GetMinDist_PointToLineSection(3, 4, 0, 0, 0, 0), 5);
  float a, b, c;
  JH_GetLineFunction(1, 2, 3, 3, &a, &b, &c);
  EXPECT_TRUE(a == 1 && b == 0.5f && c == 1.5f);
  JH_GetLineFunction(1, 2, 2, 5, &a, &b, &c);
  EXPECT_TRUE(b == 1);
  EXPECT_FLOAT_EQ(a * 5 - b * 2, c);
  EXPECT_EQ(JH_GetInterPoint_Line(0, 0, 2, 2, 0, 4, 4, 0, &x, &y, 1e-6f), 1);
  EXPECT_TRUE(x == 2 && y == 2);
  EXPECT_EQ(JH_GetInterPoint_Line(0, 0, 2, 2, 0, 1, 2, 3, &x, &y, 1e-6f), 0);
}

TEST(Jh, SegmentCrossings) {
  const struct {
    const char* what;
    float p[8];
    float tol;
    int expected;
    float x, y;
  } cases[] = {
      {"cross", {0, 0, 4, 0, 2, -1, 2, 1}, 0, 1, 2, 0},
      {"stops short", {0, 0, 4, 0, 2, 0.5f, 2, 1}, 0.1f, 0, 0, 0},
      {"short by less than tol", {0, 0, 4, 0, 2, 0.05f, 2, 1}, 0.1f, 1, 2, 0},
      {"collinear overlap", {0, 0, 4, 4, 2, 2, 9, 9}, 1e-4f, 2, 0, 0},
      {"collinear apart", {0, 0, 4, 4, 5, 5, 9, 9}, 1e-4f, 0, 0, 0},
      {"parallel", {0, 0, 4, 4, 0, 1, 4, 5}, 1e-4f, 0, 0, 0},
      {"point on", {0, 0, 4, 4, 2, 2, 2, 2}, 1e-4f, 1, 2, 2},
      {"point off", {0, 0, 4, 4, 2, 3, 2, 3}, 1e-4f, 0, 0, 0},
      {"first a point", {2, 2, 2, 2, 0, 0, 4, 4}, 1e-4f, 1, 2, 2},
  };
  for (const auto& c : cases) {
    float x = 0, y = 0;
    const float* p = c.p;
    EXPECT_EQ(JH_GetInterPoint_LineSection_LineSection(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7], &x, &y, c.tol),
              c.expected)
        << c.what;
    EXPECT_TRUE(std::fabs(x - c.x) < 1e-6f && std::fabs(y - c.y) < 1e-6f) << c.what << ' ' << x << ' ' << y;
    EXPECT_EQ(JH_TestCrossRegon_LineSection_LineSection(p[0], p[1], p[2], p[3], p[4], p[5], p[6], p[7], c.tol),
              c.expected != 0)
        << c.what;
  }
  float x, y;
  EXPECT_EQ(JH_GetInterPoint_LineSection(0, 0, 4, 4, 5, 5, 9, 9, &x, &y, 1e-4f), 0);
  EXPECT_EQ(JH_GetInterPoint_LineSection_Old(0, 0, 4, 4, 5, 5, 9, 9, &x, &y, 1e-4f), 2) << "no look at the boxes";
}

TEST(Jh, CircleCrossings) {
  const struct {
    const char* what;
    float p[6];
    float tol;
    int expected;
    float ax, ay;
  } cases[] = {
      {"two", {0, 0, 5, 6, 0, 5}, 1e-5f, 2, 3, 4},
      {"apart", {0, 0, 5, 11, 0, 5}, 0.5f, 0, 0, 0},
      {"touching", {0, 0, 5, 10, 0, 5}, 1e-5f, 1, 5, 0},
      {"touching within tol", {0, 0, 5, 10.5f, 0, 5}, 1, 1, 5.25f, 0},
      {"same", {1, 1, 5, 1, 1, 5}, 1e-5f, -1, 0, 0},
      {"same, tol 0", {1, 1, 5, 1, 1, 5}, 0, -1, 0, 0},
      {"concentric", {1, 1, 5, 1, 1, 4}, 0, 0, 0, 0},
      {"inside", {0, 0, 5, 1, 0, 2}, 1e-5f, 0, 0, 0},
      {"inner touch, small first", {3, 0, 2, 0, 0, 5}, 1e-5f, 1, 5, 0},
      {"inner touch, large first", {0, 0, 5, 3, 0, 2}, 1e-5f, 1, 5, 0},
      {"centres only", {2, 2, 0, 2, 2, -1}, 0, 1, 2, 2},
  };
  for (const auto& c : cases) {
    float ax = 0, ay = 0, bx, by;
    const float* p = c.p;
    EXPECT_EQ(JH_GetInterPoint_Circle_Circle(p[0], p[1], p[2], p[3], p[4], p[5], &ax, &ay, &bx, &by, c.tol), c.expected)
        << c.what;
    EXPECT_TRUE(std::fabs(ax - c.ax) < 1e-5f && std::fabs(ay - c.ay) < 1e-5f) << c.what << ' ' << ax << ' ' << ay;
  }
  float ax, ay, bx, by;
  EXPECT_EQ(JH_GetInterPoint_Circle_LineSection(0, 0, 5, -9, 5.05f, 9, 5.05f, &ax, &ay, &bx, &by, 0.1f), 1);
  EXPECT_FLOAT_EQ(ay, 5.05f) << "the foot";
  EXPECT_EQ(JH_GetInterPoint_Circle_LineSection(0, 0, 5, 0, 0, 9, 0, &ax, &ay, &bx, &by, 0.1f), 1);
  EXPECT_EQ(ax, 5);
  // Only the second crossing is on the arc: it moves to the first place.
  EXPECT_EQ(JH_GetInterPoint_LineSection_Arc(-9, 0, 9, 0, 0, 0, 5, 6, 7, &ax, &ay, &bx, &by, 1e-4f), 1);
  EXPECT_FLOAT_EQ(ax, 5);
  EXPECT_EQ(JH_GetInterPoint_Arc_Arc(0, 0, 5, 0, 1, 0, 0, 5, 0.5f, 2, &ax, &ay, &bx, &by, 1e-4f), -1);
  EXPECT_EQ(JH_GetInterPoint_Arc_Arc(0, 0, 5, 0, 1, 0, 0, 5, 2, 3, &ax, &ay, &bx, &by, 1e-4f), 0);
  EXPECT_EQ(JH_GetInterPoint_Circle_Arc(0, 0, 5, 6, 0, 5, 2, 3, &ax, &ay, &bx, &by, 1e-4f), 1);
  EXPECT_NEAR(ay, 4, 1e-5);
}

TEST(Jh, OutlinesAndDiscs) {
  EXPECT_EQ(JH_TestCrossRegon_Circle_LineSection(0, 0, 5, -1, 0, 1, 0, 1e-4f), 1) << "inside the disc";
  EXPECT_EQ(JH_TestCross_Circle_LineSection(0, 0, 5, -1, 0, 1, 0, 1e-4f), 0);
  EXPECT_EQ(JH_TestCross_Circle_LineSection(0, 0, 5, -1, 0, 6, 0, 1e-4f), 1);
  EXPECT_EQ(JH_TestCrossRegon_Circle_Circle(0, 0, 5, 1, 0, 1, 0), 1);
  EXPECT_EQ(JH_TestCrossRegon_Circle_Circle(0, 0, 5, 10, 0, 5, 0), 0);
  EXPECT_EQ(JH_TestCross_LineSection_Arc(-1, 0, 6, 0, 0, 0, 5, 1, 2, 1e-4f), 0);
  EXPECT_EQ(JH_TestCross_LineSection_Arc(-1, 0, 6, 0, 0, 0, 5, 0, 2, 1e-4f), 1);
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

TEST(Jh, TouchHasNoFalseFriends) {
  // Near, but apart: in the hole of a ring, beside its open end, in the corner of a polygon.
  const float xs[] = {-0.2f, 0.2f, 0.2f, -0.2f}, ys[] = {-0.2f, -0.2f, 0.2f, 0.2f};
  EXPECT_EQ(JH_TestCrossRegon_TuPolygon_JvBuYuanHuan(4, xs, ys, 0, 0, 2, 1, 0, 6.2f, 0.01f), 0);
  EXPECT_EQ(JH_TestCrossRegon_Circle_JvBuYuanHuan(0, 0, 1.4f, 0, 0, 2, 1, 0, 6.2f, 0.01f), 0);
  EXPECT_EQ(JH_TestCrossRegon_LineSection_JvBuYuanHuan(1.6f, -0.5f, 2.4f, -0.5f, 0, 0, 2, 1, 0, 3, 0.1f), 0);
  EXPECT_EQ(JH_TestCrossRegon_JvBuYuanHuan_JvBuYuanHuan(0, 0, 1, 0.5f, 0, 6.2f, 0, 0, 2, 1, 0, 6.2f, 0.1f), 0);
  EXPECT_EQ(JH_TestCrossRegon_Circle_TuPolygon(1, 1, 1, 4, xs, ys, 0.1f), 0);
  EXPECT_EQ(JH_TestCrossRegon_LineSection_TuPolygon(0.5f, -0.2f, -0.2f, 0.7f, 2, xs, ys, 1), 0) << "no polygon";
}

}  // namespace
