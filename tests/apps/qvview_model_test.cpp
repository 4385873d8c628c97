#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <random>
#include <string>

#include "model/captions.h"
#include "model/plot_setup.h"
#include "model/view.h"
#include "support/recording_window.h"

using qvview::Drawing;
using qvview::Mode;
using qvview::View;
using qvview::ViewAngles;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A frame 1000 by 800 of four lines, a circle about (300, 300), a white line across it on a layer that is marked as
/// off, a point, and a block of a line and a point placed at (700, 600).
std::unique_ptr<DXF> sample() {
  auto dxf = std::make_unique<DXF>();
  dxf->New_MemDxf();
  dxf->Add_Layer("FRAME", 7, "CONTINUOUS");
  dxf->Add_Layer("HOLE", 1, "CONTINUOUS");
  dxf->Add_Layer("HIDDEN", -3, "CONTINUOUS");
  dxf->Write_Line(0, 0, 0, 1000, 0, 0, "FRAME", "BYLAYER", "BYLAYER");
  dxf->Write_Line(1000, 0, 0, 1000, 800, 0, "FRAME", "BYLAYER", "BYLAYER");
  dxf->Write_Line(1000, 800, 0, 0, 800, 0, "FRAME", "BYLAYER", "BYLAYER");
  dxf->Write_Line(0, 800, 0, 0, 0, 0, "FRAME", "BYLAYER", "BYLAYER");
  dxf->Write_Circle(300, 300, 0, 100, "HOLE", "BYLAYER", "BYLAYER");
  dxf->Write_Line(100, 300, 0, 600, 300, 0, "HIDDEN", "BYLAYER", "BYLAYER");
  dxf->Write_Point(800, 200, 0, "HOLE");
  auto* const block = new ACAD_BLOCK;
  qv::copy_text(block->m_szName, "B");
  auto* const line = new ACAD_LINE;
  line->m_End = {100, 0, 0};
  qv::copy_text(line->m_szLayer, "ELSEWHERE");
  block->m_EntityList.AddTail(line);
  auto* const point = new ACAD_POINT;
  point->m_Point = {50, 50, 0};
  block->m_EntityList.AddTail(point);
  dxf->m_BlockList.AddTail(block);
  auto* const insert = new ACAD_INSERT;
  qv::copy_text(insert->m_szBlock, "B");
  insert->m_Insert = {700, 600, 0};
  dxf->m_EntityList.AddTail(insert);
  return dxf;
}

std::unique_ptr<Drawing> drawing(bool light = true) {
  return std::make_unique<Drawing>(sample(), light);
}

struct Counting : View::Listener {
  void on_view_changed() override { ++views; }
  void on_picks_changed() override { ++picks; }
  void on_mode_changed() override { ++modes; }
  int views = 0;
  int picks = 0;
  int modes = 0;
};

/// A view of the sample in a window of 500 by 400 pixels.
class ViewTest : public testing::Test {
 protected:
  ViewTest() { view.open(drawing()); }

  CPoint pixel(float x, float y) const { return view.CurrentView().FPtoDP(CFPoint(x, y)); }
  void drag(CPoint from, CPoint to, bool add = false) {
    view.move(from);
    view.left_down(from, add);
    view.move(to);
    view.left_up(to, add);
    deliver();
  }
  void click(CPoint at, bool add = false) { drag(at, at, add); }
  void deliver() {
    for (const unsigned int message : std::exchange(window.posted, {})) view.on_message(message);
  }
  void paint() {
    window.bitmap.Clear(0xFFFFFF);
    view.paint(window.bitmap);
  }
  std::vector<std::uint32_t> painted() {
    paint();
    return shown();
  }
  std::vector<std::uint32_t> shown() const { return {window.bitmap.Pixels(), window.bitmap.Pixels() + 500 * 400}; }

  qvtest::RecordingWindow window{500, 400};
  Counting told;
  View view{window, told};
};

