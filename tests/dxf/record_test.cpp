#include <gtest/gtest.h>

#include "qvtools/dxf/model/document.h"
#include "qvtools/text/gbk_text.h"

namespace {

TEST(Records, DefaultsComeBackWithIni) {
  ACAD_LINE line;
  line.m_End = {5, 5, 5};
  qv::copy_text(line.m_szLayer, "WALL");
  line.Ini();
  EXPECT_STREQ(line.m_szLayer, "0");
  EXPECT_STREQ(line.m_szLType, "BYLAYER");
  EXPECT_EQ(line.m_nColor, -1);
  EXPECT_EQ(line.m_End.x + line.m_End.y + line.m_End.z, 3);
  const ACAD_ARC arc;
  EXPECT_EQ(arc.m_fRadius, 1);
  EXPECT_EQ(arc.m_fEndAngle - arc.m_fStartAngle, 90);
  const ACAD_TEXT text;
  EXPECT_EQ(text.m_fHeight, 0.2F);
  EXPECT_EQ(text.m_fWidthFactor, 0.75F);
  EXPECT_STREQ(text.m_szStyle, "STANDARD");
  ACAD_ENTITY none;
  EXPECT_EQ(none.GetType(), 9);
  EXPECT_EQ(none.Read(nullptr) + none.Write(nullptr) + none.Transfer(nullptr, nullptr), 2);
}

TEST(Records, PolylinesCopyDeeply) {
  ACAD_POLYLINE target;
  target.m_Vertices.SetSize(5);
  {
    ACAD_POLYLINE source;
    source.m_nFlags = 1;
    source.m_Vertices.SetSize(3);
    source.m_Vertices[2].m_fBulge = 0.5F;
    source.m_Vertices[1].m_Point = {1, 2, 3};
    target = source;
    source.m_Vertices[2].m_fBulge = 9;
  }
  ASSERT_EQ(target.m_Vertices.GetSize(), 3);
  EXPECT_EQ(target.m_Vertices[2].m_fBulge, 0.5F);
  EXPECT_EQ(target.m_Vertices[1].m_Point.y, 2);
  EXPECT_EQ(target.m_nFlags, 1);
  const ACAD_POLYLINE& itself = target;
  target = itself;
  EXPECT_EQ(target.m_Vertices.GetSize(), 3);
  target.Ini();
  EXPECT_EQ(target.m_Vertices.GetSize(), 0);
}

TEST(Records, BlocksCopyDeeplyWithoutNestedInserts) {
  ACAD_BLOCK target;
  {
    ACAD_BLOCK source;
    qv::copy_text(source.m_szName, "DOOR");
    source.m_Base = {1, 2, 0};
    source.m_EntityList.AddTail(new ACAD_LINE);
    source.m_EntityList.AddTail(new ACAD_INSERT);
    auto* polyline = new ACAD_POLYLINE;
    polyline->m_Vertices.SetSize(2);
    source.m_EntityList.AddTail(polyline);
    target = source;
    const ACAD_BLOCK& itself = source;
    source = itself;
    EXPECT_EQ(source.m_EntityList.GetCount(), 3);
  }
  EXPECT_STREQ(target.m_szName, "DOOR");
  ASSERT_EQ(target.m_EntityList.GetCount(), 2);
  auto* last = static_cast<ACAD_ENTITY*>(target.m_EntityList.GetTail());
  ASSERT_EQ(last->GetType(), ACAD_TYPE_POLYLINE);
  EXPECT_EQ(static_cast<ACAD_POLYLINE*>(last)->m_Vertices.GetSize(), 2);
  target.m_fScale = target.m_fScale2 = 7;
  target.Ini();
  EXPECT_EQ(target.m_fScale, 1);
  EXPECT_EQ(target.m_fScale2, 7);  // the second scale keeps its value
  EXPECT_STREQ(target.m_szName, "0");
  EXPECT_TRUE(target.m_EntityList.IsEmpty());
}

TEST(Records, ColorsOnScreen) {
  const struct {
    int number;
    COLORREF color;
  } cases[] = {{0, 0},          {1, 0x0000FF},    {8, 0x808080}, {15, 0xC0C0C0},
               {300, 0x00FFD3}, {1280, 0xFF00FF}, {-1, 0},       {1536, 0}};
  for (const auto& c : cases) EXPECT_EQ(ACAD_ENTITY::GetColor(c.number), c.color) << c.number;
}

TEST(Records, PointsAreProjectedAndTransformed) {
  const float quarter = 1.5707963F;
  float u;
  float v;
  TouYing3Dto2D(1, 0, 0, 0, quarter, u, v);
  EXPECT_EQ(u, 1);
  EXPECT_NEAR(v, 0, 1e-6);
  TouYing3Dto2D(1, 0, 0, quarter, quarter, u, v);
  EXPECT_NEAR(u, 0, 1e-6);
  EXPECT_NEAR(v, -1, 1e-6);
  TouYing3Dto2D(0, 0, 2, 0, 0, u, v);
  EXPECT_EQ(v, 2);

  const float turn[9] = {0, -1, 0, 1, 0, 0, 0, 0, 1};
  const float offset[3] = {10, 0, 1};
  float x = 1;
  float y = 2;
  float z = 3;
  EXPECT_EQ(ACAD_ENTITY::TransOne(x, y, z, nullptr, nullptr), 1);
  EXPECT_EQ(x + y + z, 6);
  ACAD_ENTITY::TransOne(x, y, z, turn, offset);
  EXPECT_EQ(x, 8);
  EXPECT_EQ(y, 1);
  EXPECT_EQ(z, 4);
}

TEST(Records, TransferMovesPointsAndTurnsAngles) {
  const double a = 3.1415927 / 6;
  const auto c = static_cast<float>(std::cos(a));
  const auto s = static_cast<float>(std::sin(a));
  const float turn[9] = {c, -s, 0, s, c, 0, 0, 0, 1};
  ACAD_ARC arc;
  arc.m_fStartAngle = 350;
  arc.m_fEndAngle = 20;
  EXPECT_EQ(arc.Transfer(turn, nullptr), 1);
  EXPECT_NEAR(arc.m_fStartAngle, 20, 1e-3);
  EXPECT_NEAR(arc.m_fEndAngle, 50, 1e-3);
  ACAD_TEXT text;
  text.m_Align = {1, 0, 0};
  text.Transfer(turn, nullptr);
  EXPECT_NEAR(text.m_fRotation, 30, 1e-3);
  EXPECT_NEAR(text.m_Align.y, 0.5, 1e-6);
  ACAD_CIRCLE circle;
  circle.m_Center = {1, 0, 0};
  const float grow[9] = {0, -2, 0, 2, 0, 0, 0, 0, 2};
  circle.Transfer(grow, nullptr);
  EXPECT_EQ(circle.m_Center.y, 2);
  EXPECT_EQ(circle.m_fRadius, 1);

  ACAD_POLYLINE polyline;
  polyline.m_Vertices.SetSize(2);
  polyline.m_Vertices[0].m_fBulge = 1;
  polyline.m_Vertices[1].m_Point = {1, 1, 0};
  const float mirror[9] = {-1, 0, 0, 0, 1, 0, 0, 0, 1};
  polyline.Transfer(mirror, nullptr);
  EXPECT_EQ(polyline.m_Vertices[0].m_fBulge, -1);
  EXPECT_EQ(polyline.m_Vertices[1].m_Point.x, -1);
}

}  // namespace
