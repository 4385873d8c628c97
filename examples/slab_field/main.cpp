// The deflection of a slab that is held on its four sides.   slab_field A B THICKNESS LOAD   (m, m, mm, kN/m2) writes
// it as a field (slab.field), as a picture in colours with contours (slab.png), and the contours as a drawing
// (slab.dxf).

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "qvtools.h"

namespace {

int fail(const char* what, const char* why) {
  std::fprintf(stderr, "slab_field: %s: %s\n", what, why);
  return 1;
}

/// Navier's series for a simply supported plate of a by b (m) under an even load, as a share of q/D.
double deflection(double a, double b, double x, double y) {
  constexpr double kPi = std::numbers::pi;
  double sum = 0;
  for (int m = 1; m < 30; m += 2)
    for (int n = 1; n < 30; n += 2) {
      const double k = m * m / (a * a) + n * n / (b * b);
      sum += std::sin(m * kPi * x / a) * std::sin(n * kPi * y / b) / (m * n * k * k);
    }
  return 16 / std::pow(kPi, 6) * sum;
}

/// A mesh of n by n cells of two triangles, with the deflection in mm as value 0.
void fill_field(CChang& field, double a, double b, double factor) {
  constexpr int n = 40;
  for (int j = 0; j <= n; ++j)
    for (int i = 0; i <= n; ++i) {
      CChangNode node;
      node.x = static_cast<float>(a * i / n);
      node.y = static_cast<float>(b * j / n);
      node.value[0] = static_cast<float>(std::max(0.0, factor * deflection(a, b, a * i / n, b * j / n)));
      field.m_Nodes.Add(node);
    }
  for (int j = 0; j < n; ++j)
    for (int i = 0; i < n; ++i) {
      const int at = j * (n + 1) + i + 1;  // numbers of nodes count from 1
      field.m_Tris.Add(CChangTri{{at, at + 1, at + n + 2}});
      field.m_Tris.Add(CChangTri{{at, at + n + 2, at + n + 1}});
    }
}

/// The line of a level through each triangle, in mm of the plan.
void draw_contour(CBase_SGT& sgt, const CChang& field, float level) {
  for (int t = 0; t < field.m_Tris.GetSize(); ++t) {
    std::vector<CFPoint> ends;
    for (int k = 0; k < 3; ++k) {
      const CChangNode& p = field.m_Nodes[field.m_Tris[t].node[k] - 1];
      const CChangNode& q = field.m_Nodes[field.m_Tris[t].node[(k + 1) % 3] - 1];
      if ((p.value[0] < level) == (q.value[0] < level)) continue;
      const float share = (level - p.value[0]) / (q.value[0] - p.value[0]);
      ends.push_back({1000 * (p.x + share * (q.x - p.x)), 1000 * (p.y + share * (q.y - p.y))});
    }
    if (ends.size() == 2) sgt.Draw_Line(ends[0].x, ends[0].y, ends[1].x, ends[1].y);
  }
}

/// A step of one digit, 1, 2 or 5, that divides a value into four to ten parts.
double step_of(double value) {
  const double power = std::pow(10, std::floor(std::log10(value / 4)));
  return value / power >= 20 ? 5 * power : value / power >= 8 ? 2 * power : power;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return fail("usage", "slab_field A B THICKNESS LOAD");
  double given[4];
  for (int i = 0; i < 4; ++i) {
    char* end = nullptr;
    given[i] = std::strtod(argv[i + 1], &end);
    if (end == argv[i + 1] || *end || !(given[i] > 0) || !(given[i] < 1e4)) return fail(argv[i + 1], "is no such size");
  }
  const auto [a, b, thickness, load] = std::to_array(given);
  if (a > 8 * b || b > 8 * a) return fail("the slab", "is too narrow for a picture");
  if (!G_ShapeFont.SetTxtFont(FONTS, "txt.shx")) return fail(FONTS, "there is no txt.shx");

  Con_Prop concrete;
  if (!get_rc_property(30, &concrete)) return fail("C30", "is no grade of concrete");
  const double stiffness = concrete.Ec * std::pow(thickness, 3) / 12 / (1 - concrete.nu * concrete.nu);  // Nmm
  CChang made, field;
  fill_field(made, a, b, load * 1e-3 * 1e12 / stiffness);
  qv::SavedFile saved("slab.field", qv::SavedFile::Lines::CrLf);
  if (!saved.is_open() || !made.SaveData(saved.stream()) || !saved.commit())
    return fail("slab.field", "cannot be written");
  // From here on it is a field as another program would have left it.
  std::FILE* const file = qv::open_text("slab.field", "rt");
  const bool read = file && field.LoadData(file);
  if (file) std::fclose(file);
  if (!read || field.m_Nodes.GetSize() == 0) return fail("slab.field", "cannot be read");
  const qv::FieldLocator values(field);
  const float middle = values.Value(static_cast<float>(a / 2), static_cast<float>(b / 2));
  std::printf("deflection in the middle: %.3f mm, span / %.0f\n", static_cast<double>(middle),
              1000 * std::min(a, b) / static_cast<double>(middle));

  const std::unique_ptr<CBase_SGT> sgt(NewMemDxf());
  if (!sgt) return fail("memory", "there is none");
  const float width = static_cast<float>(1000 * a), height = static_cast<float>(1000 * b);
  const float letters = std::min(width, height) / 35;
  sgt->Draw_Rect_LB(width, height, 0, 0, 0);
  const double step = step_of(middle);
  for (int i = 1; i * step < 0.95 * middle; ++i) {
    const float level = static_cast<float>(i * step);
    sgt->SetCurColor(level < 0.6F * middle ? "7" : "9");
    draw_contour(*sgt, field, level);
    // Where the line crosses the upper half of the middle, its value.
    float low = static_cast<float>(b / 2), high = static_cast<float>(b);
    for (int k = 0; k < 30; ++k) {
      const float half = (low + high) / 2;
      (values.Value(static_cast<float>(a / 2), half) > level ? low : high) = half;
    }
    char text[32];
    std::snprintf(text, sizeof text, "%g", i * step);
    sgt->Draw_Text(width / 2 + letters / 2, 1000 * low - 1.3F * letters, letters, 0, text);
  }
  if (!sgt->Write_MemDxf_To_File("slab.dxf")) return fail("slab.dxf", "cannot be written");

  // One transform for both pictures: millimetres to pixels, room for the legend on the left.
  constexpr int kLeft = 110, kMargin = 30, kSide = 900;
  const float scale = kSide / std::max(width, height);
  CRect place(0, 0, kLeft + static_cast<int>(scale * width) + kMargin,
              std::max(330, 2 * kMargin + static_cast<int>(scale * height)));
  CFCoor coor({-kLeft / scale, height + kMargin / scale}, scale, 1);
  qv::BitmapContext bitmap(place.Width(), place.Height(), qv::rgb(0, 0, 0));
  if (!field.Draw_CaiSeTu(&bitmap, &place, &coor)) return fail("the picture", "cannot be painted");
  qv::Palette palette = qv::StandardPalette();
  palette[7] = qv::rgb(0, 0, 0);  // on light colours
  palette[9] = qv::rgb(255, 255, 255);
  sgt->Draw(&bitmap, &coor, {&palette, nullptr});
  if (!qv::SavePng(bitmap, "slab.png")) return fail("slab.png", "cannot be written");
  return 0;
}
