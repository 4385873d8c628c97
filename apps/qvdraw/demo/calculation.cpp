#include <algorithm>
#include <cmath>
#include <vector>

#include "demo/demo.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/engineering/bars.h"
#include "qvtools/text/numbers.h"

namespace qvdraw {

namespace {

constexpr int kPoints = 24;  // along each span

/// A beam of two equal spans under an even load on each.
struct Beam {
  float span;  // m
  float left;  // kN/m
  float right;
  float inner_moment() const { return -(left + right) * span * span / 16; }
  /// Moment and shear force at a distance from the left support.
  float moment(float x) const {
    const bool first = x <= span;
    const float at = first ? x : 2 * span - x;
    const float load = first ? left : right;
    return load * at * (span - at) / 2 + inner_moment() * at / span;
  }
  float shear(float x, bool first) const {
    const float load = first ? left : right;
    const float at = first ? x : 2 * span - x;
    const float value = load * (span / 2 - at) + inner_moment() / span;
    return first ? value : -value;
  }
};

/// The section and its materials.
struct Section {
  double width;        // mm
  double depth;        // to the bars
  double compression;  // MPa
  double tension;
  double steel;
  explicit Section(const Sample& data)
      : width(number(data, "width")),
        depth(number(data, "depth")),
        compression(number(data, "fc")),
        tension(number(data, "ft")),
        steel(number(data, "fy")) {}
  static double number(const Sample& data, const char* key) { return static_cast<double>(data.number("section", key)); }
  /// Steel area in mm2 for a moment in kNm, from the rectangular stress block.
  float area(float moment) const {
    const double strength = compression * width;
    const double m = std::fabs(moment) * 1e6;
    return static_cast<float>(strength / steel * (depth - std::sqrt(depth * depth - 2 * m / strength)));
  }
  /// What the concrete alone resists in shear, kN.
  float shear() const { return static_cast<float>(0.7 * tension * width * depth / 1000); }
};

/// The live load on both spans, on the left one, and on the right one.
struct Cases {
  Beam full;
  Beam left;
  Beam right;
  explicit Cases(const Sample& data) {
    const float span = data.number("loads", "span");
    const float permanent = data.number("loads", "permanent");
    const float most = permanent + data.number("loads", "variable");
    full = {span, most, most};
    left = {span, most, permanent};
    right = {span, permanent, most};
  }
};

void word(CBase_SGT& sgt, const Sample& data, float x, float y, float height, const char* key) {
  qv::DrawSheetText(sgt, x, y, height, data.text("words", key).c_str());
}

void draw_moments(CBase_SGT& sgt, const Sample& data, const Cases& cases) {
  std::vector<float> x;
  std::vector<float> both;
  std::vector<float> one;
  for (int i = 0; i <= 2 * kPoints; ++i) {
    x.push_back(cases.full.span * static_cast<float>(i) / kPoints);
    both.push_back(cases.full.moment(x.back()));
    one.push_back(cases.left.moment(x.back()));
  }
  sgt.Draw_Curve2(60, 180, static_cast<int>(x.size()), x.data(), both.data(), one.data(), 0, 2 * cases.full.span, -300,
                  200, 150, 84, 7, 10, data.text("words", "moments").c_str(), data.text("words", "moment").c_str(), 5,
                  0, 0);
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
  info.xmax = 2 * full.span + 1;
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
  const float at[] = {0, full.span, full.span, 2 * full.span};
  for (int i = 0; i < 4; ++i) {
    x.Add(at[i]);
    y.Add(full.shear(at[i], i < 2));
  }
  sgt.Draw_XY(info, x, y);
  word(sgt, data, 373, 166, 3, "along");
}

void draw_steel(CBase_SGT& sgt, const Sample& data, const Cases& cases, const Section& section) {
  std::vector<float> x;
  std::vector<float> area;
  for (int i = 0; i <= kPoints; ++i) {
    x.push_back(2 * cases.full.span * static_cast<float>(i) / kPoints);
    float most = 0;
    for (const Beam& beam : {cases.full, cases.left, cases.right})
      most = std::max(most, section.area(beam.moment(x.back())));
    area.push_back(most);
  }
  sgt.m_nAxisYFormat = 0;
  sgt.Draw_Curve(60, 60, static_cast<int>(x.size()), x.data(), area.data(), 0, 2 * cases.full.span, 0, 1400, 150, 75, 7,
                 7, data.text("words", "steel").c_str(), data.text("words", "area").c_str(), 1, 0, 1);
  sgt.m_nAxisYFormat = 2;
  word(sgt, data, 178, 47, 3, "along");
}

void draw_results(CBase_SGT& sgt, const Sample& data, const Cases& cases, const Section& section) {
  use_pen(sgt, "TEXT", "7");
  sgt.m_fTuMingText = sgt.m_fZiGao[2];
  draw_title(sgt, 320, 140, data.text("words", "title"), "");
  float y = 128;
  const auto line = [&](const std::string& text) {
    qv::DrawSheetText(sgt, 245, y, 3.5F, text.c_str());
    y -= 7;
  };
  for (const std::string& given : data.lines("given")) line(given);
  char text[100];
  const auto result = [&](const char* format, float value) {
    qv::format_text(text, sizeof text, format, static_cast<double>(value));
    line(text);
  };
  result("MB = -(g+q)L\\U+00B2/8 = %.1f kN\xA1\xA4m", cases.full.inner_moment());
  float most = 0;
  for (int i = 0; i <= 1000; ++i)
    most = std::max(most, cases.left.moment(cases.left.span * static_cast<float>(i) / 1000));
  result("Mmax = %.1f kN\xA1\xA4m", most);
  const float shear = -cases.full.shear(cases.full.span, true);
  result("VB = 5(g+q)L/8 = %.1f kN", shear);
  result("0.7 ft b h0 = %.1f kN", section.shear());
  line(data.text("words", shear > section.shear() ? "stirrups" : "nominal stirrups"));
  result("As(MB) = %.0f mm\\U+00B2", section.area(cases.full.inner_moment()));
  result("As(Mmax) = %.0f mm\\U+00B2", section.area(most));
  for (const char* key : {"top", "bottom"}) {
    // "2C25+2C22": counts and diameters.
    const Sample::Row& bars = data.row("bars", key);
    double area = 0;
    for (std::size_t i = 1; i + 1 < bars.fields.size(); i += 2)
      area += qv::BarArea(static_cast<int>(bars.number(i + 1)), static_cast<int>(bars.number(i)));
    line(bar_text(bars.text(0)) + ":  As = " + std::to_string(std::lround(area)) + " mm\\U+00B2");
  }
}

}  // namespace

Sheet compose_calculation(const Sample& project, const Sample& data) {
  constexpr float kShortDash = 1;  // curves are chains of lines a few millimetres long
  Sheet sheet = new_sheet(project, data, kShortDash);
  CBase_SGT& sgt = *sheet.sgt;
  const Cases cases(data);
  const Section section(data);
  use_pen(sgt, "CHART", "7");
  draw_moments(sgt, data, cases);
  use_pen(sgt, "CHART", "7");
  draw_shear_forces(sgt, data, cases.full);
  draw_steel(sgt, data, cases, section);
  draw_results(sgt, data, cases, section);
  return sheet;
}

}  // namespace qvdraw
