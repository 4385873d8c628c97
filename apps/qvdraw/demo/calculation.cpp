#include <algorithm>
#include <cmath>
#include <vector>

#include "demo/demo.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/engineering/bars.h"
#include "qvtools/text/numbers.h"

namespace qvdraw {

namespace {

constexpr float kSpan = 6.6F;     // m
constexpr float kPermanent = 24;  // kN/m
constexpr float kVariable = 12;
constexpr int kPoints = 24;  // along each span

/// A beam of two equal spans under an even load on each.
struct Beam {
  float left;
  float right;
  float inner_moment() const { return -(left + right) * kSpan * kSpan / 16; }
  /// Moment and shear force at a distance from the left support.
  float moment(float x) const {
    const bool first = x <= kSpan;
    const float at = first ? x : 2 * kSpan - x;
    const float load = first ? left : right;
    return load * at * (kSpan - at) / 2 + inner_moment() * at / kSpan;
  }
  float shear(float x, bool first) const {
    const float load = first ? left : right;
    const float at = first ? x : 2 * kSpan - x;
    const float value = load * (kSpan / 2 - at) + inner_moment() / kSpan;
    return first ? value : -value;
  }
};

/// Steel area in mm2 for a moment in kNm, from the rectangular stress block of a 300 by 700 section in C30, with bars
/// of fy = 360 MPa.
float steel_area(float moment) {
  const double strength = 1.0 * 14.3 * 300;
  const double depth = 660;
  const double m = std::fabs(moment) * 1e6;
  return static_cast<float>(strength / 360 * (depth - std::sqrt(depth * depth - 2 * m / strength)));
}

void word(CBase_SGT& sgt, const Sample& data, float x, float y, float height, const char* key) {
  qv::DrawSheetText(sgt, x, y, height, data.text("words", key).c_str());
}

void draw_moments(CBase_SGT& sgt, const Sample& data, const Beam& full, const Beam& half) {
  std::vector<float> x;
  std::vector<float> both;
  std::vector<float> one;
  for (int i = 0; i <= 2 * kPoints; ++i) {
    x.push_back(kSpan * static_cast<float>(i) / kPoints);
    both.push_back(full.moment(x.back()));
    one.push_back(half.moment(x.back()));
  }
  sgt.Draw_Curve2(60, 180, static_cast<int>(x.size()), x.data(), both.data(), one.data(), 0, 2 * kSpan, -250, 150, 150,
                  80, 7, 8, data.text("words", "moments").c_str(), data.text("words", "moment").c_str(), 5, 0, 0);
  use_pen(sgt, "TEXT", "7");
  word(sgt, data, 60, 166, 3, "full");
  word(sgt, data, 105, 166, 3, "half");
  word(sgt, data, 178, 166, 3, "along");
}

void draw_shear_forces(CBase_SGT& sgt, const Sample& data, const Beam& full) {
  CBase_SGT::CURVEINFO info;
  info.x0 = 260;
  info.y0 = 180;
  info.width = 145;
  info.height = 84;
  info.xmin = -1;
  info.xmax = 2 * kSpan + 1;
  info.ymin = -200;
  info.ymax = 200;
  info.nx = 7;
  info.ny = 8;
  info.xTitle = data.text("words", "shear forces").c_str();
  info.yTitle = data.text("words", "shear").c_str();
  info.color = 5;
  info.values = 1;
  CArray<float, float> x;
  CArray<float, float> y;
  const float at[] = {0, kSpan, kSpan, 2 * kSpan};
  for (int i = 0; i < 4; ++i) {
    x.Add(at[i]);
    y.Add(full.shear(at[i], i < 2));
  }
  sgt.Draw_XY(info, x, y);
  word(sgt, data, 373, 166, 3, "along");
}

void draw_steel(CBase_SGT& sgt, const Sample& data, const Beam& full) {
  std::vector<float> x;
  std::vector<float> area;
  for (int i = 0; i <= kPoints; ++i) {
    x.push_back(2 * kSpan * static_cast<float>(i) / kPoints);
    area.push_back(steel_area(full.moment(x.back())));
  }
  sgt.m_nAxisYFormat = 0;
  sgt.Draw_Curve(60, 60, static_cast<int>(x.size()), x.data(), area.data(), 0, 2 * kSpan, 0, 1000, 150, 75, 7, 8,
                 data.text("words", "steel").c_str(), data.text("words", "area").c_str(), 1, 0, 1);
  sgt.m_nAxisYFormat = 2;
  word(sgt, data, 178, 47, 3, "along");
}

void draw_results(CBase_SGT& sgt, const Sample& data, const Beam& full, const Beam& half) {
  use_pen(sgt, "TEXT", "7");
  sgt.m_fTuMingText = sgt.m_fZiGao[2];
  draw_title(sgt, 320, 140, data.text("words", "title"), "");
  float y = 128;
  const auto line = [&](const std::string& text) {
    qv::DrawSheetText(sgt, 245, y, 3.5F, text.c_str());
    y -= 8;
  };
  for (const std::string& given : data.lines("given")) line(given);
  char text[100];
  const auto result = [&](const char* format, float value) {
    qv::format_text(text, sizeof text, format, static_cast<double>(value));
    line(text);
  };
  result("MB = -(g+q)*L*L/8 = %.1f kN\xA1\xA4m", full.inner_moment());
  float most = 0;
  for (int i = 0; i <= 660; ++i) most = std::max(most, half.moment(0.01F * static_cast<float>(i)));
  result("Mmax = %.1f kN\xA1\xA4m", most);
  result("VB = %.1f kN", full.shear(kSpan, true));
  result("As,B = %.0f mm2", steel_area(full.inner_moment()));
  const std::string bars = bar_text("2C25+2C22") + ":  As = %.0f mm2";
  result(bars.c_str(), static_cast<float>(qv::BarArea(25, 2) + qv::BarArea(22, 2)));
}

}  // namespace

Sheet compose_calculation(const Sample& project, const Sample& data) {
  constexpr float kShortDash = 1;  // curves are chains of lines a few millimetres long
  Sheet sheet = new_sheet(project, data, kShortDash);
  CBase_SGT& sgt = *sheet.sgt;
  const Beam full{kPermanent + kVariable, kPermanent + kVariable};
  const Beam half{kPermanent + kVariable, kPermanent};
  use_pen(sgt, "CHART", "7");
  draw_moments(sgt, data, full, half);
  use_pen(sgt, "CHART", "7");
  draw_shear_forces(sgt, data, full);
  draw_steel(sgt, data, full);
  draw_results(sgt, data, full, half);
  return sheet;
}

}  // namespace qvdraw
