#include <gtest/gtest.h>

#include <numbers>

#include "dxf/drawings.h"
#include "qvtools/geometry/values/region.h"
#include "qvtools/text/gbk_text.h"
#include "support/recording_host.h"

namespace {

constexpr float kQuarter = std::numbers::pi_v<float> / 2;

void expect_rect(const CFRect& r, float x1, float y1, float x2, float y2, const char* what) {
  EXPECT_NEAR(r.x1, x1, 1e-4) << what;
  EXPECT_NEAR(r.y1, y1, 1e-4) << what;
  EXPECT_NEAR(r.x2, x2, 1e-4) << what;
  EXPECT_NEAR(r.y2, y2, 1e-4) << what;
}

class Measure : public testing::Test {
 protected:
  void SetUp() override { dxf.New_MemDxf(); }
  ACAD_ENTITY& last() { return *static_cast<ACAD_ENTITY*>(dxf.m_EntityList.GetTail()); }
  qvtest::RecordingHost host;
  DXF dxf;
};

TEST_F(Measure, ExtentsOfEveryKind) {
  expect_rect(dxf.GetFRect(), 0, 0, 0, 0, "nothing");
  const float x[] = {0, 10};
  const float y[] = {0, 0};
  const float zero[] = {0, 0};
  const float bulge[] = {1, 0};
  dxf.Write_Point(1, 2, 0, "0");
  expect_rect(last().GetFRect(), -9, -8, 11, 12, "point");
  dxf.Write_Line(5, 1, 0, -3, 4, 9, "0", "1", "BYLAYER");
  expect_rect(last().GetFRect(), -3, 1, 5, 4, "line");
  expect_rect(last().GetFRect3D(0, 0), -3, 0, 5, 9, "line from the front");
  dxf.Write_Circle(1, 2, 0, 3, "0", "1", "BYLAYER");
  expect_rect(last().GetFRect(), -2, -1, 4, 5, "circle");
  dxf.Write_Arc(0, 0, 0, 2, 45, 135, "0", "1", "BYLAYER");
  expect_rect(last().GetFRect(), -1.41421F, 1.41421F, 1.41421F, 2, "arc");
  dxf.Write_Pline(2, x, y, zero, bulge, 0, zero, zero, "0", "1", "BYLAYER");
  expect_rect(last().GetFRect(), 0, -5, 10, 0, "half circle below");
  dxf.Write_Solid(0, 0, 5, 1, 0, 5, 0, 1, 5, 1, 1, 5, "0", "1", "BYLAYER");
  expect_rect(last().GetFRect(), 0, 0, 1, 1, "solid");
  expect_rect(last().GetFRect3D(0, 0), 0, 5, 1, 5, "solid from the front");
  expect_rect(dxf.GetFRect(), -9, -8, 11, 12, "all");
  EXPECT_NEAR(dxf.GetFRect3D(0, kQuarter).y2, dxf.GetFRect().y2, 1e-4);
}

TEST_F(Measure, BlocksAreMeasuredAndPickedWhereTheyAreInserted) {
  auto* block = new ACAD_BLOCK;
  qv::copy_text(block->m_szName, "B");
  block->m_Base = {1, 0, 0};
  block->m_EntityList.AddTail(new ACAD_LINE);  // (0,0,0) to (1,1,1)
  dxf.m_BlockList.AddTail(block);
  auto* insert = new ACAD_INSERT;
  qv::copy_text(insert->m_szBlock, "B");
  insert->m_Insert = {11, 20, 0};
  dxf.m_EntityList.AddTail(insert);
  expect_rect(insert->GetFRect(), 0, 0, 0, 0, "an insert by itself");
  expect_rect(block->GetFRect(insert), 10, 20, 11, 21, "placed");
  expect_rect(block->GetFRect3D(0, 0, insert), 10, 0, 11, 1, "placed, from the front");
  expect_rect(dxf.GetFRect(), 10, 20, 11, 21, "document");
  EXPECT_EQ(dxf.HitTest(CFRect(9, 19, 12, 22), 0, 0, kQuarter), 1);
  EXPECT_EQ(dxf.HitTest(CFRect(0, 0, 2, 2), 1, 0, kQuarter), 0);
}

TEST_F(Measure, PicksAreInsideOrCrossing) {
  const float x[] = {0, 10, 10};
  const float y[] = {0, 0, 10};
  const float zero[] = {0, 0, 0};
  const std::function<void()> compose[] = {
      [&] { dxf.Write_Line(0, 0, 0, 10, 10, 0, "0", "1", "BYLAYER"); },
      [&] { dxf.Write_Circle(5, 5, 0, 5, "0", "1", "BYLAYER"); },
      [&] { dxf.Write_Arc(0, 0, 0, 10, 0, 90, "0", "1", "BYLAYER"); },
      [&] { dxf.Write_Pline(3, x, y, zero, zero, 1, zero, zero, "0", "1", "BYLAYER"); },
      [&] { dxf.Write_3DFace(0, 0, 0, 10, 0, 0, 10, 10, 0, 0, 10, 0, "0", "1", "BYLAYER"); },
      [&] { dxf.Write_Solid(0, 0, 0, 10, 0, 0, 0, 10, 0, 10, 10, 0, "0", "1", "BYLAYER"); }};
  for (const auto& one : compose) {
    dxf.Close();
    dxf.New_MemDxf();
    one();
    ACAD_ENTITY& entity = last();
    const int type = entity.GetType();
    const auto hit = [&](const CFRect& r, int mode) { return entity.HitTest(r, mode, 0, kQuarter); };
    EXPECT_EQ(hit(CFRect(-1, -1, 11, 11), 0), 1) << type;
    EXPECT_EQ(hit(CFRect(-1, -1, 11, 11), 1), 1) << type;
    EXPECT_EQ(hit(CFRect(6, -1, 11, 11), 0), 0) << type;
    EXPECT_EQ(hit(CFRect(6, -1, 11, 11), 1), 1) << type;
    EXPECT_EQ(hit(CFRect(20, 20, 30, 30), 1), 0) << type;
    EXPECT_EQ(dxf.HitTest(CFRect(6, -1, 11, 11), 1, 0, kQuarter), 1) << type;
    // Within the extent, off the outline: only what has an area is hit.
    const bool area = type == ACAD_TYPE_SOLID || type == ACAD_TYPE_3DFACE;
    EXPECT_EQ(hit(CFRect(3, 2, 4, 2.5F), 1), area ? 1 : 0) << type;
  }
}

TEST_F(Measure, TheFirstEntityHitIsNamed) {
  for (int i = 0; i < 5; ++i)
    dxf.Write_Line(static_cast<float>(i), 0, 0, static_cast<float>(i), 1, 0, "0", "1", "BYLAYER");
  EXPECT_EQ(dxf.HitTest(CFRect(1.5F, -1, 3.5F, 2), 0, 0, kQuarter), 3);
  // Seen from the side, all of them stand one behind the other.
  EXPECT_EQ(dxf.HitTest(CFRect(-0.5F, -0.5F, 1.5F, 0.5F), 1, kQuarter, 0), 1);
}

TEST_F(Measure, WhatIsNotDrawnDoesNotCount) {
  auto* polyline = new ACAD_POLYLINE;
  polyline->m_nFlags = 4;
  polyline->m_Vertices.SetSize(4);
  const int flags[] = {16, 8, 16, 8};  // the frame's vertices are not on the curve
  for (int i = 0; i < 4; ++i) {
    polyline->m_Vertices[i].m_nFlags = flags[i];
    polyline->m_Vertices[i].m_Point = {static_cast<float>(i), flags[i] == 16 ? 50.0F : 0.0F, 0};
  }
  dxf.m_EntityList.AddTail(polyline);
  expect_rect(dxf.GetFRect(), 1, 0, 3, 0, "the curve alone");
  EXPECT_EQ(dxf.HitTest(CFRect(-1, 40, 4, 60), 1, 0, kQuarter), 0);
  EXPECT_EQ(dxf.HitTest(CFRect(0, -1, 4, 1), 0, 0, kQuarter), 1);

  auto* block = new ACAD_BLOCK;
  qv::copy_text(block->m_szName, "B");
  block->m_EntityList.AddTail(new ACAD_LINE);
  block->m_EntityList.AddTail(new ACAD_INSERT);
  dxf.m_BlockList.AddTail(block);
  auto* insert = new ACAD_INSERT;
  qv::copy_text(insert->m_szBlock, "B");
  insert->m_Insert = {100, 0, 0};
  dxf.m_EntityList.AddTail(insert);
  EXPECT_EQ(dxf.HitTest(CFRect(99, -1, 102, 2), 0, 0, kQuarter), 2) << "a nested insert is passed over";
}

}  // namespace
