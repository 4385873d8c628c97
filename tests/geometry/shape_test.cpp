#include "qvtools/geometry/values/shape.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "geometry/random_case.h"
#include "qvtools/platform/framework.h"

namespace {

using qvtest::Random;

constexpr float kPi = 3.14159274f;

CFShape segment(float x1, float y1, float x2, float y2) {
  return {CFPoint(x1, y1), CFPoint(x2, y2)};
}
CFShape circle(float x, float y, float r) {
  return {CFPoint(x, y), r, 0, 6.3f};
}

TEST(Point, TestsAreSquaresAndBoxes) {
  const CFPoint p(1, 1);
  EXPECT_EQ(p.HitTest(CFPoint(0, 0), 1), 1);
  EXPECT_EQ(p.HitTest(CFPoint(0, 0), 0.99f), 0);
  EXPECT_EQ(p.HitTest(p, 0), 1);
  EXPECT_EQ(p.Contain(CFPoint(1, 5), CFPoint(-1, 1)), 1);
  EXPECT_EQ(p.Contain(CFPoint(1.1f, 5), CFPoint(2, 0)), 0);
  // The differences are rounded to float: 1 is lost beside 1e8.
  EXPECT_EQ(CFPoint(1e8f, 0).Distance(CFPoint(1, 0)), 1e8);
}

TEST(Shape, KindsAreDecidedInOrder) {
  const struct {
    float r, b;
    const char* kind;
  } cases[] = {{0, 1, "p"},       {0, 7, "p"},    {2, 0, "l"},           {-2, 0, "l"}, {2, 1, "a"},
               {-2, -6.28f, "a"}, {2, 6.3f, "c"}, {2, -6.2831855f, "c"}, {2, NAN, ""}};
  for (const auto& c : cases) {
    const CFShape s(CFPoint(0, 0), c.r, 1, c.b);
    std::string kinds;
    if (s.IsPoint()) kinds += 'p';
    if (s.IsLine()) kinds += 'l';
    if (s.IsArc()) kinds += 'a';
    if (s.IsCircle()) kinds += 'c';
    EXPECT_EQ(kinds, c.kind) << c.r << ' ' << c.b;
  }
}

TEST(Shape, NegativeRadiusIsTheSameFigure) {
  const CFPoint p(1, 2);
  const CFShape a(p, 2, 0, 0), b(p, -2, kPi, 0);
  EXPECT_TRUE(a.GetEndPoint().HitTest(b.GetEndPoint(), 1e-6f));
  EXPECT_NEAR(b.GetStartAngle() - a.GetStartAngle(), 6.2831853, 1e-6);
  const CFShape arc(p, 2, 0.5f, 1), other(p, -2, 0.5f - kPi, 1);
  EXPECT_TRUE(arc.GetStartPoint().HitTest(other.GetStartPoint(), 1e-6f));
  EXPECT_NEAR(other.GetEndAngle(), 1.5, 1e-6);
  EXPECT_EQ(other.GetR(), 2);
  CFShape set(p, -2, 0, 0);
  set.SetR(5);
  set.SetA(0);
  EXPECT_EQ(set.R, -5);
  EXPECT_FLOAT_EQ(set.A, 3.1415926535f);
  // The distance from an arc is not hidden from the sign.
  EXPECT_EQ(CFShape(p, -2, 0, 1).Distance(p), 2);
  EXPECT_EQ(CFShape(p, -2, 0, 1).Distance(CFPoint(4, 2)), 5);
  EXPECT_EQ(CFShape(p, 2, 0, 1).Distance(CFPoint(4, 2)), 1);
  EXPECT_TRUE(CFShape(p, 2, 1, 6.3f).GetMiddlePoint() == CFPoint(1, 4));
}

TEST(Shape, ArcsHitTheirPoints) {
  Random random(20271);
  for (int i = 0; i < 100000; ++i) {
    const CFPoint p = random.point(10), q = random.point(10);
    const float c = random.real(-6.2, 6.2);
    if (std::fabs(c) < 0.05f) continue;
    const CFShape arc(p, q, c);
    const float tol = 2e-6f * (10 + arc.GetR());
    ASSERT_TRUE(arc.GetStartPoint().HitTest(p, tol) && arc.GetEndPoint().HitTest(q, tol)) << c;
    ASSERT_EQ(arc.B, -c);
    // Through its own middle point, the same arc again.
    const CFPoint middle = arc.GetMiddlePoint();
    if (p.Distance(q) < 1 || arc.GetR() > 30) continue;
    const CFShape again(p, middle, q);
    ASSERT_TRUE(again.HitTest(p, 1e-3f) && again.HitTest(middle, 1e-3f) && again.HitTest(q, 1e-3f));
    ASSERT_NEAR(again.B, arc.B, 1e-3) << c;
    // The middle of a clockwise arc lies to the left of its chord.
    ASSERT_EQ(CFShape(p, q).AtLeft(middle), c > 0);
  }
  EXPECT_TRUE(CFShape(CFPoint(0, 0), CFPoint(4, 0), 7).IsCircle());
  EXPECT_EQ(CFShape(CFPoint(0, 0), CFPoint(4, 0), 7).R, 2);
  EXPECT_TRUE(CFShape(CFPoint(0, 0), CFPoint(4, 0), 1e-38f).IsLine());
  EXPECT_TRUE(CFShape(CFPoint(0.1f, 0.1f), CFPoint(0.2f, 0.3f), CFPoint(0.3f, 0.5f)).IsLine());
}

TEST(Shape, TransformsCompose) {
  Random random(20272);
  for (int i = 0; i < 50000; ++i) {
    const CFShape s(random.point(5), random.point(5), random.real(-6, 6));
    const CFPoint c = random.point(5), p = random.point(5), q = random.point(5);
    if (p.Distance(q) < 0.5 || s.GetR() > 50) continue;
    const double a = random.real(-6, 6);
    CFShape moved = s;
    moved.Rotate(c, a).Mirror(p, q).Stretch(c, 2);
    CFPoint middle = s.GetMiddlePoint();
    middle.Rotate(c, a).Mirror(p, q).Stretch(c, 2);
    ASSERT_TRUE(moved.GetMiddlePoint().HitTest(middle, 2e-3f));
    moved.Stretch(c, 0.5).Mirror(p, q).Rotate(c, -a);
    ASSERT_TRUE(moved.GetStartPoint().HitTest(s.GetStartPoint(), 1e-3f));
    ASSERT_FLOAT_EQ(moved.B, s.B);
  }
}

TEST(Shape, CrossingsLieOnBothFigures) {
  Random random(20273);
  long found = 0;
  for (int i = 0; i < 300000; ++i) {
    CFShape figures[2];
    for (CFShape& f : figures) {
      const float bulge = random.whole(0, 1) ? random.real(-7, 7) : 0;
      f = CFShape(random.point(4), random.point(4), bulge);
      if (random.whole(0, 7) == 0) f.R = -f.R, f.A += kPi;
    }
    if (figures[0].GetR() > 40 || figures[1].GetR() > 40) continue;
    CFPoint out[2], back[2];
    const int n = figures[0].Intersect(figures[1], out, 0, 0);
    ASSERT_EQ(figures[1].Intersect(figures[0], back, 0, 0), n);
    for (int k = 0; k < n; ++k) {
      ++found;
      const float tol = 2e-4f;
      ASSERT_LE(figures[0].DistanceToFigure(out[k]), tol) << i;
      ASSERT_LE(figures[1].DistanceToFigure(out[k]), tol) << i;
    }
  }
  std::printf("%ld crossings\n", found);
  EXPECT_GT(found, 50000);
}

TEST(Shape, CrossingsAtTheBorders) {
  const CFShape arc(CFPoint(0, 0), 5, 0, 1), next(CFPoint(0, 0), 5, 1, 1);
  const struct {
    const char* what;
    CFShape a, b;
    int flag1, flag2;
    std::vector<CFPoint> expected;  // one point (99, 99) stands for "coincide"
  } cases[] = {
      {"T junction", segment(0, 0, 10, 0), segment(5, 0, 5, 10), 0, 0, {{5, 0}}},
      {"short", segment(0, 0, 10, 0), segment(5, 1, 5, 10), 0, 0, {}},
      {"second prolonged", segment(0, 0, 10, 0), segment(5, 1, 5, 10), 0, 1, {{5, 0}}},
      {"only first prolonged", segment(0, 0, 10, 0), segment(5, 1, 5, 10), 1, 0, {}},
      {"first prolonged", segment(5, 1, 5, 10), segment(0, 0, 10, 0), 1, 0, {{5, 0}}},
      {"along this line", segment(10, 0, -10, 0), circle(0, 0, 5), 0, 0, {{5, 0}, {-5, 0}}},
      {"along this circle", circle(0, 0, 5), segment(10, 0, -10, 0), 0, 0, {{5, 0}, {-5, 0}}},
      {"tangent line", segment(-9, 5, 9, 5), circle(0, 0, 5), 0, 0, {{0, 5}}},
      {"tangent circles", circle(0, 0, 5), circle(7, 0, 2), 0, 0, {{5, 0}}},
      {"inner tangent", circle(0, 0, 5), circle(3, 0, 2), 0, 0, {{5, 0}}},
      {"concentric", circle(0, 0, 5), circle(0, 0, 4), 0, 0, {}},
      {"same circle", circle(1, 1, 5), circle(1, 1, 5), 0, 0, {{99, 99}}},
      {"arcs end to end", arc, next, 0, 0, {{2.7015116f, 4.2073549f}}},
      {"arcs overlap", arc, CFShape(CFPoint(0, 0), 5, 0.9f, 1), 0, 0, {{99, 99}}},
      {"arcs apart", arc, CFShape(CFPoint(0, 0), 5, 1.1f, 1), 0, 0, {}},
      {"collinear overlap", segment(0, 0, 3, 3), segment(2, 2, 5, 5), 0, 0, {{99, 99}}},
      {"collinear end to end", segment(0, 0, 3, 3), segment(3, 3, 5, 5), 0, 0, {{3, 3}}},
      {"collinear apart", segment(0, 0, 3, 3), segment(4, 4, 5, 5), 0, 0, {}},
      {"collinear prolonged", segment(0, 0, 3, 3), segment(4, 4, 5, 5), 1, 0, {{99, 99}}},
      {"parallel", segment(0, 0, 3, 3), segment(0, 1, 3, 4), 1, 1, {}},
      {"point on line", CFShape(2, 2), segment(0, 0, 3, 3), 0, 0, {{2, 2}}},
      {"point off line", CFShape(2, 2.1f), segment(0, 0, 3, 3), 0, 0, {}},
  };
  for (const auto& c : cases) {
    CFPoint out[2];
    const int n = c.a.Intersect(c.b, out, c.flag1, c.flag2);
    const bool coincide = c.expected.size() == 1 && c.expected[0].x == 99;
    ASSERT_EQ(n, coincide ? -1 : static_cast<int>(c.expected.size())) << c.what;
    for (int i = 0; i < n; ++i) {
      EXPECT_TRUE(out[i].HitTest(c.expected[static_cast<std::size_t>(i)], 3e-6f))
          << c.what << ' ' << out[i].x << ' ' << out[i].y;
    }
  }
}

TEST(Shape, SidesAndBorders) {
  // Strict on lines in every axis direction, though their float angles are rounded.
  const CFPoint ends[] = {{10, 0}, {0, 10}, {-10, 0}, {0, -10}, {7, 7}, {-3, 9}};
  for (const CFPoint& end : ends) {
    const CFShape line(CFPoint(0, 0), end);
    const CFPoint on(end.x / 2, end.y / 2);
    EXPECT_EQ(line.AtLeft(on), 0) << end.x << ',' << end.y;
    EXPECT_EQ(line.AtLeft(CFPoint(on.x - end.y / 1000, on.y + end.x / 1000)), 1) << end.x << ',' << end.y;
    EXPECT_EQ(line.AtLeft(CFPoint(on.x + end.y / 1000, on.y - end.x / 1000)), 0);
    EXPECT_EQ(line.HitTest(on, 0), end.x == 0 || end.y == 0) << "diagonals are rounded";
  }
  const CFShape down = segment(0, 0, 0, -10);
  EXPECT_EQ(down.OnShape(CFPoint(1, -5), 1), 0) << "sideways strict";
  EXPECT_EQ(down.OnShape(CFPoint(0.99f, -5), 1), 1);
  EXPECT_EQ(down.OnShape(CFPoint(0, -11), 1), 1) << "ends inclusive";
  EXPECT_EQ(down.HitTest(CFPoint(1, -5), 1), 1) << "inclusive";
  EXPECT_EQ(down.HitTest(CFPoint(1, -11), 1), 0);
  EXPECT_EQ(down.OverLine(CFPoint(5, 2), 2, 0), 1);
  EXPECT_EQ(down.OverLine(CFPoint(5, -12.5f), 2, 2), 0);
  const CFShape arc(CFPoint(0, 0), 2, 0, 1.57079637f);
  EXPECT_EQ(arc.OnShape(CFPoint(3, 0), 1), 0);
  EXPECT_EQ(arc.OnShape(CFPoint(2.5f, 0), 1), 1);
  EXPECT_EQ(arc.HitTest(CFPoint(2, -1), 1), 1);
  EXPECT_EQ(arc.HitTest(CFPoint(-2, -1), 1), 0);
  EXPECT_EQ(arc.OverLine(CFPoint(5, -0.1f), 0, 0), 0);
  EXPECT_EQ(arc.OverLine(CFPoint(5, -0.1f), 0.1f, 0), 1);
}

TEST(Shape, ExtentsCountQuadrantPoints) {
  const struct {
    CFShape s;
    CFPoint low, high;
  } cases[] = {{segment(3, 4, 1, 2), {1, 2}, {3, 4}},
               {circle(1, 1, 2), {-1, -1}, {3, 3}},
               {{CFPoint(0, 0), 2, -0.1f, 0.2f}, {1.99f, -0.2f}, {2, 0.2f}},
               {{CFPoint(0, 0), 2, 3, -2.9f}, {-1.98f, 0.2f}, {1.99f, 2}},
               {{CFPoint(0, 0), -2, 0, 1.6f}, {-2, -2}, {0.058f, 0}}};
  for (const auto& c : cases) {
    CFPoint low, high;
    c.s.GetRect(low, high);
    EXPECT_TRUE(low.HitTest(c.low, 0.011f) && high.HitTest(c.high, 0.011f))
        << low.x << ' ' << low.y << ' ' << high.x << ' ' << high.y;
  }
}

TEST(Shape, SelectionByRectangle) {
  const struct {
    CFShape s;
    int inside, crossing;
  } cases[] = {{segment(1, 1, 9, 9), 1, 1},
               {segment(0, 0, 10, 10), 1, 1},
               {segment(-1, 5, 5, 5), 0, 1},
               {segment(-1, 5, 11, 5), 0, 1},
               {segment(-1, 5, -0.1f, 5), 0, 0},
               {circle(5, 5, 4), 1, 1},
               {circle(5, 5, 20), 0, 0},
               {circle(5, 5, 6), 0, 1},
               {CFShape(3, 3), 1, 1},
               {{CFPoint(0, 0), 5, 0.1f, 1.4f}, 1, 1},
               {{CFPoint(10, 5), 2, -2, 4}, 0, 1}};
  for (const auto& c : cases) {
    EXPECT_EQ(c.s.Contain(CFPoint(0, 0), CFPoint(10, 10)), c.inside) << c.s.x << ' ' << c.s.R;
    EXPECT_EQ(c.s.Contain(CFPoint(10, 0), CFPoint(0, 10)), c.crossing) << c.s.x << ' ' << c.s.R;
  }
}

TEST(Shape, VertMoveGoesLeftAndSimilarIsReversed) {
  CFShape line = segment(0, 0, 0, 10);
  EXPECT_TRUE(line.VertMove(2).HitTest(CFPoint(-2, 5), 1e-6f));
  EXPECT_EQ(CFShape(CFPoint(0, 0), 5, 0, 1).VertMove(2).R, 3);
  EXPECT_EQ(CFShape(CFPoint(0, 0), -5, 0, -1).VertMove(2).R, -7);
  const CFShape a(CFPoint(0, 0), 5, 0, 1), b(CFPoint(0, 0), 5, 0, 2), c(CFPoint(0, 1), 5, 0, 2);
  EXPECT_EQ(a.Similar(a, 0.1f), 0);
  EXPECT_EQ(a.Similar(b, 0.1f), 1);
  EXPECT_EQ(a.Similar(c, 0.1f), 0);
}

TEST(Shape, ArchiveForms) {
  CArchive out;
  CFShape(CFPoint(1, 2), 3, 4, 5).Serialize(out);
  CFShoot(6, 7, 8).Serialize(out);
  float expected[] = {1, 2, 3, 4, 5, 6, 7, 8};
  ASSERT_EQ(out.Bytes().size(), sizeof expected);
  EXPECT_EQ(std::memcmp(out.Bytes().data(), expected, sizeof expected), 0);
  CArchive in(out.Bytes());
  CFShape s;
  CFShoot v;
  s.Serialize(in);
  v.Serialize(in);
  EXPECT_TRUE(s.B == 5 && v.C == 8 && !in.Failed());
}

}  // namespace
