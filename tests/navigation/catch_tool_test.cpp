#include "qvtools/navigation/catch_tool.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/recording_window.h"

namespace {

using qv::CatchKind;

class CatchTool : public testing::Test {
 protected:
  CatchTool() {
    dxf.New_MemDxf();
    dxf.Write_Line(100, -100, 0, 200, -100, 0, "0", "1", "BYLAYER");
    prepared = std::make_unique<qv::PreparedDrawing>(dxf);
    tool.SetDrawing(prepared.get());
  }

  qvtest::RecordingWindow window{400, 300};
  DXF dxf;
  std::unique_ptr<qv::PreparedDrawing> prepared;
  qv::CatchTool tool{&window};
  CFPoint p;
};

TEST_F(CatchTool, TheBaseGoesOnAnsweringNothing) {
  CDrawTool base(&window);
  float step = 5;
  EXPECT_EQ(base.SetStep(step, 1) + base.SetLocate(p) + base.SetOffset(p) + base.GetCatchAll(p) + base.GetCatchOne(p),
            0);
}

TEST_F(CatchTool, LocatesThePointerStepsAndWhatItCatches) {
  EXPECT_EQ(tool.SetLocate(p), 0);
  tool.Locate({33, 41});
  EXPECT_EQ(tool.SetLocate(p), 1);
  EXPECT_EQ(p, CFPoint(33, -41));
  float step = 10, wrong = -1;
  EXPECT_EQ(tool.SetStep(step, 1), 1);
  EXPECT_EQ(tool.SetStep(wrong, 1), 0);
  p = {3, 0};
  EXPECT_EQ(tool.SetOffset(p), 1);
  EXPECT_EQ(*tool.Located(), (qv::PlanePoint{33, -40}));
  EXPECT_EQ(tool.Offset(), (qv::PlanePoint{30, -40}));
  tool.Locate({104, 97});
  EXPECT_EQ(*tool.Located(), (qv::PlanePoint{100, -100})) << "what is caught wins over steps";
  EXPECT_EQ(tool.GetCatchAll(p), 1);
  EXPECT_EQ(tool.Caught()->kind, CatchKind::End);
  tool.SetCatching(false);
  EXPECT_EQ(*tool.Located(), (qv::PlanePoint{103, -100}));
}

TEST_F(CatchTool, OneKindIsCaughtForOnePointAndTheNextSeesPerpendiculars) {
  tool.SetOneKind(CatchKind::Middle);
  tool.SetCatchOneObject();
  tool.Locate({104, 100});
  EXPECT_EQ(tool.Caught(), nullptr);
  tool.Locate({146, 100});
  EXPECT_EQ(*tool.Take(), (qv::PlanePoint{150, -100}));
  EXPECT_FALSE(tool.OneKind());
  tool.SetFrom(qv::PlanePoint{130, -20});
  tool.Locate({133, 101});
  ASSERT_GE(tool.CaughtCount(), 1);
  EXPECT_EQ(tool.Caught()->kind, CatchKind::Perpendicular);
  EXPECT_EQ(*tool.Located(), (qv::PlanePoint{130, -100}));
}

TEST_F(CatchTool, CandidatesAreGoneThroughInTurn) {
  dxf.Write_Line(104, -104, 0, 104, -200, 0, "0", "1", "BYLAYER");
  prepared = std::make_unique<qv::PreparedDrawing>(dxf);
  tool.SetDrawing(prepared.get());
  tool.Locate({101, 101});
  ASSERT_EQ(tool.CaughtCount(), 2);
  const qv::PlanePoint first = *tool.Located();
  tool.NextCaught();
  EXPECT_NE(*tool.Located(), first);
  tool.NextCaught();
  EXPECT_EQ(*tool.Located(), first);
}

/// As it is drawn twice, it is gone: whatever has been located in between.
TEST_F(CatchTool, MarksComeAndGoWithTheCursor) {
  tool.SwitchState(CDrawTool::DRAW_ZOOM, 1, 1);
  for (const CPoint at : {CPoint(104, 97), CPoint(150, 102), CPoint(300, 20), CPoint(199, 99)}) {
    tool.Locate(at);
    tool.OnMouseMove(0, at);
    EXPECT_GT(window.drawn(), 0);
  }
  tool.OnDraw(window.bitmap, 0);
  EXPECT_EQ(window.drawn(), 0);
}

TEST(CatchMark, EveryKindHasItsOwnShape) {
  std::vector<std::vector<COLORREF>> pictures;
  for (int kind = 0; kind < qv::kCatchKinds; ++kind) {
    qv::BitmapContext bitmap(31, 31, 0xFFFFFF);
    qv::DrawCatchMark(bitmap, {15, 15}, static_cast<CatchKind>(kind), 21);
    std::vector<COLORREF> pixels;
    for (int i = 0; i < 31 * 31; ++i) pixels.push_back(bitmap.GetPixel(i % 31, i / 31));
    EXPECT_EQ(std::count(pictures.begin(), pictures.end(), pixels), 0);
    EXPECT_GT(std::count(pixels.begin(), pixels.end(), 0U), 20);
    pictures.push_back(pixels);
  }
}

}  // namespace
