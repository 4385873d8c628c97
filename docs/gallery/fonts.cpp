// All shapes of the free fonts.

#include <algorithm>
#include <cstdio>

#include "figure.h"

namespace {

constexpr double kWidth = 10;  // of a cell, mm
constexpr double kHeight = 12;

/// Draws a shape into a cell, capitals five high on one base line, with its label below it.
void draw_shape(DXF& sheet, const qv::ShapeFile& font, const qv::ShapeFile::Shape& shape, int cell, int columns,
                const char* label) {
  const double left = cell % columns * kWidth;
  const double bottom = -(cell / columns) * kHeight;
  const qv::ShapeOutline outline = font.outline(shape, font.above() / 200);
  double low = 0;
  double high = 0;
  for (const auto& p : outline.points) low = std::min(low, p.x), high = std::max(high, p.x);
  const double k = 5 / font.above();
  const double x0 = left + (kWidth - k * (low + high)) / 2;
  const double y0 = bottom + 4.4;
  double x = 0;
  double y = 0;
  const auto at = [&](double v, double origin) { return static_cast<float>(origin + k * v); };
  for (const auto& p : outline.points) {
    if (p.drawn) sheet.Write_Line(at(x, x0), at(y, y0), 0, at(p.x, x0), at(p.y, y0), 0, "0", "7", "CONTINUOUS");
    x = p.x;
    y = p.y;
  }
  sheet.Write_Text(static_cast<float>(left + 2.5), static_cast<float>(bottom + 0.8), 0, 1.6F, 0, label, "STANDARD", "0",
                   "8", "CONTINUOUS");
}

}  // namespace

FIGURE(font_txt) {
  qv::ShapeFile font;
  if (!font.Load(manual::font_file("txt.shx").c_str())) return;
  DXF sheet;
  sheet.New_MemDxf();
  int cell = 0;
  for (const auto& shape : font.shapes()) {
    char label[8];
    std::snprintf(label, sizeof label, "%d", shape.code);
    draw_shape(sheet, font, shape, cell++, 16, label);
  }
  figure.drawing(sheet);
}

// Each row of GB2312 is a picture of its own.
FIGURE(font_hztxt) {
  qv::ShapeFile font;
  if (!font.Load(manual::font_file("hztxt.shx").c_str())) {
    figure.note(0, 0, "hztxt.shx was not made: it needs npm and a network");
    return;
  }
  constexpr int kFirst = 0xA1;
  for (int row = 1; row <= 94; ++row) {
    DXF sheet;
    sheet.New_MemDxf();
    for (int column = 1; column <= 94; ++column) {
      const auto* const shape = font.find((kFirst + row - 1) << 8 | (kFirst + column - 1));
      char label[8];
      std::snprintf(label, sizeof label, "%02X", kFirst + column - 1);
      if (shape) draw_shape(sheet, font, *shape, column, 16, label);
    }
    char part[8];
    std::snprintf(part, sizeof part, "%02d", row);
    if (sheet.m_EntityList.GetCount() > 0) figure.drawing(sheet, part);
  }
}
