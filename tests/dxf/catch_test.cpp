#include "qvtools/dxf/view/catch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <set>

#include "qvtools/dxf/view/measure.h"
#include "qvtools/dxf/view/prepared_drawing.h"
#include "qvtools/geometry/values/shape.h"
#include "qvtools/text/gbk_text.h"

namespace {

using qv::CatchKind;
using qv::PlanePoint;

constexpr double kReach = 12;
constexpr double kRounding = 0.02;

/// Lines, circles, arcs, polylines with bulges, points, texts and blocks at random, and the same as bare shapes.
class Catching : public testing::Test {
 protected:
  Catching() { dxf.New_MemDxf(); }

  float number(float low, float high) { return std::uniform_real_distribution<float>(low, high)(random); }

  void add_line(float x1, float y1, float x2, float y2, bool written = true) {
    if (written) dxf.Write_Line(x1, y1, 0, x2, y2, 0, "0", "1", "BYLAYER");
    shapes.emplace_back(CFPoint(x1, y1), CFPoint(x2, y2));
  }

  void compose(int count) {
    auto* const block = new ACAD_BLOCK;
    qv::copy_text(block->m_szName, "B");
    auto* const bar = new ACAD_LINE;
    bar->m_End = {60, 25, 0};
    block->m_EntityList.AddTail(bar);
    dxf.m_BlockList.AddTail(block);
    for (int i = 0; i < count; ++i) {
      const float x = number(-300, 300), y = number(-300, 300), r = number(5, 60);
      switch (i % 6) {
        case 0:
          add_line(x, y, number(-300, 300), number(-300, 300));
          break;
        case 1:
          dxf.Write_Circle(x, y, 0, r, "0", "1", "BYLAYER");
          shapes.emplace_back(CFPoint(x, y), r, 0.0F, static_cast<float>(qv::kTwoPi));
          break;
        case 2: {
          const float start = number(0, 360), sweep = number(20, 330);
          dxf.Write_Arc(x, y, 0, r, start, start + sweep, "0", "1", "BYLAYER");
          const auto radians = [](float d) { return static_cast<float>(d * qv::kPi / 180); };
          shapes.emplace_back(CFPoint(x, y), r, radians(start), radians(sweep));
          break;
        }
        case 3: {
          const float px[] = {x, x + r, x + 2 * r}, py[] = {y, y + r, y - r}, zero[3] = {};
          const float bulge[] = {number(-1.5F, 1.5F), 0, 0};
          dxf.Write_Pline(3, px, py, zero, bulge, 0, zero, zero, "0", "1", "BYLAYER");
          ofPolyline.insert(shapes.size());
          shapes.emplace_back(CFPoint(px[0], py[0]), CFPoint(px[1], py[1]), -4 * std::atan(bulge[0]));
          add_line(px[1], py[1], px[2], py[2], false);
          break;
        }
        case 4: {
          auto* const insert = new ACAD_INSERT;
          qv::copy_text(insert->m_szBlock, "B");
          insert->m_Insert = {x, y, 0};
          dxf.m_EntityList.AddTail(insert);
          add_line(x, y, x + 60, y + 25, false);
          insertions.push_back({x, y});
          break;
        }
        default:
          dxf.Write_Point(x, y, 0, "0");
          nodes.push_back({x, y});
      }
    }
  }

  /// All points of a kind, found without any index.
  std::vector<PlanePoint> brute(CatchKind kind) const {
    std::vector<PlanePoint> all;
    const auto add = [&](const CFPoint& p) { all.push_back({p.x, p.y}); };
    if (kind == CatchKind::Node) return nodes;
    if (kind == CatchKind::Insertion) return insertions;
    for (std::size_t i = 0; i < shapes.size(); ++i) {
      const CFShape& s = shapes[i];
      if (kind == CatchKind::End && !s.IsCircle()) add(s.GetStartPoint()), add(s.GetEndPoint());
      if (kind == CatchKind::Middle && !s.IsCircle()) add(s.GetMiddlePoint());
      // That of a polyline's arc is caught from its curve alone.
      if (kind == CatchKind::Center && !s.IsLine() && s.B > 0 && ofPolyline.count(i) == 0) add(s);
      for (std::size_t k = i + 1; kind == CatchKind::Intersection && k < shapes.size(); ++k) {
        CFPoint out[2];
        const int n = s.Intersect(shapes[k], out, 0, 0);
        // Two that are nearly one are caught as one, between them.
        if (n == 2 && out[0].Distance(out[1]) < 3) continue;
        for (int j = 0; j < n; ++j) add(out[j]);
      }
    }
    return all;
  }

