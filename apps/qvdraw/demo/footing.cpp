#include <algorithm>
#include <cmath>
#include <utility>

#include "demo/demo.h"
#include "qvtools/drawing/bar_list.h"
#include "qvtools/drawing/dimension_chain.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/leaders.h"

namespace qvdraw {

namespace {

constexpr float kColumnCover = 25;

struct Footing {
  const Sample& data;
  CFPoint middle;  // of the plan, on the sheet
  std::vector<float> base = data.numbers("footing", "base", 2);
  std::vector<float> step = data.numbers("footing", "step", 2);
  std::vector<float> heights = data.numbers("footing", "heights", 2);
  float column = data.number("footing", "column");
  float lean = data.number("footing", "lean");
  static constexpr float kCover = 40;
  static constexpr float kFirst = 75;  // from the edge to the first bar of the net
  static constexpr float kAbove = 90;  // from the base to the bars that stand on the net
  float starter_bend() const { return 15 * data.row("footing", "starter").number(3); }
  /// Where the bars of the net stand along a side, no farther apart than their spacing.
  std::vector<float> net(float side, const char* name) const {
    const float room = side - 2 * kFirst;
    const float gaps = std::max(1.0F, std::ceil(room / std::max(data.row("footing", name).number(3), 20.0F)));
    std::vector<float> at{kFirst};
    for (float i = 1; i <= gaps; ++i) at.push_back(kFirst + room * i / gaps);
    return at;
  }

  struct Bar {
    int mark;
    std::string text;
  };
  Bar bar(const char* name) const {
    const Sample::Row& row = data.row("footing", name);
    return {static_cast<int>(row.number(0)), bar_text(row.text(1))};
  }
};

/// Positions of the edges of nested lengths about a middle.
std::vector<float> edges(float middle, std::initializer_list<float> lengths) {
  std::vector<float> at;
  for (const float length : lengths) {
    at.push_back(middle - length / 2);
    at.push_back(middle + length / 2);
  }
  return at;
}

void draw_plan(CBase_SGT& sgt, const Footing& footing) {
  const float s = sgt.m_fBiLiChi;
  const auto [x, y] = footing.middle;
  const float a = footing.base[0];
  const float b = footing.base[1];
  use_pen(sgt, "CONCRETE", "7");
  sgt.Draw_Rect_C(a + 2 * footing.lean, b + 2 * footing.lean, x, y, 0);
  sgt.Draw_Rect_C(a, b, x, y, 0);
  sgt.Draw_Rect_C(footing.step[0], footing.step[1], x, y, 0);
  use_pen(sgt, "COLUMN", "8");
  const float c = footing.column / 2;
  fill(sgt, x - c, y - c, x + c, y + c);
  use_pen(sgt, "COLUMN", "7");
  sgt.Draw_Rect_C(footing.column, footing.column, x, y, 0);
  // The net of bars is shown in one corner.
  use_pen(sgt, "STEEL", "1");
  const float left = x - a / 2 + Footing::kCover;
  const float low = y - b / 2 + Footing::kCover;
  const float reach = 0.36F * a;
  const std::vector<float> across = footing.net(b, "bars x");
  const std::vector<float> along = footing.net(a, "bars y");
  for (std::size_t i = 0; i < std::min({across.size(), along.size(), std::size_t{5}}); ++i) {
    sgt.Draw_XianGangJin(left, y - b / 2 + across[i], left + reach, y - b / 2 + across[i]);
    sgt.Draw_XianGangJin(x - a / 2 + along[i], low, x - a / 2 + along[i], low + reach);
  }
  use_pen(sgt, "CONCRETE", "7");
  sgt.Draw_Cut_Sym(left + reach, low - 20, left + reach, low + 700);
  sgt.Draw_Cut_Sym(left - 20, low + reach, left + 700, low + reach);
  use_pen(sgt, "AXIS", "1", "DASHDOT");
  const float out = a / 2 + 26 * s;
  sgt.Draw_Line(x - a / 2 - 12 * s, y, x + out, y);
  sgt.Draw_Line(x, y - b / 2 - 12 * s, x, y + out);
  use_pen(sgt, "AXIS", "1");
  sgt.m_fDimTextHeight = sgt.m_fZiGao[1];
  sgt.Draw_ZhouFu(x + out, y, x + out + 4 * s, y, "A");
  sgt.Draw_ZhouFu(x, y + out, x, y + out + 4 * s, "2");
  sgt.m_fDimTextHeight = sgt.m_fZiGao[0];
  use_pen(sgt, "DIM", "5");
  const float lean = 2 * footing.lean;
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, edges(x, {a + lean, a, footing.step[0], footing.column}),
                         y - b / 2 - 20 * s, 6);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, edges(x, {a}), y - b / 2 - 28 * s, 4);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, edges(y, {b + lean, b, footing.step[1], footing.column}),
                         x - a / 2 - 20 * s, 6);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, edges(y, {b}), x - a / 2 - 28 * s, 4);
  qv::Leaders labels(qv::Leaders::Side::Right, x + a / 2 + 8 * s);
  labels.Add(left + 0.8F * reach, y - b / 2 + across.at(1), footing.bar("bars x").text, footing.bar("bars x").mark);
  labels.Add(x - a / 2 + along.at(std::min(along.size() - 1, std::size_t{3})), low + 0.9F * reach,
             footing.bar("bars y").text, footing.bar("bars y").mark);
  labels.Draw(sgt);
  use_pen(sgt, "DIM", "7");
  sgt.Draw_PouXian(x - a / 2 - 12 * s, y - 150, x + a / 2 + 12 * s, y - 150, "A", 1, 1);
}

