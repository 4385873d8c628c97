#include <algorithm>
#include <iterator>

#include "qvtools/drawing/internal/placing.h"

using namespace qv::detail;

namespace {

/// The outline of a stirrup about the frame's origin: around all corners, and past the upper left one at both ends into
/// hooks that run inward at 45 degrees. The hooks begin `clear` from the corner, to pass a bar that stands in it.
struct HookedOutline {
  Place point[9];
  HookedOutline(const Frame& frame, float w, float h, float a, float b, float clear) {
    const float u = w / 2;
    const float v = h / 2;
    const Place local[9] = {
        {-u + clear + a, v - a}, {-u + clear, v},        {-u, v}, {-u, -v}, {u, -v}, {u, v}, {-u, v},
        {-u, v - clear},         {-u + b, v - clear - b}};
    std::transform(std::begin(local), std::end(local), std::begin(point), [&](Place p) { return frame.at(p.x, p.y); });
  }
};

/// The distance from its corner at which a hook of this width passes the bar in the corner.
float hook_clearance(const CBase_SGT& sgt, float width) {
  return static_cast<float>(kHalfRoot * (sgt.m_fGJDotWidth + width));
}

/// The band between two parallel lines, as a frame along its axis, and the parts of a line outside it.
struct Band {
  Frame axis;
  double half;
  explicit Band(const CBase_SGT& sgt)
      : axis(sgt.m_fOut2Para1, sgt.m_fOut2Para3, sgt.m_fOut2Para2, sgt.m_fOut2Para4),
        half(std::fabs(static_cast<double>(sgt.m_fOut2Para5)) / 2) {}

  Place to_axis(float x, float y) const {
    Place p{x - axis.x, y - axis.y};
    turn(-static_cast<double>(axis.angle), p.x, p.y);
    return p;
  }

  /// Calls draw(from, to) with the parts outside, in the axis frame, from point 1 on.
  void outside(float x1, float y1, float x2, float y2, const auto& draw) const {
    const Place a = to_axis(x1, y1);
    const Place b = to_axis(x2, y2);
    const double rise = static_cast<double>(b.y) - a.y;
    if (rise == 0) {
      if (std::fabs(static_cast<double>(a.y)) > half) draw(a, b);
      return;
    }
    const auto [enter, leave] = std::minmax({(-half - a.y) / rise, (half - a.y) / rise});
    const auto at = [&](double t) {
      return Place{static_cast<float>(a.x + t * (static_cast<double>(b.x) - a.x)), static_cast<float>(a.y + t * rise)};
    };
    if (enter > 0) draw(a, enter < 1 ? at(enter) : b);
    if (leave < 1) draw(leave > 0 ? at(leave) : a, b);
  }
};

}  // namespace

void CBase_SGT::Draw_XianGangJin(float x1, float y1, float x2, float y2) {
  const SymbolEnvironment environment(*this, m_szGJColor);
  Draw_Pline(x1, y1, x2, y2, m_fGJLineWidth, m_fGJLineWidth);
}

void CBase_SGT::Draw_XianGangJin(int n, const float* x, const float* y) {
  const SymbolEnvironment environment(*this, m_szGJColor);
  Place points[kMostBarPoints];
  n = std::min(n, kMostBarPoints);
  for (int i = 0; i < n; ++i) points[i] = {x[i], y[i]};
  draw_bar(*this, n, points, false, m_fGJLineWidth);
}

void CBase_SGT::Draw_XianGangJin_Out_2PraLine(float x1, float y1, float x2, float y2) {
  const SymbolEnvironment environment(*this, m_szGJColor);
  Draw_PLine_Out_2PraLine(x1, y1, x2, y2, m_fGJLineWidth);
}

void CBase_SGT::Draw_DoNut(float x, float y, float r1, float r2) {
  const float r = (r1 + r2) / 2;
  const float width = std::fabs(r2 - r1);
  float px[2] = {x, x};
  float py[2] = {y + r, y - r};
  const float bulge[2] = {1, 1};
  float start[2] = {width, width};
  float end[2] = {width, width};
  Draw_Pline(2, px, py, bulge, 1, start, end);
}

void CBase_SGT::Draw_DoNutGangJin(float x, float y, float r1, float r2) {
  const SymbolEnvironment environment(*this, m_szGJColor);
  Draw_DoNut(x, y, r1, r2);
}

void CBase_SGT::Draw_YuanDianGangJin(float x, float y, float dx, float dy) {
  const float d = m_fGJDotWidth / 2;
  Draw_DoNutGangJin(x + dx * d, y + dy * d, 0, d);
}