TEST(Captions, StandInBothLanguagesAndTakeTheSameWords) {
  const auto count = [](const std::string& text, const std::string& part) {
    int n = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++n;
    return n;
  };
  for (int i = 0; i < static_cast<int>(qvview::Text::kCount); ++i) {
    const std::string chinese = caption(static_cast<qvview::Text>(i), qvview::Language::Chinese);
    const std::string english = caption(static_cast<qvview::Text>(i), qvview::Language::English);
    EXPECT_FALSE(english.empty()) << i;
    EXPECT_TRUE(std::any_of(chinese.begin(), chinese.end(), [](char c) { return (c & 0x80) != 0; })) << english;
    EXPECT_EQ(std::string::npos, english.find("\xE4")) << english;
    for (const char* part : {"%1", "%2", "&", "<tr>"}) EXPECT_EQ(count(chinese, part), count(english, part)) << english;
  }
}

TEST(ViewerDrawing, LayersComeFromTheTablesAndTheEntities) {
  const auto d = drawing();
  std::vector<std::string> names;
  for (const qvview::Layer& layer : d->layers()) names.push_back(layer.name + (layer.on ? "" : " off"));
  EXPECT_THAT(names, ElementsAre("0", "FRAME", "HOLE", "HIDDEN off", "ELSEWHERE"));
  EXPECT_EQ(d->layers()[3].color, 3);
  EXPECT_EQ(d->layers()[1].entities, 4);
  EXPECT_EQ(d->count(), 8);
  EXPECT_EQ(d->shown_count(), 7);
  EXPECT_EQ(d->own_color(4), qv::kByLayer);
}

TEST(ViewerDrawing, WhatIsOffIsNeitherDrawnNorPickedNorMeasured) {
  const auto d = drawing();
  const CFRect all(-10, -10, 1010, 810);
  EXPECT_THAT(d->pick(all, false, {}), ElementsAre(0, 1, 2, 3, 4, 6, 7));
  d->show_layers({true, false, true, false, false});
  EXPECT_THAT(d->pick(all, false, {}), ElementsAre(4, 6, 7));
  EXPECT_THAT(d->pick(CFRect(690, 590, 720, 610), true, {}), IsEmpty()) << "the block's line is off as well";
  EXPECT_EQ(d->extent({}).x1, 200);
  const auto other = drawing();
  other->show_layers_as(*d);
  EXPECT_THAT(other->pick(all, false, {}), ElementsAre(4, 6, 7));
}

TEST(ViewerDrawing, ColoursFollowTheBackgroundAndPointsTheirLayer) {
  const auto d = drawing();
  const CFCoor coor(CFPoint(0, 800), 0.5F, 1);
  struct {
    bool light;
    COLORREF back, frame, blockPoint;
  } const rows[] = {{true, 0xFFFFFF, 0x000000, 0x000000}, {false, 0x000000, 0xFFFFFF, 0xFFFFFF}};
  for (const auto& row : rows) {
    d->set_background(row.light);
    qv::BitmapContext bitmap(520, 420, row.back);
    d->draw(bitmap, coor, {});
    EXPECT_EQ(bitmap.GetPixel(250, 400), row.frame);
    EXPECT_EQ(bitmap.GetPixel(400, 300), qv::rgb(255, 0, 0)) << "the point";
    EXPECT_EQ(bitmap.GetPixel(375, 75), row.blockPoint);
    EXPECT_EQ(bitmap.GetPixel(120, 250), row.back) << "the hidden line";
  }
}

/// How many pixels of a page have a colour.
int page_pixels(qvview::PlotJob& job, COLORREF color) {
  qv::BitmapContext bitmap(420, 297, 0xFFFFFF);
  EXPECT_TRUE(job.draw(0, bitmap, 1));
  int n = 0;
  for (int y = 0; y < bitmap.Height(); ++y)
    for (int x = 0; x < bitmap.Width(); ++x) n += bitmap.GetPixel(x, y) == color;
  return n;
}

