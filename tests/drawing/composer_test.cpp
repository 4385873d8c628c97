#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "qvtools/drawing/base_sgt.h"

namespace {

class Composer : public testing::Test {
 protected:
  void SetUp() override { sgt.New_MemDxf(); }
  CBase_SGT sgt;
};

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

TEST_F(Composer, AnArrayPolylineConvertsTheCallersArrays) {
  sgt.m_fLenFactor = 2;
  sgt.m_fWidthFactor = 3;
  float x[] = {0, 1};
  float y[] = {0, 0.5F};
  float w[] = {5, 5};
  float v[] = {5, 5};
  const float bulge[] = {0, 0};
  sgt.Draw_Pline(1, x, y, bulge, 0, w, v);
  EXPECT_EQ(sgt.m_EntityList.GetCount(), 0);
  sgt.Draw_Pline(2, x, y, bulge, 1, w, v);
  EXPECT_EQ(y[1], 1);
  EXPECT_EQ(w[0], 10) << "by the length factor, not the width factor";
  EXPECT_EQ(static_cast<ACAD_POLYLINE*>(sgt.m_EntityList.GetHead())->m_nFlags, 1);
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
