#include <algorithm>

#include "qvtools/drawing/internal/placing.h"
#include "qvtools/text/numbers.h"

using namespace qv::detail;

namespace {

constexpr char kPlusMinus = '\x85';  // in the text fonts
constexpr char kDegreeSign = '\x7F';
constexpr double kLeastMeasure = 0.0001;

/// A measure with the decimals of dimension values: a float of 39 digits and 20 decimals at most.
qv::FormattedText<400> measure(const CBase_SGT& sgt, double value) {
  return qv::FormattedText<400>("%.*f", std::clamp(sgt.m_nDimDecimals, 0, 20), value);
}

/// An angle in [0, 360).
float within_a_turn(float angle) {
  if (!std::isfinite(angle)) return 0;
  const auto rest = static_cast<float>(std::fmod(angle, 360.0F));
  const float positive = rest < 0 ? rest + 360 : rest;
  return positive < 360 ? positive : 0;
}

}  // namespace

void CBase_SGT::Draw_Dim_Polar(float x, float y, float len, const char* text, float angle, int above, int longSide) {
  if (std::fabs(len) < kLeastMeasure) return;
  const SymbolEnvironment environment(*this, m_szBZColor);
  Convert_XY(x, y);
  len *= m_fLenFactor;
  const Frame frame(x, y, within_a_turn(angle + m_fRotAngle));
  environment.anchor();
  const float low = -m_fDimOffset;
  const float ends[2] = {0, len};
  const float longEnds[2] = {m_fDimPolarA, m_fDimPolarB};
  for (int i = 0; i < 2; ++i) {
    const float from = longSide ? -m_fDimExt : -longEnds[i];
    const float to = longSide ? longEnds[i] : m_fDimExt;
    draw_line(*this, frame.at(ends[i], from + low), frame.at(ends[i], to + low));
  }
  draw_line(*this, frame.at(0, low), frame.at(len, low));
  for (const float end : ends) {
    const Tick tick(*this, frame, end, low);
    Draw_Pline(tick.from.x, tick.from.y, tick.to.x, tick.to.y, m_fDimLineWidth, m_fDimLineWidth);
  }
  float u = 0;
  float v = 0;
  Cal_Text_Position(above, len, text_width(text, m_fDimTextHeight), u, v);
  const Place at = frame.at(u, v + low);
  Draw_Text(at.x, at.y, m_fDimTextHeight, frame.angle, text);
}

void CBase_SGT::Draw_Dim_Polar(float x, float y, float len, float angle, int above, int longSide) {
  Draw_Dim_Polar(x, y, len, measure(*this, len), angle, above, longSide);
}

void CBase_SGT::Draw_Dim_Points(float x1, float y1, float x2, float y2, int above, int longSide) {
  Draw_Dim_Points(x1, y1, x2, y2, measure(*this, get_dist(x1, y1, x2, y2)), above, longSide);
}

void CBase_SGT::Draw_Dim_Points(float x1, float y1, float x2, float y2, const char* text, int above, int longSide) {
  const float angle = degrees(get_line_angle(x1, y1, x2, y2));
  Draw_Dim_Polar(x1, y1, get_dist(x1, y1, x2, y2), text, angle, above, longSide);
}

void CBase_SGT::Draw_Dim_Points(int n, const float* x, const float* y, int reverse, int above, int longSide) {
  for (int i = 0; i + 1 < n; ++i) {
    const int from = reverse ? i + 1 : i;
    const int to = reverse ? i : i + 1;
    Draw_Dim_Points(x[from], y[from], x[to], y[to], above, longSide);
  }
}

void CBase_SGT::Draw_BiaoGao(float x, float y, float value, int leftSide) {
  const bool zero = std::fabs(value) < kLeastMeasure;
  const auto text = zero ? qv::FormattedText<64>("%c%.3f", kPlusMinus, std::fabs(static_cast<double>(value)))
                         : qv::FormattedText<64>("%.3f", static_cast<double>(value));
  const float width = static_cast<float>(std::strlen(text)) * m_fZiGao[0] * 0.85F;
  const SymbolEnvironment environment(*this, m_szBZColor);
  const float d = 3 * m_fBiLiChi;
  const float top = y + d;
  Draw_Line(x, y, x - d, top);
  Draw_Line(x, y, x + d, top);
  if (leftSide)
    Draw_Line(x + d, top, x - d - width, top);
  else
    Draw_Line(x - d, top, x + d + width, top);
  Draw_Text(leftSide ? x - d - width : x, top + m_fTextGap, m_fDimTextHeight, 0, text);
}

void CBase_SGT::Draw_DimJiaoDu(float x, float y, float r, float angle, const char* text, float sweep) {
  if (!std::isfinite(sweep) || std::fabs(sweep) < kLeastMeasure) return;
  const SymbolEnvironment environment(*this, m_szBZColor);
  Convert_XY(x, y);
  r *= m_fLenFactor;
  const float from = within_a_turn((sweep < 0 ? angle + sweep : angle) + m_fRotAngle);
  const float to = from + std::fabs(sweep);
  environment.anchor();
  Draw_Arc(x, y, r, from, to);
  const Place start = Frame(x, y, from).at(r, 0);
  const Place end = Frame(x, y, to).at(r, 0);
  DrawArrow(start.x, start.y, from - 90);
  DrawArrow(end.x, end.y, to + 90);

  const qv::FormattedText<420> degrees("%s%c", measure(*this, std::fabs(sweep)).text, kDegreeSign);
  const char* const label = text && *text ? text : degrees.text;
  const float h = m_fDimTextHeight * m_fTextFactor;
  m_fTextFactor = 1;  // so that the text is centred by the width that it has
  // The text's own direction, a quarter turn further than its place, has to lie in one turn to be read from below.
  const float half = std::fabs(sweep) / 2;
  const float middle = within_a_turn(from + half + 90) - 90;
  Draw_Text_Along_Arc(x, y, r, static_cast<float>((middle - half) * kRadian),
                      static_cast<float>((middle + half) * kRadian), 2, 1, label, h, -m_fTextGap - h);
}