TEST_F(ViewTest, PlotsTheDrawingAsItWasLoadedAndStaysAsItWas) {
  auto dxf = sample();
  POSITION at = dxf->m_EntityList.GetHeadPosition();
  for (int i = 0; i < 4; ++i) dxf->m_EntityList.GetNext(at);
  const auto* const circle = static_cast<ACAD_ENTITY*>(dxf->m_EntityList.GetNext(at));
  qv::DrawingNotes notes;
  notes.entities.push_back({circle, 500, 0x3366CC, ""});
  view.open(std::make_unique<Drawing>(std::move(dxf), false, notes));  // white on black on screen
  view.set_light(false);
  const auto before = painted();
  qvview::PlotSetup setup;
  setup.colors = qv::PlotColors::Color;
  setup.pens = "object";
  const auto noted = qv::rgb(0x33, 0x66, 0xCC), hidden = qv::rgb(0, 255, 0);
  const auto plotted = [&](COLORREF color) {
    qvview::PlotJob job(view, "d", setup, qvview::Language::English);
    EXPECT_EQ(job.problem(), "");
    return page_pixels(job, color);
  };
  EXPECT_GT(plotted(noted), 5 * 200) << "the circle in its true colour, five pixels wide";
  EXPECT_GT(plotted(qv::rgb(0, 0, 0)), 1000) << "the frame is black on paper";
  EXPECT_EQ(plotted(hidden), 0);
  EXPECT_EQ(painted(), before);
  view.drawing()->show_layers({true, true, false, true, true});
  EXPECT_EQ(plotted(noted), 0);
  EXPECT_GT(plotted(hidden), 150) << "what the viewer shows is plotted, though the file hides it";
}

TEST_F(ViewTest, ASetupIsTakenAsTypedOrRefusedInWords) {
  const auto said = [&](const qvview::PlotSetup& setup, qvview::Language language = qvview::Language::English) {
    const qvview::PlotJob job(view, "d", setup, language);
    return job.pages() == 1 ? job.words(0) : job.problem();
  };
  qvview::PlotSetup setup;
  EXPECT_EQ(said(setup), "A3, 1:2.79") << "fitted: 800 mm in 287";
  setup.paper = "a2";
  setup.scale = qvview::PlotSetup::Scale::Number;
  for (const char* typed : {"1:2", "2", " 1 : 2",
                            "1\xEF\xBC\x9A"
                            "2"}) {
    setup.number = typed;
    EXPECT_EQ(said(setup), "A2, 1:2") << typed;
  }
  setup.number = "1:1";
  setup.paper =
      "900\xC3\x97"
      "500";
  EXPECT_EQ(said(setup), "900x500, 1:1\nDoes not fit: it takes 1000 x 800 mm, the paper has 900 x 500 mm");
  EXPECT_NE(said(setup, qvview::Language::Chinese), said(setup));
  for (const char* bad : {"", "1:0", "x", "1:-5", "1:50x"}) {
    setup.number = bad;
    EXPECT_EQ(said(setup), std::string("A scale is like 1:50, not ") + bad);
  }
  setup.scale = qvview::PlotSetup::Scale::Fits;
  setup.paper = "A9";
  EXPECT_NE(said(setup).find("no paper A9"), std::string::npos) << said(setup);
  setup.paper = "A3";
  setup.pens = "/no/such.pens";
  EXPECT_EQ(said(setup).find("/no/such.pens: "), 0u) << said(setup);
  setup.pens = "mono";
  setup.what = qvview::PlotSetup::What::View;
  view.set_angles({0, 0});
  qvview::PlotJob job(view, "d", setup, qvview::Language::English);
  ASSERT_EQ(job.pages(), 1);
  EXPECT_GT(page_pixels(job, 0), 300) << "from the front the frame is a line across the page";
}

TEST_F(ViewTest, OpensFittedWithoutAHistory) {
  EXPECT_FALSE(view.CanShowPre());
  for (const CFPoint& corner : {CFPoint(0, 0), CFPoint(1000, 800)}) {
    const CPoint p = view.CurrentView().FPtoDP(corner);
    EXPECT_TRUE(p.x > 2 && p.x < 498 && p.y > 2 && p.y < 398) << p.x << ", " << p.y;
  }
  window.rect = CRect(0, 0, 800, 400);
  view.resized();
  EXPECT_LT(std::abs(pixel(500, 400).x - 400), 2) << "everything stays in view";
  view.pan_by(0.25, 0);
  const CFPoint middle = view.CurrentView().DPtoFP(CPoint(400, 200));
  window.rect = CRect(0, 0, 300, 300);
  view.resized();
  EXPECT_LT(std::abs(view.CurrentView().FPtoDP(middle).x - 150), 2) << "the middle stays";
}

