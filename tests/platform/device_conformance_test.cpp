#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "support/model_context.h"
#include "support/recording_context.h"

using qv::BitmapContext;
using qvtest::ModelContext;

namespace {

constexpr int kWidth = 61;
constexpr int kHeight = 47;
constexpr COLORREF kPaper = 0xE0F0FF;

template <class A, class B>
testing::AssertionResult same_pixels(const A& a, const B& b) {
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x)
      if (a.GetPixel(x, y) != b.GetPixel(x, y))
        return testing::AssertionFailure()
               << "at " << x << ", " << y << ": " << std::hex << a.GetPixel(x, y) << " is not " << b.GetPixel(x, y);
  return testing::AssertionSuccess();
}

// Draws the same on every context given, pens and modes of all kinds, coordinates of all sizes.
void draw_anything(std::mt19937& random, const std::vector<CDC*>& contexts) {
  const CPen pen{static_cast<qv::PenStyle>(random() % 6), static_cast<int>(random() % 2),
                 static_cast<COLORREF>(random() & 0xFFFFFF)};
  const CBrush brush{static_cast<COLORREF>(random() & 0xFFFFFF)};
  constexpr qv::RasterOp kOps[] = {qv::RasterOp::Not, qv::RasterOp::XorPen, qv::RasterOp::CopyPen};
  const qv::RasterOp op = kOps[random() % 3];
  const auto mode = random() % 2 ? qv::BackgroundMode::Opaque : qv::BackgroundMode::Transparent;
  std::vector<CPoint> points(3 + random() % 10);
  for (CPoint& p : points) p = {qvtest::any_coordinate(random, kWidth), qvtest::any_coordinate(random, kHeight)};
  CRgn region;
  region.CreatePolygonRgn(points.data(), static_cast<int>(points.size()),
                          random() % 2 ? qv::FillRule::Winding : qv::FillRule::Alternate);
  const auto what = static_cast<unsigned>(random());
  for (CDC* dc : contexts) {
    const CPen* before = dc->SelectObject(&pen);
    dc->SetROP2(op);
    dc->SetBkMode(mode);
    dc->MoveTo(points[0].x, points[0].y);
    for (std::size_t i = 1; i < points.size(); ++i) {
      dc->LineTo(points[i].x, points[i].y);
      if (what & 1u << i) dc->MoveTo(points[i].x, points[i].y);  // no move at all: the pattern goes on
    }
    if (what & 1) dc->FillRgn(region, brush);
    dc->SetPixel(points[1].x, points[1].y, pen.color);
    EXPECT_EQ(dc->SelectObject(before), &pen);
  }
}

// The bitmap draws what the model draws; the recorder hands on what it got.
TEST(DeviceConformance, AllContextsAgreeWithTheModel) {
  const unsigned seed = std::random_device{}();
  std::mt19937 random(seed);
  for (int round = 0; round < 3000; ++round) {
    ModelContext model(kWidth, kHeight, kPaper);
    BitmapContext bitmap(kWidth, kHeight, kPaper);
    qvtest::RecordingContext recorder;
    draw_anything(random, {&model, &bitmap, &recorder});
    ASSERT_TRUE(same_pixels(bitmap, model)) << "seed " << seed << " round " << round;

    BitmapContext replayed(kWidth, kHeight, kPaper);
    replayed.SetROP2(recorder.Rop2());
    replayed.SetBkMode(recorder.BkMode());
    if (!recorder.pens.empty()) replayed.SelectObject(&recorder.pens[0]);
    for (const auto& s : recorder.segments) {
      replayed.MoveTo(s.from.x, s.from.y);
      replayed.LineTo(s.to.x, s.to.y);
    }
    for (const auto& fill : recorder.fills) {
      CRgn region;
      region.CreatePolygonRgn(fill.points.data(), static_cast<int>(fill.points.size()), fill.rule);
      replayed.FillRgn(region, CBrush{fill.color});
    }
    for (const auto& pixel : recorder.pixels) replayed.SetPixel(pixel.at.x, pixel.at.y, pixel.color);
    ASSERT_TRUE(same_pixels(replayed, model)) << "seed " << seed << " round " << round;
  }
}

std::string row(const BitmapContext& bitmap, int y, int width) {
  std::string text;
  for (int x = 0; x < width; ++x) text += bitmap.GetPixel(x, y) == 0 ? '#' : '.';
  return text;
}

