#include "qvtools/display/safe_dc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <tuple>

#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "support/model_context.h"
#include "support/recording_context.h"
#include "support/recording_host.h"

using qvtest::RecordingContext;

namespace {

constexpr int kWidth = 1024;
constexpr int kHeight = 768;

class SafeDC : public testing::Test {
 protected:
  qvtest::RecordingHost host{{kWidth, kHeight}};
  RecordingContext device{{4960, 7016}};
  CSafeDC safe{&device};
};

TEST_F(SafeDC, SegmentsAreCutToTheScreen) {
  const struct {
    CPoint from, to;
    int result;
    const char* calls;
  } cases[] = {
      {{10, 20}, {30, 40}, 1, "M10,20 L30,40 "},
      {{0, 0}, {kWidth, kHeight}, 1, "M0,0 L1024,768 "},
      {{-100000, 50}, {100000, 50}, 1, "M0,50 L1024,50 "},
      {{100000, 50}, {-100000, 50}, 1, "M1024,50 L0,50 "},
      {{50, -2000000000}, {50, 2000000000}, 1, "M50,0 L50,768 "},
      {{0, -1}, {1024, -1}, 0, ""},
      {{-10, 5}, {5, -10}, 0, ""},  // passes the corner
      {{-1, 768}, {-1, 0}, 0, ""},
      {{-10, -10}, {20, 50}, 1, "M0,10 L20,50 "},
      {{1000, 700}, {1100, 900}, 1, "M1000,700 L1024,748 "},
      {{1000, 700}, {1010, 900}, 1, "M1000,700 L1004,768 "},
  };
  for (const auto& c : cases) {
    device.clear();
    EXPECT_EQ(safe.MoveTo(c.from), c.from);
    EXPECT_EQ(safe.LineTo(c.to), c.result);
    EXPECT_EQ(device.calls, c.calls);
  }
  // The position moves on even where nothing shows.
  safe.MoveTo(-50, -50);
  EXPECT_EQ(safe.LineTo(-20, 5), 0);
  device.clear();
  EXPECT_EQ(safe.LineTo(20, 5), 1);
  EXPECT_EQ(device.calls, "M0,5 L20,5 ");
}

TEST_F(SafeDC, CutSegmentsStayOnTheirLineAndNearTheLimits) {
  const unsigned seed = std::random_device{}();
  std::mt19937 random(seed);
  for (int i = 0; i < 200000; ++i) {
    const CPoint a(qvtest::any_coordinate(random, kWidth), qvtest::any_coordinate(random, kHeight));
    const CPoint b(qvtest::any_coordinate(random, kWidth), qvtest::any_coordinate(random, kHeight));
    CPoint p = a, q = b;
    if (!safe.CutLine(p.x, p.y, q.x, q.y)) continue;
    const double dx = double(b.x) - a.x, dy = double(b.y) - a.y, length = std::hypot(dx, dy);
    // The slope has 24 bits: 2^32 pixels off, that is half a thousand.
    const double slack =
        2 +
        std::max({std::abs(double(a.x)), std::abs(double(a.y)), std::abs(double(b.x)), std::abs(double(b.y))}) / 4e6;
    for (const CPoint& end : {p, q}) {
      ASSERT_TRUE(end.x >= -2 && end.x <= kWidth + 2 && end.y >= 0 && end.y <= kHeight) << "seed " << seed << " " << i;
      if (length == 0) continue;
      const double off = std::fabs(dx / length * (double(end.y) - a.y) - dy / length * (double(end.x) - a.x));
      ASSERT_LE(off, slack) << "seed " << seed << " " << i;
    }
  }
}

TEST_F(SafeDC, PagesAndMetafilesHaveLimitsOfTheirOwn) {
  EXPECT_EQ(safe.SetLimit(), 0);
  device.printing = true;
  safe.MoveTo(2000, 3000);
  safe.LineTo(9000, 3000);
  EXPECT_EQ(safe.SetLimit(), 0);
  EXPECT_EQ(device.calls, "M2000,3000 L4960,3000 ");
  device.printing = false;
  EXPECT_EQ(safe.SetLimit(), 1);
  EXPECT_TRUE(safe.IsOutside({2000, 3000}, {2000, 5000}));
  device.clear();
  device.metafile = true;
  EXPECT_FALSE(safe.IsOutside({2000, 3000}, {2000, 5000}));
  safe.MoveTo(-70000, 5);
  EXPECT_EQ(safe.LineTo(90000, -5), 1);
  safe.SetPixel(-9, -9, 1);
  EXPECT_EQ(device.calls, "M-70000,5 L90000,-5 P-9,-9 ");
  device.clear();
  safe.DrawArc(0, 0, INT_MAX, 0, 6.28f, 1);
  EXPECT_LE(device.segments.size(), 100000u);
}

TEST_F(SafeDC, PixelsOutlinesAndEmptyContexts) {
  EXPECT_EQ(safe.SetPixel(-1, 0, 7), 7u);
  EXPECT_EQ(safe.SetPixel(kWidth, kHeight, 8), 8u);
  EXPECT_EQ(safe.SetPixel(kWidth + 1, 0, 9), 9u);
  EXPECT_EQ(device.calls, "P1024,768 ");
  device.clear();
  const CRect rect(10, 20, 30, 40);
  EXPECT_EQ(safe.Rectangle(&rect), 1);
  EXPECT_EQ(device.calls, "M10,20 L10,40 M10,40 L30,40 M30,40 L30,20 M30,20 L10,20 ");
  device.clear();
  const CPoint triangle[] = {{0, 0}, {10, 0}, {5, 8}};
  EXPECT_EQ(safe.Polygon(triangle, 3), 1);
  EXPECT_EQ(device.calls, "M0,0 L10,0 M10,0 L5,8 M5,8 L0,0 ");

  CSafeDC none;
  none.MoveTo(1, 1);
  EXPECT_EQ(none.LineTo(2, 2), 0);
  EXPECT_EQ(none.SetPixel(1, 1, 5), 5u);
  none.DrawArc(5, 5, 5, 0, 1, 0);
  EXPECT_EQ(none.SetLimit(), 0);
}

TEST_F(SafeDC, FillsNearRegionsThatShow) {
  const struct {
    int x, y, size, result;
  } cases[] = {{0, 0, 10, 1},    {-20, 0, 10, 0},  {-10, -10, 10, 1},          {29900, 0, 100, 0},
               {0, 0, 30000, 1}, {0, 0, 30001, 0}, {-30000, -30000, 60000, 1}, {-30001, 0, 40000, 0}};
  for (const auto& c : cases) {
    const CPoint square[] = {{c.x, c.y}, {c.x + c.size, c.y}, {c.x + c.size, c.y + c.size}, {c.x, c.y + c.size}};
    CRgn region;
    region.CreatePolygonRgn(square, 4, qv::FillRule::Winding);
    const CBrush brush{3};
    device.clear();
    EXPECT_EQ(safe.FillRgn(&region, &brush), c.result) << c.x << ' ' << c.size;
    EXPECT_EQ(device.fills.size(), static_cast<std::size_t>(c.result));
  }
}

// Every chord in turn, as an arc is defined.
void draw_every_chord(CSafeDC& safe, int cx, int cy, int r, float start, float sweep, int flip) {
  const auto round = [](double v) { return static_cast<int>(2 * v + 1) / 2; };
  const double turn = sweep;
  const int n = std::max(5, round(std::fabs(turn * r / 4)));
  double step = turn / n;
  if (flip) step = -step;
  if (sweep < 0) step = -step;
  const double first = flip ? 6.2831855 - start : start;
  const auto point = [&](double angle) {
    return CPoint(round(cx + r * std::cos(angle)), round(cy + r * std::sin(angle)));
  };
  safe.MoveTo(point(first));
  for (int i = 0; i < n; ++i) safe.LineTo(point(first + i * step));
  safe.LineTo(point(flip ? first - turn : first + turn));
}

// The recorded segments that have a length, in an order of their own.
std::vector<std::tuple<int, int, int, int>> drawn(const RecordingContext& device) {
  std::vector<std::tuple<int, int, int, int>> all;
  for (const auto& s : device.segments)
    if (s.from != s.to) all.emplace_back(s.from.x, s.from.y, s.to.x, s.to.y);
  std::sort(all.begin(), all.end());
  return all;
}

TEST_F(SafeDC, ArcsSkipOnlyChordsThatCannotShow) {
  const unsigned seed = std::random_device{}();
  std::mt19937 random(seed);
  const auto real = [&](float low, float high) { return std::uniform_real_distribution<float>(low, high)(random); };
  std::size_t total = 0;
  for (int i = 0; i < 3000; ++i) {
    const float far = std::pow(10.0f, real(0, 4.7f));
    const int r = static_cast<int>(far), reach = static_cast<int>(far * 1.1f) + 20;
    const float towards = real(0, 6.2831855f);
    const int cx = static_cast<int>(real(-50, kWidth + 50) + std::cos(towards) * real(0, float(reach)));
    const int cy = static_cast<int>(real(-50, kHeight + 50) + std::sin(towards) * real(0, float(reach)));
    const float start = real(-7, 7), sweep = i % 5 ? real(0, 6.2831855f) : real(-12, 12);
    const int flip = static_cast<int>(random() % 2);
    device.clear();
    safe.DrawArc(cx, cy, r, start, sweep, flip);
    const auto own = drawn(device);
    device.clear();
    draw_every_chord(safe, cx, cy, r, start, sweep, flip);
    ASSERT_EQ(own, drawn(device)) << "seed " << seed << ": " << cx << ' ' << cy << ' ' << r << ' ' << start << ' '
                                  << sweep << ' ' << flip;
    total += own.size();
  }
  EXPECT_GT(total, 100000u) << "the cases show too little to tell";
}

TEST_F(SafeDC, GiantAndAbsurdArcsEndAtOnce) {
  const float absurd[] = {0, 3.14f, 6.2831855f, -6.28f, 1e30f, -1e9f, INFINITY, NAN};
  for (const int r : {0, -5, 1, 1000000, INT_MAX})
    for (const float start : absurd)
      for (const float sweep : absurd)
        for (const int c : {0, 500, -1000000, 1000000, INT_MAX, INT_MIN}) safe.DrawArc(c, r / 2, r, start, sweep, 1);
  for (const auto& s : device.segments) {
    ASSERT_LE(std::max(std::abs(s.from.x), std::abs(s.to.x)), kWidth + 2);
    ASSERT_LE(std::max(std::abs(s.from.y), std::abs(s.to.y)), kHeight + 2);
  }
  device.clear();
  safe.DrawArc(512 - 1000000, 384, 1000000, 0, 6.2831855f, 1);
  EXPECT_GT(device.segments.size(), 150u);  // the height of the screen, in chords of four pixels
  EXPECT_LT(device.segments.size(), 300u);
}

TEST_F(SafeDC, ArcsTakeTheirRadiusFromTheStart) {
  EXPECT_EQ(safe.Arc(-200, 0, -100, 100, -100, 50, -150, 0), 0);
  // A quarter, counter-clockwise as seen, from the right to the top; the box is twice as large as the radius says.
  EXPECT_EQ(safe.Arc(300, 300, 500, 500, 450, 400, 400, 350), 1);
  ASSERT_FALSE(device.segments.empty());
  EXPECT_EQ(device.segments.front().from, CPoint(450, 400));
  EXPECT_EQ(device.segments.back().to, CPoint(400, 350));
  for (const auto& s : device.segments) {
    EXPECT_NEAR(std::hypot(s.to.x - 400, s.to.y - 400), 50, 1);
    EXPECT_TRUE(s.to.x >= 400 && s.to.y <= 400);
  }
  device.clear();
  EXPECT_EQ(safe.Ellipse(100, 100, 200, 200), 1);
  EXPECT_TRUE(drawn(device).empty());
}

}  // namespace
