#include <gmock/gmock.h>

#include <cmath>
#include <numbers>
#include <optional>
#include <random>

#include "qvtools/dxf/model/document.h"
#include "qvtools/fonts/shx.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/geometry/values/region.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/text/gbk_text.h"
#include "support/recording_context.h"
#include "support/recording_host.h"

using qvtest::RecordingContext;
using qvtest::RecordingHost;
using testing::ElementsAre;

namespace {

/// Ten device units a unit, the origin at device (100, 100), y up.
CFCoor view() {
  return {CFPoint(-10, 10), 10, 1};
}

/// A document whose drawing is recorded.
class Display : public testing::Test {
 protected:
  void SetUp() override { dxf.New_MemDxf(); }
  void draw() {
    dc.clear();
    dxf.Draw(&dc, &coor);
  }
  double drawn_length() const {
    double length = 0;
    for (const auto& s : dc.segments) length += std::hypot(s.to.x - s.from.x, s.to.y - s.from.y);
    return length;
  }
  RecordingHost host;
  RecordingContext dc;
  CFCoor coor = view();
  DXF dxf;
};

TEST_F(Display, LinesTakePenFromLineTypeAndColor) {
  const float none[1] = {};
  for (const char* name : {"DASHED2", "DASHDOT", "DOT", "CENTER"}) dxf.Add_LType(name, "", 0, 0, none);
  const struct {
    const char* ltype;
    qv::PenStyle style;
  } cases[] = {{"DASHED2", qv::PenStyle::Dash},
               {"DASHDOT", qv::PenStyle::DashDot},
               {"DOT", qv::PenStyle::Dot},
               {"CENTER", qv::PenStyle::Solid},
               {"BYLAYER", qv::PenStyle::Solid}};
  for (const auto& c : cases) dxf.Write_Line(0, 0, 0, 1, 2, 0, "0", "3", c.ltype);
  draw();
  ASSERT_EQ(dc.segments.size(), std::size(cases));
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(dc.pens[i].style, cases[i].style) << cases[i].ltype;
    EXPECT_EQ(dc.segments[i], (RecordingContext::Segment{{100, 100}, {110, 80}, 0x00FF00}));
  }
  EXPECT_EQ(dc.BkMode(), qv::BackgroundMode::Transparent);
  EXPECT_EQ(&dc.Pen(), CDC::StockBlackPen());  // the pen of before is selected again
  for (const bool metafile : {true, false}) {
    dc.metafile = metafile;
    dc.printing = !metafile;
    draw();
    EXPECT_EQ(dc.segments[0].color, 0U) << "everything is black on paper";
  }
}

/// The points of a chain of segments lie on a circle, within rounding.
void expect_on_circle(const std::vector<RecordingContext::Segment>& segments, double x, double y, double r) {
  for (const auto& s : segments) {
    EXPECT_NEAR(std::hypot(s.from.x - x, s.from.y - y), r, 1);
    EXPECT_NEAR(std::hypot(s.to.x - x, s.to.y - y), r, 1);
  }
}

TEST_F(Display, CirclesAndArcsRunRoundTheirCentres) {
  dxf.Write_Circle(0, 0, 0, 5, "0", "1", "BYLAYER");
  draw();
  ASSERT_FALSE(dc.segments.empty());
  expect_on_circle(dc.segments, 100, 100, 50);
  EXPECT_EQ(dc.segments.front().from, dc.segments.back().to);

  const struct {
    float start;
    float end;
    CPoint from;
    CPoint to;
    CPoint through;
  } arcs[] = {{0, 90, {150, 100}, {100, 50}, {135, 65}},
              {350, 20, {149, 109}, {147, 83}, {150, 96}},
              {180, 270, {50, 100}, {100, 150}, {65, 135}}};
  for (const int reverse : {1, 0}) {
    coor = reverse ? view() : CFCoor(CFPoint(-10, -10), 10, 0);
    for (const auto& a : arcs) {
      ACAD_ARC arc;
      arc.m_fRadius = 5;
      arc.m_fStartAngle = a.start;
      arc.m_fEndAngle = a.end;
      dc.clear();
      arc.Draw(&dc, &coor, 0, 0);
      expect_on_circle(dc.segments, 100, 100, 50);
      const auto visits = [&](CPoint p) {
        if (!reverse) p.y = 200 - p.y;
        return std::any_of(dc.segments.begin(), dc.segments.end(), [&](const auto& s) {
          return std::min(std::hypot(s.from.x - p.x, s.from.y - p.y), std::hypot(s.to.x - p.x, s.to.y - p.y)) < 4;
        });
      };
      EXPECT_TRUE(visits(a.from) && visits(a.to) && visits(a.through)) << a.start << ' ' << reverse;
      EXPECT_LT(dc.segments.size(), 60U) << "no more than the arc";
    }
  }
}