TEST_F(ViewTest, TheWheelKeepsThePointAndItsTurnIsOneEntry) {
  const std::vector<std::uint32_t> first = painted();
  const CPoint at(123, 321);
  const CFPoint world = view.CurrentView().DPtoFP(at);
  const float scale = view.CurrentView().GetScale();
  for (int i = 0; i < 5; ++i) {
    view.wheel(at, 1, i > 0);
    const CPoint now = view.CurrentView().FPtoDP(world);
    EXPECT_LE(std::max(std::abs(now.x - at.x), std::abs(now.y - at.y)), 1);
  }
  EXPECT_NEAR(view.CurrentView().GetScale() / scale, std::pow(1.25, 5), 0.001);
  view.ShowPre();
  EXPECT_EQ(painted(), first);
  EXPECT_FALSE(view.CanShowPre());
  view.wheel(at, 1, false);
  view.zoom_out();
  view.wheel(at, 1, true);
  for (int i = 0; i < 3; ++i) view.ShowPre();
  EXPECT_EQ(painted(), first) << "a command between ends the turn";
  for (int i = 0; i < 200; ++i) view.wheel(at, 3, false);
  EXPECT_TRUE(std::isfinite(view.CurrentView().GetScale()));
  const float closest = view.CurrentView().GetScale();
  view.zoom_out();
  EXPECT_EQ(view.CurrentView().GetScale(), closest) << "no closer than coordinates can tell";
}

TEST_F(ViewTest, PreviousViewsComeBackWithTheirAngles) {
  const std::vector<std::uint32_t> first = painted();
  view.set_angles({0.5F, 0.6F});
  view.pan_by(0.1, 0.1);
  view.set_angles({-0.5F, 0.6F});
  view.ShowPre();
  EXPECT_EQ(view.CurrentAngles(), (ViewAngles{0.5F, 0.6F}));
  view.ShowPre();
  EXPECT_EQ(view.CurrentAngles(), (ViewAngles{0.5F, 0.6F}));
  view.ShowPre();
  EXPECT_TRUE(view.CurrentAngles().is_plan());
  EXPECT_EQ(painted(), first);
}

TEST_F(ViewTest, DraggingWithTheMiddleButtonOrTheHandPans) {
  for (const bool hand : {false, true}) {
    const CFPoint world = view.CurrentView().DPtoFP(CPoint(100, 100));
    if (hand) view.set_mode(Mode::Hand);
    view.move({100, 100});
    hand ? view.left_down({100, 100}, false) : view.middle_down({100, 100});
    view.move({150, 80});
    EXPECT_EQ(view.dragged_by(), CPoint(50, -20));
    EXPECT_EQ(view.pointer()->x, world.x);
    hand ? view.left_up({160, 70}, false) : view.middle_up({160, 70});
    EXPECT_FALSE(view.dragged_by());
    EXPECT_EQ(view.CurrentView().FPtoDP(world), CPoint(160, 70));
  }
  const CFCoor before = view.CurrentView();
  view.left_down({10, 10}, false);
  view.move({60, 60});
  EXPECT_TRUE(view.cancel());
  view.left_up({60, 60}, false);
  EXPECT_EQ(view.CurrentView().GetOrigin().x, before.GetOrigin().x) << "given up";
}

TEST_F(ViewTest, TheLastPictureIsShownMovedAndScaledUntilTheSharpOneIsThere) {
  const auto show = [&] {
    view.show(window.bitmap, 0xFFFFFF);
    return shown();
  };
  const auto matches = [&](CPoint at) { return window.bitmap.GetPixel(at.x, at.y) == 0; };
  EXPECT_EQ(show(), painted()) << "the first one is waited for";
  const CPoint corner = pixel(0, 800);
  {
    const Drawing::Still nothingIsDrawn(*view.drawing());
    view.middle_down({100, 100});
    view.move({160, 70});
    show();
    EXPECT_TRUE(matches({corner.x + 60, corner.y - 30 + 20}));
    EXPECT_FALSE(matches({corner.x, corner.y + 20}));
    view.middle_up({160, 70});
    view.leave();
    view.wheel({corner.x + 60, corner.y - 30}, 4, false);
    view.set_light(true);
    EXPECT_NE(show(), painted()) << "lines are as wide as the picture is enlarged";
    show();
    EXPECT_TRUE(matches({corner.x + 60, corner.y - 30 + 50}));
    EXPECT_THAT(window.posted, testing::Not(testing::Contains(2U)));
  }
  view.set_patience(std::chrono::minutes(1));
  EXPECT_EQ(show(), painted());
}

