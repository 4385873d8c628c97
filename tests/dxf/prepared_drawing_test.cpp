#include "qvtools/dxf/view/prepared_drawing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <random>

#include "qvtools/fonts/shx.h"
#include "qvtools/geometry/values/region.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/text/gbk_text.h"
#include "support/recording_host.h"

namespace {

constexpr int kSize = 300;
constexpr float kQuarter = std::numbers::pi_v<float> / 2;

/// The project's text font for the life of the object.
class TextFont {
 public:
  TextFont() : before_(G_ShapeFont) {
    G_ShapeFont = CShx();
    G_ShapeFont.SetTxtFont(QV_FONTS, "txt.shx");
  }
  ~TextFont() { G_ShapeFont = before_; }

 private:
  CShx before_;
};

/// Drawings of every kind of entity at random, and pictures of them.
class PreparedDrawing : public testing::Test {
 protected:
  float number(float low, float high) { return std::uniform_real_distribution<float>(low, high)(random); }
  float place() { return number(-1000, 1000); }

  void compose(int entities) {
    dxf.Close();
    dxf.New_MemDxf();
    dxf.Add_STyle("HZ", "txt", "hztxt");
    add_block();
    for (int i = 0; i < entities; ++i) add(static_cast<int>(random() % 10));
  }

  void add_block() {
    auto* block = new ACAD_BLOCK;
    qv::copy_text(block->m_szName, "B");
    block->m_Base = {5, 5, 0};
    auto* text = new ACAD_TEXT;
    qv::copy_text(text->m_szText, "KL-1(2)");
    text->m_fHeight = 20;
    block->m_EntityList.AddTail(text);
    auto* line = new ACAD_LINE;
    line->m_End = {40, -30, 10};
    block->m_EntityList.AddTail(line);
    dxf.m_BlockList.AddTail(block);
  }

  void add(int kind) {
    const float x = place(), y = place(), z = number(-50, 50), r = number(0, 60);
    const float turn = number(-360, 720);
    const char* const color = kind % 2 ? "1" : "5";
    switch (kind) {
      case 0:
        dxf.Write_Point(x, y, z, "0");
        break;
      case 1:
        dxf.Write_Text(x, y, z, r, turn, random() % 2 ? "Ag(y)200" : "\xBB\xEC 12", random() % 2 ? "HZ" : "STANDARD",
                       "0", color, "BYLAYER");
        break;
      case 2:
        dxf.Write_Circle(x, y, z, r, "0", color, "BYLAYER");
        break;
      case 3:
        dxf.Write_Arc(x, y, z, r, turn, number(-360, 720), "0", color, "BYLAYER");
        break;
      case 4: {
        const float px[] = {x, x + r, x + 2 * r}, py[] = {y, y + r, y - r}, pz[] = {z, z, 0};
        const float bulge[] = {number(-2, 2), 0, number(-1, 1)}, width[] = {r / 4, r / 2, r / 8};
        const int flags[] = {0, 1, 2, 4};
        dxf.Write_Pline(3, px, py, pz, bulge, flags[random() % 4], width, width, "0", color, "BYLAYER");
        auto& polyline = *static_cast<ACAD_POLYLINE*>(dxf.m_EntityList.GetTail());
        for (ACAD_VERTEX& vertex : polyline.m_Vertices) vertex.m_nFlags = random() % 2 ? polyline.m_nFlags * 2 : 1;
        break;
      }
      case 5:
        dxf.Write_Solid(x, y, z, x + r, y, z, x, y + r, z, x + r, y + r, 0, "0", color, "BYLAYER");
        break;
      case 6:
        dxf.Write_3DFace(x, y, z, x + r, y, z, x, y + r, 0, x + r, y + r, z, "0", color, "BYLAYER");
        break;
      case 7: {
        auto* insert = new ACAD_INSERT;
        qv::copy_text(insert->m_szBlock, random() % 8 ? "B" : "none");
        insert->m_Insert = {x, y, z};
        dxf.m_EntityList.AddTail(insert);
        break;
      }
      default:
        dxf.Write_Line(x, y, z, x + number(-300, 300), y + number(-300, 300), 0, "0", color, "BYLAYER");
    }
  }

