#include "demo.h"

#include <cmath>
#include <numbers>

namespace qvdraw {

namespace {

// The beam, in millimetres: a span of 6 m between column axes, drawn at 1:50.
constexpr float kSpan = 6000;
constexpr float kColumn = 400;
constexpr float kWidth = 300;
constexpr float kHeight = 600;
constexpr float kStub = 500;
constexpr float kCover = 35;
constexpr char kPlusMinus = '\x85';
constexpr char kGradeTwo = '\x83';
constexpr char kGradeOne = '\x82';

void thin(CBase_SGT& sgt, const char* color, const char* layer, const char* ltype = "BYLAYER") {
  sgt.SetCurColor(color);
  sgt.SetCurLayer(layer);
  sgt.SetCurLType(ltype);
}

/// Strokes at 45 degrees inside a rectangle: concrete that is cut.
void hatch(CBase_SGT& sgt, const CFRect& r, float distance) {
  for (float c = r.y1 - r.x2 + distance; c < r.y2 - r.x1; c += distance) {
    const float x1 = std::max(r.x1, r.y1 - c);
    const float x2 = std::min(r.x2, r.y2 - c);
    if (x1 < x2) sgt.Draw_Line(x1, x1 + c, x2, x2 + c);
  }
}

void outline(CBase_SGT& sgt) {
  thin(sgt, "7", "CONCRETE");
  const float inner = kSpan - kColumn;
  for (const float axis : {0.0F, kSpan}) {
    const float left = axis - kColumn / 2;
    const float right = axis + kColumn / 2;
    const float outer = axis == 0 ? left : right;
    const float face = axis == 0 ? right : left;
    sgt.Draw_Line(outer, -kHeight - kStub, outer, kStub);
    sgt.Draw_Line(face, 0, face, kStub);
    sgt.Draw_Line(face, -kHeight, face, -kHeight - kStub);
    thin(sgt, "8", "HATCH");
    hatch(sgt, CFRect(left, kStub - 150, right, kStub), 60);
    hatch(sgt, CFRect(left, -kHeight - kStub, right, -kHeight - kStub + 150), 60);
    thin(sgt, "7", "CONCRETE");
    sgt.Draw_Line(left - 80, kStub, right + 80, kStub);
    sgt.Draw_Line(left - 80, -kHeight - kStub, right + 80, -kHeight - kStub);
  }
  sgt.Draw_Line(kColumn / 2, 0, kColumn / 2 + inner, 0);
  sgt.Draw_Line(kColumn / 2, -kHeight, kColumn / 2 + inner, -kHeight);
}

void axes(CBase_SGT& sgt) {
  const char* const names[] = {"1", "2"};
  for (int i = 0; i < 2; ++i) {
    const float x = i == 0 ? 0 : kSpan;
    thin(sgt, "4", "AXIS", "DASHDOT");
    sgt.Draw_Line(x, -kHeight - kStub - 1300, x, kStub + 350);
    thin(sgt, "4", "AXIS");
    const float r = 4 * sgt.m_fBiLiChi;
    const float y = -kHeight - kStub - 1300 - r;
    sgt.Draw_Circle(x, y, r);
    const float h = sgt.m_fZiGao[2];
    sgt.Draw_Text(x - DXF::GetTextWidth(names[i], h, 0.75F) / 2, y - h / 2, h, 0, names[i]);
  }
}

void bars(CBase_SGT& sgt) {
  thin(sgt, sgt.m_szGJColor, "STEEL");
  const float w = sgt.m_fGJLineWidth * 0.6F;
  const float left = -kColumn / 2 + kCover;
  const float right = kSpan + kColumn / 2 - kCover;
  const float top = -kCover;
  const float bottom = -kHeight + kCover;
  // Top bars bent down at both ends, round at the corners; straight bottom bars with upturned ends.
  const float r = 90;
  float x[] = {left, left, left + r, right - r, right, right};
  float y[] = {top - 400, top - r, top, top, top - r, top - 400};
  const auto corner = static_cast<float>(-std::tan(std::numbers::pi / 8));
  const float bulge[] = {0, corner, 0, corner, 0, 0};
  float w1[] = {w, w, w, w, w, w};
  float w2[] = {w, w, w, w, w, w};
  sgt.Draw_Pline(6, x, y, bulge, 0, w1, w2);
  sgt.MoveTo(left + 60, bottom + 250);
  sgt.PlineTo_Relative(0, -250, w, w);
  sgt.PlineTo(right - 60, bottom, w, w);
  sgt.PlineTo_Relative(0, 250, w, w);
  thin(sgt, "3", "STIRRUP");
  float at = kColumn / 2 + 50;
  while (at < kSpan - kColumn / 2) {
    sgt.Draw_Line(at, top, at, bottom);
    at += at < 1600 || at >= kSpan - 1700 ? 100.0F : 200.0F;
  }
}

void dimension(CBase_SGT& sgt, float x1, float x2, float y, const std::string& text) {
  const float tick = sgt.m_fDimTick * 0.35F;
  sgt.Draw_Line(x1, y, x2, y);
  for (const float x : {x1, x2}) {
    sgt.Draw_Line(x, y - sgt.m_fDimExt, x, y + 2 * sgt.m_fDimExt);
    sgt.Draw_Pline(x - tick, y - tick, x + tick, y + tick, sgt.m_fDimLineWidth / 2, sgt.m_fDimLineWidth / 2);
  }
  const float h = sgt.m_fDimTextHeight;
  const float width = DXF::GetTextWidth(text.c_str(), h, 0.75F);
  sgt.Draw_Text((x1 + x2 - width) / 2, y + sgt.m_fTextGap, h, 0, text.c_str());
}

void annotations(CBase_SGT& sgt) {
  thin(sgt, sgt.m_szBZColor, "DIM");
  const float y = -kHeight - kStub - 450;
  dimension(sgt, -kColumn / 2, kColumn / 2, y, "400");
  dimension(sgt, kColumn / 2, 1600, y, "1400");
  dimension(sgt, 1600, kSpan - 1600, y, "2800");
  dimension(sgt, kSpan - 1600, kSpan - kColumn / 2, y, "1400");
  dimension(sgt, kSpan - kColumn / 2, kSpan + kColumn / 2, y, "400");
  dimension(sgt, 0, kSpan, y - 500, "6000");
  const float h = sgt.m_fDimTextHeight;
  const std::string stirrups = std::string(1, kGradeOne) + "8@100/200(2)";
  const std::string top = std::string("2") + kGradeTwo + "20";
  const std::string bottom = std::string("4") + kGradeTwo + "22";
  sgt.Draw_Line(2300, -kCover, 2500, 350);
  sgt.Draw_Line(2500, 350, 3100, 350);
  sgt.Draw_Text(2530, 350 + sgt.m_fTextGap, h, 0, top.c_str());
  sgt.Draw_Line(3500, -kHeight + kCover, 3700, -kHeight - 400);
  sgt.Draw_Line(3700, -kHeight - 400, 4300, -kHeight - 400);
  sgt.Draw_Text(3730, -kHeight - 400 + sgt.m_fTextGap, h, 0, bottom.c_str());
  sgt.Draw_Line(700, -kHeight / 2, 1000, 350);
  sgt.Draw_Line(1000, 350, 2100, 350);
  sgt.Draw_Text(1030, 350 + sgt.m_fTextGap, h, 0, stirrups.c_str());
  const std::string level = std::string(1, kPlusMinus) + "0.000";
  const float s = sgt.m_fBiLiChi;
  sgt.MoveTo(4700, 0);
  sgt.LineTo_Relative(-3 * s, 3 * s);
  sgt.LineTo_Relative(14 * s, 0);
  sgt.MoveTo(4700, 0);
  sgt.LineTo_Relative(3 * s, 3 * s);
  sgt.Draw_Text(4700, 3 * s + sgt.m_fTextGap, h, 0, level.c_str());
}

/// A bar in section: a filled dot. Arcs as polylines take their widths unscaled.
void dot(CBase_SGT& sgt, float x, float y, float r) {
  const float width = r * sgt.m_fLenFactor;
  sgt.Draw_PArc(x, y, r / 2, 0, 180, width, width);
  sgt.Draw_PArc(x, y, r / 2, 180, 360, width, width);
}

void section(CBase_SGT& sgt, float x, float y) {
  thin(sgt, "7", "CONCRETE");
  const float scale = 2;  // drawn at 1:25
  sgt.Push_ENV();
  sgt.m_fShiftX = x;
  sgt.m_fShiftY = y;
  sgt.m_fLenFactor = scale;
  sgt.Draw_Rect_LB(kWidth, kHeight, 0, 0, 0);
  thin(sgt, sgt.m_szGJColor, "STEEL");
  const float line = 10;
  sgt.Draw_Rect_LB(kWidth - 2 * kCover, kHeight - 2 * kCover, kCover, kCover, 0, line);
  const float r = 22;
  const float inset = kCover + line / 2 + r / 2;
  const float step = (kWidth - 2 * inset) / 3;
  for (int i = 0; i < 4; ++i) dot(sgt, inset + static_cast<float>(i) * step, inset, r);
  for (const float bar : {inset, kWidth - inset}) dot(sgt, bar, kHeight - inset, r);
  sgt.Pop_ENV();
  thin(sgt, sgt.m_szBZColor, "DIM");
  const float h = sgt.m_fDimTextHeight;
  const auto centred = [&](float along, float at, float angle, float height, const char* text) {
    const float half = DXF::GetTextWidth(text, height, 0.75F) / 2;
    if (angle == 0)
      sgt.Draw_Text(along - half, at, height, angle, text);
    else
      sgt.Draw_Text(at, along - half, height, angle, text);
  };
  const float middle = x + scale * kWidth / 2;
  centred(middle, y - 100 - h, 0, h, "300");
  centred(y + scale * kHeight / 2, x - 100, 90, h, "600");
  thin(sgt, "7", "TITLE");
  centred(middle, y - 700, 0, sgt.m_fZiGao[2], "1 - 1");
  sgt.Draw_Pline(middle - 300, y - 770, middle + 300, y - 770, sgt.m_fBiKuan[0], sgt.m_fBiKuan[0]);
}

/// Filled columns in plan, with a sweep of arcs and texts around: what angles do to them.
void rosette(CBase_SGT& sgt, float x, float y) {
  thin(sgt, "8", "CONCRETE");
  sgt.Draw_Solid(x - 150, y - 150, x + 150, y - 150, x - 150, y + 150, x + 150, y + 150);
  thin(sgt, "5", "CONCRETE");
  for (int i = 0; i < 4; ++i)
    sgt.Draw_Arc(x, y, 260 + 60 * static_cast<float>(i), 10.0F + 90 * static_cast<float>(i),
                 80.0F + 90 * static_cast<float>(i));
  thin(sgt, "6", "TITLE");
  for (int i = 0; i < 12; ++i) {
    const double a = i * std::numbers::pi / 6;
    const auto c = static_cast<float>(std::cos(a));
    const auto s = static_cast<float>(std::sin(a));
    const std::string degrees = std::to_string(30 * i) + "\x7F";
    sgt.Draw_Text_Along_Line(x + 480 * c, y + 480 * s, x + 900 * c, y + 900 * s, 8, 1, degrees.c_str(), 110, 15);
    thin(sgt, "2", "AXIS", i % 3 == 0 ? "DASHED" : "DOT");
    sgt.Draw_Line(x + 480 * c, y + 480 * s, x + 950 * c, y + 950 * s);
    thin(sgt, "6", "TITLE");
  }
}

}  // namespace

std::unique_ptr<CBase_SGT> compose_beam() {
  std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  if (!sgt) return nullptr;
  sgt->Add_Default_LineType();
  const struct {
    const char* name;
    int color;
  } layers[] = {{"CONCRETE", 7}, {"HATCH", 8}, {"AXIS", 4}, {"STEEL", 1}, {"STIRRUP", 3}, {"DIM", 4}, {"TITLE", 7}};
  for (const auto& layer : layers) sgt->Add_Layer(layer.name, layer.color, "CONTINUOUS");
  sgt->SetBiLiChi(50);
  outline(*sgt);
  axes(*sgt);
  bars(*sgt);
  annotations(*sgt);
  section(*sgt, kSpan + 1100, -1000);
  rosette(*sgt, kSpan + 3400, -500);
  thin(*sgt, "7", "TITLE");
  const char* const title = "KL-1 (300x600)  1:50";
  const float width = DXF::GetTextWidth(title, sgt->m_fZiGao[3], 0.75F);
  const float left = (kSpan - width) / 2;
  sgt->Draw_Text(left, -3300, sgt->m_fZiGao[3], 0, title);
  sgt->Draw_Pline(left - 100, -3400, left + width + 100, -3400, sgt->m_fBiKuan[0], sgt->m_fBiKuan[0]);
  sgt->Draw_Line(left - 100, -3460, left + width + 100, -3460);
  return sgt;
}

}  // namespace qvdraw
