#include "qvtools/navigation/draw_tool.h"

#include <gtest/gtest.h>

#include "support/recording_window.h"

namespace {

class View : public CDrawTool {
 public:
  using CDrawTool::CDrawTool;
  int GetMaxRect(CFPoint& p1, CFPoint& p2) override {
    p1 = {-10, -20};
    p2 = {30, 0};
    return 1;
  }
  void PrepareDraw(const CPoint* from, const CPoint* to) override { prepared += !from && !to; }
  void SwitchCursor() override { ++switched; }
  short& counter() { return m_nCounter; }
  int prepared = 0;
  int switched = 0;
};

class DrawTool : public testing::Test {
 protected:
  /// The world point in the middle of the window.
  CFPoint center() const {
    return view.CurrentView().DPtoFP(CPoint(window.rect.Width() / 2, window.rect.Height() / 2));
  }
  void set(float x, float y, float scale) { view.SetCurrentView(CFCoor({x, y}, scale, 1)); }

  qvtest::RecordingWindow window{400, 200};
  View view{&window};
  CFPoint from, to;
};

TEST_F(DrawTool, HistoryKeepsTheLastTenViews) {
  view.ShowPre();
  EXPECT_EQ(window.repaints, 0) << "nothing to go back to, nothing to paint";
  for (int i = 1; i <= 11; ++i) {
    set(static_cast<float>(i), 0, 2);
    view.SetCurrentAngles({static_cast<float>(i), 1});
    view.SaveCoor();
  }
  view.SetCurrentView(CFCoor({0, 0}, 5, 0));
  for (int i = 11; i >= 2; --i) {
    EXPECT_EQ(view.CanShowPre(), 1);
    view.ShowPre();
    EXPECT_EQ(view.CurrentView().GetOrigin().x, static_cast<float>(i));
    EXPECT_EQ(view.CurrentView().IsReverseY(), 1);
    EXPECT_EQ(view.CurrentAngles(), (qv::ViewAngles{static_cast<float>(i), 1}));
  }
  EXPECT_EQ(view.CanShowPre(), 0);
  view.ShowPre();
  EXPECT_EQ(view.CurrentView().GetOrigin().x, 2);
  view.SaveCoor();
  view.ClearHistory();
  EXPECT_EQ(view.CanShowPre(), 0);
  EXPECT_EQ(window.repaints, 10);
  EXPECT_EQ(view.prepared, 10);
}

TEST_F(DrawTool, ZoomKeepsTheHorizontalCentreOnly) {
  set(0, 100, 1);
  const CFPoint before = center();
  view.ShowZoomOut();
  EXPECT_FLOAT_EQ(view.CurrentView().GetScale(), 1.1F);
  const float gained = 200 - 200 / 1.1F;
  EXPECT_NEAR(center().x, before.x, 1e-4);
  EXPECT_NEAR(center().y, before.y + gained, 1e-4) << "the centre moves up by the whole difference";
  view.ShowZoomIn();
  EXPECT_NEAR(view.CurrentView().GetScale(), 1, 1e-6);
  EXPECT_NEAR(view.CurrentView().GetOrigin().y, 100, 1e-4);
  view.ShowPre();
  EXPECT_FLOAT_EQ(view.CurrentView().GetScale(), 1.1F);
  set(1, 2, 0);
  view.ShowZoomOut();
  EXPECT_EQ(view.CurrentView().GetOrigin().y, 2) << "scale 0 changes nothing";
  EXPECT_EQ(window.repaints, 3);
}

TEST_F(DrawTool, FitsARectangleIntoTheWindow) {
  struct Case {
    CFPoint p1, p2;
    float scale;
    CFPoint origin;
  };
  const Case cases[] = {
      {{0, 0}, {100, 10}, 4, {0, 30}},     // wider than the window: its width counts
      {{100, 10}, {0, 0}, 4, {0, 30}},     // corners in any order
      {{0, 0}, {10, 100}, 2, {-95, 100}},  // higher
      {{-10, -5}, {10, 5}, 20, {-10, 5}},  // just so
  };
  for (const Case& c : cases) {
    view.ShowRect(c.p1, c.p2);
    EXPECT_EQ(view.CurrentView().GetScale(), c.scale);
    EXPECT_EQ(view.CurrentView().GetOrigin().x, c.origin.x);
    EXPECT_EQ(view.CurrentView().GetOrigin().y, c.origin.y);
  }
  view.ShowAll();
  EXPECT_EQ(view.CurrentView().GetScale(), 10);
  EXPECT_EQ(window.repaints, 5);
  EXPECT_EQ(view.prepared, 5);
  CDrawTool base(&window);
  base.ShowAll();
  EXPECT_EQ(base.CanShowPre(), 0) << "the base class has nothing to show";
}

TEST_F(DrawTool, ARectangleThatCannotBeFittedChangesNothing) {
  view.ShowRect({0, 5}, {100, 5});
  view.ShowRect({5, 0}, {5, 100});
  EXPECT_EQ(view.CanShowPre(), 0);
  view.ShowRect({0, 0}, {1e-8F, 1});
  EXPECT_EQ(view.CanShowPre(), 1) << "refused after the view was saved";
  window.rect.bottom = 1;
  view.ShowRect({0, 0}, {1, 1});
  EXPECT_EQ(view.CurrentView().GetScale(), 1);
  EXPECT_EQ(window.repaints, 0);
  view.ShowPre();
  view.ShowPre();
  EXPECT_EQ(view.CanShowPre(), 0);
}

TEST_F(DrawTool, Pans) {
  view.ShowMove({3, 4}, {3, 4});
  EXPECT_EQ(view.CanShowPre(), 1);
  EXPECT_EQ(window.repaints, 1);
  view.ShowMove({3, 4}, {1, 10});
  EXPECT_EQ(view.CurrentView().GetOrigin().x, 2);
  EXPECT_EQ(view.CurrentView().GetOrigin().y, -6);
}

TEST_F(DrawTool, StatesClearTheInteractionAndTellTheView) {
  view.counter() = 7;
  view.SwitchState(CDrawTool::DRAW_ZOOM, 1025, 0);
  EXPECT_EQ(view.counter(), 7);
  view.OnMouseMove(0, {50, 60});
  const int cursor = window.drawn();
  EXPECT_EQ(cursor, 4 * G_nCursorSize) << "cross hairs, crossing pixel inverted twice";
  view.OnLButtonDown(0, {50, 60});
  view.OnMouseMove(0, {150, 160});
  EXPECT_GT(window.drawn(), cursor + 300);
  EXPECT_EQ(window.bitmap.GetPixel(100, 60), 0xFFFF00U) << "white by exclusive or with red";
  view.SwitchState(static_cast<CDrawTool::DRAWTYPE>(CDrawTool::kOwnStates + 1), 1026, 1U);
  EXPECT_EQ(view.counter(), 0);
  EXPECT_EQ(window.drawn(), cursor) << "the band is gone, the cursor of the new state stands";
  view.SwitchState(CDrawTool::DRAW_NONE, 1027, 1);
  EXPECT_EQ(window.drawn(), 0);
  EXPECT_EQ(window.posted, (std::vector<unsigned>{1025, 1026, 1027}));
  EXPECT_EQ(view.switched, 3);
  EXPECT_EQ(window.contexts, 0);
}

TEST_F(DrawTool, TheMouseZoomsPansAndPicks) {
  set(0, 200, 1);
  view.SwitchState(CDrawTool::DRAW_ZOOM, 1, 0);
  view.OnLButtonDown(0, {100, 50});
  view.OnLButtonUp(0, {101, 51});  // let go where it was pressed: the other corner comes by a press
  view.OnMouseMove(0, {300, 150});
  view.OnLButtonDown(0, {300, 150});
  EXPECT_EQ(view.CurrentView().GetScale(), 2);
  EXPECT_EQ(view.CurrentView().GetOrigin().x, 100);

  view.SwitchState(CDrawTool::DRAW_PICK, 2, 0);
  window.posted.clear();
  view.OnMButtonDown(0, {10, 10});
  view.OnMButtonUp(0, {30, 10});
  EXPECT_EQ(view.CurrentView().GetOrigin().x, 90);
  EXPECT_EQ(view.State(), CDrawTool::DRAW_PICK);
  EXPECT_EQ(view.TakePick(from, to), 0);
  view.OnLButtonDown(0, {20, 20});
  view.OnRButtonDown(0, {25, 25});  // gives the corner up
  view.OnLButtonDown(0, {40, 0});
  view.OnLButtonUp(0, {20, 20});
  ASSERT_EQ(view.TakePick(from, to), 1);
  EXPECT_EQ(from.x, 110);
  EXPECT_EQ(to.x, 100) << "the order tells whether crossing counts";
  EXPECT_EQ(view.TakePick(from, to), 0);
  EXPECT_EQ(window.posted.back(), 2U);
  EXPECT_EQ(view.OnKeyDown(27, 1, 0), 1);
  EXPECT_EQ(view.State(), CDrawTool::DRAW_NONE);
  view.OnLButtonDown(0, {0, 0});
  view.OnLButtonUp(0, {90, 90});
  EXPECT_EQ(view.CurrentView().GetOrigin().x, 90) << "no state, no corners";
  EXPECT_EQ(view.OnKeyDown(8, 1, 0), 1);
  EXPECT_EQ(view.CurrentView().GetOrigin().x, 100);
}

TEST(DrawToolWithoutWindow, KeepsItsViewsAndDrawsNothing) {
  View view;
  view.SwitchState(CDrawTool::DRAW_PAN, 1, 0);
  view.OnLButtonDown(0, {0, 0});
  view.OnLButtonUp(0, {10, 0});
  EXPECT_EQ(view.CurrentView().GetOrigin().x, -10);
  view.ShowRect({0, 0}, {1, 1});
  EXPECT_EQ(view.CurrentView().GetScale(), 1);
}

}  // namespace