  bool is_real(const qv::CaughtPoint& c, const std::vector<PlanePoint>& all) const {
    const CFPoint p(static_cast<float>(c.at.x), static_cast<float>(c.at.y));
    if (c.kind == CatchKind::Intersection)
      return std::count_if(shapes.begin(), shapes.end(),
                           [&](const CFShape& s) { return s.DistanceToFigure(p) < 2 * kRounding; }) >= 2;
    if (c.kind == CatchKind::Center)
      return std::any_of(shapes.begin(), shapes.end(),
                         [&](const CFShape& s) { return !s.IsLine() && p.Distance(s) < 1; });
    return std::any_of(all.begin(), all.end(),
                       [&](const auto& q) { return std::hypot(c.at.x - q.x, c.at.y - q.y) < 1; });
  }

  std::mt19937 random{11};
  DXF dxf;
  std::vector<CFShape> shapes;
  std::set<std::size_t> ofPolyline;
  std::vector<PlanePoint> nodes;
  std::vector<PlanePoint> insertions;
};

double away(const PlanePoint& a, const PlanePoint& b) {
  return std::hypot(a.x - b.x, a.y - b.y);
}

TEST_F(Catching, CatchesWhatASearchThroughEverythingFinds) {
  compose(400);
  qv::PreparedDrawing prepared(dxf);
  int found[qv::kCatchKinds] = {};
  for (const CatchKind kind : {CatchKind::End, CatchKind::Middle, CatchKind::Center, CatchKind::Intersection,
                               CatchKind::Node, CatchKind::Insertion}) {
    const std::vector<PlanePoint> all = brute(kind);
    for (int i = 0; i < 400; ++i) {
      const PlanePoint at{number(-300, 300), number(-300, 300)};
      const std::vector<qv::CaughtPoint> caught = prepared.Catch({at, kReach, qv::CatchBit(kind), {}});
      for (const PlanePoint& p : all) {
        // At the rim of the reach, and where circles touch, rounding decides.
        if (away(p, at) > kReach - 0.5) continue;
        const bool is_there =
            std::any_of(caught.begin(), caught.end(), [&](const auto& c) { return away(c.at, p) < 20 * kRounding; });
        EXPECT_TRUE(is_there) << static_cast<int>(kind) << " at " << p.x << ", " << p.y;
        ++found[static_cast<int>(kind)];
      }
      for (const qv::CaughtPoint& c : caught) {
        EXPECT_EQ(c.kind, kind);
        EXPECT_TRUE(is_real(c, all)) << static_cast<int>(kind) << " at " << c.at.x << ", " << c.at.y;
      }
    }
    EXPECT_GT(found[static_cast<int>(kind)], 20);
  }
}

TEST_F(Catching, TheNearestPointIsAsNearAsThatOfAnyShapeAndComesLast) {
  compose(300);
  qv::PreparedDrawing prepared(dxf);
  for (int i = 0; i < 500; ++i) {
    const PlanePoint at{number(-300, 300), number(-300, 300)};
    double least = std::numeric_limits<double>::max();
    for (const CFShape& s : shapes)
      least = std::min(least, s.DistanceToFigure(CFPoint(static_cast<float>(at.x), static_cast<float>(at.y))));
    const auto near = prepared.Catch({at, kReach, qv::CatchBit(CatchKind::Nearest), {}});
    if (std::fabs(least - kReach) < kRounding) continue;
    ASSERT_EQ(near.empty(), least > kReach);
    if (!near.empty()) {
      EXPECT_NEAR(away(near[0].at, at), least, kRounding);
    }
    const auto all = prepared.Catch({at, kReach, qv::kAllCatches, {}});
    for (std::size_t k = 1; k < all.size(); ++k)
      EXPECT_FALSE(all[k - 1].kind == CatchKind::Nearest && all[k].kind != CatchKind::Nearest);
  }
}

TEST_F(Catching, FeetAndTangentsSeenFromAPointAreAtRightAngles) {
  dxf.Write_Line(0, 0, 0, 100, 20, 0, "0", "1", "BYLAYER");
  dxf.Write_Circle(300, 50, 0, 40, "0", "1", "BYLAYER");
  qv::PreparedDrawing prepared(dxf);
  const PlanePoint from{37, 90};
  const auto foot = prepared.Catch({{60, 12}, 5, qv::CatchBit(CatchKind::Perpendicular), from});
  ASSERT_EQ(foot.size(), 1U);
  EXPECT_NEAR((foot[0].at.x - from.x) * 100 + (foot[0].at.y - from.y) * 20, 0, 1e-9);
  const auto tangents = prepared.Catch({{300, 90}, 5, qv::CatchBit(CatchKind::Tangent), from});
  ASSERT_EQ(tangents.size(), 2U);
  for (const qv::CaughtPoint& t : tangents) {
    EXPECT_NEAR((t.at.x - from.x) * (t.at.x - 300) + (t.at.y - from.y) * (t.at.y - 50), 0, 1e-8);
    EXPECT_NEAR(away(t.at, {300, 50}), 40, 1e-9);
  }
}

/// Files hold two decimals, so what is drawn as touching misses or crosses by a hair.
TEST_F(Catching, TangencyIsOnePointAndMarksAreTheBestKindOfTheirPlace) {
  dxf.Write_Circle(0, 0, 0, 1000, "0", "1", "BYLAYER");
  dxf.Write_Line(-5000, 1000.01F, 0, 5000, 1000.01F, 0, "0", "1", "BYLAYER");
  dxf.Write_Circle(0, -1499.99F, 0, 500, "0", "1", "BYLAYER");
  qv::PreparedDrawing prepared(dxf);
  for (const double y : {1000.0, -1000.0}) {
    const auto caught = prepared.Catch({{3, y}, 50, qv::CatchBit(CatchKind::Intersection), {}});
    ASSERT_EQ(caught.size(), 1U);
    EXPECT_NEAR(caught[0].at.x, 0, 1e-6);
  }
  // The middle of the line, its crossing and the top of the circle lie at one place.
  const auto caught = prepared.Catch({{3, 1000}, 50, qv::kAllCatches, {}});
  ASSERT_FALSE(caught.empty());
  EXPECT_EQ(caught[0].kind, CatchKind::Intersection);
}

TEST_F(Catching, ProjectedViewsCatchWhatIsSeenAndHiddenThingsAreNotCaught) {
  dxf.Write_Line(0, 0, 0, 100, 0, 300, "0", "1", "BYLAYER");
  dxf.Write_Line(0, 50, 0, 100, 50, 0, "0", "1", "BYLAYER");
  const float a = 0.4F, b = 0.7F;
  qv::PreparedDrawing prepared(dxf, a, b);
  float u = 0, v = 0;
  TouYing3Dto2D(100, 0, 300, a, b, u, v);
  const qv::CatchQuery query{{u + 1.0, v - 1.0}, 5, qv::kAllCatches, {}};
  ASSERT_FALSE(prepared.Catch(query).empty());
  EXPECT_NEAR(prepared.Catch(query)[0].at.x, u, 1e-3);
  EXPECT_EQ(prepared.Catch(query)[0].kind, CatchKind::End);
  prepared.Show([](ACAD_ENTITY&) { return false; });
  EXPECT_TRUE(prepared.Catch(query).empty());
}

TEST_F(Catching, HostileNumbersAreNotCaught) {
  const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
  dxf.Write_Line(nan, 0, 0, 5, 5, 0, "0", "1", "BYLAYER");
  dxf.Write_Circle(0, 0, 0, inf, "0", "1", "BYLAYER");
  dxf.Write_Circle(0, 0, 0, -3, "0", "1", "BYLAYER");
  dxf.Write_Arc(0, 0, 0, 5, nan, 1e30F, "0", "1", "BYLAYER");
  qv::PreparedDrawing prepared(dxf);
  for (const qv::CaughtPoint& c : prepared.Catch({{0, 0}, 10, qv::kAllCatches, PlanePoint{3, 3}}))
    EXPECT_TRUE(std::isfinite(c.at.x) && std::isfinite(c.at.y));
}

TEST(EntityMeasures, LengthsAndAreasCountArcsAsArcs) {
  constexpr double kPi = 3.14159265358979;
  DXF dxf;
  dxf.New_MemDxf();
  // A stadium of 100 by 40 with half circles at its ends.
  const float x[] = {0, 100, 100, 0}, y[] = {0, 0, 40, 40}, zero[4] = {};
  const float bulge[] = {0, 1, 0, 1};
  dxf.Write_Pline(4, x, y, zero, bulge, 1, zero, zero, "0", "1", "BYLAYER");
  dxf.Write_Circle(1e5F, 1e5F, 0, 10, "0", "1", "BYLAYER");
  dxf.Write_Solid(0, 0, 0, 10, 0, 0, 0, 5, 0, 10, 5, 0, "0", "1", "BYLAYER");
  dxf.Write_Arc(0, 0, 0, 10, 0, 90, "0", "1", "BYLAYER");
  const double expected[][3] = {
      {200 + 40 * kPi, 4000 + 400 * kPi, 1}, {20 * kPi, 100 * kPi, 1}, {30, 50, 1}, {5 * kPi, 25 * kPi - 50, 0}};
  POSITION at = dxf.m_EntityList.GetHeadPosition();
  for (const auto& [length, area, closed] : expected) {
    const qv::EntityMeasures m = qv::Measure(*static_cast<ACAD_ENTITY*>(dxf.m_EntityList.GetNext(at)));
    EXPECT_NEAR(m.length, length, 1e-4);
    EXPECT_NEAR(m.area, area, 1e-2);
    EXPECT_EQ(m.closed, closed != 0);
  }
}

}  // namespace