TEST(BitmapContext, CopiesAnotherMovedAndScaled) {
  std::minstd_rand random(3);
  qv::BitmapContext from(40, 30, 0);
  for (int i = 0; i < 1200; ++i) from.SetPixel(i % 40, i / 40, static_cast<COLORREF>(random() & 0xFFFFFF));
  for (const auto& [left, top, scale] : {std::array{3.0, -7.0, 1.0}, {-20.4, 5.6, 2.7}, {10, 12, 0.3}, {90, 0, 1}}) {
    qv::BitmapContext to(50, 40, 0x123456);
    to.CopyScaled(from, left, top, scale);
    for (int y = 0; y < 40; ++y)
      for (int x = 0; x < 50; ++x) {
        const double i = std::floor((x - left) / scale + 0.5), j = std::floor((y - top) / scale + 0.5);
        const bool covered = i >= 0 && i < 40 && j >= 0 && j < 30;
        EXPECT_EQ(to.GetPixel(x, y),
                  covered ? from.GetPixel(static_cast<int>(i), static_cast<int>(j)) : COLORREF{0x123456});
      }
  }
}

TEST_F(ViewTest, PicksTakeWhatIsInsideOrToTheLeftWhatIsCrossedToo) {
  const CPoint topLeft = pixel(150, 450);
  const CPoint bottomRight = pixel(900, -20);
  drag(topLeft, bottomRight);
  EXPECT_THAT(view.picks(), ElementsAre(4, 6));
  drag(bottomRight, topLeft);
  EXPECT_THAT(view.picks(), ElementsAre(0, 4, 6));
  click(pixel(200, 300), true);
  EXPECT_THAT(view.picks(), ElementsAre(0, 6)) << "the circle's edge, once more";
  click(pixel(1000, 500));
  EXPECT_THAT(view.picks(), ElementsAre(1));
  // Beside all, two clicks are the corners of a window.
  click(pixel(600, 700));
  EXPECT_THAT(view.picks(), ElementsAre(1));
  click(pixel(850, 500));
  EXPECT_THAT(view.picks(), ElementsAre(7));
  EXPECT_EQ(told.picks, 5);
  // The first corner stays where it is in the drawing, whatever is done to the view before the other.
  click(pixel(150, 450));
  view.wheel(pixel(150, 450), 2, false);
  view.pan_by(0.2, -0.3);
  view.middle_down({100, 100});
  view.middle_up({90, 130});
  view.zoom_in();
  click(pixel(450, 150));
  EXPECT_THAT(view.picks(), ElementsAre(4));
  view.select_all();
  EXPECT_EQ(view.picks().size(), 7U);
  view.drawing()->show_layers({true, false, true, false, false});
  view.drawing_changed();
  EXPECT_THAT(view.picks(), ElementsAre(4, 6, 7)) << "picks that are no longer shown go";
  view.clear_picks();
  EXPECT_THAT(view.picks(), IsEmpty());
}

TEST_F(ViewTest, PicksGoByWhatIsSeenFromTheSide) {
  view.set_angles({0, 0});  // all of it lies in one line then
  click(pixel(300, 0));
  EXPECT_EQ(view.picks().size(), 1U);
}

TEST_F(ViewTest, ThePointerLeavesNoTraces) {
  const std::vector<std::uint32_t> clean = painted();
  view.move({100, 100});
  EXPECT_NE(shown(), clean);
  view.left_down({100, 100}, false);
  view.move({300, 200});
  EXPECT_TRUE(view.cancel());
  view.leave();
  EXPECT_EQ(shown(), clean);
  view.move({50, 50});
  paint();
  view.move({60, 50});
  view.set_mode(Mode::Hand);
  EXPECT_EQ(shown(), clean) << "the hand needs no cross hairs";
  view.move({70, 50});
  view.set_mode(Mode::Pick);
  view.leave();
  EXPECT_EQ(shown(), clean);
  EXPECT_EQ(window.contexts, 0);
}