  static void add_line(ACAD_BLOCK& block, const CFPoint& from, const CFPoint& until) {
    auto* const line = new ACAD_LINE;
    line->m_Start = {from.x, from.y, 0};
    line->m_End = {until.x, until.y, 0};
    line->m_nColor = 1 + block.m_EntityList.GetCount() % 2;
    block.m_EntityList.AddTail(line);
  }
  /// A block of so many lines within a square.
  ACAD_BLOCK& add_dense_block(int lines, int size) {
    auto* const block = new ACAD_BLOCK;
    qv::copy_text(block->m_szName, "DENSE");
    const auto end = [&] {
      return CFPoint(static_cast<float>(random() % (size + 1)), static_cast<float>(random() % (size + 1)));
    };
    for (int i = 0; i < lines; ++i) add_line(*block, end(), end());
    dxf.m_BlockList.AddTail(block);
    return *block;
  }
  void add_insert(const char* block, float x, float y) {
    auto* const insert = new ACAD_INSERT;
    qv::copy_text(insert->m_szBlock, block);
    insert->m_Insert = {x, y, 0};
    dxf.m_EntityList.AddTail(insert);
  }

  /// Whether each pixel that is set in one picture has one at its place or beside it in the other, or beyond its
  /// border.
  static bool lies_within_a_pixel(const qv::BitmapContext& picture, const qv::BitmapContext& other) {
    const auto is_set = [](const qv::BitmapContext& bitmap, int x, int y) {
      return x < 0 || y < 0 || x >= kSize || y >= kSize || bitmap.GetPixel(x, y) != 0;
    };
    for (int p = 0; p < kSize * kSize; ++p) {
      bool found = !is_set(picture, p % kSize, p / kSize);
      for (int i = 0; i < 9 && !found; ++i) found = is_set(other, p % kSize + i % 3 - 1, p / kSize + i / 3 - 1);
      if (!found) return false;
    }
    return true;
  }

  /// A view on the whole, or on a part anywhere.
  CFCoor view() {
    const float scale = std::exp(number(-2.5F, 3));
    return {CFPoint(place(), place()), scale, random() % 4 != 0};
  }

  static int differences(const qv::BitmapContext& a, const qv::BitmapContext& b) {
    int n = 0;
    for (int i = 0; i < kSize * kSize; ++i) n += a.Pixels()[i] != b.Pixels()[i];
    return n;
  }

