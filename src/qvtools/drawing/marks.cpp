#include <algorithm>

#include "qvtools/drawing/internal/placing.h"

using namespace qv::detail;

void CBase_SGT::Draw_Cut_Sym(float x1, float y1, float x2, float y2, float over, float height, float width) {
  const SymbolEnvironment environment(*this);
  environment.anchor(x1, y1, x2, y2);
  const double length = get_dist(x1, y1, x2, y2);
  const double middle = length / 2;
  const Frame frame(x1, y1, x2, y2);
  const Place points[] = {frame.at(-over, 0),
                          frame.at(middle - width, 0),
                          frame.at(middle - width / 2, height / 2),
                          frame.at(middle + width / 2, -height / 2),
                          frame.at(middle + width, 0),
                          frame.at(length + over, 0)};
  for (int i = 0; i < 5; ++i) draw_line(*this, points[i], points[i + 1]);
}

void CBase_SGT::Draw_PouXian(float x1, float y1, float x2, float y2, const char* text, float len, float width,
                             float textHeight, int alongLine, int flag) {
  const SymbolEnvironment environment(*this);
  environment.anchor(x1, y1, x2, y2);
  const float angle = degrees(get_line_angle(x1, y1, x2, y2));
  // Across the line, on its right, the text runs toward the bar: each byte takes 0.7 of the height.
  const float below = alongLine ? textHeight : 0.7F * textHeight * static_cast<float>(std::strlen(text));
  const float offset = flag ? width : -width - below;
  for (const Frame& mark : {Frame(x1, y1, angle), Frame(x2, y2, angle)}) {
    const Place from = mark.at(-len / 2, 0);
    const Place to = mark.at(len / 2, 0);
    Draw_Pline(from.x, from.y, to.x, to.y, width, width);
    const Place at = mark.at(0, offset);
    Draw_Text(at.x, at.y, textHeight, alongLine ? angle : angle + 90, text);
  }
}

void CBase_SGT::Draw_TuMianXian(float x1, float y1, float x2, float y2, float size, int side) {
  constexpr double kMostGroups = 1000;
  const SymbolEnvironment environment(*this);
  environment.anchor(x1, y1, x2, y2);
  Draw_Line(x1, y1, x2, y2);
  const double depth = size > 0 ? size : 3 * static_cast<double>(m_fBiLiChi);
  const double length = get_dist(x1, y1, x2, y2);
  const Frame frame(x1, y1, x2, y2);
  // A group is twice as long as deep and stands in four times its depth.
  if (!(length >= 2 * depth)) return;
  const int groups = static_cast<int>(std::clamp(length / (4 * depth), 1.0, kMostGroups));
  for (int i = 0; i < groups; ++i) {
    const double start = (i + 0.5) * length / groups;
    for (int k = 0; k < 3; ++k) {
      const double u = start + k * depth / 2;
      draw_line(*this, frame.at(u, 0), frame.at(u - depth, side ? depth : -depth));
    }
  }
}

void CBase_SGT::DrawArrow(float x, float y, float angle) {
  const Frame frame(x, y, angle);
  draw_line(*this, {x, y}, frame.at(-m_fArrowLen, m_fArrowWidth));
  draw_line(*this, {x, y}, frame.at(-m_fArrowLen, -m_fArrowWidth));
}

void CBase_SGT::DrawLineArrow(float x1, float y1, float x2, float y2) {
  Draw_Line(x1, y1, x2, y2);
  DrawArrow(x2, y2, degrees(get_line_angle(x1, y1, x2, y2)));
}

void CBase_SGT::ArrowTo(float x, float y) {
  DrawLineArrow(m_fPenX, m_fPenY, x, y);
  MoveTo(x, y);
}

void CBase_SGT::DrawArcArrow(float x, float y, float angle, int atStart) {
  const float r = 6 * m_fBiLiChi;
  const Place center = Frame(x, y, angle).at(0, -r);
  Draw_Arc(center.x, center.y, r, angle + 60, angle + 120);
  const Place tip = Frame(center.x, center.y, atStart ? angle + 60 : angle + 120).at(r, 0);
  DrawArrow(tip.x, tip.y, atStart ? angle - 20 : angle + 200);
}