TEST_F(ViewTest, AReloadKeepsTheViewAndTheLayers) {
  view.drawing()->show_layers({true, false, true, true, true});
  view.drawing_changed();
  view.wheel({200, 200}, 2, false);
  view.select_all();
  const CFCoor before = view.CurrentView();
  view.reload(drawing());
  EXPECT_EQ(view.CurrentView().GetScale(), before.GetScale());
  EXPECT_EQ(view.CurrentView().GetOrigin().x, before.GetOrigin().x);
  EXPECT_FALSE(view.drawing()->layers()[1].on);
  EXPECT_TRUE(view.drawing()->layers()[3].on);
  EXPECT_THAT(view.picks(), IsEmpty());
  EXPECT_TRUE(view.CanShowPre());
}

TEST_F(ViewTest, WhatIsSeenFitsPicturesOfOtherSizes) {
  view.wheel(pixel(300, 300), 4, false);
  const CFPoint middle = view.CurrentView().DPtoFP(CPoint(250, 200));
  qv::BitmapContext same(500, 400, 0xFFFFFF);
  view.draw_into(same, {500, 400}, false);
  EXPECT_EQ(std::vector<std::uint32_t>(same.Pixels(), same.Pixels() + 500 * 400), painted());
  EXPECT_LT(std::fabs(middle.x - 300), 200) << "the circle is in view";
  qv::BitmapContext large(1000, 800, 0xFFFFFF);
  view.draw_into(large, {1000, 800}, true);
  int red = 0;
  for (int i = 0; i < 1000 * 800; ++i) red += large.Pixels()[i] == 0xFFFF0000;
  EXPECT_GT(red, 500);
}

// ---------------------------------------------------------------- measuring, finding, properties

TEST_F(ViewTest, MeasuresChainsAnglesCirclesAndAreasAtCaughtPoints) {
  using qvview::MeasureKind;
  const auto give = [&](float x, float y) {
    const CPoint at = pixel(x, y);
    view.move({at.x + 3, at.y - 2});
    view.left_down({at.x + 3, at.y - 2}, false);
    view.left_up({at.x + 3, at.y - 2}, false);
  };
  view.begin_measure(MeasureKind::Distance);
  give(0, 0), give(1000, 0), give(1000, 800);
  EXPECT_TRUE(view.cancel()) << "the right button ends the chain";
  view.begin_measure(MeasureKind::Angle);
  give(0, 0), give(1000, 0), give(0, 800);
  view.begin_measure(MeasureKind::Radius);
  give(400, 300);
  view.begin_measure(MeasureKind::Area);
  give(0, 0), give(1000, 0), give(1000, 800), give(0, 800);
  EXPECT_TRUE(view.finish_measure());
  view.begin_measure(MeasureKind::ObjectArea);
  give(300, 400);
  const auto& results = view.measuring().results();
  ASSERT_EQ(results.size(), 5U);
  EXPECT_DOUBLE_EQ(results[0].sum(), 1800);
  EXPECT_DOUBLE_EQ(results[1].degrees(), 90);
  EXPECT_DOUBLE_EQ(results[2].leg(0), 100);
  EXPECT_DOUBLE_EQ(results[3].enclosed(), 800000);
  EXPECT_NEAR(results[4].enclosed(), 31415.93, 0.01);
  EXPECT_NE(
      view.measuring().words(qvview::Language::English).find("distance 800   Δx 0   Δy 800   angle 90°   sum 1800"),
      std::string::npos);
  std::vector<qvview::OverlayLabel> labels;
  view.paint_overlay(window.bitmap, labels);
  EXPECT_GE(labels.size(), 6U);
  view.clear_measures();
  EXPECT_TRUE(view.cancel()) << "the mode";
  EXPECT_EQ(view.mode(), Mode::Pick);
}

