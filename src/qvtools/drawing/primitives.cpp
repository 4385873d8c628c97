#include <algorithm>
#include <vector>

#include "qvtools/drawing/internal/placing.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/services/internal/out_of_memory.h"

using namespace qv::detail;

namespace {

/// The corners of a w by h rectangle about (cx, cy), counter-clockwise from the lower left, turned by the angle.
struct Corners {
  Place at[4];
  Corners(float w, float h, const Frame& frame)
      : at{frame.at(-w / 2, -h / 2), frame.at(w / 2, -h / 2), frame.at(w / 2, h / 2), frame.at(-w / 2, h / 2)} {}
  const Place& operator[](int i) const { return at[i % 4]; }
};

}  // namespace

void CBase_SGT::Convert_XY(float& x, float& y) const {
  turn(m_fRotAngle, x, y);
  x = static_cast<float>(static_cast<double>(x) * m_fLenFactor + m_fShiftX);
  y = static_cast<float>(static_cast<double>(y) * m_fLenFactor + m_fShiftY);
}

void CBase_SGT::Draw_Point(float x, float y) {
  Convert_XY(x, y);
  Write_Point(x, y, 0, m_szCurLayer);
}

void CBase_SGT::Draw_Line(float x1, float y1, float x2, float y2) {
  Convert_XY(x1, y1);
  Convert_XY(x2, y2);
  Write_Line(x1, y1, 0, x2, y2, 0, m_szCurLayer, m_szCurColor, m_szCurLType);
}

void CBase_SGT::Draw_Lines(int n, const float* x, const float* y) {
  for (int i = 0; i + 1 < n; ++i) Draw_Line(x[i], y[i], x[i + 1], y[i + 1]);
}

void CBase_SGT::Draw_Circle(float x, float y, float r) {
  Convert_XY(x, y);
  Write_Circle(x, y, 0, r * m_fLenFactor, m_szCurLayer, m_szCurColor, m_szCurLType);
}

void CBase_SGT::Draw_Arc(float x, float y, float r, float a1, float a2) {
  Convert_XY(x, y);
  Write_Arc(x, y, 0, r * m_fLenFactor, a1 + m_fRotAngle, a2 + m_fRotAngle, m_szCurLayer, m_szCurColor, m_szCurLType);
}

void CBase_SGT::Draw_Pline(float x1, float y1, float x2, float y2, float w1, float w2) {
  Convert_XY(x1, y1);
  Convert_XY(x2, y2);
  Write_Pline(x1, y1, 0, x2, y2, 0, w1 * m_fWidthFactor, w2 * m_fWidthFactor, m_szCurLayer, m_szCurColor, m_szCurLType);
}

void CBase_SGT::Draw_Pline(int n, float* x, float* y, const float* bulge, int closed, float* w1, float* w2) {
  if (n < 2) return;
  for (int i = 0; i < n; ++i) {
    Convert_XY(x[i], y[i]);
    w1[i] *= m_fLenFactor;
    w2[i] *= m_fLenFactor;
  }
  unless_out_of_memory([&] {
    const std::vector<float> z(static_cast<std::size_t>(n));
    Write_Pline(n, x, y, z.data(), bulge, closed, w1, w2, m_szCurLayer, m_szCurColor, m_szCurLType);
  });
}

void CBase_SGT::Draw_PArc(float cx, float cy, float r, float a1, float a2, float w1, float w2) {
  Convert_XY(cx, cy);
  const double radius = static_cast<double>(r) * m_fLenFactor;
  const double from = (static_cast<double>(a1) + m_fRotAngle) * kRadian;
  const double to = (static_cast<double>(a2) + m_fRotAngle) * kRadian;
  const float x[2] = {static_cast<float>(cx + radius * std::cos(to)), static_cast<float>(cx + radius * std::cos(from))};
  const float y[2] = {static_cast<float>(cy + radius * std::sin(to)), static_cast<float>(cy + radius * std::sin(from))};
  const float z[2] = {};
  const float bulge[2] = {static_cast<float>(-std::tan((to - from) / 4)), 0};
  const float start[2] = {w1, w1};
  const float end[2] = {w2, w2};
  Write_Pline(2, x, y, z, bulge, 0, start, end, m_szCurLayer, m_szCurColor, m_szCurLType);
}

void CBase_SGT::Draw_Solid(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4) {
  Convert_XY(x1, y1);
  Convert_XY(x2, y2);
  Convert_XY(x3, y3);
  Convert_XY(x4, y4);
  Write_Solid(x1, y1, 0, x2, y2, 0, x3, y3, 0, x4, y4, 0, m_szCurLayer, m_szCurColor, m_szCurLType);
}

void CBase_SGT::Draw_3DFace(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4) {
  Convert_XY(x1, y1);
  Convert_XY(x2, y2);
  Convert_XY(x3, y3);
  Convert_XY(x4, y4);
  Write_3DFace(x1, y1, 0, x2, y2, 0, x3, y3, 0, x4, y4, 0, m_szCurLayer, m_szCurColor, m_szCurLType);
}

void CBase_SGT::Draw_Text(float x, float y, float h, float angle, const char* text) {
  Convert_XY(x, y);
  h *= m_fTextFactor;
  angle += m_fRotAngle;
  if (angle > 91 && angle <= 271) {
    const Place end = Frame(x, y, angle).at(text_width(text, h), h);
    x = end.x;
    y = end.y;
    angle += 180;
  }
  Write_Text(x, y, 0, h, angle, text, m_szCurStyle, m_szCurLayer, m_szCurColor, m_szCurLType);
}

