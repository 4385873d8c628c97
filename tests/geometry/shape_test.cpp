#include "qvtools/geometry/values/shape.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "geometry/random_case.h"
#include "qvtools/platform/framework.h"

namespace {

using qvtest::Random;

constexpr float kPi = 3.14159274f;

CFShape segment(float x1, float y1, float x2, float y2) {
  return {CFPoint(x1, y1), CFPoint(x2, y2)};
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

TEST(Shape, SidesAreStrictInEveryDirection) {
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