TEST_F(Display, PolylinesDrawSegmentsArcsAndTheClosingOne) {
  const float x[] = {0, 2, 2};
  const float y[] = {0, 0, 2};
  const float zero[] = {0, 0, 0};
  dxf.Write_Pline(3, x, y, zero, zero, 1, zero, zero, "0", "1", "BYLAYER");
  draw();
  EXPECT_EQ(dc.calls, "M100,100 L120,100 M120,100 L120,80 M120,80 L100,100 ");

  // A bulge of 1 is a half circle to the right of the way there: below a segment that runs to the right.
  const float bulge[] = {1, 0, 0};
  for (const float sign : {1.0F, -1.0F}) {
    const float signedBulge[] = {sign * bulge[0], 0};
    dxf.Close();
    dxf.New_MemDxf();
    dxf.Write_Pline(2, x, y, zero, signedBulge, 0, zero, zero, "0", "1", "BYLAYER");
    draw();
    expect_on_circle(dc.segments, 110, 100, 10);
    for (const auto& s : dc.segments) EXPECT_GE(sign * static_cast<float>(s.to.y - 100), -1);
  }
}

TEST_F(Display, FittedAndSplineVerticesAreChosenByTheirFlags) {
  auto* polyline = new ACAD_POLYLINE;
  polyline->m_Vertices.SetSize(4);
  const int flags[] = {1, 8, 1, 8};
  for (int i = 0; i < 4; ++i) {
    polyline->m_Vertices[i].m_Point.x = static_cast<float>(i);
    polyline->m_Vertices[i].m_nFlags = flags[i];
  }
  dxf.m_EntityList.AddTail(polyline);
  const struct {
    int flags;
    const char* calls;
  } cases[] = {{2, "M100,100 L120,100 "},
               {4, "M110,100 L130,100 "},
               {0, "M100,100 L110,100 M110,100 L120,100 M120,100 L130,100 "}};
  for (const auto& c : cases) {
    polyline->m_nFlags = c.flags;
    draw();
    EXPECT_EQ(dc.calls, c.calls);
  }
}

TEST_F(Display, WidePolylinesAndSolidsAreFilled) {
  dxf.Write_Pline(0, 0, 0, 4, 0, 0, 1, 1, "0", "1", "BYLAYER");
  dxf.Write_Pline(0, 0, 0, 4, 0, 0, 0.1F, 0.1F, "0", "1", "BYLAYER");  // one pixel wide: a line
  dxf.Write_Solid(0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, "0", "5", "BYLAYER");
  draw();
  ASSERT_EQ(dc.fills.size(), 2U);
  EXPECT_EQ(dc.segments.size(), 1U);
  EXPECT_THAT(dc.fills[0].points, ElementsAre(CPoint(100, 95), CPoint(140, 95), CPoint(140, 105), CPoint(100, 105)));
  EXPECT_EQ(dc.fills[0].color, 0x0000FFU);
  EXPECT_EQ(dc.fills[0].rule, qv::FillRule::Winding);
  // First, second, fourth, third.
  EXPECT_THAT(dc.fills[1].points, ElementsAre(CPoint(100, 100), CPoint(110, 100), CPoint(110, 90), CPoint(100, 90)));
}