TEST_F(ViewTest, LettersChooseWhatIsCaughtNext) {
  view.begin_measure(qvview::MeasureKind::Coordinates);
  const CPoint at = pixel(390, 300);
  view.move(at);
  ASSERT_TRUE(view.Caught());
  EXPECT_EQ(view.Caught()->kind, qv::CatchKind::Quadrant);
  EXPECT_TRUE(view.catch_by_letter('c'));
  ASSERT_TRUE(view.Caught());
  EXPECT_EQ(view.Caught()->at, (qv::PlanePoint{300, 300}));
  EXPECT_TRUE(view.catch_by_letter('f'));
  EXPECT_FALSE(view.Caught());
  EXPECT_FALSE(view.catch_by_letter('z'));
}

TEST(FindTexts, FindsTextsOfBlocksWholeWordsAndSignsHoweverTheyAreWritten) {
  auto dxf = sample();
  dxf->Write_Text(10, 20, 0, 30, 0, "KL-12(2)", "STANDARD", "0", "BYLAYER", "BYLAYER");
  dxf->Write_Text(10, 90, 0, 30, 0, "4%%c25 kl-1", "STANDARD", "0", "BYLAYER", "BYLAYER");
  auto* const text = new ACAD_TEXT;
  qv::copy_text(text->m_szText, qv::to_gbk("梁ＫＬ-１").c_str());
  static_cast<ACAD_BLOCK*>(dxf->m_BlockList.GetHead())->m_EntityList.AddTail(text);
  Drawing drawing(std::move(dxf), true);
  const auto found = [&](const char* words, bool matchCase = false, bool wholeWord = false) {
    std::vector<int> entities;
    for (const qvview::Hit& hit : qvview::find_texts(drawing, {words, matchCase, wholeWord}, {}))
      entities.push_back(hit.entity);
    return entities;
  };
  EXPECT_THAT(found("kl-1"), ElementsAre(7, 8, 9));
  EXPECT_THAT(found("KL-1", true), ElementsAre(7, 8));
  EXPECT_THAT(found("KL-1", false, true), ElementsAre(7, 9));
  EXPECT_THAT(found("4Φ25"), ElementsAre(9));
  EXPECT_THAT(found("梁"), ElementsAre(7));
  EXPECT_THAT(found(""), IsEmpty());
}

/// CAD programs hide of a block what lies on layers that are off; the insert's own layer hides what lies on "0".
TEST_F(ViewTest, AnInsertOnALayerThatIsOffShowsWhatLiesOnOthers) {
  const auto switch_off = [&](const char* name) {
    std::vector<bool> on;
    for (const qvview::Layer& layer : view.drawing()->layers()) on.push_back(layer.name != name);
    view.drawing()->show_layers(on);
    view.drawing_changed();
  };
  switch_off("0");
  EXPECT_TRUE(view.drawing()->is_shown(7));
  EXPECT_THAT(view.drawing()->pick(CFRect(690, 590, 810, 610), true, {}), ElementsAre(7));
  EXPECT_THAT(view.drawing()->pick(CFRect(740, 640, 760, 660), true, {}), IsEmpty()) << "the point is on layer 0";
  switch_off("ELSEWHERE");
  EXPECT_THAT(view.drawing()->pick(CFRect(690, 590, 810, 610), true, {}), IsEmpty());
}

TEST_F(ViewTest, PicksAreKeptAsADrawingOfTheirOwnAndTheirLayersAreSwitched) {
  view.select_all();
  const std::unique_ptr<DXF> part = view.drawing()->part({4, 7});
  ASSERT_TRUE(part);
  EXPECT_EQ(part->m_EntityList.GetCount(), 2);
  EXPECT_EQ(part->m_BlockList.GetCount(), 1);
  EXPECT_EQ(static_cast<ACAD_CIRCLE*>(part->m_EntityList.GetHead())->m_nColor, qv::kByLayer) << "as it was loaded";
  click(pixel(400, 300));
  ASSERT_THAT(view.picks(), ElementsAre(4));
  view.show_picked_layers(true);
  EXPECT_FALSE(view.drawing()->is_shown(0));
  EXPECT_TRUE(view.drawing()->is_shown(4));
  view.show_all_layers();
  EXPECT_TRUE(view.drawing()->is_shown(5));
}

}  // namespace
