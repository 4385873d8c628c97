#include <algorithm>
#include <utility>
#include <vector>

#include "demo/demo.h"
#include "demo/storey.h"
#include "qvtools/drawing/dimension_chain.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/leaders.h"
#include "qvtools/drawing/second_scale.h"

namespace qvdraw {

namespace {

void draw_beam_labels(CBase_SGT& sgt, const Storey& storey) {
  use_pen(sgt, "TEXT", "7");
  const float h = sgt.m_fZiGao[0];
  const auto& x = storey.grid.x();
  const auto& y = storey.grid.y();
  const auto label = [](const Sample::Row& row) { return row.text(0) + " " + row.text(1) + "x" + row.text(2); };
  for (const Sample::Row& row : storey.data.rows("axis beams")) {
    const float off = row.number(1) / 2 + 0.9F * sgt.m_fBiLiChi;
    const float level = storey.grid.Y(row.key);
    const float upright = storey.grid.X(row.key);
    if (level == level)
      sgt.Draw_Text_Along_Line(x[0], level, x[1], level, 8, 1, label(row).c_str(), h, off);
    else
      sgt.Draw_Text_Along_Line(upright, y[0], upright, y[1], 8, 1, label(row).c_str(), h, off);
  }
  for (const Sample::Row& row : storey.data.rows("secondary beams")) {
    const float level = storey.middle_of_row(row.key);
    const float off = row.number(1) / 2 + 0.9F * sgt.m_fBiLiChi;
    sgt.Draw_Text_Along_Line(x[0], level, x[1], level, 8, 1, label(row).c_str(), h, off);
  }
}

void draw_marks(CBase_SGT& sgt, const Storey& storey) {
  const float s = sgt.m_fBiLiChi;
  const auto& x = storey.grid.x();
  const auto& y = storey.grid.y();
  use_pen(sgt, "TEXT", "7");
  const std::string slab = "h=" + storey.data.text("sizes", "slab");
  for (std::size_t j = 0; j + 1 < y.size(); ++j)
    for (std::size_t i = 0; i + 1 < x.size(); ++i)
      if (!storey.is_stair(i, j))
        sgt.Draw_Text(x[i] + 0.6F * (x[i + 1] - x[i]), y[j] + 12 * s, sgt.m_fZiGao[0], 0, slab.c_str());
  for (std::size_t j = 0; j < y.size(); ++j)
    for (std::size_t i = 0; i < x.size(); ++i)
      sgt.Draw_Text(x[i] + 4 * s, y[j] - 6.5F * s, sgt.m_fZiGao[0], 0, storey.column_at(i, j).c_str());
  use_pen(sgt, "DIM", "5");
  const float level = storey.data.number("sizes", "level");
  sgt.Draw_BiaoGao(x[1] + 2000, y[1] + 1800, level, 0);
  sgt.Draw_BiaoGao(x[4] + 2000, y[1] + 1800, level, 0);
  sgt.Draw_BiaoGao(x[3] + 2000, y[3] + 5200, level, 0);
  sgt.Draw_BiaoGao(x[6] + 1800, y[1] + 1900, storey.data.number("sizes", "wet level"), 0);
  use_pen(sgt, "DIM", "7");
  sgt.Draw_PouXian(x[5] - 900, y.back() + 8 * s, x[5] - 900, y[0] - 8 * s, "1", 0, 1);
}

/// What the section mark cuts: the slab over beams, with levels and axes.
void draw_section(CBase_SGT& sgt, const Storey& storey, CFPoint place) {
  constexpr float kScale = 50;
  const auto& y = storey.grid.y();
  const float slab = storey.data.number("sizes", "slab");
  const float edge = 150;  // of the outer beams, from their axes
  const auto at = [&](float level) { return level - y[0]; };
  std::vector<std::pair<float, std::pair<float, float>>> beams;  // middle, width and depth
  for (std::size_t j = 0; j < y.size(); ++j) {
    const Sample::Row& row = storey.data.row("axis beams", storey.grid.yNames[j]);
    beams.push_back({at(y[j]), {row.number(1), row.number(2)}});
  }
  for (const Sample::Row& row : storey.data.rows("secondary beams"))
    beams.push_back({at(storey.middle_of_row(row.key)), {row.number(1), row.number(2)}});
  std::ranges::sort(beams);
  std::vector<float> sides;
  {
    const qv::SecondScale detail(sgt, place.x, place.y, kScale);
    const float far = at(y.back());
    use_pen(sgt, "CONCRETE", "8");
    fill(sgt, -edge, -slab, far + edge, 0);
    for (const auto& [middle, size] : beams)
      fill(sgt, middle - size.first / 2, -size.second, middle + size.first / 2, -slab);
    use_pen(sgt, "CONCRETE", "7");
    sgt.Draw_Line(-edge, 0, far + edge, 0);
    sgt.MoveTo(-edge, 0);
    for (const auto& [middle, size] : beams) {
      const float left = middle - size.first / 2;
      const float right = middle + size.first / 2;
      if (left > -edge) {
        sgt.LineTo(left, -slab);
      }
      sgt.LineTo(left, -size.second);
      sgt.LineTo(right, -size.second);
      if (right < far + edge) sgt.LineTo(right, -slab);
    }
    sgt.LineTo(far + edge, 0);
    sgt.m_fDimTextHeight = sgt.m_fZiGao[1];
    for (std::size_t j = 0; j < y.size(); ++j) {
      use_pen(sgt, "AXIS", "1", "DASHDOT");
      sgt.Draw_Line(at(y[j]), 400, at(y[j]), -1150);  // open where the width of the beam stands
      sgt.Draw_Line(at(y[j]), -1430, at(y[j]), -2100);
      use_pen(sgt, "AXIS", "1");
      sgt.Draw_ZhouFu(at(y[j]), -2100, at(y[j]), -2300, storey.grid.yNames[j].c_str());
    }
    sgt.m_fDimTextHeight = sgt.m_fZiGao[0];
    use_pen(sgt, "DIM", "5");
    std::vector<float> axes;
    for (const float level : y) axes.push_back(at(level));
    for (const auto& [middle, size] : beams) {
      sides.push_back(middle - size.first / 2);
      sides.push_back(middle + size.first / 2);
    }
    qv::DrawDimensionChain(sgt, qv::ChainSide::Below, sides, -1150, 5);
    qv::DrawDimensionChain(sgt, qv::ChainSide::Below, axes, -1650, 4);
    const float depths[] = {0, -slab, -beams[0].second.second};
    qv::DrawDimensionChain(sgt, qv::ChainSide::Left, depths, -900, 6);
  }
  use_pen(sgt, "DIM", "5");
  const float x = place.x + 2 * (at(y.back()) + 600);
  sgt.Draw_Line(x - 300, place.y, x + 900, place.y);
  sgt.Draw_BiaoGao(x + 400, place.y, storey.data.number("sizes", "level"), 0);
}

/// A main beam where a secondary beam meets it, with the extra stirrups on both sides, at 1:20.
void draw_crossing(CBase_SGT& sgt, const Storey& storey, CFPoint place) {
  const Sample::Row& row = storey.data.row("details", "crossing");
  const float depth = row.number(0);
  const float width = row.number(1);
  const float lower = row.number(2);
  constexpr float kHalf = 1300;
  constexpr float kCover = 30;
  const float first = width / 2 + 50;
  const qv::SecondScale detail(sgt, place.x, place.y, 20);
  use_pen(sgt, "CONCRETE", "8");
  fill(sgt, -width / 2, -lower, width / 2, 0);
  use_pen(sgt, "CONCRETE", "7");
  sgt.Draw_Line(-kHalf, 0, kHalf, 0);
  sgt.Draw_Line(-kHalf, -depth, kHalf, -depth);
  sgt.Draw_Rect_LB(width, lower, -width / 2, -lower, 0);
  for (const float side : {-kHalf, kHalf}) sgt.Draw_Cut_Sym(side, -depth, side, 0);
  use_pen(sgt, "STEEL", "1");
  sgt.Draw_XianGangJin(-kHalf, -kCover, kHalf, -kCover);
  sgt.Draw_XianGangJin(-kHalf, -depth + kCover, kHalf, -depth + kCover);
  for (const float side : {-1.0F, 1.0F}) {
    for (int i = 0; i < 3; ++i) {
      const float x = side * (first + 50 * static_cast<float>(i));
      sgt.Draw_XianGangJin(x, -depth + kCover, x, -kCover);
    }
    use_pen(sgt, "STEEL", "3");
    for (float x = first + 200; x < kHalf - 100; x += 200) sgt.Draw_Line(side * x, -depth + kCover, side * x, -kCover);
    use_pen(sgt, "STEEL", "1");
  }
  use_pen(sgt, "DIM", "5");
  qv::Leaders above(qv::Leaders::Side::Above, 250);
  above.Add(-first - 50, -200, bar_text(row.text(3)));
  above.Add(first + 600, -200, bar_text(row.text(4)));
  above.Draw(sgt);
  const float sides[] = {-first - 100, -first, -width / 2, width / 2, first, first + 100};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, sides, -depth - 250, 5);
  const float depths[] = {0, -lower, -depth};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, depths, -kHalf - 250, 5);
}

}  // namespace

