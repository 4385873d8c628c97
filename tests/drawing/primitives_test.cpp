#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "qvtools/drawing/base_sgt.h"
#include "qvtools/fonts/shx.h"

namespace {

/// A composer whose entities are looked at one by one.
class Composer : public testing::Test {
 protected:
  void SetUp() override { sgt.New_MemDxf(); }
  template <class Record>
  const Record& entity(int i) {
    POSITION at = sgt.m_EntityList.GetHeadPosition();
    while (i-- > 0) sgt.m_EntityList.GetNext(at);
    return static_cast<const Record&>(*static_cast<ACAD_ENTITY*>(sgt.m_EntityList.GetAt(at)));
  }
  int count() const { return sgt.m_EntityList.GetCount(); }
  void clear() {
    sgt.Close();
    sgt.New_MemDxf();
  }
  CBase_SGT sgt;
};

void expect_point(const qv::Point3& p, double x, double y) {
  EXPECT_NEAR(p.x, x, 1e-3);
  EXPECT_NEAR(p.y, y, 1e-3);
  EXPECT_EQ(p.z, 0);
}

TEST_F(Composer, SizesFollowTheScale) {
  EXPECT_EQ(sgt.m_fBiLiChi, 100);
  EXPECT_FLOAT_EQ(sgt.m_fBiKuan[0], 65);
  EXPECT_FLOAT_EQ(sgt.m_fBiKuan[2], 22.75F);
  EXPECT_EQ(sgt.m_fZiGao[0], 250);
  EXPECT_EQ(sgt.m_fZiGao[6], 0);
  sgt.SetBaseBiKuan(3);
  EXPECT_FLOAT_EQ(sgt.m_fBiKuan[0], 65);
  sgt.SetBiLiChi(50);
  EXPECT_EQ(sgt.m_fBiKuan[0], 50);
  EXPECT_EQ(sgt.m_fGJDotWidth, 75);
  EXPECT_EQ(sgt.m_fDimOffset, 100);
  EXPECT_EQ(sgt.m_fArrowWidth, 40);
  sgt.Set_Default_ENV();  // resets the stored scale alone
  EXPECT_EQ(sgt.m_fBiLiChi, 1);
  EXPECT_EQ(sgt.m_fBiKuan[0], 50);
}

TEST_F(Composer, TheEnvironmentIsPushedAndPopped) {
  EXPECT_EQ(sgt.Pop_ENV(), 0);
  sgt.SetCurLayer("WALL");
  sgt.MoveTo(3, 4);
  sgt.m_nAxisXFormat = 5;
  EXPECT_EQ(sgt.Push_ENV(), 1);
  sgt.SetCurLayer(std::string(99, 'x').c_str());
  EXPECT_STREQ(sgt.m_szCurLayer, "WALL");
  sgt.SetCurLayer(std::string(98, 'x').c_str());
  EXPECT_EQ(std::strlen(sgt.m_szCurLayer), 98U);
  sgt.SetCurColor("2");
  sgt.m_fRotAngle = 30;
  sgt.m_bRectSide[2] = 0;
  sgt.MoveTo(0, 0);
  sgt.SetBiLiChi(10);
  EXPECT_EQ(sgt.Pop_ENV(), 1);
  EXPECT_STREQ(sgt.m_szCurLayer, "WALL");
  EXPECT_STREQ(sgt.m_szCurColor, "7");
  EXPECT_EQ(sgt.m_fRotAngle, 0);
  EXPECT_EQ(sgt.m_bRectSide[2], 1);
  EXPECT_EQ(sgt.m_fPenY, 4);
  EXPECT_EQ(sgt.m_fBiLiChi, 100);
  EXPECT_FLOAT_EQ(sgt.m_fBiKuan[0], 6.5F) << "pen widths are not saved";
  EXPECT_EQ(sgt.m_nAxisXFormat, 2) << "nor are the axis formats";
  EXPECT_EQ(sgt.Pop_ENV(), 0);
  sgt.Push_ENV();  // left on the stack: the destructor's
}

TEST_F(Composer, PrimitivesAreTurnedScaledAndShifted) {
  sgt.m_fRotAngle = 90;
  sgt.m_fLenFactor = 2;
  sgt.m_fShiftX = 100;
  sgt.m_fWidthFactor = 3;
  sgt.Draw_Line(1, 0, 0, 1);
  expect_point(entity<ACAD_LINE>(0).m_Start, 100, 2);
  expect_point(entity<ACAD_LINE>(0).m_End, 98, 0);
  sgt.Draw_Circle(1, 1, 5);
  EXPECT_EQ(entity<ACAD_CIRCLE>(1).m_fRadius, 10);
  sgt.Draw_Arc(0, 0, 1, 0, 30);
  EXPECT_EQ(entity<ACAD_ARC>(2).m_fEndAngle, 120);
  sgt.Draw_Pline(0, 0, 1, 0, 5, 6);
  EXPECT_EQ(entity<ACAD_POLYLINE>(3).m_fStartWidth, 15);
  EXPECT_EQ(entity<ACAD_POLYLINE>(3).m_fEndWidth, 18);
  float x[] = {0, 1};
  float y[] = {0, 0};
  float w[] = {5, 5};
  float v[] = {5, 5};
  const float bulge[] = {0, 0};
  sgt.Draw_Pline(1, x, y, bulge, 0, w, v);
  EXPECT_EQ(count(), 4);
  sgt.Draw_Pline(2, x, y, bulge, 1, w, v);
  EXPECT_EQ(y[1], 2) << "the caller's arrays are converted";
  EXPECT_EQ(w[0], 10) << "by the length factor, not the width factor";
  EXPECT_EQ(entity<ACAD_POLYLINE>(4).m_nFlags, 1);
  sgt.MoveTo(1, 1);
  sgt.LineTo_Relative(1, 0);
  EXPECT_EQ(sgt.m_fPenX, 2) << "the pen stays in the caller's frame";
  expect_point(entity<ACAD_LINE>(5).m_End, 98, 4);
}

TEST_F(Composer, ArcsAsPolylinesRunAlongTheArc) {
  sgt.Draw_PArc(10, 0, 5, 0, 90, 1, 2);
  const auto& arc = entity<ACAD_POLYLINE>(0);
  ASSERT_EQ(arc.m_Vertices.GetSize(), 2);
  expect_point(arc.m_Vertices[0].m_Point, 10, 5);
  expect_point(arc.m_Vertices[1].m_Point, 15, 0);
  EXPECT_NEAR(arc.m_Vertices[0].m_fBulge, -std::tan(std::numbers::pi / 8), 1e-6);
  EXPECT_EQ(arc.m_Vertices[1].m_fBulge, 0);
  EXPECT_EQ(arc.m_Vertices[0].m_fEndWidth, 2);
  EXPECT_EQ(arc.m_nFlags, 0);
}

TEST_F(Composer, TextsNeverStandUpsideDown) {
  const struct {
    float angle;
    float written;
  } cases[] = {{0, 0}, {91, 91}, {91.5F, 271.5F}, {180, 360}, {271, 451}, {271.5F, 271.5F}, {-90, -90}, {450, 450}};
  for (const auto& c : cases) {
    clear();
    sgt.Draw_Text(10, 20, 2.5F, c.angle, "text");
    const auto& text = entity<ACAD_TEXT>(0);
    EXPECT_EQ(text.m_fRotation, c.written);
    if (c.angle == c.written) {
      expect_point(text.m_Insert, 10, 20);
    } else {
      // The opposite corner of the same box.
      const double a = c.angle * std::numbers::pi / 180;
      const double w = G_ShapeFont.GetTxtWidth("text", 2.5F, 0.75F);
      expect_point(text.m_Insert, 10 + w * std::cos(a) - 2.5 * std::sin(a), 20 + w * std::sin(a) + 2.5 * std::cos(a));
    }
  }
}

TEST_F(Composer, ThinAndWideRectanglesTurnOppositeWays) {
  sgt.Draw_Rect_C(4, 2, 0, 0, 90);
  ASSERT_EQ(count(), 4);
  expect_point(entity<ACAD_LINE>(0).m_Start, 1, -2);
  clear();
  sgt.Draw_Rect_C(4, 2, 0, 0, 90, 0.5F);
  ASSERT_EQ(count(), 1);
  expect_point(entity<ACAD_POLYLINE>(0).m_Vertices[0].m_Point, -1, 2);
  EXPECT_EQ(entity<ACAD_POLYLINE>(0).m_nFlags, 1);
  clear();
  sgt.Draw_Rect_LB(4, 2, 7, 8, 30, 0.5F);
  expect_point(entity<ACAD_POLYLINE>(0).m_Vertices[0].m_Point, 7, 8);
  sgt.Draw_Rect_LB(4, 2, 7, 8, 30);
  EXPECT_GT(std::hypot(entity<ACAD_LINE>(1).m_Start.x - 7, entity<ACAD_LINE>(1).m_Start.y - 8), 0.5);
}

TEST_F(Composer, WideRectanglesUseAsFewPolylinesAsTheSidesAllow) {
  // The sides drawn (bottom, right, top, left) and the vertices of each polyline, named by their corners.
  const struct {
    int side[4];
    std::vector<std::string> polylines;
  } cases[] = {{{1, 1, 1, 1}, {"0123"}}, {{0, 1, 1, 1}, {"1230"}}, {{1, 1, 1, 0}, {"0123"}},
               {{0, 0, 1, 1}, {"230"}},  {{0, 1, 1, 0}, {"123"}},  {{1, 0, 1, 0}, {"01", "23"}},
               {{0, 0, 0, 1}, {"30"}},   {{0, 0, 0, 0}, {}}};
  for (const auto& c : cases) {
    clear();
    std::copy_n(c.side, 4, sgt.m_bRectSide);
    sgt.Draw_Rect_C(2, 2, 0, 0, 0, 0.1F);
    std::vector<std::string> polylines;
    for (int i = 0; i < count(); ++i) {
      std::string corners;
      for (const ACAD_VERTEX& v : entity<ACAD_POLYLINE>(i).m_Vertices)
        corners += v.m_Point.y < 0 ? (v.m_Point.x < 0 ? '0' : '1') : (v.m_Point.x < 0 ? '3' : '2');
      polylines.push_back(corners);
    }
    EXPECT_EQ(polylines, c.polylines);
    const bool closed = c.side[0] + c.side[1] + c.side[2] + c.side[3] == 4;
    for (int i = 0; i < count(); ++i) EXPECT_EQ(entity<ACAD_POLYLINE>(i).m_nFlags, closed ? 1 : 0);
  }
}

TEST_F(Composer, TextsAlongLinesAndArcs) {
  sgt.Draw_Text_Along_Line(0, 0, 10, 0, 4, 1, "a", 1, 0.5F);
  expect_point(entity<ACAD_TEXT>(0).m_Insert, 2.5, 0.5);
  sgt.Draw_Text_Vertical_Line(0, 0, 0, -10, 0, 1, "a", 1, 2);  // n = 0 acts as 1; left of a way down is +x
  expect_point(entity<ACAD_TEXT>(1).m_Insert, 2, -10);
  EXPECT_NEAR(entity<ACAD_TEXT>(1).m_fRotation, 360, 1e-3);
  const float quarter = std::numbers::pi_v<float> / 2;
  sgt.Draw_Text_Along_Arc(0, 0, 10, 0, -quarter, 1, 1, "", 1, 2);
  expect_point(entity<ACAD_TEXT>(2).m_Insert, 0, -8);
  EXPECT_NEAR(entity<ACAD_TEXT>(2).m_fRotation, 0, 1e-3);
}

TEST_F(Composer, DimensionTextsThatDoNotFitGoAside) {
  const struct {
    int fit;
    float width;
    int above;
    float x;
    float y;
  } cases[] = {{0, 5, 1, 2.5F, 50},         {0, 5, 0, 2.5F, -300},     {0, 20, 1, -5, 50},
               {8, 20, 1, -5, -550},        {12, 20, 1, -5, -550},     {4, 20, 0, -5, 300},
               {1, 20, 0, -104.85281F, 50}, {2, 20, 0, 94.85281F, 50}, {16, 20, 1, -1, -1}};
  for (const auto& c : cases) {
    sgt.m_nDimTextFit = c.fit;
    float x = -1;
    float y = -1;
    sgt.Cal_Text_Position(c.above, 10, c.width, x, y);
    EXPECT_NEAR(x, c.x, 1e-3) << c.fit;
    EXPECT_NEAR(y, c.y, 1e-3) << c.fit;
  }
}

TEST_F(Composer, ANewComposerIsReadyToDraw) {
  const std::unique_ptr<CBase_SGT> made(NewMemDxf());
  ASSERT_TRUE(made);
  EXPECT_EQ(made->m_nMemFlag, 1);
  EXPECT_STREQ(made->m_pStyle[1].m_szBigFont, "hztxt");
  made->Add_Default_LineType();
  EXPECT_EQ(made->m_nLType, 4);
  made->SetCurStyle("HZ");
  made->Draw_Text(0, 0, 1, 0, "x");
  made->Set_Para_Draw_Out_2PraLine(1, 2, 3, 4, 5);
  EXPECT_EQ(made->m_fOut2Para2, 3) << "the second and third cross over";
  EXPECT_EQ(made->m_EntityList.GetCount(), 1);
}

}  // namespace
