#include "demo/storey.h"

#include "demo/sheet.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/text/numbers.h"

namespace qvdraw {

bool Storey::is_stair(std::size_t i, std::size_t j) const {
  return static_cast<float>(i) == data.number("sizes", "stair bay") &&
         static_cast<float>(j) == data.number("sizes", "stair row");
}

namespace {

/// Which of the kinds of columns stands where axes i and j cross.
std::size_t kind_of_column(const Storey& storey, std::size_t i, std::size_t j) {
  const auto& grid = storey.grid;
  const auto is_stair = [&](std::size_t bay, std::size_t row) { return storey.is_stair(bay, row); };
  const bool atSide = i == 0 || i + 1 == grid.x().size();
  const bool atEnd = j == 0 || j + 1 == grid.y().size();
  const bool atStair = is_stair(i, j) || is_stair(i - 1, j) || is_stair(i, j - 1) || is_stair(i - 1, j - 1);
  return atStair ? 3 : atSide && atEnd ? 0 : atSide || atEnd ? 1 : 2;
}

}  // namespace

const std::string& Storey::column_at(std::size_t i, std::size_t j) const {
  return data.row("columns", "marks").text(kind_of_column(*this, i, j));
}

CFPoint Storey::column_size(std::size_t i, std::size_t j) const {
  const std::size_t kind = kind_of_column(*this, i, j);
  return {data.row("columns", "widths").number(kind), data.row("columns", "depths").number(kind)};
}

float Storey::middle_of_row(const std::string& row) const {
  const auto j = static_cast<float>(qv::parse_int(row));
  return (axis(grid.y(), j) + axis(grid.y(), j + 1)) / 2;
}

namespace {

void draw_columns(CBase_SGT& sgt, const Storey& storey) {
  for (std::size_t i = 0; i < storey.grid.x().size(); ++i)
    for (std::size_t j = 0; j < storey.grid.y().size(); ++j) {
      const float x = storey.grid.x()[i];
      const float y = storey.grid.y()[j];
      const auto [b, h] = storey.column_size(i, j);
      use_pen(sgt, "COLUMN", "8");
      fill(sgt, x - b / 2, y - h / 2, x + b / 2, y + h / 2);
      use_pen(sgt, "COLUMN", "7");
      sgt.Draw_Rect_C(b, h, x, y, 0);
    }
}

/// The two edges of a beam; an edge under the slab is hidden.
void draw_beam(CBase_SGT& sgt, float x1, float y1, float x2, float y2, float width, bool leftFree, bool rightFree) {
  const float h = width / 2;
  const bool level = y1 == y2;
  const float dx = level ? 0 : -h;  // to the left edge
  const float dy = level ? h : 0;
  use_pen(sgt, "BEAM", "3", leftFree ? "BYLAYER" : "DASHED");
  sgt.Draw_Line(x1 + dx, y1 + dy, x2 + dx, y2 + dy);
  use_pen(sgt, "BEAM", "3", rightFree ? "BYLAYER" : "DASHED");
  sgt.Draw_Line(x1 - dx, y1 - dy, x2 - dx, y2 - dy);
}

void draw_beams(CBase_SGT& sgt, const Storey& storey) {
  const auto& x = storey.grid.x();
  const auto& y = storey.grid.y();
  const auto width = [&](const std::string& axis) { return storey.data.row("axis beams", axis).number(1); };
  const auto is_open = [&](std::size_t i, std::size_t j) {  // also beyond the storey
    return i >= x.size() - 1 || j >= y.size() - 1 || storey.is_stair(i, j);
  };
  for (std::size_t j = 0; j < y.size(); ++j)
    for (std::size_t i = 0; i + 1 < x.size(); ++i)
      draw_beam(sgt, x[i] + storey.column_size(i, j).x / 2, y[j], x[i + 1] - storey.column_size(i + 1, j).x / 2, y[j],
                width(storey.grid.yNames[j]), is_open(i, j), is_open(i, j - 1));
  for (std::size_t i = 0; i < x.size(); ++i)
    for (std::size_t j = 0; j + 1 < y.size(); ++j)
      draw_beam(sgt, x[i], y[j] + storey.column_size(i, j).y / 2, x[i], y[j + 1] - storey.column_size(i, j + 1).y / 2,
                width(storey.grid.xNames[i]), is_open(i - 1, j), is_open(i, j));
  for (const Sample::Row& row : storey.data.rows("secondary beams")) {
    const float level = storey.middle_of_row(row.key);
    const auto j = static_cast<std::size_t>(qv::parse_int(row.key));
    for (std::size_t i = 0; i + 1 < x.size(); ++i)
      if (!storey.is_stair(i, j))
        draw_beam(sgt, x[i] + width(storey.grid.xNames[i]) / 2, level, x[i + 1] - width(storey.grid.xNames[i + 1]) / 2,
                  level, row.number(1), false, false);
  }
}

void draw_stair_opening(CBase_SGT& sgt, const Storey& storey) {
  const float i = storey.data.number("sizes", "stair bay");
  const float j = storey.data.number("sizes", "stair row");
  constexpr float kEdge = 150;
  const float x1 = axis(storey.grid.x(), i) + kEdge;
  const float x2 = axis(storey.grid.x(), i + 1) - kEdge;
  const float y1 = axis(storey.grid.y(), j) + kEdge;
  const float y2 = axis(storey.grid.y(), j + 1) - kEdge;
  use_pen(sgt, "CONCRETE", "8");
  sgt.Draw_Line(x1, y1, x2, y2);
  sgt.Draw_Line(x1, y2, x2, y1);
  use_pen(sgt, "TEXT", "7");
  qv::DrawSheetText(sgt, (x1 + x2) / 2, y2 - 1500, sgt.m_fZiGao[1], storey.data.text("words", "stairs").c_str(),
                    qv::Across::Center);
}

}  // namespace

void draw_framing(CBase_SGT& sgt, const Storey& storey) {
  use_pen(sgt, "AXIS", "1");
  storey.grid.DrawAxes(sgt);
  use_pen(sgt, "DIM", "5");
  storey.grid.DrawDimensions(sgt, true);
  draw_beams(sgt, storey);
  draw_columns(sgt, storey);
  draw_stair_opening(sgt, storey);
}

}  // namespace qvdraw