TEST_F(Display, ADotOfTwoWideHalfCirclesIsFilledWhole) {
  const float x[] = {0, 0};
  const float y[] = {1, -1};
  const float zero[] = {0, 0};
  const float one[] = {1, 1};
  const float two[] = {2, 2};
  dxf.Write_Pline(2, x, y, zero, one, 1, two, two, "0", "1", "BYLAYER");
  qv::BitmapContext bitmap(201, 201, 0xFFFFFF);
  dxf.Draw(&bitmap, &coor);
  for (int py = 60; py <= 140; ++py)
    for (int px = 60; px <= 140; ++px) {
      const double r = std::hypot(px - 100, py - 100);
      if (std::fabs(r - 20) < 1.5) continue;
      EXPECT_EQ(bitmap.GetPixel(px, py), r < 20 ? 0x0000FFU : 0xFFFFFFU) << px << ',' << py;
    }
}

TEST_F(Display, InsertsPlaceTheirBlocksByTranslation) {
  auto* block = new ACAD_BLOCK;
  qv::copy_text(block->m_szName, "DOOR");
  block->m_Base = {1, 1, 0};
  block->m_EntityList.AddTail(new ACAD_LINE);
  block->m_EntityList.AddTail(new ACAD_INSERT);
  dxf.m_BlockList.AddTail(block);
  for (const char* name : {"DOOR", "door", ""}) {
    auto* insert = new ACAD_INSERT;
    qv::copy_text(insert->m_szBlock, name);
    insert->m_Insert = {3, 2, 0};
    insert->m_fScaleX = 9;
    insert->m_fRotation = 30;
    dxf.m_EntityList.AddTail(insert);
  }
  draw();
  const std::string shown = "M120,90 L130,80 ";
  EXPECT_EQ(dc.calls, shown);
  auto* const insert = static_cast<ACAD_INSERT*>(dxf.m_EntityList.GetHead());
  dc.clear();
  block->Draw(&dc, &coor, insert);
  EXPECT_EQ(dc.calls, shown);
  dc.clear();
  block->Draw3D(&dc, &coor, 0, std::numbers::pi_v<float> / 2, insert);
  EXPECT_EQ(dc.calls, shown);
  dc.clear();
  DXF file;  // not in memory: draws nothing
  dc.clear();
  file.Draw(&dc, &coor);
  EXPECT_EQ(dc.calls, "");
}

TEST_F(Display, FacesAreTheirEdgesAndPointsOnePixel) {
  dxf.Write_3DFace(0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0, "0", "1", "BYLAYER");
  dxf.Write_Point(2, 0, 0, "0");
  draw();
  EXPECT_EQ(dc.segments.size(), 4U);
  ASSERT_EQ(dc.pixels.size(), 1U);
  EXPECT_EQ(dc.pixels[0].at, CPoint(120, 100));
}

TEST_F(Display, ProjectedDrawingIsTheProjectionDrawnInPlan) {
  dxf.Write_Line(0, 0, 0, 1, 2, 3, "0", "1", "BYLAYER");
  dxf.Draw3D(&dc, &coor, 0, std::numbers::pi_v<float> / 2);
  EXPECT_EQ(dc.calls, "M100,100 L110,80 ");
  dc.clear();
  dxf.Draw3D(&dc, &coor, 0, 0);  // from the front: z is up
  EXPECT_EQ(dc.calls, "M100,100 L110,70 ");
}

