#include <algorithm>

#include "qvtools/drawing/internal/placing.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/text/numbers.h"

using namespace qv::detail;

namespace {

constexpr int kMostDivisions = 1000;
constexpr double kLeastRange = 1e-5;
const char* const kGridColor = "8";
const char* const kLineTypes[] = {"CONTINUOUS", "DASHED", "DOT", "DASHDOT"};
constexpr int kMarkers = 3;

/// One direction of an axis box.
struct Scale {
  double origin;  // drawing units
  double low;     // values
  double high;
  double factor;
  double step;
  int divisions;
  Scale(float start, float least, float most, float length, int count)
      : origin(start), low(least), high(most), divisions(std::clamp(count, 1, kMostDivisions)) {
    const double range = std::max(high - low, kLeastRange);
    factor = length / range;
    step = qv::parse_real(qv::FormattedText<64>("%.0e", range / divisions).text);
  }

  float at(double value) const { return static_cast<float>(origin + (value - low) * factor); }

  /// Calls draw(value) for each tick in the range; one that meets an end of the range up to rounding is in it.
  void ticks(const auto& draw) const {
    const double steps = low / step;
    const bool whole = std::fabs(steps - std::round(steps)) < 1e-6 * std::max(1.0, std::fabs(steps));
    const double first = (whole ? std::round(steps) : std::trunc(steps)) - 1;
    for (int k = 0; k < 2 * divisions; ++k) {
      const double value = (first + k) * step;
      const double tolerance = 1e-4 * step + 1e-7 * std::fabs(value);
      if (value >= low - tolerance && value <= high + tolerance) draw(value);
    }
  }
};

struct Axes {
  Scale x;
  Scale y;
  float textHeight;
  Axes(const CBase_SGT::CURVEINFO& box)
      : x(box.x0, box.xmin, box.xmax, box.width, box.nx), y(box.y0, box.ymin, box.ymax, box.height, box.ny) {
    textHeight = std::min(box.width, box.height) / static_cast<float>(y.divisions) * 0.3F;
  }
};

qv::FormattedText<400> tick_label(int format, const int (&decimals)[6], double value) {
  return qv::FormattedText<400>("%.*f", format >= 0 && format <= 5 ? decimals[format] : 2, value);
}

constexpr int kXDecimals[6] = {0, 1, 2, 3, 4, 5};
constexpr int kYDecimals[6] = {0, 1, 2, 2, 3, 4};

/// Half the estimated length of a title twice as high as the tick labels.
float half_title(const char* title, float labelHeight) {
  return 0.4F * labelHeight * static_cast<float>(std::strlen(title));
}

void draw_grid_line(CBase_SGT& sgt, float x1, float y1, float x2, float y2) {
  const SymbolEnvironment environment(sgt, kGridColor);
  sgt.Draw_Line(x1, y1, x2, y2);
}

void draw_axis(CBase_SGT& sgt, const CBase_SGT::CURVEINFO& box) {
  const SymbolEnvironment environment(sgt);
  const Axes axes(box);
  const float th = axes.textHeight;
  axes.x.ticks([&](double value) {
    const float x = axes.x.at(value);
    draw_grid_line(sgt, x, box.y0, x, box.y0 + box.height);
    const auto label = tick_label(sgt.m_nAxisXFormat, kXDecimals, value);
    sgt.Draw_Text(x - text_width(label, th) / 2, box.y0 - 2 * th, th, 0, label);
  });
  float widest = 0;
  axes.y.ticks([&](double value) {
    const float y = axes.y.at(value);
    draw_grid_line(sgt, box.x0, y, box.x0 + box.width, y);
    const auto label = tick_label(sgt.m_nAxisYFormat, kYDecimals, value);
    const float width = text_width(label, th);
    sgt.Draw_Text(box.x0 - 0.5F * th - width, y - th / 2, th, 0, label);
    widest = std::max(widest, width);
  });
  sgt.MoveTo(box.x0, box.y0);
  sgt.LineTo_Relative(box.width, 0);
  sgt.LineTo_Relative(0, box.height);
  sgt.LineTo_Relative(-box.width, 0);
  sgt.LineTo_Relative(0, -box.height);
  sgt.SetCurStyle("HZ");
  sgt.Draw_Text(box.x0 + box.width / 2 - half_title(box.xTitle, th), box.y0 + box.height + th, 2 * th, 0, box.xTitle);
  sgt.Draw_Text(box.x0 - widest - 1.5F * th, box.y0 + box.height / 2 - half_title(box.yTitle, th), 2 * th, 90,
                box.yTitle);
}

void set_line_type(CBase_SGT& sgt, int index) {
  const char* name = index >= 0 && index <= 3 ? kLineTypes[index] : kLineTypes[0];
  for (int i = 0; sgt.m_pLType && i < sgt.m_nLType; ++i)
    if (std::strcmp(sgt.m_pLType[static_cast<std::size_t>(i)].m_szName, name) == 0) return sgt.SetCurLType(name);
  sgt.SetCurLType("BYLAYER");
}

void draw_marker(CBase_SGT& sgt, float x, float y, float r, int marker) {
  if (marker == 1) sgt.Draw_Circle(x, y, r);
  if (marker == 2) sgt.Draw_Rect_C(2 * r, 2 * r, x, y, 0);
  if (marker == 3) {
    sgt.Draw_Line(x - r, y - r, x + r, y + r);
    sgt.Draw_Line(x - r, y + r, x + r, y - r);
  }
}

void draw_curve(CBase_SGT& sgt, const CBase_SGT::CURVEINFO& info, int n, const float* x, const float* y) {
  const SymbolEnvironment environment(sgt);
  sgt.SetCurColor(qv::FormattedText<16>("%d", info.color));
  set_line_type(sgt, info.ltype);
  const Axes axes(info);
  for (int i = 0; i < n; ++i) {
    const float px = axes.x.at(x[i]);
    const float py = axes.y.at(y[i]);
    if (i == 0)
      sgt.MoveTo(px, py);
    else
      sgt.LineTo(px, py);
  }
  sgt.SetCurLType("BYLAYER");
  std::fill(std::begin(sgt.m_bRectSide), std::end(sgt.m_bRectSide), 1);
  const float r = 0.3F * axes.textHeight;
  for (int i = 0; i < n; ++i) draw_marker(sgt, axes.x.at(x[i]), axes.y.at(y[i]), r, info.marker);
  if (!info.values) return;
  for (int i = 0; i < n; ++i) {
    const qv::FormattedText<64> text("%.2f", static_cast<double>(y[i]));
    const float h = 0.8F * axes.textHeight;
    // On the side away from zero, where the curve does not go on.
    const float off = y[i] < 0 ? -2 * r - h : 2 * r;
    sgt.Draw_Text(axes.x.at(x[i]) - text_width(text, h) / 2, axes.y.at(y[i]) + off, h, 0, text);
  }
}

}  // namespace