void CBase_SGT::LineTo(float x, float y) {
  Draw_Line(m_fPenX, m_fPenY, x, y);
  MoveTo(x, y);
}

void CBase_SGT::PlineTo(float x, float y, float w1, float w2) {
  Draw_Pline(m_fPenX, m_fPenY, x, y, w1, w2);
  MoveTo(x, y);
}

void CBase_SGT::Draw_Rect_C(float w, float h, float cx, float cy, float angle) {
  const Corners corners(w, h, Frame(cx, cy, angle));
  for (int i = 0; i < 4; ++i)
    if (m_bRectSide[i]) draw_line(*this, corners[i], corners[i + 1]);
}

void CBase_SGT::Draw_Rect_C(float w, float h, float cx, float cy, float angle, float width) {
  const Corners corners(w, h, Frame(cx, cy, -angle));
  // A polyline over `sides` sides, from the corner where the first of them begins.
  const auto run = [&](int first, int sides) {
    Place points[4];
    for (int i = 0; i < 4; ++i) points[i] = corners[first + i];
    draw_bar(*this, std::min(sides + 1, 4), points, sides == 4, width);
  };
  const auto off = [&](int side) { return m_bRectSide[side % 4] == 0; };
  const int missing = off(0) + off(1) + off(2) + off(3);
  if (missing == 0) return run(0, 4);
  for (int side = 0; side < 4; ++side) {
    if (missing == 1 && off(side)) return run(side + 1, 3);
    if (missing == 2 && off(side) && off(side + 1)) return run(side + 2, 2);
  }
  for (int side = 0; side < 4; ++side)
    if (!off(side)) run(side, 1);
}

void CBase_SGT::Draw_Rect_LB(float w, float h, float x, float y, float angle) {
  const Place center = Frame(x, y, -angle).at(w / 2, h / 2);
  Draw_Rect_C(w, h, center.x, center.y, angle);
}

void CBase_SGT::Draw_Rect_LB(float w, float h, float x, float y, float angle, float width) {
  const Place center = Frame(x, y, -angle).at(w / 2, h / 2);
  Draw_Rect_C(w, h, center.x, center.y, angle, width);
}

void CBase_SGT::Draw_Text_Along_Line(float x1, float y1, float x2, float y2, int n, int i, const char* text, float h,
                                     float off) {
  const Frame at = frame_on_line(x1, y1, x2, y2, n, i, off);
  Draw_Text(at.x, at.y, h, at.angle, text);
}

void CBase_SGT::Draw_Text_Vertical_Line(float x1, float y1, float x2, float y2, int n, int i, const char* text, float h,
                                        float off) {
  const Frame at = frame_on_line(x1, y1, x2, y2, n, i, off);
  Draw_Text(at.x, at.y, h, at.angle + 90, text);
}

void CBase_SGT::Draw_Text_Along_Arc(float cx, float cy, float r, float a1, float a2, int n, int i, const char* text,
                                    float h, float off) {
  const double a = a1 + i * (static_cast<double>(a2) - a1) / (n == 0 ? 1 : n);
  const double half = text_width(text, h) / 2;
  const double radius = static_cast<double>(r) - off;
  const double back = a + 3 * std::numbers::pi / 2;
  Draw_Text(static_cast<float>(cx + radius * std::cos(a) + half * std::cos(back)),
            static_cast<float>(cy + radius * std::sin(a) + half * std::sin(back)), h, degrees(a) + 90, text);
}

void CBase_SGT::Set_Para_Draw_Out_2PraLine(float a, float b, float c, float d, float e) {
  m_fOut2Para1 = a;
  m_fOut2Para2 = c;
  m_fOut2Para3 = b;
  m_fOut2Para4 = d;
  m_fOut2Para5 = e;
}

void CBase_SGT::Draw_Line_Rotate_Shift(float angle, float dx, float dy, float x1, float y1, float x2, float y2) {
  rotate_coordinate(-angle, x1, y1);
  rotate_coordinate(-angle, x2, y2);
  Draw_Line(x1 + dx, y1 + dy, x2 + dx, y2 + dy);
}

void CBase_SGT::Draw_PLine_Rotate_Shift(float angle, float dx, float dy, float x1, float y1, float x2, float y2,
                                        float width) {
  rotate_coordinate(-angle, x1, y1);
  rotate_coordinate(-angle, x2, y2);
  Draw_Pline(x1 + dx, y1 + dy, x2 + dx, y2 + dy, width, width);
}

void CBase_SGT::Cal_Text_Position(int above, float len, float textWidth, float& x, float& y) const {
  const float middle = (len - textWidth) / 2;
  const auto beside = static_cast<float>(0.6 * m_fDimTick * kHalfRoot);
  const bool fits = !(textWidth >= len && m_nDimTextFit != 0);
  const struct {
    bool chosen;
    Place at;
  } places[] = {{fits, {middle, above ? m_fTextGap : -m_fTextGap - m_fDimTextHeight}},
                {(m_nDimTextFit & 8) != 0, {middle, -(m_fDimExt + m_fTextGap + m_fDimTextHeight)}},
                {(m_nDimTextFit & 4) != 0, {middle, m_fTextGap + m_fDimTextHeight}},
                {(m_nDimTextFit & 1) != 0, {-textWidth - beside, m_fTextGap}},
                {(m_nDimTextFit & 2) != 0, {len + beside, m_fTextGap}}};
  for (const auto& [chosen, at] : places) {
    if (!chosen) continue;
    x = at.x;
    y = at.y;
    return;
  }
}