/// The section, its base at (x, y) in the middle.
void draw_section(CBase_SGT& sgt, const Footing& footing, float x, float y) {
  const float s = sgt.m_fBiLiChi;
  const float a = footing.base[0] / 2;
  const float b = footing.step[0] / 2;
  const float c = footing.column / 2;
  const float first = y + footing.heights[0];
  const float second = first + footing.heights[1];
  const float level = footing.data.number("footing", "level");
  const float ground = y + 1000 * (footing.data.number("footing", "ground") - level);
  const float head = ground + 300;
  use_pen(sgt, "CONCRETE", "7");
  sgt.Draw_Rect_LB(2 * (a + footing.lean), footing.lean, x - a - footing.lean, y - footing.lean, 0);
  for (const float side : {-1.0F, 1.0F}) {
    const float px[] = {x, x + side * a, x + side * a, x + side * b, x + side * b, x + side * c, x + side * c};
    const float py[] = {y, y, first, first, second, second, head};
    sgt.Draw_Lines(7, px, py);
  }
  sgt.Draw_Cut_Sym(x - c, head, x + c, head);
  use_pen(sgt, "STEEL", "1");
  const float low = y + Footing::kCover;
  sgt.Draw_XianGangJin(x - a + Footing::kCover, low, x + a - Footing::kCover, low);
  const std::vector<float> net = footing.net(2 * a, "bars y");
  for (const float dot : net) sgt.Draw_YuanDianGangJin(x - a + dot, low, 0, 2.2F);
  for (const float side : {-1.0F, 1.0F}) {
    const float px[] = {x + side * (c - 45 + footing.starter_bend()), x + side * (c - 45), x + side * (c - 45)};
    const float py[] = {y + Footing::kAbove, y + Footing::kAbove, head - 40};
    sgt.Draw_XianGangJin(3, px, py);
    sgt.Draw_XianGangJin(x + side * 85, y + Footing::kAbove, x + side * 85, head - 40);
  }
  for (const float tie : {low + 120, second - 80}) sgt.Draw_XianGangJin(x - c + 35, tie, x + c - 35, tie);
  for (float tie = second + 50; tie < head - 60; tie += 100) sgt.Draw_XianGangJin(x - c + 35, tie, x + c - 35, tie);
  use_pen(sgt, "AXIS", "1", "DASHDOT");
  sgt.Draw_Line(x, y - 12 * s, x, head + 8 * s);
  use_pen(sgt, "DIM", "5");
  qv::Leaders right(qv::Leaders::Side::Right, x + a + 14 * s);
  const auto add = [&](float px, float py, const char* name) {
    right.Add(px, py, footing.bar(name).text, footing.bar(name).mark);
  };
  add(x + c - 45, second + 170, "starter");
  right.Add(x + c - 60, second + 350, bar_text(footing.data.text("footing", "column ties")));
  add(x + c - 60, second - 80, "ties");
  add(x - a + net[net.size() - 2], low + 30, "bars y");
  add(x + a - 400, low, "bars x");
  right.Draw(sgt);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, edges(x, {2 * (a + footing.lean), 2 * a, 2 * b, 2 * c}), y - 16 * s,
                         6);
  const float heights[] = {y - footing.lean, y, first, second};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, heights, x - a - 14 * s, 6);
  use_pen(sgt, "DIM", "7");
  sgt.Draw_TuMianXian(x - c - 45 * s, ground, x - c, ground, 0, 0);
  use_pen(sgt, "DIM", "5");
  sgt.Draw_BiaoGao(x - c - 36 * s, ground, footing.data.number("footing", "ground"), 1);
  sgt.Draw_Line(x - a - footing.lean - 40 * s, y, x - a - footing.lean - 18 * s, y);
  sgt.Draw_BiaoGao(x - a - footing.lean - 30 * s, y, level, 1);
  sgt.Draw_Line_BiaoZhu(x + a, y - footing.lean / 2, x + a + 14 * s, y - footing.lean / 2 - 6 * s);
  use_pen(sgt, "TEXT", "7");
  qv::DrawSheetText(sgt, x + a + 14.5F * s, y - footing.lean / 2 - 7 * s, sgt.m_fZiGao[0],
                    footing.data.text("words", "lean").c_str());
}

}  // namespace

