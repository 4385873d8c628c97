#include <algorithm>
#include <vector>

#include "qvtools/drawing/internal/placing.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/text/numbers.h"

using namespace qv::detail;

namespace {

/// The byte that the text fonts draw as the sign of a steel grade; 0 for a grade without one.
int grade_sign(int grade) {
  // Quirk: the sign of steel grade 3, 139, does not follow that of grade 2, 131; host programs' fonts have it there.
  constexpr int kSigns[] = {130, 131, 139};
  return grade >= 1 && grade <= 3 ? kSigns[grade - 1] : 0;
}

/// Formats into a caller's buffer, of which only the caller knows the size.
template <class... Values>
void form(char* dst, const char* format, Values... values) {
  const qv::FormattedText<64> formed(format, values...);
  std::memcpy(dst, formed.text, static_cast<std::size_t>(formed.length) + 1);
}

/// Radius of the circle around a bar number of a text height.
float circle_radius(float height) {
  return 1.2F * height;
}

/// A bar number in its circle, in world coordinates.
void draw_number(CBase_SGT& sgt, Place center, float radius, float height, float angle, int number) {
  const qv::FormattedText<16> text("%d", number);
  sgt.Draw_Circle(center.x, center.y, radius);
  const Place at = Frame(center.x, center.y, angle).at(-text_width(text, height) / 2, -height / 2);
  sgt.Draw_Text(at.x, at.y, height, angle, text);
}

/// The text over the horizontal part of a leader and the number at its far end, in world coordinates.
void draw_label(CBase_SGT& sgt, Place knee, float len, int number, const char* text) {
  const float s = sgt.m_fBiLiChi;
  const float h = sgt.m_fDimTextHeight;
  const bool left = len < 0;
  const float width = static_cast<float>(std::strlen(text)) * h;
  sgt.Draw_Text(left ? knee.x - width : knee.x + s, knee.y + sgt.m_fTextGap, h, 0, text);
  if (number <= 0) return;
  const float r = 3 * s;
  draw_number(sgt, {knee.x + len + (left ? -r : r), knee.y}, r, h, 0, number);
}

}  // namespace

void CBase_SGT::FormString_GJ_nqd(char* dst, int n, int grade, int d) {
  if (const int sign = grade_sign(grade)) form(dst, "%d%c%d", n, sign, d);
}

void CBase_SGT::FormString_GJ_qdas(char* dst, int grade, int d, int s) {
  if (const int sign = grade_sign(grade)) form(dst, "%c%d@%d", sign, d, s);
}

void CBase_SGT::FormString_GJX_nqd(char* dst, int n, int d) {
  const char* strand = d == 9 ? "3" : d == 12 ? "4" : d == 15 ? "5" : "";
  form(dst, "%d-7%c%s", n, grade_sign(1), strand);
}

void CBase_SGT::Draw_Line_BiaoZhu(float x1, float y1, float x2, float y2) {
  const SymbolEnvironment environment(*this, m_szBZColor);
  environment.anchor_all(x1, y1, x2, y2);
  if (x1 != x2 || y1 != y2) Draw_Line(x1, y1, x2, y2);
  const Tick tick(*this, Frame(x1, y1, 0), 0, 0);
  draw_line(*this, tick.from, tick.to);
}

void CBase_SGT::Draw_GangJin_BiaoZhu(float x, float y, float x2, float y2, float len, int number, const char* text) {
  const SymbolEnvironment environment(*this, m_szBZColor);
  environment.anchor_all(x, y, x2, y2);
  Draw_Line_BiaoZhu(x, y, x2, y2);
  Draw_Line(x2, y2, x2 + len, y2);
  draw_label(*this, {x2, y2}, len, number, text);
}

void CBase_SGT::Draw_GangJin_BiaoZhu(float x, float y, int n, const float* xs, const float* ys, float len, int number,
                                     int side, int flag, const char* text) {
  unless_out_of_memory([&] {
    const SymbolEnvironment environment(*this, m_szBZColor);
    Convert_XY(x, y);
    std::vector<Place> bars;
    for (int i = 0; i < n; ++i) {
      bars.push_back({xs[i], ys[i]});
      Convert_XY(bars.back().x, bars.back().y);
    }
    environment.anchor_all();
    const float run = side ? -len : len;
    auto [left, right] = std::minmax({x, x + run});
    for (const Place& bar : bars) {
      if (flag == 1)
        Draw_Line_BiaoZhu(bar.x, bar.y, bar.x, y);
      else
        Draw_Line(bar.x, bar.y, bar.x, y);
      left = std::min(left, bar.x);
      right = std::max(right, bar.x);
    }
    Draw_Line(left, y, right, y);
    draw_label(*this, {x, y}, run, number, text);
  });
}

void CBase_SGT::Draw_GJH(float x, float y, float h, int number) {
  const SymbolEnvironment environment(*this, m_szBZColor);
  environment.anchor_all(x, y);
  draw_number(*this, {x, y}, circle_radius(h), h, 0, number);
}

void CBase_SGT::Draw_GJH_And_Text_Along_Line(float x1, float y1, float x2, float y2, int n, int i, int number,
                                             const char* text, float h, float off) {
  const SymbolEnvironment environment(*this, m_szBZColor);
  environment.anchor_all(x1, y1, x2, y2);
  const Frame line(x1, y1, x2, y2);
  const double along = static_cast<double>(i) * get_dist(x1, y1, x2, y2) / (n == 0 ? 1 : n);
  const float r = circle_radius(h);
  draw_number(*this, line.at(along, off + h / 2), r, h, line.angle, number);
  const Place at = line.at(along + r + m_fBiLiChi, off);
  Draw_Text(at.x, at.y, h, line.angle, text);
}