  qvtest::RecordingHost host;
  TextFont font;
  std::mt19937 random{20261121};
  DXF dxf;
};

TEST_F(PreparedDrawing, ShowsThePictureOfTheDocument) {
  const float angles[][2] = {{0, 0}, {0.7F, 0.4F}, {-2, 1}};
  int drawn = 0;
  for (int round = 0; round < 12; ++round) {
    compose(round < 2 ? round : 400);
    qv::PreparedDrawing plan(dxf);
    const auto& [a, b] = angles[round % 3];
    qv::PreparedDrawing turned(dxf, a, b);
    for (int i = 0; i < 20; ++i) {
      CFCoor coor = view();
      qv::BitmapContext expected(kSize, kSize, 0xFFFFFF), found(kSize, kSize, 0xFFFFFF), blank(kSize, kSize, 0xFFFFFF);
      dxf.Draw(&expected, &coor);
      plan.Draw(&found, &coor);
      drawn += differences(expected, blank) > 0;
      EXPECT_EQ(differences(expected, found), 0) << "plan, round " << round << " view " << i;
      dxf.Draw3D(&expected, &coor, a, b);
      turned.Draw(&found, &coor);
      EXPECT_EQ(differences(expected, found), 0) << "turned, round " << round << " view " << i;
    }
  }
  EXPECT_GT(drawn, 100);
}

TEST_F(PreparedDrawing, PicksWhatEveryEntityAnswers) {
  int hits = 0;
  for (int round = 0; round < 6; ++round) {
    compose(300);
    const bool plan = round % 2 == 0;
    const float a = plan ? 0 : 0.7F, b = plan ? kQuarter : 0.4F;
    qv::PreparedDrawing prepared = plan ? qv::PreparedDrawing(dxf) : qv::PreparedDrawing(dxf, a, b);
    for (int i = 0; i < 40; ++i) {
      const float x = place(), y = place(), size = number(1, 400);
      const CFRect rect(x, y, x + size, y + size);
      const CFRegion region{CFRect(rect)};
      std::vector<ACAD_ENTITY*> expected;
      for (POSITION at = dxf.m_EntityList.GetHeadPosition(); at;) {
        auto* entity = static_cast<ACAD_ENTITY*>(dxf.m_EntityList.GetNext(at));
        auto* insert = entity->GetType() == ACAD_TYPE_INSERT ? static_cast<ACAD_INSERT*>(entity) : nullptr;
        ACAD_BLOCK* const block = insert ? dxf.GetBlock(insert) : nullptr;
        if (block ? block->HitTest(region, i % 2, a, b, insert) : entity->HitTest(region, i % 2, a, b))
          expected.push_back(entity);
      }
      EXPECT_EQ(prepared.Pick(rect, i % 2), expected) << "round " << round << " pick " << i;
      hits += static_cast<int>(expected.size());
    }
  }
  EXPECT_GT(hits, 500);
}

TEST_F(PreparedDrawing, HidesChoosesAndSimplifies) {
  dxf.New_MemDxf();
  dxf.Write_Line(0, 50, 0, 100, 50, 0, "0", "1", "BYLAYER");
  dxf.Write_Text(10, 10, 0, 20, 0, "HHHH", "STANDARD", "0", "5", "BYLAYER");
  auto& text = *static_cast<ACAD_TEXT*>(dxf.m_EntityList.GetTail());
  CFCoor coor(CFPoint(0, 100), 1, 1);
  const auto colored = [&](qv::PreparedDrawing& prepared, COLORREF color) {
    qv::BitmapContext picture(kSize, kSize, 0xFFFFFF);
    prepared.Draw(&picture, &coor);
    int n = 0;
    for (int i = 0; i < kSize * kSize; ++i) n += picture.GetPixel(i % kSize, i / kSize) == color;
    return n;
  };
  qv::PreparedDrawing prepared(dxf);
  const int letters = colored(prepared, 0xFF0000);
  EXPECT_GT(letters, 150);
  prepared.SetReadableHeight(21);
  EXPECT_NEAR(colored(prepared, 0xFF0000), text.GetWidth(), 1.5) << "one line along the base";
  prepared.SetReadableHeight(20);
  EXPECT_EQ(colored(prepared, 0xFF0000), letters);
  prepared.Show([](ACAD_ENTITY& entity) { return entity.GetType() == ACAD_TYPE_TEXT; });
  EXPECT_EQ(colored(prepared, 0x0000FF), 0);
  EXPECT_EQ(prepared.Pick(CFRect(-10, -10, 200, 200), 0).size(), 1U);
  prepared.Show([](ACAD_ENTITY&) { return true; });
  EXPECT_EQ(colored(prepared, 0x0000FF), 100);
}

TEST_F(PreparedDrawing, PicksWhatTheDocumentPicksAtAnyHeight) {
  dxf.New_MemDxf();
  // The angle of the plan is a float: a height of a million shows by 0.04.
  dxf.Write_Line(0, 0, 1e6F, 100, 0, 1e6F, "0", "1", "BYLAYER");
  qv::PreparedDrawing prepared(dxf);
  for (const CFRect& rect : {CFRect(-1, -1, 101, -0.03F), CFRect(-1, -0.02F, 101, 1)})
    for (const int mode : {0, 1})
      EXPECT_EQ(prepared.Pick(rect, mode).size(), dxf.HitTest(rect, mode, 0, HALF_PI_F) ? 1U : 0U);
}

TEST_F(PreparedDrawing, CopiesBlocksThatComeOftenAndCanBeGivenUp) {
  dxf.New_MemDxf();
  add_dense_block(40, 12);
  for (int i = 0; i < 2000; ++i)
    add_insert("DENSE", static_cast<float>(i % 10) * 15, static_cast<float>(i / 10 % 6) * 15);
  CFCoor coor(CFPoint(-5, 110), 1, 1);
  qv::PreparedDrawing prepared(dxf);
  qv::BitmapContext direct(kSize, kSize, 0), copied(kSize, kSize, 0), part(kSize, kSize, 0);
  dxf.Draw(&direct, &coor);
  EXPECT_TRUE(prepared.Draw(&copied, &coor, {}, [] { return true; }));
  EXPECT_EQ(differences(direct, copied), 0) << "at whole pixels the copies are exact";
  int asked = 0;
  EXPECT_FALSE(prepared.Draw(&part, &coor, {}, [&] { return ++asked, false; }));
  EXPECT_EQ(asked, 1);
}

TEST_F(PreparedDrawing, CopiesLieWithinAPixel) {
  constexpr int kInserts = 60;
  enum { Dense, WithLoneDetail, OfDetails, OfArcs, kBlocks };
  int copied = 0;
  for (int kind = 0; kind < kBlocks; ++kind) {
    dxf.Close();
    dxf.New_MemDxf();
    ACAD_BLOCK& block = add_dense_block(kind < OfDetails ? 1000 : 0, 30);
    // A detail that shows or not as it happens to be rounded: a block that has one alone, or nothing else, is not
    // copied.
    if (kind == WithLoneDetail) add_line(block, {60, 60}, {60.3F, 60.2F});
    if (kind == OfDetails) {  // each of which shows at all places that are tried, though not at all others
      add_line(block, {-0.8F, 0}, {-0.8F, 0});
      for (int i = 0; i < 40; ++i) add_line(block, {0, 0}, {3.4F, 0});
    }
    for (int i = 0; i < 40 && kind == OfArcs; ++i) {
      auto* const circle = new ACAD_CIRCLE;
      circle->m_fRadius = number(0, 6);
      block.m_EntityList.AddTail(circle);
    }
    for (int i = 0; i < kInserts; ++i) add_insert("DENSE", place(), place());
    qv::PreparedDrawing prepared(dxf);
    for (int i = 0; i < 10; ++i) {
      CFCoor coor(CFPoint(number(-1000, -900), number(900, 1000) * (i % 2 ? 1 : -1)),
                  kind == OfDetails ? 0.25F : number(0.12F, 0.3F), i % 2);
      qv::BitmapContext direct(kSize, kSize, 0), own(kSize, kSize, 0);
      dxf.Draw(&direct, &coor);
      prepared.Draw(&own, &coor);
      EXPECT_TRUE(lies_within_a_pixel(direct, own) && lies_within_a_pixel(own, direct)) << kind << ' ' << i;
      EXPECT_TRUE(kind == Dense || differences(direct, own) == 0) << kind << ' ' << i;
      copied += differences(direct, own) > 0;
    }
  }
  EXPECT_EQ(copied, 10) << "something was compared";
}

TEST_F(PreparedDrawing, AbsurdCoordinatesHideNothingElse) {
  compose(100);
  const float infinity = std::numeric_limits<float>::infinity();
  for (const float v : {std::nanf(""), infinity, -infinity, 1e38F}) {
    dxf.Write_Line(v, 0, 0, 10, v, 0, "0", "1", "BYLAYER");
    dxf.Write_Circle(0, v, 0, 5, "0", "1", "BYLAYER");
    dxf.Write_Circle(0, 0, 0, v, "0", "1", "BYLAYER");
    dxf.Write_Text(0, 0, 0, v, v, "A", "STANDARD", "0", "1", "BYLAYER");
  }
  qv::PreparedDrawing prepared(dxf);
  for (int i = 0; i < 20; ++i) {
    CFCoor coor = view();
    qv::BitmapContext expected(kSize, kSize, 0xFFFFFF), found(kSize, kSize, 0xFFFFFF);
    dxf.Draw(&expected, &coor);
    prepared.Draw(&found, &coor);
    EXPECT_EQ(differences(expected, found), 0) << i;
  }
}

}  // namespace