Sheet compose_footing(const Sample& project, const Sample& data) {
  Sheet sheet = new_sheet(project, data);
  CBase_SGT& sgt = *sheet.sgt;
  const float s = sgt.m_fBiLiChi;
  const Footing footing{data, sheet.from_left(122, 284)};
  draw_plan(sgt, footing);
  const CFPoint plan = sheet.from_left(122, 172);
  draw_title(sgt, plan.x, plan.y, data.text("words", "title"), "1:20");
  const CFPoint section = sheet.from_left(385, 244);
  draw_section(sgt, footing, section.x, section.y);
  draw_title(sgt, section.x, plan.y, data.text("words", "section title"), "1:20");

  use_pen(sgt, "TEXT", "7");
  qv::SheetTable table = table_of(data, "schedule", {{16}, {34}, {32}, {32}, {15}, {15}, {28}, {28}, {26}});
  table.SetTitle(data.text("words", "schedule"));
  const CFPoint left = sheet.from_left(14, 146);
  const float below = table.Draw(sgt, left.x, left.y).all().y1;
  draw_notes(sgt, data, {left.x, below - 12 * s}, 320);

  using qv::BarShape;
  qv::BarList list;
  const struct {
    const char* name;
    float length;
    float across;
  } nets[] = {{"bars x", footing.base[0], footing.base[1]}, {"bars y", footing.base[1], footing.base[0]}};
  for (const auto& [name, length, across] : nets) {
    const Sample::Row& row = data.row("footing", name);
    list.Add({row.text(0), BarShape::Straight, 3, static_cast<int>(row.number(2)),
              static_cast<int>(footing.net(across, name).size()), length - 2 * Footing::kCover, 0, 0, 0});
  }
  const Sample::Row& starter = data.row("footing", "starter");
  const double stands = footing.heights[0] + footing.heights[1] - Footing::kAbove + starter.number(4);
  for (const auto& [letter, more] : {std::pair("a", 0.0F), std::pair("b", starter.number(5))})
    list.Add({starter.text(0) + letter, BarShape::Bent, 3, static_cast<int>(starter.number(3)),
              static_cast<int>(starter.number(2)) / 2, stands + more, footing.starter_bend(), 0, 0});
  const Sample::Row& ties = data.row("footing", "ties");
  const double tie = footing.column - 2 * kColumnCover;
  list.Add({ties.text(0), BarShape::Stirrup, 1, static_cast<int>(ties.number(3)), static_cast<int>(ties.number(2)), tie,
            tie, 0, 0});
  use_pen(sgt, "TEXT", "7");
  const CFPoint corner = sheet.from_left(401, 158);
  list.Draw(sgt, corner.x, corner.y);
  return sheet;
}

}  // namespace qvdraw