void CBase_SGT::Draw_Axis(float x0, float y0, float xmin, float xmax, float ymin, float ymax, float width, float height,
                          int nx, int ny, const char* xTitle, const char* yTitle) {
  unless_out_of_memory([&] {
    draw_axis(*this, {x0, y0, width, height, xmin, xmax, ymin, ymax, nx, ny, xTitle, yTitle, 0, 0, 0, 0});
  });
}

void CBase_SGT::Draw_Curve(float x0, float y0, int n, const float* x, const float* y, float xmin, float xmax,
                           float ymin, float ymax, float width, float height, int nx, int ny, const char* xTitle,
                           const char* yTitle, int color, int ltype, int marker) {
  unless_out_of_memory([&] {
    const CURVEINFO info{x0, y0, width,  height, xmin,  xmax,  ymin,   ymax,
                         nx, ny, xTitle, yTitle, color, ltype, marker, 0};
    draw_axis(*this, info);
    draw_curve(*this, info, n, x, y);
  });
}

void CBase_SGT::Draw_Curve2(float x0, float y0, int n, const float* x, const float* y, const float* y2, float xmin,
                            float xmax, float ymin, float ymax, float width, float height, int nx, int ny,
                            const char* xTitle, const char* yTitle, int color, int ltype, int marker) {
  unless_out_of_memory([&] {
    CURVEINFO info{x0, y0, width, height, xmin, xmax, ymin, ymax, nx, ny, xTitle, yTitle, color, ltype, marker, 0};
    draw_axis(*this, info);
    draw_curve(*this, info, n, x, y);
    info.color = color % 7 + 1;
    info.ltype = ltype % 4 + 1;  // behind the last comes the first
    info.marker = marker == 0 ? 0 : marker % kMarkers + 1;
    draw_curve(*this, info, n, x, y2);
  });
}

int CBase_SGT::Draw_XY(CURVEINFO info, const CArray<float, float>& x, const CArray<float, float>& y) {
  if (x.GetSize() != y.GetSize() || x.GetSize() < 2) return 0;
  draw_axis(*this, info);
  draw_curve(*this, info, x.GetSize(), x.GetData(), y.GetData());
  return 1;
}
