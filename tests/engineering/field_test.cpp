#include "qvtools/engineering/field.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>

#include "qvtools/engineering/field_locator.h"
#include "qvtools/fonts/shx.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/system/textfile.h"
#include "support/full_disk.h"
#include "support/recording_context.h"
#include "support/recording_host.h"
#include "support/temporary_directory.h"

namespace {

void add_node(CChang& field, float x, float y, float value) {
  CChangNode node;
  node.x = x;
  node.y = y;
  for (int k = 0; k < 5; ++k) node.value[k] = value * static_cast<float>(k + 1);
  field.m_Nodes.Add(node);
}

void add_tri(CChang& field, int a, int b, int c) {
  field.m_Tris.Add(CChangTri{{a, b, c}});
}

/// The unit square in two counter-clockwise triangles, with the value x + 2 y.
void make_square(CChang& field) {
  add_node(field, 0, 0, 0);
  add_node(field, 1, 0, 1);
  add_node(field, 1, 1, 3);
  add_node(field, 0, 1, 2);
  add_tri(field, 1, 2, 3);
  add_tri(field, 1, 3, 4);
}

struct FieldFile : testing::Test {
  void load(CChang& field, const std::string& text) {
    directory.write("field", text);
    std::FILE* const file = qv::open_text(directory.path("field").c_str(), "rt");
    EXPECT_EQ(field.LoadData(file), 1);
    std::fclose(file);
  }
  qvtest::TemporaryDirectory directory;
};

TEST_F(FieldFile, HasTheDocumentedBytesAndComesBack) {
  CChang field;
  make_square(field);
  add_node(field, -3.4e38F, 3.4e38F, -3.4e37F);
  std::FILE* file = qv::open_text(directory.path("field").c_str(), "wt");
  EXPECT_EQ(field.SaveData(file), 1);
  std::fclose(file);
  const std::string text = directory.read("field");
  EXPECT_EQ(text.substr(0, 5), "5,2\r\n");
  EXPECT_NE(text.find("\r\n1.000000,0.000000,1.000000,2.000000,3.000000,4.000000,5.000000\r\n"), std::string::npos);
  EXPECT_EQ(text.substr(text.size() - 14), "1,2,3\r\n1,3,4\r\n");
  CChang again;
  load(again, text);
  ASSERT_EQ(again.m_Nodes.GetSize(), 5);
  ASSERT_EQ(again.m_Tris.GetSize(), 2);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(again.m_Nodes[i].value[4], field.m_Nodes[i].value[4]);
  EXPECT_EQ(again.m_Tris[1].node[2], 4);
  again.m_Nodes[0].value[0] = 7;
  load(again, text);
  EXPECT_EQ(again.m_Nodes.GetSize(), 10) << "appended";
  EXPECT_EQ(again.m_Tris[2].node[0], 1) << "counted from the first node of all";
  again.Clear();
  EXPECT_EQ(again.m_Nodes.GetSize() + again.m_Tris.GetSize(), 0);
}

TEST_F(FieldFile, EndsWithItsFile) {
  for (const auto& [text, nodes, tris] : std::vector<std::tuple<std::string, int, int>>{
           {"", 0, 0},
           {"2000000000,2000000000\n1,2,3\n", 1, 0},
           {"2,1\n1 2 3\n\n3,4", 2, 1},
           {"-5,-7\n1,2\n", 0, 0},
           {"x\n", 0, 0},
       }) {
    CChang field;
    load(field, text);
    EXPECT_EQ(field.m_Nodes.GetSize(), nodes) << text;
    EXPECT_EQ(field.m_Tris.GetSize(), tris) << text;
  }
  CChang field;
  load(field, "2,1\n1 2 3\n\n3,4");
  EXPECT_EQ(field.m_Nodes[0].value[0], 3);
  EXPECT_EQ(field.m_Nodes[0].value[1] + field.m_Nodes[1].x, 0);
  EXPECT_EQ(field.m_Tris[0].node[2], 0);
}

TEST_F(FieldFile, ReportsAFullDisk) {
  QV_NEEDS_FULL_DISK();
  CChang field;
  make_square(field);
  std::FILE* const file = std::fopen(qvtest::kFullDisk, "w");
  EXPECT_EQ(field.SaveData(file), 0);
  std::fclose(file);
}

TEST(Field, HasAValueAtEveryPoint) {
  CChang field;
  EXPECT_EQ(field.Get_Value(1, 1), 0);
  make_square(field);
  EXPECT_FLOAT_EQ(field.Get_Value(0.75F, 0.25F), 1.25F);
  EXPECT_FLOAT_EQ(field.Get_Value(0.25F, 0.75F), 1.75F);
  EXPECT_EQ(field.Get_Value(0.00005F, 0), 0) << "a node";
  EXPECT_EQ(field.Get_Value(0.25F, 0.25F), 0) << "an edge: the nearest node";
  EXPECT_EQ(field.Get_Value(0.5F, 0.5F), 0) << "the first of equally near nodes";
  EXPECT_EQ(field.Get_Value(3, 3), 3) << "outside";
  EXPECT_EQ(field.Get_Value(2e10F, 0), 0) << "too far from any node";
  for (const auto& [index, value] : {std::pair{2, 9}, {4, 15}, {-1, 3}, {5, 15}, {1 << 30, 15}}) {
    field.m_nValueIndex = index;
    EXPECT_EQ(field.Get_Value(3, 3), static_cast<float>(value));
  }
  EXPECT_EQ(field.PointInChang(0.75F, 0.25F), 1);
  EXPECT_EQ(field.PointInChang(1.00005F, 1), 1);
  EXPECT_EQ(field.PointInChang(0.25F, 0.25F) + field.PointInChang(1.001F, 1), 0);
}

/// A field of scattered nodes and triangles, among them clockwise, flat, huge and impossible ones.
void make_wild(CChang& field, std::mt19937& random, float offset, float size, int count) {
  std::uniform_real_distribution<float> place(offset, offset + size);
  for (int i = 0; i < count; ++i) add_node(field, place(random), place(random), static_cast<float>(i));
  std::uniform_int_distribution<int> number(1, count);
  for (int i = 0; i < count; ++i) {
    const int a = number(random);
    add_tri(field, a, std::min(a + 1, count), number(random));
  }
  field.m_Nodes.Add(field.m_Nodes[0]);
  add_node(field, NAN, 0, 1);
  add_node(field, INFINITY, offset, 1);
  add_tri(field, 0, 1, 2);
  add_tri(field, 1, 2, count + 4);
  add_tri(field, -1, 1 << 30, 3);
  add_tri(field, 1, 2, count + 2);
  add_tri(field, count + 3, 1, 2);
}

TEST(FieldLocator, AnswersAsTheFieldDoes) {
  std::mt19937 random(20301);
  for (const auto& [offset, size, count] : std::vector<std::tuple<float, float, int>>{{0.0F, 1.0F, 1},
                                                                                      {0.0F, 10.0F, 300},
                                                                                      {-5.0F, 10.0F, 40},
                                                                                      {3e5F, 2.0F, 300},
                                                                                      {1e7F, 8.0F, 60},
                                                                                      {0.0F, 0.0004F, 50},
                                                                                      {-1e9F, 2e9F, 50},
                                                                                      {7.0F, 0.0F, 5}}) {
    CChang field;
    make_wild(field, random, offset, size, count);
    const qv::FieldLocator locator(field);
    std::uniform_real_distribution<float> place(offset - size / 4, offset + 1.25F * size);
    for (int i = 0; i < 3000; ++i) {
      float x = place(random), y = place(random);
      if (i % 7 == 0) x = field.m_Nodes[i % count].x + 0.00007F, y = field.m_Nodes[i % count].y;
      if (i % 50 == 0) x *= 100;
      EXPECT_EQ(locator.Value(x, y), field.Get_Value(x, y)) << x << ',' << y << " at " << offset;
      EXPECT_EQ(locator.Contains(x, y), field.PointInChang(x, y)) << x << ',' << y << " at " << offset;
    }
    for (const float odd : {NAN, INFINITY, -INFINITY, 3e38F}) {
      EXPECT_EQ(locator.Value(odd, offset), field.Get_Value(odd, offset)) << odd;
    }
  }
  const CChang none;
  EXPECT_EQ(qv::FieldLocator(none).Value(1, 2), 0);
}

/// Shows a field in metres at `scale` pixels a metre, its origin `height` pixels down.
CFCoor transform(float scale, float height) {
  return CFCoor(CFPoint(0, height / scale * 1000), scale / 1000, 1);
}

COLORREF ramp(int n) {
  int r, g, b;
  Get_RGB(n, r, g, b);
  return qv::rgb(static_cast<unsigned>(r), static_cast<unsigned>(g), static_cast<unsigned>(b));
}

TEST(FieldPicture, ColoursEachPixelByItsValue) {
  CChang field;
  make_square(field);
  field.m_nValueIndex = 1;
  qvtest::RecordingContext dc;
  CRect window(0, 0, 300, 300);
  CFCoor coor = transform(100, 100);
  EXPECT_EQ(field.Draw_CaiSeTu(&dc, &window, &coor), 1);
  std::map<std::pair<int, int>, COLORREF> seen;
  for (const auto& pixel : dc.pixels) seen[{pixel.at.x, pixel.at.y}] = pixel.color;
  EXPECT_EQ(seen.size(), 101u * 101u) << "edges included";
  EXPECT_EQ(dc.pixels.size(), 101u * 101u + 101u) << "the diagonal twice";
  for (int y = 0; y <= 100; ++y) {
    for (int x = 0; x <= 100; ++x) {
      const double position = (x + 2 * (100 - y)) / 300.0 * 1280;
      const COLORREF color = seen.at({x, y});
      EXPECT_TRUE(color == ramp(static_cast<int>(position + 1e-6)) || color == ramp(static_cast<int>(position - 1e-6)));
    }
  }
}

TEST(FieldPicture, LeavesOutWhatIsNotToBeSeen) {
  CChang field;
  make_square(field);
  add_tri(field, 1, 2, 9);
  add_tri(field, 0, 2, 3);
  qvtest::RecordingContext dc;
  const auto pixels = [&](CFCoor coor) {
    CRect window(0, 0, 50, 20);
    dc.clear();
    field.Draw_CaiSeTu(&dc, &window, &coor);
    for (const auto& pixel : dc.pixels)
      EXPECT_TRUE(pixel.at.x >= 0 && pixel.at.x <= 50 && pixel.at.y >= 0 && pixel.at.y <= 20);
    return dc.pixels.size();
  };
  EXPECT_EQ(pixels(transform(100, 100)), 51u * 21u) << "clipped to the window, its right and bottom included";
  EXPECT_EQ(pixels(transform(100, -200)), 0u);
  EXPECT_EQ(pixels(CFCoor(CFPoint(0, 0), 0.01F, 0)), 0u) << "turned over";
  EXPECT_GE(pixels(transform(1e8F, 5e7F)), 51u * 21u) << "far beyond the window";
  EXPECT_GE(pixels(CFCoor(CFPoint(0, 0), 0.0001F, 1)), 1u) << "shrunk to a pixel";
}

TEST(FieldPicture, SurvivesAnyValues) {
  CFCoor coor = transform(20, 20);
  CRect window(0, 0, 30, 30);
  for (const float value : {2.5F, NAN, INFINITY, 3e38F}) {
    CChang field;
    make_square(field);
    for (CChangNode& node : field.m_Nodes) node.value[0] = 2.5F;
    field.m_Nodes[1].value[0] = value;
    qvtest::RecordingContext dc;
    field.Draw_CaiSeTu(&dc, &window, &coor);
    EXPECT_GE(dc.pixels.size(), 21u * 21u);
    if (value == 2.5F) {
      for (const auto& pixel : dc.pixels) EXPECT_EQ(pixel.color, ramp(0)) << "all values equal";
    }
  }
}

struct FieldLegend : testing::Test {
  FieldLegend() : before(G_ShapeFont) {
    G_ShapeFont = CShx();
    G_ShapeFont.SetTxtFont(QV_FONTS, "txt.shx");
    make_square(field);
  }
  ~FieldLegend() override { G_ShapeFont = before; }
  /// The box of all strokes, left, top, right, bottom.
  static CRect strokes(const qvtest::RecordingContext& dc) {
    CRect box(INT_MAX, INT_MAX, INT_MIN, INT_MIN);
    for (const auto& s : dc.segments) {
      box = {std::min({box.left, s.from.x, s.to.x}), std::min({box.top, s.from.y, s.to.y}),
             std::max({box.right, s.from.x, s.to.x}), std::max({box.bottom, s.from.y, s.to.y})};
    }
    return box;
  }
  qvtest::RecordingHost host{CSize(1000, 500)};
  CChang field;
  CFCoor coor = transform(10, 10);
  CRect window{0, 0, 300, 300};
  CShx before;
};

TEST_F(FieldLegend, ShowsTheRampAndItsEnds) {
  qvtest::RecordingContext dc;
  const CPen pen{qv::PenStyle::Solid, 1, 0x123456};
  dc.SelectObject(&pen);
  field.Draw_CaiSeTu(&dc, &window, &coor);
  ASSERT_EQ(dc.fills.size(), 256u * 32u);
  EXPECT_EQ(dc.fills[0].points, (std::vector<CPoint>{{10, 40}, {11, 40}, {11, 41}, {10, 41}}));
  EXPECT_EQ(dc.fills[0].color, ramp(0));
  EXPECT_EQ(dc.fills.back().points[0], CPoint(41, 295));
  EXPECT_EQ(dc.fills.back().color, ramp(1275));
  EXPECT_EQ(dc.fills[0].rule, qv::FillRule::Winding);
  ASSERT_FALSE(dc.segments.empty());
  for (const auto& segment : dc.segments) EXPECT_EQ(segment.color, CDC::StockWhitePen()->color);
  const CRect box = strokes(dc);
  EXPECT_GE(box.left, 50);
  EXPECT_NEAR(box.top, 40 - 12, 1) << "the base line of the least value lies at 40";
  EXPECT_NEAR(box.bottom, 296, 1);
  EXPECT_EQ(&dc.Pen(), &pen) << "restored";
}

TEST_F(FieldLegend, GrowsWithAPrintersPage) {
  qvtest::RecordingContext dc(CSize(3000, 1250));
  dc.printing = true;
  coor = transform(2000, 2000);
  field.Draw_CaiSeTu(&dc, &window, &coor);
  EXPECT_EQ(dc.fills[0].points, (std::vector<CPoint>{{25, 100}, {27, 100}, {27, 102}, {25, 102}})) << "2.5 dots a unit";
  EXPECT_EQ(dc.segments[0].color, CDC::StockBlackPen()->color);
  EXPECT_NEAR(strokes(dc).bottom, 740, 1);
  const auto last = std::max_element(dc.pixels.begin(), dc.pixels.end(),
                                     [](const auto& a, const auto& b) { return a.at.y < b.at.y; });
  EXPECT_EQ(last->at.y, 1250) << "the page, not the window";
}

}  // namespace
