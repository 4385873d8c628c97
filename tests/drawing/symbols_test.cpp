#include <climits>
#include <cmath>
#include <cstring>
#include <memory>

#include "drawing/golden_list.h"
#include "qvtools/dxf/model/visit.h"
#include "support/even_text_font.h"
#include "support/temporary_directory.h"

using qvtest::drawn;

namespace {

class Symbols : public testing::Test {
 protected:
  /// Everything that a placement does to what is drawn differs from the default.
  static std::unique_ptr<CBase_SGT> placed() {
    std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
    sgt->SetBiLiChi(50);
    sgt->m_fRotAngle = 30;
    sgt->m_fLenFactor = 2;
    sgt->m_fShiftX = 1000;
    sgt->m_fShiftY = -500;
    sgt->m_fTextFactor = 1.5F;
    sgt->m_fWidthFactor = 3;
    return sgt;
  }

 private:
  qvtest::EvenTextFont font_;
};

constexpr float kX[] = {0, 900, 1800};
constexpr float kY[] = {0, 700, 300};
constexpr CBase_SGT::CLiangZongJin kBars[] = {
    {2, 3, 25, 1}, {2, 3, 22, 1}, {2, 3, 20, 2}, {4, 2, 12, 0}, {3, 3, 20, -1}};

void draw_curve(CBase_SGT& g, int values, int marker) {
  CArray<float, float> x, y;
  for (int i = 0; i < 3; ++i) {
    x.Add(kX[i]);
    y.Add(kY[i] - 100);
  }
  EXPECT_EQ(g.Draw_XY({7, 8, 900, 500, 0, 1800, -100, 700, 2, 2, "x", "y", 3, 1, marker, values}, x, y), 1);
}

/// Draws in the band of 200 about the upright x = 1000, given by two points of it.
void draw_beside_band(CBase_SGT& g, float x1, float y1, float x2, float y2) {
  g.Set_Para_Draw_Out_2PraLine(1000, 100, 1000, 900, 200);
  g.Draw_Line_Out_2PraLine(x1, y1, x2, y2);
  g.Draw_XianGangJin_Out_2PraLine(x1, y1, x2, y2);
}

/// A wide rectangle with every choice of sides.
void draw_sides(CBase_SGT& g) {
  g.Push_ENV();
  for (int sides = 0; sides < 16; ++sides) {
    for (int i = 0; i < 4; ++i) g.m_bRectSide[i] = sides >> i & 1;
    g.Draw_Rect_C(4, 2, 10.0F * static_cast<float>(sides), 0, 90, 0.5F);
  }
  g.Pop_ENV();
}

void draw_with_pen(CBase_SGT& g) {
  g.Push_ENV();
  g.MoveTo(1, 1);
  g.MoveTo_Relative(1, 0);
  g.LineTo_Relative(1, 2);
  g.LineTo(5, 5);
  g.PlineTo(6, 5, 1, 2);
  g.PlineTo_Relative(0, 3, 2, 1);
  g.ArrowTo_Relative(0, 500);
  EXPECT_EQ(g.m_fPenX, 6) << "the pen stays in the caller's frame";
  EXPECT_EQ(g.m_fPenY, 508);
  g.Pop_ENV();
}

const struct {
  const char* name;
  void (*draw)(CBase_SGT& g);
} kSymbols[] = {
    {"point and lines", [](CBase_SGT& g) { g.Draw_Point(1, 2), g.Draw_Line(1, 0, 0, 1), g.Draw_Lines(3, kX, kY); }},
    {"circle and arc", [](CBase_SGT& g) { g.Draw_Circle(1, 1, 5), g.Draw_Arc(0, 0, 1, 0, 30); }},
    {"polyline of two points", [](CBase_SGT& g) { g.Draw_Pline(0, 0, 1, 0, 5, 6); }},
    {"arc as a polyline", [](CBase_SGT& g) { g.Draw_PArc(10, 0, 5, 0, 90, 1, 2); }},
    {"solid and face",
     [](CBase_SGT& g) { g.Draw_Solid(0, 0, 1, 0, 0, 1, 1, 1), g.Draw_3DFace(0, 0, 1, 0, 1, 1, 0, 1); }},
    {"text at every angle",
     [](CBase_SGT& g) {
       for (const float angle : {0.0F, 91.0F, 91.5F, 180.0F, 271.0F, 271.5F, -90.0F, 450.0F})
         g.Draw_Text(10, 20, 2.5F, angle, "text");
     }},
    {"thin rectangles turn one way",
     [](CBase_SGT& g) { g.Draw_Rect_C(4, 2, 0, 0, 90), g.Draw_Rect_LB(4, 2, 7, 8, 30); }},
    {"wide ones turn the other",
     [](CBase_SGT& g) { g.Draw_Rect_C(4, 2, 0, 0, 90, 0.5F), g.Draw_Rect_LB(4, 2, 7, 8, 30, 0.5F); }},
    {"wide rectangle, by its sides", draw_sides},
    {"text along a line", [](CBase_SGT& g) { g.Draw_Text_Along_Line(0, 0, 10, 0, 4, 1, "a", 1, 0.5F); }},
    {"text across a line, n = 0", [](CBase_SGT& g) { g.Draw_Text_Vertical_Line(0, 0, 0, -10, 0, 1, "a", 1, 2); }},
    {"text along an arc", [](CBase_SGT& g) { g.Draw_Text_Along_Arc(0, 0, 10, 0, -1.5707964F, 1, 1, "ab", 1, 2); }},
    {"lines turned and shifted",
     [](CBase_SGT& g) {
       g.Draw_Line_Rotate_Shift(0.5F, 10, 20, 0, 0, 100, 0);
       g.Draw_PLine_Rotate_Shift(-0.5F, 10, 20, 0, 0, 100, 0, 3);
     }},
    {"by the pen", draw_with_pen},
    {"dimension with a text", [](CBase_SGT& g) { g.Draw_Dim_Polar(10, 20, 6000, "L", 0, 1, 1); }},
    {"dimension downward reads upright", [](CBase_SGT& g) { g.Draw_Dim_Polar(0, 0, 3000, "3000", -90, 0, 0); }},
    {"dimension of a length", [](CBase_SGT& g) { g.Draw_Dim_Polar(0, 0, 1234.5F, 15, 1, 0); }},
    {"dimension between points", [](CBase_SGT& g) { g.Draw_Dim_Points(0, 0, 300, 400, "t", 0, 1); }},
    {"dimension with decimals",
     [](CBase_SGT& g) {
       g.m_nDimDecimals = 2;
       g.Draw_Dim_Points(0.0F, 0, 0, 1234.5F, 1, 1);
     }},
    {"chain of dimensions on its other side", [](CBase_SGT& g) { g.Draw_Dim_Points(3, kX, kY, 1, 1, 0); }},
    {"elevation", [](CBase_SGT& g) { g.Draw_BiaoGao(500, 600, 3.5F, 0); }},
    {"elevation to the left", [](CBase_SGT& g) { g.Draw_BiaoGao(500, 600, -12.25F, 1); }},
    {"elevation of zero", [](CBase_SGT& g) { g.Draw_BiaoGao(500, 600, -0.00005F, 1); }},
    {"title", [](CBase_SGT& g) { g.Draw_TuMing(100, 200, "KL-1", 1, 1); }},
    {"axis bubble", [](CBase_SGT& g) { g.Draw_ZhouFu(0, 0, 3000, 4000, "12"); }},
    {"axis bubble without a text", [](CBase_SGT& g) { g.Draw_ZhouFu(0, 0, 0, -100, ""); }},
    {"break", [](CBase_SGT& g) { g.Draw_Cut_Sym(0, 1000, 0, 3000); }},
    {"arrow at a line", [](CBase_SGT& g) { g.DrawLineArrow(100, 100, 100, 600); }},
    {"arrow at an arc's end", [](CBase_SGT& g) { g.DrawArcArrow(0, 0, 30, 0); }},
    {"arrow at an arc's start", [](CBase_SGT& g) { g.DrawArcArrow(0, 0, 0, 1); }},
    {"frame A0", [](CBase_SGT& g) { g.Draw_TuKuang(0, 0, -1, 0, 0); }},
    {"frame A1, lengthened", [](CBase_SGT& g) { g.Draw_TuKuang(0, 0, 1, 210, 0); }},
    {"frame A2, portrait", [](CBase_SGT& g) { g.Draw_TuKuang(0, 0, 2, 0, 1); }},
    {"frame A3", [](CBase_SGT& g) { g.Draw_TuKuang(0, 0, 7, 0, 0); }},
    {"title block", [](CBase_SGT& g) { g.Draw_BiaoTiLan(100, 200, 0.5F); }},
    {"countersign block", [](CBase_SGT& g) { g.Draw_HuiQianLan(100, 200, 45); }},
    {"section mark, along on the left", [](CBase_SGT& g) { g.Draw_PouXian(0, 0, 0, -2000, "1", 1, 1); }},
    {"section mark, along on the right", [](CBase_SGT& g) { g.Draw_PouXian(0, 0, 0, -2000, "1", 1, 0); }},
    {"section mark, across on the left", [](CBase_SGT& g) { g.Draw_PouXian(0, 0, 0, -2000, "1", 0, 1); }},
    {"section mark, across on the right", [](CBase_SGT& g) { g.Draw_PouXian(0, 0, 0, -2000, "1", 0, 0); }},
    {"angle with its own text", [](CBase_SGT& g) { g.Draw_DimJiaoDu(100, 0, 2000, 90, nullptr, -30); }},
    {"angle over the start of a turn", [](CBase_SGT& g) { g.Draw_DimJiaoDu(0, 0, 2000, 315, "x", 135); }},
    {"ground", [](CBase_SGT& g) { g.Draw_TuMianXian(0, 0, 24 * g.m_fBiLiChi / g.m_fLenFactor, 0, 0, 0); }},
    {"ground on the left", [](CBase_SGT& g) { g.Draw_TuMianXian(0, 0, 0, 3000, 500, 1); }},
    {"bar", [](CBase_SGT& g) { g.Draw_XianGangJin(0, 0, 1000, 0); }},
    {"bar of at most 20 points",
     [](CBase_SGT& g) {
       float x[25], y[25];
       for (int i = 0; i < 25; ++i) x[i] = y[i] = static_cast<float>(i);
       g.Draw_XianGangJin(25, x, y);
       EXPECT_EQ(x[19], 19) << "the caller's points stay";
     }},
    {"rings", [](CBase_SGT& g) { g.Draw_DoNut(100, 200, 40, 20), g.Draw_DoNut_RW(0, 0, 30, 20); }},
    {"dots", [](CBase_SGT& g) { g.Draw_YuanDian(0, 0, 50), g.Draw_DoNut(0, 0, 5, 5); }},
    {"bars in section", [](CBase_SGT& g) { g.Draw_YuanDianGangJin(100, 200, 1, -1), g.Draw_DoNutGangJin(0, 0, 9, 1); }},
    {"stirrup", [](CBase_SGT& g) { g.Draw_RectGangJin_C(300, 600, 1000, 0, 90, 1); }},
    {"stirrup by its corner", [](CBase_SGT& g) { g.Draw_RectGangJin_LB(300, 600, 10, 20, 0); }},
    {"stirrup with hooks", [](CBase_SGT& g) { g.Draw_RectGangJin_C_CutL(3000, 6000, 0, 0, 0, 300, 200, 1); }},
    {"stirrup with hooks by its corner",
     [](CBase_SGT& g) { g.Draw_RectGangJin_LB_CutL(3000, 6000, 0, 0, 90, 300, 200); }},
    {"rectangle with hooks", [](CBase_SGT& g) { g.Draw_Rect_C_CutL(3000, 6000, 0, 0, 90, 300, 200); }},
    {"rectangle with hooks by its corner", [](CBase_SGT& g) { g.Draw_Rect_LB_CutL(3000, 6000, 7, 8, 0, 300, 200); }},
    {"tie", [](CBase_SGT& g) { g.Draw_LaJieJin(100, 100, 100, 3100, 0); }},
    {"tie on the other side", [](CBase_SGT& g) { g.Draw_LaJieJin(100, 100, 100, 3100, 1); }},
    {"line through the band", [](CBase_SGT& g) { draw_beside_band(g, 0, 0, 3000, 300); }},
    {"line into the band", [](CBase_SGT& g) { draw_beside_band(g, 3000, 0, 1050, 0); }},
    {"line out of the band", [](CBase_SGT& g) { draw_beside_band(g, 950, 0, 0, 950); }},
    {"line beside the band", [](CBase_SGT& g) { draw_beside_band(g, 1200, 0, 1200, 500); }},
    {"label of one bar, to the left", [](CBase_SGT& g) { g.Draw_GangJin_BiaoZhu(0, 0, -500, 800, -1500, 12, "2x20"); }},
    {"label of a row of bars",
     [](CBase_SGT& g) { g.Draw_GangJin_BiaoZhu(500, 300, 3, kX, kY, 1500, 0, 0, 0, "2x20"); }},
    {"label of a row with ticks, to the left",
     [](CBase_SGT& g) { g.Draw_GangJin_BiaoZhu(500, 300, 3, kX, kY, 1500, 3, 1, 1, "2x20"); }},
    {"leader", [](CBase_SGT& g) { g.Draw_Line_BiaoZhu(0, 0, 900, 500); }},
    {"bar number", [](CBase_SGT& g) { g.Draw_GJH(100, 100, 250, 7); }},
    {"bar number along a line",
     [](CBase_SGT& g) { g.Draw_GJH_And_Text_Along_Line(0, 0, 0, 4000, 4, 1, 3, "x", 100, 50); }},
    {"beam section",
     [](CBase_SGT& g) {
       g.Draw_Liang_Section(0, 0, 1200, 2400, 100, 5, kBars, {1, 8, 100, 4}, 1);
     }},
    {"axis box", [](CBase_SGT& g) { g.Draw_Axis(100, 200, 0, 1, 10, 30, 4000, 2000, 2, 2, "ab", "c"); }},
    {"axis of steps that no float has",
     [](CBase_SGT& g) { g.Draw_Axis(0, 0, 0.3F, 0.9F, -0.2F, 0.2F, 90, 90, 6, 4, "", ""); }},
    {"axis labels in every format",
     [](CBase_SGT& g) {
       for (const int format : {-1, 0, 1, 2, 3, 4, 5}) {
         g.m_nAxisXFormat = g.m_nAxisYFormat = format;
         g.Draw_Axis(0, 0, 1.9F, 2.1F, 1.9F, 2.1F, 100, 100, 1, 1, "", "");
       }
     }},
    {"axis of nothing", [](CBase_SGT& g) { g.Draw_Axis(0, 0, 2, 2, 0, 1, 100, 200, 0, 1, "", ""); }},
    {"curve with circles",
     [](CBase_SGT& g) { g.Draw_Curve(100, 200, 3, kX, kY, 0, 1800, 0, 700, 400, 200, 2, 2, "x", "y", 5, 1, 1); }},
    {"two curves",
     [](CBase_SGT& g) { g.Draw_Curve2(100, 200, 3, kX, kY, kX, 0, 1800, 0, 1800, 400, 200, 2, 2, "x", "y", 7, 0, 1); }},
    {"curve of a record, with values", [](CBase_SGT& g) { draw_curve(g, 1, 3); }},
    {"curve of a record", [](CBase_SGT& g) { draw_curve(g, 0, 0); }},
};

TEST_F(Symbols, DrawWhatIsOnTheList) {
  std::vector<std::string> lines;
  for (const auto& symbol : kSymbols) {
    const std::unique_ptr<CBase_SGT> plain(NewMemDxf());
    const std::unique_ptr<CBase_SGT> elsewhere = placed();
    elsewhere->Add_Default_LineType();
    for (CBase_SGT* sgt : {plain.get(), elsewhere.get()}) {
      lines.push_back('[' + std::string(symbol.name) + (sgt == plain.get() ? "]" : ", placed]"));
      symbol.draw(*sgt);
      for (std::string& line : drawn(*sgt)) lines.push_back(std::move(line));
    }
  }
  qvtest::expect_golden("symbols.txt", lines);
}

// In an environment in which nothing is as by default.
TEST_F(Symbols, LeaveTheEnvironmentAsItWas) {
  for (const auto& symbol : kSymbols) {
    const auto sgt = placed();
    sgt->Add_Layer("WALL", 1, "CONTINUOUS");
    sgt->Add_Default_LineType();
    sgt->SetCurLayer("WALL");
    sgt->SetCurLType("DOT");
    sgt->SetCurColor("5");
    sgt->SetCurStyle("HZ");
    sgt->m_bRectSide[1] = 0;
    sgt->m_nDimDecimals = 2;
    sgt->Set_Para_Draw_Out_2PraLine(1000, 100, 1000, 900, 200);
    sgt->MoveTo(11, 12);
    sgt->Push_ENV();
    sgt->MoveTo(13, 14);
    // All members are of four bytes or texts of a multiple of four, so the bytes hold no gaps.
    const qv::SgtEnvironment before = *sgt;
    symbol.draw(*sgt);
    ASSERT_GT(sgt->m_EntityList.GetCount(), 0) << symbol.name;
    qv::visit_entity(*static_cast<ACAD_ENTITY*>(sgt->m_EntityList.GetTail()),
                     [](auto& entity) { EXPECT_STREQ(entity.m_szLayer, "WALL"); });
    EXPECT_EQ(sgt->m_ENVList.GetCount(), 1) << symbol.name;
    EXPECT_EQ(std::memcmp(&before, static_cast<qv::SgtEnvironment*>(sgt.get()), sizeof before), 0) << symbol.name;
  }
}

TEST_F(Symbols, DrawNothingOfNothing) {
  const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  CArray<float, float> one, none;
  one.Add(1);
  sgt->Draw_Dim_Polar(0, 0, 0.00009F, "x", 0, 1, 1);
  sgt->Draw_Dim_Points(1, kX, kY, 0, 1, 1);
  sgt->Draw_XianGangJin(1, kX, kY);
  sgt->Set_Para_Draw_Out_2PraLine(1000, 100, 1000, 900, 200);
  sgt->Draw_Line_Out_2PraLine(950, 0, 1050, 500);
  sgt->Draw_Line_Out_2PraLine(1000, 0, 1000, 500);
  EXPECT_EQ(sgt->Draw_XY({}, one, one), 0);
  EXPECT_EQ(sgt->Draw_XY({}, one, none), 0);
  EXPECT_EQ(sgt->m_EntityList.GetCount(), 0);
}

TEST_F(Symbols, NumbersWithoutMeaningDoNoHarm) {
  for (const float angle : {1e30F, -1e30F, -1e-9F, HUGE_VALF, NAN}) {
    const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
    sgt->m_nDimDecimals = 1000;
    sgt->Draw_Dim_Polar(0, 0, 1, angle, 1, 1);
    const auto& text = *static_cast<ACAD_TEXT*>(sgt->m_EntityList.GetTail());
    EXPECT_TRUE(text.m_fRotation >= 0 && text.m_fRotation < 360 + 180) << angle;
    EXPECT_STREQ(text.m_szText, "1.00000000000000000000");
  }
  // Dots too near each other: no numbers, and nothing behind it minds.
  const std::unique_ptr<CBase_SGT> tie(NewMemDxf());
  tie->Draw_LaJieJin(0, 0, 1, 0, 1);
  EXPECT_NE(drawn(*tie)[0].find("nan"), std::string::npos);
  tie->GetFRect();
  const qvtest::TemporaryDirectory directory;
  EXPECT_EQ(tie->Write_MemDxf_To_File(directory.path("nan.dxf").c_str()), 1);
  const struct {
    float low, high;
    int n, most;
  } ranges[] = {{-HUGE_VALF, HUGE_VALF, 9, 18}, {NAN, 1, -5, 2}, {0, 3e38F, INT_MAX, 2000}, {1e30F, 1e30F, 3, 6}};
  for (const auto& r : ranges) {
    const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
    sgt->Draw_Axis(0, 0, r.low, r.high, 0.3F, 0.9F, 100, 100, r.n, 1, "", "");
    EXPECT_LE(sgt->m_EntityList.GetCount(), 2 * r.most + 4 + 2 * 4) << r.low;
  }
}

TEST_F(Symbols, TextsOfBars) {
  char text[64] = "kept";
  CBase_SGT::FormString_GJ_nqd(text, 4, 4, 25);
  CBase_SGT::FormString_GJ_qdas(text, 0, 8, 200);
  EXPECT_STREQ(text, "kept");
  const char* const bars[] = {
      "4\x82"
      "25",
      "4\x83"
      "25",
      "4\x8B"
      "25"};
  const char* const stirrups[] = {
      "\x82"
      "8@200",
      "\x83"
      "8@200",
      "\x8B"
      "8@200"};
  for (int grade = 1; grade <= 3; ++grade) {
    CBase_SGT::FormString_GJ_nqd(text, 4, grade, 25);
    EXPECT_STREQ(text, bars[grade - 1]);
    CBase_SGT::FormString_GJ_qdas(text, grade, 8, 200);
    EXPECT_STREQ(text, stirrups[grade - 1]);
  }
  const std::pair<int, const char*> strands[] = {{9,
                                                  "4-7\x82"
                                                  "3"},
                                                 {12,
                                                  "4-7\x82"
                                                  "4"},
                                                 {15,
                                                  "4-7\x82"
                                                  "5"},
                                                 {10, "4-7\x82"}};
  for (const auto& [d, expected] : strands) {
    CBase_SGT::FormString_GJX_nqd(text, 4, d);
    EXPECT_STREQ(text, expected);
  }
}

}  // namespace