TEST_F(Display, AZoomOfAThousandShowsTheSameLinesInTheSamePlaces) {
  // Lines through and near a point far from the origin, as a plan in millimetres has them.
  const double x0 = 51234.5;
  const double y0 = -8765.25;
  struct Line {
    double x1, y1, x2, y2;
  };
  std::vector<Line> lines;
  for (int i = 0; i < 24; ++i) {
    const double a = i * std::numbers::pi / 24;
    const double off = 0.02 * i;
    const double nx = -std::sin(a) * off;
    const double ny = std::cos(a) * off;
    lines.push_back({x0 + nx - 900 * std::cos(a), y0 + ny - 900 * std::sin(a), x0 + nx + 900 * std::cos(a),
                     y0 + ny + 900 * std::sin(a)});
  }
  for (Line& l : lines) {
    for (double* v : {&l.x1, &l.y1, &l.x2, &l.y2}) *v = static_cast<float>(*v);
    dxf.Write_Line(static_cast<float>(l.x1), static_cast<float>(l.y1), 0, static_cast<float>(l.x2),
                   static_cast<float>(l.y2), 0, "0", "1", "BYLAYER");
  }
  constexpr int kSize = 801;
  host.SetScreenSize({kSize, kSize});
  const double scale = 0.4 * 1000;
  coor.Init(CFPoint(static_cast<float>(x0 - 400 / scale), static_cast<float>(y0 + 400 / scale)),
            static_cast<float>(scale), 1);
  qv::BitmapContext bitmap(kSize, kSize, 0xFFFFFF);
  dxf.Draw(&bitmap, &coor);
  // A pixel is drawn just when a line passes it; rounding of ends and clipping may cost two pixels.
  int drawn = 0;
  for (int py = 0; py < kSize; ++py)
    for (int px = 0; px < kSize; ++px) {
      const double x = coor.GetOrigin().x + px / scale;
      const double y = coor.GetOrigin().y - py / scale;
      double nearest = 1e9;
      for (const Line& l : lines) {
        const double length = std::hypot(l.x2 - l.x1, l.y2 - l.y1);
        const double cross = (l.x2 - l.x1) * (y - l.y1) - (l.y2 - l.y1) * (x - l.x1);
        nearest = std::min(nearest, std::fabs(cross) / length * scale);
      }
      const bool is_drawn = bitmap.GetPixel(px, py) != 0xFFFFFF;
      drawn += is_drawn;
      ASSERT_FALSE(is_drawn && nearest > 2) << px << ',' << py;
    }
  EXPECT_GT(drawn, 24 * 500);
}

TEST_F(Display, AbsurdCoordinatesNeverReachTheDevice) {
  const float values[] = {0, 1e9F, -1e9F, 1e30F, -1e38F, std::numeric_limits<float>::infinity(), std::nanf("")};
  for (const float a : values)
    for (const float b : values) {
      dxf.Write_Line(a, b, 0, b, a, 0, "0", "1", "BYLAYER");
      dxf.Write_Circle(a, 0, 0, b, "0", "1", "BYLAYER");
      dxf.Write_Arc(a, b, 0, b, a, b, "0", "1", "BYLAYER");
      dxf.Write_Pline(a, b, 0, b, a, 0, b, b, "0", "1", "BYLAYER");
      dxf.Write_Solid(a, b, 0, b, a, 0, 0, 0, 0, a, a, 0, "0", "1", "BYLAYER");
      dxf.Write_Text(a, b, 0, b, a, "text", "STANDARD", "0", "1", "BYLAYER");
    }
  for (const float scale : {1.0F, 1e9F, 1e-9F, 0.0F}) {
    coor.SetScale(scale);
    draw();
    for (const auto& s : dc.segments)
      for (const CPoint& p : {s.from, s.to}) {
        EXPECT_LE(std::abs(p.x), 100000);
        EXPECT_LE(std::abs(p.y), 100000);
      }
  }
}

