#include "qvtools/geometry/values/region.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/random_case.h"
#include "qvtools/geometry/values/coor.h"

namespace {

bool same(const CFRect& a, float x1, float y1, float x2, float y2) {
  return a.x1 == x1 && a.y1 == y1 && a.x2 == x2 && a.y2 == y2;
}

TEST(Rect, NormalisesAndCombines) {
  const CFRect r(3, 4, 1, 2), unit(0, 0, 1, 1);
  EXPECT_TRUE(same(r, 1, 2, 3, 4));
  EXPECT_TRUE(same(r | unit, 0, 0, 3, 4));
  EXPECT_TRUE(same(CFRect(0, 0, 2, 3) & r, 1, 2, 2, 3));
  // Copies, and rectangles that only touch, have nothing in common.
  EXPECT_TRUE(same(unit & unit, 0, 0, 0, 0));
  EXPECT_TRUE(same(unit & CFRect(1, 0, 2, 1), 0, 0, 0, 0));
  CFRect grown(0, 0, 2, 2);
  EXPECT_TRUE(same(grown.OffSet(CSize(1, 1)), -1, -1, 3, 3));
  EXPECT_TRUE(same(grown -= CFPoint(1, 2), -2, -3, 2, 1));
  EXPECT_TRUE(same(CFRect(0.5f, CFShape(CFPoint(1, 1), 2, 0, 7)), -1.5f, -1.5f, 3.5f, 3.5f));
  const CRect whole = CFRect(-0.5f, 0.5f, 1.9f, 2.1f);
  EXPECT_EQ(whole, CRect(0, 0, 1, 2));
  CFRect turned(0, 0, 2, 1);
  turned.Rotate(CFPoint(0, 0), 1.57079637f);
  EXPECT_NEAR(turned.x1, -1, 1e-6);
  EXPECT_NEAR(turned.y2, 2, 1e-6);
}

TEST(Rect, Borders) {
  const CFRect r(0, 0, 2, 2);
  EXPECT_EQ(r.FpInFRect(-0.5f, 1, 0.5f), 1);
  EXPECT_EQ(r.FpInFRect(-0.5f, 1, 0.49f), 0);
  EXPECT_EQ(r.IsFRectEmpty(2), 0);
  EXPECT_EQ(r.IsFRectEmpty(2.01f), 1);
  EXPECT_EQ(CFRect(0, 0, 0.5f, -0.5f).IsFRectNull(0.5f), 0);
  EXPECT_EQ(CFRect(0, 0, 0.4f, -0.4f).IsFRectNull(0.5f), 1);
}

TEST(Coor, ConvertsBothWays) {
  const CFCoor one;
  EXPECT_EQ(one.FPtoDP(CFPoint(3, 2)), CPoint(3, -1));
  EXPECT_TRUE(one.DPtoFP(CPoint(3, -2)) == CFPoint(3, 2));
  const CFCoor coor(CFPoint(10, 20), 100, 1), up(CFPoint(10, 20), 100, 0);
  EXPECT_EQ(coor.FPtoDP(CFPoint(10.5f, 19.5f)), CPoint(50, 50));
  EXPECT_EQ(up.FP2toDP(CFPoint(10.5f, 20.5f)), CPoint(50, 50));
  EXPECT_EQ(coor.FPtoDP(-0.005), 0);
  EXPECT_EQ(coor.FPtoDP(-0.05), -4);
  const CRect device = coor.FPtoDP(CFRect(10, 18, 12, 20));
  EXPECT_EQ(device, CRect(0, 0, 200, 200));
  EXPECT_TRUE(same(coor.DPtoFP(device), 10, 18, 12, 20));
  const CFCoor none(CFPoint(1, 2), 0, 1);
  EXPECT_EQ(none.FPtoDP(CFPoint(5, 5)), CPoint(0, 0));
  EXPECT_TRUE(none.DPtoFP(CPoint(7, 7)) == CFPoint(1, 2));
}

/// A square of side 10 whose right edge bulges by a half circle of radius 5.
CFRegion bulged() {
  CFRegion region(CFRect(0, 0, 10, 10));
  region[1].C = -3.14159274f;
  return region;
}

TEST(Region, ExtentOrderAndInside) {
  CFRegion region = bulged();
  CFPoint low, high;
  region.GetRect(low, high);
  EXPECT_TRUE(low.HitTest(CFPoint(0, 0), 1e-5f));
  EXPECT_TRUE(high.HitTest(CFPoint(15, 10), 1e-5f));
  EXPECT_EQ(region.IsOrder(), 1);
  region.Mirror(CFPoint(0, 0), CFPoint(0, 1));
  EXPECT_EQ(region.IsOrder(), 0);
  EXPECT_EQ(region.InRegion(CFPoint(-14, 5)), 1) << "the bulge is mirrored as a bulge";
  EXPECT_EQ(region.InRegion(CFShape(CFPoint(-5, 5), 1, 0, 7)), 0);
  EXPECT_EQ(region.Similar(region, 100), 0);
  // A full circle on a chord, closed by the chord.
  const CFPoint ends[] = {{0, 0}, {4, 0}};
  CFRegion disc(ends, 2);
  disc[0].C = 7;
  EXPECT_EQ(disc.InRegion(CFPoint(2, -1.9f)) + disc.InRegion(CFPoint(2, 1.9f)), 2);
  EXPECT_EQ(disc.InRegion(CFPoint(2, 2.1f)), 0);
  // An arc too small to be seen against its chord: the area decides.
  CFRegion sliver(ends, 2);
  sliver[0].C = -0.01f;
  EXPECT_EQ(sliver.IsOrder(), 1);
}

TEST(Region, ShapesOverANotch) {
  // Over the notch of an L: both ends inside, one vertex in between.
  const CFPoint l[] = {{0, 0}, {4, 0}, {4, 2}, {2, 2}, {2, 4}, {0, 4}};
  const CFRegion notch(l, 6);
  EXPECT_EQ(notch.HitShape({CFPoint(3, 1), CFPoint(1, 3)}, 0), 1) << "passes the corner";
  EXPECT_EQ(notch.HitShape({CFPoint(3.9f, 1.9f), CFPoint(1.9f, 3.9f)}, 0), 0);
}

TEST(Region, CrossingsAndSelection) {
  const CFRegion region = bulged(), other(CFRect(5, 5, 20, 6)), within(CFRect(1, 1, 2, 2));
  CFPoint out[64];
  // Through two corners: each counted once.
  EXPECT_EQ(region.Intersect(CFShape(CFPoint(-1, -1), CFPoint(11, 11)), out), 2);
  EXPECT_EQ(region.Intersect(CFShape(CFPoint(-1, 0), CFPoint(5, 0)), out), -1);
  EXPECT_EQ(region.Intersect(other, out, 0), 2);
  EXPECT_EQ(region.Intersect(other, out, 1), 1);
  EXPECT_EQ(region.Intersect(within, 0), 0);
  EXPECT_EQ(region.Intersect(within, 1), 1);
  EXPECT_EQ(within.Intersect(region, 1), 1);
  EXPECT_EQ(region.HitTest(CFPoint(15.5f, 5), 0.5f), 1);
  EXPECT_EQ(region.HitTest(CFPoint(10, 5), 0.5f), 0);
  EXPECT_EQ(region.Contain(CFPoint(-1, -1), CFPoint(16, 11)), 1);
  EXPECT_EQ(region.Contain(CFPoint(-1, -1), CFPoint(12, 11)), 0);
  EXPECT_EQ(region.Contain(CFPoint(12, -1), CFPoint(-1, 11)), 1);
  EXPECT_EQ(region.Contain(CFPoint(9, 1), CFPoint(1, 9)), 0);
}

TEST(Region, ArchiveCountIsNotTrusted) {
  CFRegion region = bulged();
  CArchive out;
  region.Serialize(out);
  EXPECT_EQ(out.Bytes().size(), 4u + 4 * 12);
  CFRegion loaded;
  CArchive in(out.Bytes());
  loaded.Serialize(in);
  ASSERT_EQ(loaded.GetSize(), 4);
  EXPECT_EQ(loaded[1].C, region[1].C);
  std::string cut = out.Bytes();
  cut[3] = '\x7f';
  CArchive bad(cut);
  loaded.Serialize(bad);
  EXPECT_TRUE(bad.Failed());
  EXPECT_EQ(loaded.GetSize(), 4) << "stays as it was";
}

}  // namespace
