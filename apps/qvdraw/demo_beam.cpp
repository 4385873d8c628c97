#include <cmath>
#include <iterator>

#include "demo.h"
#include "demo_captions.h"
#include "demo_sheet.h"

namespace qvdraw {

namespace {

constexpr float kScale = 50;
constexpr float kAxes[] = {8600, 15200, 21800};
constexpr float kLeft = kAxes[0];
constexpr float kRight = kAxes[2];
constexpr float kTop = 16000;
constexpr float kBottom = kTop - 700;
constexpr float kHalfColumn = 250;
constexpr float kStub = 800;
constexpr float kCover = 40;
constexpr float kDense = 1050;  // zone of close stirrups at a support
constexpr float kExtra = 2000;  // reach of the extra top bars from a support

const std::string kTopText = std::string("2") + kGrade3 + "25";
const std::string kExtraText = std::string("2") + kGrade3 + "22";
const std::string kBottomText = std::string("4") + kGrade3 + "22";
const std::string kStirrupText = std::string(kGrade1) + "8@100/200(2)";

void draw_concrete(CBase_SGT& sgt) {
  use_pen(sgt, "CONCRETE", "7");
  for (std::size_t i = 0; i < std::size(kAxes); ++i) {
    const float left = kAxes[i] - kHalfColumn;
    const float right = kAxes[i] + kHalfColumn;
    sgt.Draw_Line(left, kTop + kStub, left, i == 0 ? kBottom - kStub : kTop);
    sgt.Draw_Line(right, kTop + kStub, right, i == 2 ? kBottom - kStub : kTop);
    if (i != 0) sgt.Draw_Line(left, kBottom, left, kBottom - kStub);
    if (i != 2) sgt.Draw_Line(right, kBottom, right, kBottom - kStub);
    sgt.Draw_Cut_Sym(left, kTop + kStub, right, kTop + kStub);
    sgt.Draw_Cut_Sym(left, kBottom - kStub, right, kBottom - kStub);
    if (i == 2) break;
    sgt.Draw_Line(right, kTop, kAxes[i + 1] - kHalfColumn, kTop);
    sgt.Draw_Line(right, kBottom, kAxes[i + 1] - kHalfColumn, kBottom);
  }
  sgt.m_fDimTextHeight = sgt.m_fZiGao[1];
  for (std::size_t i = 0; i < std::size(kAxes); ++i) {
    use_pen(sgt, "AXIS", "1", "DASHDOT");
    sgt.Draw_Line(kAxes[i], kTop + kStub + 400, kAxes[i], kBottom - 2300);
    use_pen(sgt, "AXIS", "1");
    sgt.Draw_ZhouFu(kAxes[i], kBottom - 2300, kAxes[i], kBottom - 2500, std::to_string(i + 1).c_str());
  }
  sgt.m_fDimTextHeight = sgt.m_fZiGao[0];
}

void draw_bars(CBase_SGT& sgt) {
  use_pen(sgt, "STEEL", "1");
  const float left = kLeft - kHalfColumn + kCover;
  const float right = kRight + kHalfColumn - kCover;
  const float top = kTop - kCover;
  const float bottom = kBottom + kCover;
  const float x[] = {left, left, right, right};
  const float y[] = {top - 400, top, top, top - 400};
  sgt.Draw_XianGangJin(4, x, y);
  // Extra top bars lie in the second row.
  sgt.Draw_XianGangJin(kAxes[1] - kExtra, top - 60, kAxes[1] + kExtra, top - 60);
  const float x2[] = {left + 60, left + 60, right - 60, right - 60};
  const float y2[] = {bottom + 330, bottom, bottom, bottom + 330};
  sgt.Draw_XianGangJin(4, x2, y2);
  use_pen(sgt, "STEEL", "3");
  for (std::size_t i = 0; i < 2; ++i) {
    const float from = kAxes[i] + kHalfColumn + 50;
    const float to = kAxes[i + 1] - kHalfColumn - 50;
    const float dense = kDense - 50;
    for (float at = from; at <= to + 1; at += at < from + dense || at > to - dense - 1 ? 100.0F : 200.0F)
      sgt.Draw_Line(at, bottom, at, top);
  }
}

void draw_bar_labels(CBase_SGT& sgt) {
  use_pen(sgt, "DIM", "5");
  const float top = kTop - kCover;
  const float above = kTop + 1000;
  const float below = kBottom - 420;
  sgt.Draw_GangJin_BiaoZhu(9900, top, 10100, above, 1000, 1, kTopText.c_str());
  sgt.Draw_GangJin_BiaoZhu(14200, top - 60, 14000, above, -1000, 2, kExtraText.c_str());
  sgt.Draw_GangJin_BiaoZhu(12700, kBottom + kCover, 12900, below, 1000, 3, kBottomText.c_str());
  sgt.Draw_GangJin_BiaoZhu(17650, kTop - 350, 17850, above, 2000, 4, kStirrupText.c_str());
  use_pen(sgt, "DIM", "7");
  const struct {
    float x;
    const char* name;
  } cuts[] = {{9250, "1"}, {11900, "2"}, {16500, "3"}};
  for (const auto& cut : cuts) sgt.Draw_PouXian(cut.x, kTop + 420, cut.x, kBottom - 420, cut.name, 0, 1);
  use_pen(sgt, "DIM", "5");
  sgt.Draw_Line(kRight + kHalfColumn, kTop, kRight + 1900, kTop);
  sgt.Draw_BiaoGao(kRight + 1500, kTop, 4.170F, 0);
}

void draw_dimensions(CBase_SGT& sgt) {
  use_pen(sgt, "DIM", "5");
  const float h = kHalfColumn;
  const float x[] = {kAxes[0] - h, kAxes[0] + h,          kAxes[0] + h + kDense, kAxes[1] - h - kDense, kAxes[1] - h,
                     kAxes[1] + h, kAxes[1] + h + kDense, kAxes[2] - h - kDense, kAxes[2] - h,          kAxes[2] + h};
  const float y[std::size(x)] = {kBottom, kBottom, kBottom, kBottom, kBottom,
                                 kBottom, kBottom, kBottom, kBottom, kBottom};
  sgt.m_fDimOffset = 1350;
  sgt.m_fDimPolarA = sgt.m_fDimPolarB = 4 * kScale;
  sgt.Draw_Dim_Points(static_cast<int>(std::size(x)), x, y, 0, 1, 1);
  sgt.m_fDimOffset = 1800;
  sgt.Draw_Dim_Points(3, kAxes, y, 0, 1, 1);
  const float sideX[] = {kLeft - h, kLeft - h};
  const float sideY[] = {kBottom, kTop};
  sgt.m_fDimOffset = 700;
  sgt.m_fDimPolarA = sgt.m_fDimPolarB = 8 * kScale;
  sgt.Draw_Dim_Points(2, sideX, sideY, 1, 0, 1);
}

/// The bars drawn apart under the elevation, each with its number and label.
void draw_bars_apart(CBase_SGT& sgt) {
  const float h = sgt.m_fZiGao[0];
  const float left = kLeft - kHalfColumn + kCover;
  const float right = kRight + kHalfColumn - kCover;
  const struct {
    float y;
    float x1;
    float x2;
    float hook;
    int number;
    std::string text;
  } bars[] = {{11700, left, right, -250, 1, kTopText},
              {11000, kAxes[1] - kExtra, kAxes[1] + kExtra, 0, 2, kExtraText},
              {10100, left + 60, right - 60, 250, 3, kBottomText}};
  for (const auto& bar : bars) {
    use_pen(sgt, "STEEL", "1");
    const float x[] = {bar.x1, bar.x1, bar.x2, bar.x2};
    const float y[] = {bar.y + bar.hook, bar.y, bar.y, bar.y + bar.hook};
    if (bar.hook == 0)
      sgt.Draw_XianGangJin(bar.x1, bar.y, bar.x2, bar.y);
    else
      sgt.Draw_XianGangJin(4, x, y);
    use_pen(sgt, "DIM", "5");
    const std::string text = bar.text + "  L=" + std::to_string(std::lround(bar.x2 - bar.x1 + 2 * std::fabs(bar.hook)));
    sgt.Draw_GJH_And_Text_Along_Line(bar.x1, bar.y, bar.x2, bar.y, 20, bar.number == 2 ? 2 : 3, bar.number,
                                     text.c_str(), h, 130);
  }
}

/// Sections at 1:10, five times as large as the sheet's scale makes them.
void draw_sections(CBase_SGT& sgt) {
  constexpr float kFactor = 5;
  constexpr float kWidth = 300 * kFactor;
  constexpr float kHeight = 700 * kFactor;
  using Bars = CBase_SGT::CLiangZongJin;
  const Bars support[] = {{2, 3, 25, -1}, {4, 3, 22, 1}, {4, 3, 12, 0}};
  const Bars middle[] = {{2, 3, 25, -1}, {4, 3, 22, 1}, {4, 3, 12, 0}};
  const Bars inner[] = {{2, 3, 25, -1}, {2, 3, 22, -2}, {4, 3, 22, 1}, {4, 3, 12, 0}};
  const struct {
    float x;
    const char* title;
    const Bars* bars;
    int count;
    int spacing;
  } sections[] = {{3000, "1 - 1", support, 3, 100}, {8800, "2 - 2", middle, 3, 200}, {14600, "3 - 3", inner, 4, 100}};
  const float y = 4900;
  // Bars of some 25 mm and stirrups of 8 mm as large as they are.
  sgt.Push_ENV();
  sgt.m_fGJDotWidth = 24 * kFactor;
  sgt.m_fGJLineWidth = 8 * kFactor;
  for (const auto& section : sections) {
    use_pen(sgt, "CONCRETE", "7");
    sgt.Draw_Liang_Section(section.x, y, kWidth, kHeight, 25 * kFactor, section.count, section.bars,
                           {1, 8, section.spacing, 2}, 0);
    use_pen(sgt, "DIM", "5");
    sgt.m_fDimOffset = 500;
    sgt.m_fDimPolarA = sgt.m_fDimPolarB = 6 * kScale;
    sgt.Draw_Dim_Polar(section.x, y, kWidth, "300", 0, 1, 1);
    sgt.Draw_Dim_Polar(section.x, y + kHeight, kHeight, "700", -90, 0, 1);
    use_pen(sgt, "TEXT", "7");
    sgt.m_fTuMingText = sgt.m_fZiGao[2];
    sgt.Draw_TuMing(section.x + kWidth / 2, y - 1400, section.title, 1, 0);
  }
  sgt.Pop_ENV();
}

/// How the ends of a stirrup are bent.
void draw_hook(CBase_SGT& sgt) {
  const float x = 22500;
  const float y = 8200;
  const float length = 1100;
  const auto run = static_cast<float>(length * std::sqrt(0.5));
  use_pen(sgt, "STEEL", "1");
  const float px[] = {x, x, x + run};
  const float py[] = {y - 2200, y, y - run};
  sgt.Draw_XianGangJin(3, px, py);
  use_pen(sgt, "AXIS", "1", "DASHDOT");
  sgt.Draw_Line(x, y, x, y + 900);
  use_pen(sgt, "DIM", "5");
  sgt.Draw_DimJiaoDu(x, y, 600, -45, "", 135);
  sgt.Draw_GangJin_BiaoZhu(x + 0.8F * run, y - 0.8F * run, x + 1100, y - 350, 700, 0, "10d");
  use_pen(sgt, "TEXT", "7");
  sgt.Draw_TuMing(x + 500, y - 3600, captions::kHookTitle, 1, 0);
}

}  // namespace

std::unique_ptr<CBase_SGT> compose_beam() {
  std::unique_ptr<CBase_SGT> sgt = new_sheet(2, kScale, {captions::kBeamName, captions::kBeamNumber});
  if (!sgt) return nullptr;
  draw_concrete(*sgt);
  draw_bars(*sgt);
  draw_bar_labels(*sgt);
  draw_dimensions(*sgt);
  draw_bars_apart(*sgt);
  draw_sections(*sgt);
  draw_hook(*sgt);
  use_pen(*sgt, "TEXT", "7");
  sgt->Draw_TuMing((kLeft + kRight) / 2, 18800, captions::kBeamTitle, 1, 1);
  return sgt;
}

}  // namespace qvdraw