TEST_F(Display, ArcsAreDrawnAsFarAsTheyAreMeasured) {
  constexpr double kTurn = 2 * std::numbers::pi;
  coor.SetOrigin({-50, 50});
  const struct {
    float start;
    float end;
    double sweep;
  } cases[] = {{0.1F, 0, kTurn}, {0, 359.9F, kTurn}, {359.995F, 0, 0},  {30, 30, 0},
               {0, 360, kTurn},  {0, 720, kTurn},    {10, 200, 3.3161}, {90, 0, 0.75 * kTurn}};
  for (const auto& c : cases) {
    ACAD_ARC arc;
    arc.m_fRadius = 15;
    arc.m_fStartAngle = c.start;
    arc.m_fEndAngle = c.end;
    dc.clear();
    arc.Draw(&dc, &coor, 0, 0);
    EXPECT_NEAR(drawn_length(), 150 * c.sweep, 12) << c.start << " to " << c.end;
  }
  // Two vertices near each other with a large bulge are a circle but for the gap between them.
  const float x[] = {0, 0.05F};
  const float zero[] = {0, 0};
  const float bulge[] = {1000, 0};
  dxf.Write_Pline(2, x, zero, zero, bulge, 0, zero, zero, "0", "1", "BYLAYER");
  draw();
  EXPECT_NEAR(drawn_length(), 125 * kTurn, 10);
}

TEST_F(Display, JointsOfWideSegmentsHaveNoHoles) {
  std::mt19937 random(20265);
  const auto between = [&](double a, double b) { return a + (b - a) * (static_cast<double>(random()) / 4294967296.0); };
  coor = CFCoor(CFPoint(0, 100), 4, 1);
  for (int n = 0; n < 60; ++n) {
    const double angle = between(0, 6.28);
    const double turned = angle + between(-2.5, 2.5);
    const double cx = between(49, 51);
    const double cy = between(49, 51);
    const double width = between(1, 12);
    const float x[] = {static_cast<float>(cx - 20 * std::cos(angle)), static_cast<float>(cx),
                       static_cast<float>(cx + 20 * std::cos(turned))};
    const float y[] = {static_cast<float>(cy - 20 * std::sin(angle)), static_cast<float>(cy),
                       static_cast<float>(cy + 20 * std::sin(turned))};
    const float zero[] = {0, 0, 0};
    const auto w = static_cast<float>(width);
    const float widths[] = {w, w, w};
    dxf.New_MemDxf();
    dxf.Write_Pline(3, x, y, zero, zero, 0, widths, widths, "0", "1", "BYLAYER");
    qv::BitmapContext bitmap(400, 400, 0xFFFFFF);
    dxf.Draw(&bitmap, &coor);
    // What lies within half a width of the middle line, about the joint, is covered.
    for (int py = 150; py < 250; ++py)
      for (int px = 150; px < 250; ++px) {
        double off = 1e9;
        for (int i = 0; i < 2; ++i)
          off =
              std::min<double>(off, get_dist_point_segment(static_cast<float>(px) / 4, 100 - static_cast<float>(py) / 4,
                                                           x[i], y[i], x[i + 1], y[i + 1]));
        if (off >= width / 2 - 0.4) continue;
        ASSERT_EQ(bitmap.GetPixel(px, py), 0x0000FFU) << n << ": " << px << ',' << py;
      }
  }
}

TEST_F(Display, AWideLineFarBeyondTheWindowIsCutToIt) {
  dxf.Write_Pline(-1e6F, 0, 0, 1e6F, 0, 0, 2, 2, "0", "1", "BYLAYER");
  draw();
  ASSERT_EQ(dc.fills.size(), 1U);
  CRgn region;
  region.CreatePolygonRgn(dc.fills[0].points.data(), static_cast<int>(dc.fills[0].points.size()), dc.fills[0].rule);
  const CRect box = region.GetRgnBox();
  EXPECT_TRUE(box.left < 0 && box.right > 1920 && box.top == 90 && box.bottom == 110);
}