void CBase_SGT::Draw_RectGangJin_C(float w, float h, float cx, float cy, float angle, float k) {
  const SymbolEnvironment environment(*this, m_szGJColor);
  const float width = m_fGJLineWidth;
  Draw_Rect_C(w - k * width, h - k * width, cx, cy, angle, width);
}

void CBase_SGT::Draw_RectGangJin_LB(float w, float h, float x, float y, float angle) {
  const SymbolEnvironment environment(*this, m_szGJColor);
  Draw_Rect_LB(w, h, x, y, angle, m_fGJLineWidth);
}

void CBase_SGT::Draw_RectGangJin_C_CutL(float w, float h, float cx, float cy, float angle, float a, float b, float k) {
  const SymbolEnvironment environment(*this, m_szGJColor);
  const float width = m_fGJLineWidth;
  Draw_Rect_C_CutL(w - k * width, h - k * width, cx, cy, angle, width, a, b);
}

void CBase_SGT::Draw_RectGangJin_LB_CutL(float w, float h, float x, float y, float angle, float a, float b) {
  const SymbolEnvironment environment(*this, m_szGJColor);
  Draw_Rect_LB_CutL(w, h, x, y, angle, m_fGJLineWidth, a, b);
}

void CBase_SGT::Draw_Rect_C_CutL(float w, float h, float cx, float cy, float angle, float a, float b) {
  const HookedOutline outline(Frame(cx, cy, angle), w, h, a, b, hook_clearance(*this, 0));
  for (int i = 0; i < 8; ++i) draw_line(*this, outline.point[i], outline.point[i + 1]);
}

void CBase_SGT::Draw_Rect_C_CutL(float w, float h, float cx, float cy, float angle, float width, float a, float b) {
  const HookedOutline outline(Frame(cx, cy, -angle), w, h, a, b, hook_clearance(*this, width));
  draw_bar(*this, 9, outline.point, false, width);
}

void CBase_SGT::Draw_Rect_LB_CutL(float w, float h, float x, float y, float angle, float a, float b) {
  const Place center = Frame(x, y, -angle).at(w / 2, h / 2);
  Draw_Rect_C_CutL(w, h, center.x, center.y, angle, a, b);
}

void CBase_SGT::Draw_Rect_LB_CutL(float w, float h, float x, float y, float angle, float width, float a, float b) {
  const Place center = Frame(x, y, -angle).at(w / 2, h / 2);
  Draw_Rect_C_CutL(w, h, center.x, center.y, angle, width, a, b);
}

void CBase_SGT::Draw_LaJieJin(float x1, float y1, float x2, float y2, int side) {
  const double e = (static_cast<double>(m_fGJDotWidth) + m_fGJLineWidth) / 2;
  const double distance = get_dist(x1, y1, x2, y2);
  const double half = std::sqrt(distance * distance - 4 * e * e) / 2;
  const double slant = std::atan(e / half) / kRadian;
  const double angle = get_line_angle(x1, y1, x2, y2) / kRadian + (side == 1 ? -slant : slant);
  double u[6] = {-half + e, -half - e, -half - e, half + e, half + e, half - e};
  double v[6] = {2 * e, 2 * e, 0, 0, -2 * e, -2 * e};
  if (side == 1) {
    // Quirk: the end of the last hook is not mirrored; host programs' details are laid out with it.
    for (int i = 0; i < 5; ++i) v[i] = -v[i];
  }
  const Frame frame((x1 + x2) / 2, (y1 + y2) / 2, static_cast<float>(angle));
  Place points[6];
  for (int i = 0; i < 6; ++i) points[i] = frame.at(u[i], v[i]);
  const SymbolEnvironment environment(*this, m_szGJColor);
  draw_bar(*this, 6, points, false, m_fGJLineWidth);
}

void CBase_SGT::Draw_Line_Out_2PraLine(float x1, float y1, float x2, float y2) {
  const Band band(*this);
  const auto angle = static_cast<float>(band.axis.angle * kRadian);
  band.outside(x1, y1, x2, y2,
               [&](Place a, Place b) { Draw_Line_Rotate_Shift(angle, band.axis.x, band.axis.y, a.x, a.y, b.x, b.y); });
}

void CBase_SGT::Draw_PLine_Out_2PraLine(float x1, float y1, float x2, float y2, float width) {
  const Band band(*this);
  const auto angle = static_cast<float>(band.axis.angle * kRadian);
  band.outside(x1, y1, x2, y2, [&](Place a, Place b) {
    Draw_PLine_Rotate_Shift(angle, band.axis.x, band.axis.y, a.x, a.y, b.x, b.y, width);
  });
}