Sheet compose_plan(const Sample& project, const Sample& data) {
  Sheet sheet = new_sheet(project, data);
  CBase_SGT& sgt = *sheet.sgt;
  const CFPoint corner = sheet.from_left(58, 206);
  const Storey storey(data, corner.x, corner.y);
  draw_framing(sgt, storey);
  draw_beam_labels(sgt, storey);
  draw_marks(sgt, storey);
  const CFPoint title = sheet.from_left(310, 142);
  draw_title(sgt, title.x, title.y, data.text("words", "title"), "1:100");
  draw_section(sgt, storey, sheet.from_left(42, 90));
  const CFPoint under = sheet.from_left(310, 20);
  draw_title(sgt, under.x, under.y, data.text("words", "section title"), "1:50");

  const float below = draw_notes(sgt, data, sheet.from_right(166, 12), 122);
  const float s = sgt.m_fBiLiChi;
  const float left = sheet.from_right(166, 0).x;
  qv::SheetTable beams = table_of(data, "beam schedule", {{22}, {22}, {19}, {25}, {17}, {35}, {18}}, {.textHeight = 3});
  beams.SetTitle(data.text("words", "beam schedule"));
  const float next = beams.Draw(sgt, left, below - 18 * s).all().y1;
  qv::SheetTable storeys = table_of(data, "storeys", {{30}, {44}, {44}, {36}});
  storeys.SetTitle(data.text("words", "storeys"));
  const float last = storeys.Draw(sgt, left, next - 20 * s).all().y1;
  const float middle = sheet.from_right(84, 0).x;
  draw_crossing(sgt, storey, {middle, last - 75 * s});
  draw_title(sgt, middle, last - 155 * s, data.text("words", "crossing title"), "1:20");
  return sheet;
}

}  // namespace qvdraw