TEST_F(Display, EachCallTakesTheLimitsOfItsDevice) {
  dxf.Write_Line(-50, 0, 0, 5000, 0, 0, "0", "1", "BYLAYER");
  auto& line = *static_cast<ACAD_LINE*>(dxf.m_EntityList.GetHead());
  for (const int width : {1000, 6000}) {
    std::optional<RecordingContext> page(std::in_place, CSize(width, 800));  // both at one address
    page->printing = true;
    line.Draw(&*page, &coor, 0, 0);
    ASSERT_EQ(page->segments.size(), 1U);
    EXPECT_EQ(page->segments[0].to.x, width);
  }
  for (const int width : {800, 3000}) {
    host.SetScreenSize({width, 600});
    dc.clear();
    dxf.Draw3D(&dc, &coor, 0, std::numbers::pi_v<float> / 2);
    EXPECT_EQ(dc.segments.back().to.x, width);
  }
}

/// A kind of a program's own: a mark at the place where it believes to stand.
struct OwnKind : ACAD_ENTITY {
  void Draw(CDC* dc, CFCoor* coor, float dx, float dy) override { mark(dc, coor->FPtoDP(CFPoint(dx, dy))); }
  void Draw3D(CDC* dc, CFCoor* coor, float, float) override { mark(dc, coor->FPtoDP(CFPoint(0, 0))); }
  CFRect GetFRect() override { return {-1, -1, 1, 1}; }
  CFRect GetFRect3D(float, float) override { return {-2, -2, 2, 2}; }
  int HitTest(const CFRegion& region, int, float, float) override { return region.InRegion(CFPoint(0.01F, 0.01F)); }
  static void mark(CDC* dc, CPoint at) { dc->SetPixel(at.x, at.y, 0); }
};

/// One of the nine kinds with a drawing of its own.
struct OwnLine : ACAD_LINE {
  void Draw(CDC* dc, CFCoor* coor, float dx, float dy) override { OwnKind::mark(dc, coor->FPtoDP(CFPoint(dx, dy))); }
  void Draw3D(CDC* dc, CFCoor* coor, float, float) override { OwnKind::mark(dc, coor->FPtoDP(CFPoint(0, 0))); }
};

TEST_F(Display, AProgramsOwnKindsAnswerForThemselves) {
  constexpr float kTop = std::numbers::pi_v<float> / 2;
  auto* block = new ACAD_BLOCK;
  qv::copy_text(block->m_szName, "OWN");
  block->m_EntityList.AddTail(new OwnKind);
  dxf.m_BlockList.AddTail(block);
  auto* insert = new ACAD_INSERT;
  qv::copy_text(insert->m_szBlock, "OWN");
  insert->m_Insert = {5, 0, 0};
  dxf.m_EntityList.AddTail(insert);
  dxf.m_EntityList.AddTail(new OwnLine);
  dxf.m_EntityList.AddTail(new OwnKind);
  for (const bool projected : {false, true}) {
    dc.clear();
    projected ? dxf.Draw3D(&dc, &coor, 0, kTop) : dxf.Draw(&dc, &coor);
    EXPECT_EQ(dc.calls, "P150,100 P100,100 P100,100 ") << projected;
  }
  EXPECT_EQ(dxf.GetFRect().x1, -1);
  EXPECT_EQ(dxf.GetFRect().x2, 6);
  EXPECT_EQ(dxf.GetFRect3D(0, kTop).x2, 7);
  EXPECT_EQ(dxf.HitTest(CFRect(4, -1, 6, 1), 0, 0, kTop), 1);
  EXPECT_EQ(dxf.HitTest(CFRect(-0.5F, -0.5F, 0.5F, 0.5F), 0, 0, kTop), 3);
}

TEST_F(Display, AnAppearanceBringsItsPalette) {
  dxf.Write_Line(0, 0, 0, 1, 0, 0, "0", "200", "BYLAYER");
  dxf.Write_Solid(0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, "0", "200", "BYLAYER");
  qv::Palette palette{};
  palette[200] = 0x123456;
  dxf.Draw(&dc, &coor, {&palette});
  EXPECT_EQ(dc.segments.at(0).color, 0x123456U);
  EXPECT_EQ(dc.fills.at(0).color, 0x123456U);
}

}  // namespace