TEST(BitmapContext, LinesLeaveOutTheLastPixelAndTiesGoUpAndLeft) {
  BitmapContext bitmap(8, 8, 0xFFFFFF);
  bitmap.MoveTo(1, 1);
  bitmap.LineTo(1, 1);
  EXPECT_EQ(row(bitmap, 1, 8), "........");
  bitmap.LineTo(5, 3);  // passes half way between rows at x = 2 and 4
  EXPECT_EQ(row(bitmap, 1, 8), ".##.....");
  EXPECT_EQ(row(bitmap, 2, 8), "...##...");
  EXPECT_EQ(row(bitmap, 3, 8), "........");
  bitmap.Clear(0xFFFFFF);
  bitmap.MoveTo(5, 3);
  bitmap.LineTo(1, 1);  // backward: the same pixels between the ends
  EXPECT_EQ(row(bitmap, 1, 8), "..#.....");
  EXPECT_EQ(row(bitmap, 2, 8), "...##...");
  EXPECT_EQ(row(bitmap, 3, 8), ".....#..");
}

TEST(BitmapContext, FillsTakeLeftAndTopEdgesOnly) {
  BitmapContext bitmap(8, 8, 0xFFFFFF);
  const CPoint square[] = {{2, 2}, {5, 2}, {5, 4}, {2, 4}};
  CRgn region;
  ASSERT_EQ(region.CreatePolygonRgn(square, 4, qv::FillRule::Winding), 1);
  bitmap.FillRgn(region, CBrush{0});
  const char* expected[] = {"........", "..###...", "..###...", "........"};
  for (int y = 0; y < 4; ++y) EXPECT_EQ(row(bitmap, y + 1, 8), expected[y]);
  EXPECT_EQ(region.CreatePolygonRgn(square, 2, qv::FillRule::Winding), 0);
  EXPECT_EQ(region.GetRgnBox(), CRect());
}

TEST(BitmapContext, WidePensAreStrokesWithRoundEnds) {
  BitmapContext bitmap(12, 9, 0xFFFFFF);
  const CPen pen{qv::PenStyle::Solid, 5, 0};
  bitmap.SelectObject(&pen);
  bitmap.MoveTo(4, 4);
  bitmap.LineTo(4, 4);
  EXPECT_EQ(row(bitmap, 4, 12), "............");
  bitmap.LineTo(7, 4);
  const char* expected[] = {"............", "............", "...######...", "..########..", "..########..",
                            "..########..", "...######...", "............", "............"};
  for (int y = 0; y < 9; ++y) EXPECT_EQ(row(bitmap, y, 12), expected[y]) << y;
}

TEST(Region, TouchesRectanglesByItsRule) {
  // A square drawn twice round: inside by winding, outside by alternation.
  const CPoint twice[] = {{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 0}, {100, 0}, {100, 100}, {0, 100}};
  CRgn winding, alternate;
  winding.CreatePolygonRgn(twice, 8, qv::FillRule::Winding);
  alternate.CreatePolygonRgn(twice, 8, qv::FillRule::Alternate);
  EXPECT_EQ(winding.GetRgnBox(), CRect(0, 0, 100, 100));
  const struct {
    CRect rect;
    bool winding;
    bool alternate;
  } cases[] = {{{40, 40, 60, 60}, true, false},
               {{-10, -10, 0, 0}, true, true},
               {{-10, -10, -1, -1}, false, false},
               {{-10, 50, 110, 60}, true, true},
               {{INT_MIN, INT_MIN, INT_MAX, INT_MAX}, true, true}};
  for (const auto& c : cases) {
    EXPECT_EQ(winding.RectInRegion(c.rect), c.winding) << c.rect.left;
    EXPECT_EQ(alternate.RectInRegion(c.rect), c.alternate) << c.rect.left;
  }
  const CPoint slanted[] = {{INT_MIN, INT_MIN}, {INT_MAX, INT_MAX}, {INT_MIN, INT_MAX}};
  winding.CreatePolygonRgn(slanted, 3, qv::FillRule::Winding);
  EXPECT_TRUE(winding.RectInRegion({0, 0, 10, 10}));
  EXPECT_FALSE(winding.RectInRegion({20, 0, 30, 10}));
}

}  // namespace
