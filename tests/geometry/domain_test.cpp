#include "qvtools/geometry/domains/domain.h"

#include <gtest/gtest.h>

#include <cmath>

#include "geometry/random_case.h"
#include "qvtools/geometry/domains/prepared_domain.h"
#include "support/failing_allocations.h"
#include "support/recording_host.h"

namespace {

using qvtest::Judge;
using qvtest::Random;
using Edges = CArray<CDomainEdge, CDomainEdge&>;

/// A unit-sided square with one edge replaced by a half circle that bulges outward, radius 1.
void bulged_square(Edges& edges, bool ccw) {
  CFRegion region(CFRect(0, 0, 2, 2));
  region[1].C = ccw ? -3.14159274f : 3.14159274f;
  Region_To_Domain(region, edges);
}

/// Runs the outlines through all four point tests and compares them with the judge outside the band.
void compare_with_judge(Random& random, int outlines, int queries, bool arcs, int most_vertices) {
  constexpr float kTol = 1e-4f;
  long compared = 0;
  for (int i = 0; i < outlines; ++i) {
    const CFRegion region = qvtest::random_region(random, most_vertices, arcs);
    Edges edges;
    const int n = Region_To_Domain(region, edges);
    const Judge judge(region);
    const CPreparedDomain prepared(n, edges.GetData());
    CPointInDomain domain;
    for (int k = 0; k < queries; ++k) {
      // Half of the queries are level with vertices and centres of chords.
      CFPoint p = random.point(6);
      if (k % 2) p.y = static_cast<float>(random.whole(-8, 8)) / 2;
      if (k % 4 == 3) p.x = static_cast<float>(random.whole(-8, 8)) / 2;
      const int answer = domain.Point_In_Domain(n, edges.GetData(), p.x, p.y, kTol);
      ASSERT_EQ(answer, prepared.Point_In_Domain(p.x, p.y, kTol)) << i << ": " << p.x << ',' << p.y;
      if (judge.clearance(p) < 10 * kTol) continue;
      ++compared;
      const int inside = judge.inside(p, random);
      ASSERT_EQ(answer, inside) << i << ": " << p.x << ',' << p.y;
      ASSERT_EQ(domain.Point_Into_Domain(n, edges.GetData(), p.x, p.y, kTol), inside) << i << ": " << p.x << ',' << p.y;
      ASSERT_EQ(region.InRegion(p), inside) << i << ": " << p.x << ',' << p.y;
    }
  }
  std::printf("%ld points compared\n", compared);
  EXPECT_GT(compared, static_cast<long>(outlines) * queries / 2);
}

TEST(Domain, PointTestsAgreeWithAnIndependentJudge) {
  Random random(20261);
  compare_with_judge(random, 100000, 7, false, 10);
  compare_with_judge(random, 100000, 7, true, 10);
}

TEST(Domain, PreparedFormAgreesOnLongOutlines) {
  Random random(20262);
  compare_with_judge(random, 20, 400, false, 600);
  compare_with_judge(random, 20, 400, true, 600);
}

TEST(Domain, PreparedFormTakesTolerancesOfAnySize) {
  Random random(20263);
  for (int i = 0; i < 300; ++i) {
    Edges edges;
    const int n = Region_To_Domain(qvtest::random_region(random, 12, true), edges);
    const CPreparedDomain prepared(n, edges.GetData());
    for (const float tol : {0.0f, 1e-6f, 0.3f, 2.0f, 100.0f}) {
      const CFPoint p = random.point(8);
      ASSERT_EQ(prepared.Point_In_Domain(p.x, p.y, tol),
                CPointInDomain().Point_In_Domain(n, edges.GetData(), p.x, p.y, tol))
          << p.x << ',' << p.y << " tol " << tol;
    }
  }
}

TEST(Domain, BoxIsKeptAndCountsArcs) {
  Edges edges;
  bulged_square(edges, true);
  CPointInDomain domain;
  EXPECT_EQ(domain.Point_In_OutLook_Domain(4, edges.GetData(), 3.5f, 1, 0.5f), 1);
  EXPECT_EQ(domain.Point_In_OutLook_Domain(4, edges.GetData(), 3.5f, 1, 0.4f), 0);
  EXPECT_FLOAT_EQ(domain.xmax, 3);
  CPointInDomain other;
  EXPECT_EQ(other.Point_In_Domain(4, edges.GetData(), 9, 9, 0), 0);
  EXPECT_FLOAT_EQ(other.xmax, 3);
  EXPECT_FLOAT_EQ(other.ymax, 2);
}

TEST(Domain, AreaAndCentroid) {
  const double half_disc = 3.141592653589793 / 2;
  Edges edges;
  bulged_square(edges, true);
  CPointInDomain domain;
  float x, y;
  EXPECT_NEAR(domain.Get_Area(4, edges.GetData()), 4 + half_disc, 1e-5);
  domain.Get_Centroid(4, edges.GetData(), x, y);
  EXPECT_NEAR(x, (4 * 1 + half_disc * (2 + 4 / (3 * 3.141592653589793))) / (4 + half_disc), 1e-5);
  EXPECT_NEAR(y, 1, 1e-5);
  // The same bulge described by an arc that runs clockwise.
  bulged_square(edges, true);
  edges[1].ccw = 0;
  EXPECT_FLOAT_EQ(domain.Get_Area(4, edges.GetData()), 4);
  EXPECT_EQ(domain.Get_ZhouChang(4, edges.GetData()), 0);
  EXPECT_EQ(domain.Test_CrossRegon_Domain_Domain(4, edges.GetData(), 4, edges.GetData(), 1), 0);

  const CFPoint clockwise[] = {{0, 0}, {0, 1}, {1, 1}, {1, 0}};
  Region_To_Domain(CFRegion(clockwise, 4), edges);
  EXPECT_FLOAT_EQ(domain.Get_Area(4, edges.GetData()), -1);
  domain.Get_Centroid(4, edges.GetData(), x, y);
  EXPECT_FLOAT_EQ(x, -0.5f / 1e-5f);

  CDomainEdge none;
  none.isArc = 1;
  float area;
  domain.Get_Arc_Para(none, none, area, x, y);
  EXPECT_EQ(area, 0);
  EXPECT_TRUE(std::isfinite(x) && std::isfinite(y));
}

TEST(Domain, StepsBreakEdgesAtTheAxisAndGiveSides) {
  // A full turn in two arcs about (0, 0.5) with radius 1, and their four pieces.
  const CFPoint ends[] = {{1, 0.5f}, {-1, 0.5f}};
  CFRegion region(ends, 2);
  region[0].C = region[1].C = -3.14159274f;
  Edges edges;
  Region_To_Domain(region, edges);
  CPointInDomain domain;
  EXPECT_EQ(domain.Break_The_Edge(edges, 1), 2);
  ASSERT_EQ(edges.GetSize(), 4);
  EXPECT_EQ(domain.Break_The_Edge(edges, 0), 0);
  const float half = std::sqrt(0.75f);
  EXPECT_NEAR(edges[2].x, -half, 1e-6);
  EXPECT_NEAR(edges[3].x, half, 1e-6);
  const int sides[] = {1, 1, -1, 1};
  for (int i = 0; i < 4; ++i) {
    domain.Find_SegmentPosition(edges[i], edges[(i + 1) % 4], 1e-5f);
    EXPECT_EQ(edges[i].side, sides[i]) << i;
    EXPECT_EQ(edges[i].isArc, 1);
  }
  // The order of the comparisons: a level piece within tol counts as above; with tol 0 it lies on the axis.
  CDomainEdge a, b;
  b.x = 1;
  domain.Find_SegmentPosition(a, b, 1e-3f);
  EXPECT_EQ(a.side, 1);
  domain.Find_SegmentPosition(a, b, 0);
  EXPECT_EQ(a.side, 0);
  EXPECT_EQ(domain.Find_Cross_Points_H(0, nullptr, 0, 0, 0), 0);
}

TEST(Domain, AnEdgeThatMemoryIsShortForStaysWhole) {
  const qvtest::RecordingHost host;
  const CFPoint ends[] = {{1, 0.5f}, {-1, 0.5f}};
  CFRegion region(ends, 2);
  region[0].C = region[1].C = -3.14159274f;
  // Memory runs out at the first of two pieces, or, with room for one, at the second.
  for (const int room : {0, 1}) {
    Edges edges;
    Region_To_Domain(region, edges);
    edges.SetSize(2 + room);
    edges.SetSize(2);
    {
      const qvtest::FailingAllocations failing(0, qvtest::FailingAllocations::Which::All);
      EXPECT_EQ(CPointInDomain().Break_The_Edge(edges, 1), 0) << room;
    }
    EXPECT_EQ(QV_ERROR_CODE, 301);
    ASSERT_EQ(edges.GetSize(), 2) << room;
    EXPECT_EQ(edges[1].x, -1);
    EXPECT_EQ(CPointInDomain().Break_The_Edge(edges, 1), 2) << "and can be broken later";
  }
}

TEST(Domain, RegionsKeepTheirArcs) {
  Random random(20264);
  for (int i = 0; i < 20000; ++i) {
    CFPoint ends[] = {random.point(10), random.point(10)};
    CFRegion region(ends, 2);
    const float c = random.real(-6, 6);
    region[0].C = c;
    Edges edges;
    Region_To_Domain(region, edges);
    const CFShape arc(ends[0], ends[1], c);
    ASSERT_EQ(edges[0].ccw, c <= 0);
    ASSERT_EQ(edges[0].cx, arc.x);
    // The middle of the shape lies on the domain's edge, and not on the opposite side of its circle.
    const float tol = 2e-6f * (10 + arc.GetR());
    const CFPoint middle = arc.GetMiddlePoint();
    ASSERT_EQ(CPointInDomain().Point_On_One_Edge(edges[0], edges[1], middle.x, middle.y, tol), 1) << c;
  }
}

}  // namespace
