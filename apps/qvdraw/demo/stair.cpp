#include <utility>

#include "demo/demo.h"
#include "qvtools/drawing/dimension_chain.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/leaders.h"
#include "qvtools/drawing/second_scale.h"
#include "qvtools/geometry/numerics/numeric.h"

namespace qvdraw {

namespace {

struct Stair {
  const Sample& data;
  float size(const char* key) const { return data.number("sizes", key); }
  int steps = static_cast<int>(size("steps"));  // treads of a flight; risers are one more
  float tread = size("tread");
  float run = static_cast<float>(steps) * tread;
  float riser = 1000 * (size("middle") - size("low")) / static_cast<float>(steps + 1);
  float landing = size("landing");
  float depth = size("depth");
  float slab = size("slab");
  float wall = size("wall");
  float half = wall / 2;
  /// Where the flight begins (far from the landing) and ends along the stair, from the axis at the landing.
  float near() const { return landing; }
  float far() const { return landing + run; }
};

/// The plan; the landing is on its upper side. (x, y) is where the lower left axes cross.
void draw_plan(CBase_SGT& sgt, const Stair& stair, float x, float y) {
  const float s = sgt.m_fBiLiChi;
  const float bay = stair.size("bay");
  const float flight = stair.size("flight");
  const float top = y + stair.depth;
  const float left = x + stair.half;
  const float right = x + bay - stair.half;
  use_pen(sgt, "CONCRETE", "7");
  sgt.Draw_Rect_LB(bay + stair.wall, stair.depth + stair.wall, x - stair.half, y - stair.half, 0);
  sgt.Draw_Rect_LB(bay - stair.wall, stair.depth - stair.wall, left, y + stair.half, 0);
  // Columns at the corners, posts at the ends of the landing's beam.
  const std::vector<float> corner = stair.data.numbers("columns", "corner", 2);
  const std::vector<float> post = stair.data.numbers("columns", "post", 2);
  const auto column = [&](float cx, float cy, const std::vector<float>& size) {
    use_pen(sgt, "COLUMN", "8");
    fill(sgt, cx - size[0] / 2, cy - size[1] / 2, cx + size[0] / 2, cy + size[1] / 2);
    use_pen(sgt, "COLUMN", "7");
    sgt.Draw_Rect_C(size[0], size[1], cx, cy, 0);
  };
  for (const float cx : {x, x + bay}) {
    for (const float cy : {y, top}) column(cx, cy, corner);
    column(cx, top - stair.near() + post[1] / 2, post);
  }
  use_pen(sgt, "CONCRETE", "7");
  const float well = right - left - 2 * flight;  // between the flights
  const float from = top - stair.far();
  const float to = top - stair.near();
  for (int i = 0; i <= stair.steps; ++i) {
    const float level = from + static_cast<float>(i) * stair.tread;
    sgt.Draw_Line(left, level, left + flight, level);
    sgt.Draw_Line(right - flight, level, right, level);
  }
  sgt.Draw_Rect_LB(well, stair.run, left + flight, from, 0);
  const float width = stair.data.numbers("sizes", "beam", 2)[0];
  use_pen(sgt, "BEAM", "3", "DASHED");
  sgt.Draw_Line(left, to + width, right, to + width);
  sgt.Draw_Line(left, from - width, right, from - width);
  // The way up: on the right from the storey below, on the left to the storey above.
  use_pen(sgt, "DIM", "5");
  const float up = right - flight / 2;
  sgt.MoveTo(up, from - 900);
  sgt.ArrowTo(up, to - 60);
  sgt.MoveTo(left + flight / 2, to + 600);
  sgt.ArrowTo(left + flight / 2, from + 60);
  use_pen(sgt, "TEXT", "7");
  qv::DrawSheetText(sgt, up, from - 900 - 5 * s, sgt.m_fZiGao[1], stair.data.text("words", "up").c_str(),
                    qv::Across::Center);
  const float h = sgt.m_fZiGao[1];
  qv::DrawSheetText(sgt, up + 250, from + 3 * stair.tread + 80, sgt.m_fZiGao[0], "TB1");
  qv::DrawSheetText(sgt, left + 300, from + 3 * stair.tread + 80, sgt.m_fZiGao[0], "TB2");
  qv::DrawSheetText(sgt, (left + right) / 2 + 500, top - 900, h, "PB1", qv::Across::Center);
  qv::DrawSheetText(sgt, left + 400, to + width + 1.2F * s, sgt.m_fZiGao[0], "TL1");
  qv::DrawSheetText(sgt, left + 250, top - 7 * s, sgt.m_fZiGao[0], "TL2");
  for (const float cy : {y, top}) {
    const float under = cy == y ? corner[1] / 2 + 1.5F * s : -corner[1] / 2 - 4 * s;
    qv::DrawSheetText(sgt, right - 1.5F * s, cy + under, sgt.m_fZiGao[0], "KZ4", qv::Across::Right);
  }
  qv::DrawSheetText(sgt, right - 1.5F * s, to + post[1] + 1.2F * s, sgt.m_fZiGao[0], "TZ1", qv::Across::Right);
  qv::DrawSheetText(sgt, left + 250, from - width - 3.7F * s, sgt.m_fZiGao[0], "TL1");
  use_pen(sgt, "DIM", "5");
  sgt.Draw_BiaoGao((left + right) / 2 - 300, top - 1700, stair.size("middle"), 0);
  sgt.Draw_BiaoGao(left + 500, y + 650, stair.size("high"), 0);
  use_pen(sgt, "AXIS", "1", "DASHDOT");
  for (const float axis : {x, x + bay}) sgt.Draw_Line(axis, y - 24 * s, axis, top + 8 * s);
  for (const float axis : {y, top}) sgt.Draw_Line(x - 24 * s, axis, x + bay + 8 * s, axis);
  use_pen(sgt, "AXIS", "1");
  sgt.m_fDimTextHeight = sgt.m_fZiGao[1];
  sgt.Draw_ZhouFu(x, y - 24 * s, x, y - 28 * s, "7");
  sgt.Draw_ZhouFu(x + bay, y - 24 * s, x + bay, y - 28 * s, "8");
  sgt.Draw_ZhouFu(x - 24 * s, y, x - 28 * s, y, "C");
  sgt.Draw_ZhouFu(x - 24 * s, top, x - 28 * s, top, "D");
  sgt.m_fDimTextHeight = sgt.m_fZiGao[0];
  use_pen(sgt, "DIM", "5");
  const float widths[] = {x, left, left + flight, right - flight, right, x + bay};
  const float axesX[] = {x, x + bay};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, widths, y - 10 * s, 6);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, axesX, y - 20 * s, 4);
  const float lengths[] = {y, from, to, top};
  const float axesY[] = {y, top};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, lengths, x - 10 * s, 6);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, axesY, x - 20 * s, 4);
  use_pen(sgt, "DIM", "7");
  sgt.Draw_PouXian(up + 200, y - 5 * s, up + 200, top + 8 * s, "A", 0, 0);
}

/// A flight from (x, y), the top of the slab before its first riser, climbing by `step` (positive to the right): the
/// steps, and the underside of its slab.
void draw_flight(CBase_SGT& sgt, const Stair& stair, float x, float y, float step) {
  sgt.MoveTo(x, y);
  for (int i = 0; i <= stair.steps; ++i) {
    sgt.LineTo_Relative(0, stair.riser);
    if (i < stair.steps) sgt.LineTo_Relative(step, 0);
  }
  const float slope = get_dist(0.0F, 0.0F, stair.tread, stair.riser);
  const float under = stair.slab * slope / stair.tread;  // upright, below the inner corners of the steps
  const float rise = static_cast<float>(stair.steps) * stair.riser;
  sgt.Draw_Line(x, y - under, x + static_cast<float>(stair.steps) * step, y + rise - under);
}

/// The concrete of a flight that is cut.
void fill_flight(CBase_SGT& sgt, const Stair& stair, float x, float y, float step) {
  use_pen(sgt, "CONCRETE", "8");
  const float under = stair.slab * get_dist(0.0F, 0.0F, stair.tread, stair.riser) / stair.tread;
  for (int i = 0; i < stair.steps; ++i) {
    const float px = x + static_cast<float>(i) * step;
    const float py = y + static_cast<float>(i) * stair.riser;
    sgt.Draw_Solid(px, py - under, px + step, py + stair.riser - under, px, py + stair.riser, px + step,
                   py + stair.riser);
  }
}

/// The section; (x, y) is the axis at the landing, at the level 0.
void draw_section(CBase_SGT& sgt, const Stair& stair, float x, float y) {
  const float s = sgt.m_fBiLiChi;
  const std::vector<float> beam = stair.data.numbers("sizes", "beam", 2);
  const auto level = [&](const char* key) { return y + 1000 * stair.size(key); };
  const float low = level("low");
  const float middle = level("middle");
  const float high = level("high");
  const float near = x + stair.near();
  const float far = x + stair.far();
  const float end = x + stair.depth;
  fill_flight(sgt, stair, far, low, -stair.tread);
  use_pen(sgt, "CONCRETE", "7");
  draw_flight(sgt, stair, far, low, -stair.tread);
  draw_flight(sgt, stair, near, middle, stair.tread);
  const auto slab = [&](float from, float to, float top) {
    use_pen(sgt, "CONCRETE", "8");
    fill(sgt, from, top - stair.slab, to, top);
    use_pen(sgt, "CONCRETE", "7");
    sgt.Draw_Rect_LB(to - from, stair.slab, from, top - stair.slab, 0);
  };
  const auto girder = [&](float left, float top, float depth) {
    use_pen(sgt, "CONCRETE", "8");
    fill(sgt, left, top - depth, left + beam[0], top);
    use_pen(sgt, "CONCRETE", "7");
    sgt.Draw_Rect_LB(beam[0], depth, left, top - depth, 0);
  };
  slab(x - stair.half, near - beam[0], middle);
  girder(near - beam[0], middle, beam[1]);
  girder(x - stair.half, middle, beam[1]);
  slab(far + beam[0], end + stair.half, high);
  girder(far, high, beam[1]);
  girder(end - stair.half, high, 700);
  slab(far, end + stair.half, low);
  girder(far, low, beam[1]);
  use_pen(sgt, "CONCRETE", "7");
  for (const float wall : {x, end})
    for (const float side : {-stair.half, stair.half}) {
      const bool atHigh = wall == end;
      sgt.Draw_Line(wall + side, low - 500, wall + side, atHigh ? low - stair.slab : middle - beam[1]);
      if (atHigh) sgt.Draw_Line(wall + side, low, wall + side, high - 700);
      sgt.Draw_Line(wall + side, atHigh ? high : middle, wall + side, high + 700);
    }
  for (const float wall : {x, end}) {
    sgt.Draw_Cut_Sym(wall - stair.half, low - 500, wall + stair.half, low - 500);
    sgt.Draw_Cut_Sym(wall - stair.half, high + 700, wall + stair.half, high + 700);
  }
  // The post behind, down to its beam.
  for (const float side : {near - beam[0], near}) sgt.Draw_Line(side, middle - beam[1], side, low - 500);
  sgt.Draw_Cut_Sym(near - beam[0], low - 500, near, low - 500);
  use_pen(sgt, "TEXT", "7");
  const float h = sgt.m_fZiGao[0];
  qv::DrawSheetText(sgt, near - beam[0] - 1.5F * s, low + 700, h, "TZ1", qv::Across::Right);
  qv::DrawSheetText(sgt, x + stair.half + 1.5F * s, middle - beam[1] - 4 * s, h, "TL2");
  qv::DrawSheetText(sgt, near - beam[0] - 1.5F * s, middle - beam[1] - 1 * s, h, "TL1", qv::Across::Right);
  qv::DrawSheetText(sgt, far + beam[0] / 2, high - beam[1] - 4 * s, h, "TL1", qv::Across::Center);
  qv::DrawSheetText(sgt, far + beam[0] / 2, low - beam[1] - 4 * s, h, "TL1", qv::Across::Center);
  qv::DrawSheetText(sgt, x + 1000, middle - stair.slab - 4 * s, h, "PB1", qv::Across::Center);
  qv::DrawSheetText(sgt, (near + far) / 2, low + 450, h, "TB1", qv::Across::Center);
  qv::DrawSheetText(sgt, (near + far) / 2 - 400, middle + 1250, h, "TB2", qv::Across::Center);
  use_pen(sgt, "DIM", "5");
  const float levels[] = {low, middle, high};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, levels, x - 20 * s, 10);
  const float lengths[] = {x, near, far, end};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, lengths, low - 18 * s, 5);
  const float ends[] = {x, end};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, ends, low - 26 * s, 4);
  const float right = end + 4 * s;
  for (const auto& [at, key] : {std::pair(low, "low"), std::pair(high, "high")}) {
    sgt.Draw_Line(right, at, right + 22 * s, at);
    sgt.Draw_BiaoGao(right + 8 * s, at, stair.size(key), 0);
  }
  sgt.Draw_BiaoGao(x + 1300, middle, stair.size("middle"), 1);
  use_pen(sgt, "AXIS", "1", "DASHDOT");
  for (const float axis : {x, end}) sgt.Draw_Line(axis, high + 700 + 4 * s, axis, low - 34 * s);
  use_pen(sgt, "AXIS", "1");
  sgt.m_fDimTextHeight = sgt.m_fZiGao[1];
  sgt.Draw_ZhouFu(x, low - 34 * s, x, low - 36 * s, "D");
  sgt.Draw_ZhouFu(end, low - 34 * s, end, low - 36 * s, "C");
  sgt.m_fDimTextHeight = sgt.m_fZiGao[0];
}

/// The bars of a flight, at 1:25; (x, y) is the foot of its first riser on the sheet.
void draw_slab(CBase_SGT& sgt, const Stair& stair, float x, float y) {
  const std::vector<float> beam = stair.data.numbers("sizes", "beam", 2);
  const auto bar = [&](const char* name) { return stair.data.row("bars", name); };
  const qv::SecondScale detail(sgt, x, y, 25);
  const float rise = static_cast<float>(stair.steps) * stair.riser;
  const float slope = get_dist(0.0F, 0.0F, stair.tread, stair.riser);
  const float u = stair.tread / slope;
  const float v = stair.riser / slope;
  const float under = stair.slab / u;
  use_pen(sgt, "CONCRETE", "7");
  draw_flight(sgt, stair, 0, 0, stair.tread);
  const float topLevel = rise + stair.riser;
  // The beams at both ends, with stubs of the slabs behind them.
  sgt.Draw_Lines(4, std::vector<float>{0, 0, -beam[0], -beam[0]}.data(),
                 std::vector<float>{-under, -beam[1], -beam[1], -stair.slab}.data());
  sgt.Draw_Line(0, 0, -600, 0);
  sgt.Draw_Line(-beam[0], -stair.slab, -600, -stair.slab);
  sgt.Draw_Cut_Sym(-600, -stair.slab, -600, 0);
  const float end = stair.run;
  sgt.Draw_Lines(
      4, std::vector<float>{end, end, end + beam[0], end + beam[0]}.data(),
      std::vector<float>{rise - under, topLevel - beam[1], topLevel - beam[1], topLevel - stair.slab}.data());
  sgt.Draw_Line(end, topLevel, end + 600, topLevel);
  sgt.Draw_Line(end + beam[0], topLevel - stair.slab, end + 600, topLevel - stair.slab);
  sgt.Draw_Cut_Sym(end + 600, topLevel - stair.slab, end + 600, topLevel);
  // The bottom bar along the underside into both beams, the top bars over a quarter of the span.
  use_pen(sgt, "STEEL", "1");
  const float cover = 22;
  const auto at = [&](float along, float off) { return CFPoint(along, along * v / u - under + off / u); };
  const CFPoint first = at(-120, cover);
  const CFPoint last = at(end + 120, cover);
  sgt.Draw_XianGangJin(first.x, first.y, last.x, last.y);
  const float high = stair.slab - cover;
  const float quarter = stair.data.row("bars", "top").number(2);
  const CFPoint foot[] = {at(-150, high - 200), at(-150, high), at(quarter, high), at(quarter, high - 75)};
  const CFPoint head[] = {at(end - quarter, high - 75), at(end - quarter, high), at(end + 150, high),
                          at(end + 150, high - 200)};
  for (const auto& points : {foot, head}) {
    float px[4], py[4];
    for (int i = 0; i < 4; ++i) px[i] = points[i].x, py[i] = points[i].y;
    sgt.Draw_XianGangJin(4, px, py);
  }
  for (float along = 150; along < end; along += 200) {
    const CFPoint dot = at(along, cover + 17);
    sgt.Draw_YuanDianGangJin(dot.x, dot.y, 0, 0);
    if (along > quarter && along < end - quarter) continue;
    const CFPoint upper = at(along, high - 17);
    sgt.Draw_YuanDianGangJin(upper.x, upper.y, 0, 0);
  }
  for (const float corner : {-beam[0], end}) {
    const float top = corner < 0 ? 0 : topLevel;
    sgt.Draw_RectGangJin_LB(beam[0] - 50, beam[1] - 50, corner + 25, top - beam[1] + 25, 0);
    for (const float side : {45.0F, beam[0] - 45.0F})
      for (const float up : {45.0F, beam[1] - 45.0F}) sgt.Draw_YuanDianGangJin(corner + side, top - beam[1] + up, 0, 0);
    sgt.Draw_YuanDianGangJin(corner + beam[0] / 2, top - beam[1] + 45, 0, 0);
  }
  use_pen(sgt, "DIM", "5");
  const auto add = [&](qv::Leaders& leaders, CFPoint p, const char* name) {
    const Sample::Row row = bar(name);
    leaders.Add(p.x, p.y, bar_text(row.text(1)), static_cast<int>(row.number(0)));
  };
  qv::Leaders below(qv::Leaders::Side::Below, -520);
  add(below, at(1300, cover), "bottom");
  add(below, at(1950, cover + 17), "spread");
  const CFPoint underside = at(2550, 0);
  below.Add(underside.x, underside.y, "h=" + stair.data.text("sizes", "slab"));
  below.Draw(sgt);
  qv::Leaders above(qv::Leaders::Side::Above, topLevel + 330);
  add(above, at(500, high), "top");
  add(above, at(end - 600, high), "top");
  above.Draw(sgt);
  qv::Leaders right(qv::Leaders::Side::Right, end + 900);
  add(right, {end + beam[0] - 45, topLevel - 45}, "beam");
  add(right, {end + beam[0] - 45, topLevel - beam[1] + 45}, "lower");
  right.Draw(sgt);
  const float lengths[] = {-beam[0], 0, quarter, end - quarter, end, end + beam[0]};
  const float span[] = {0, end};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, lengths, -780, 5);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, span, -980, 4);
  const float rises[] = {0, topLevel};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, rises, -850, 5);
}

/// The section of the beams, at 1:10.
void draw_beam(CBase_SGT& sgt, const Stair& stair, CFPoint place) {
  const std::vector<float> size = stair.data.numbers("sizes", "beam", 2);
  {
    const qv::SecondScale detail(sgt, place.x, place.y, 10);
    sgt.m_fGJDotWidth = 18;
    sgt.m_fGJLineWidth = 8;
    use_pen(sgt, "CONCRETE", "7");
    const CBase_SGT::CLiangZongJin bars[] = {{2, 3, 14, -1}, {3, 3, 18, 1}};
    sgt.Draw_Liang_Section(0, 0, size[0], size[1], 25, 2, bars, {1, 8, 150, 2}, 0);
    use_pen(sgt, "DIM", "5");
    const float widths[] = {0, size[0]};
    const float depths[] = {0, size[1]};
    qv::DrawDimensionChain(sgt, qv::ChainSide::Below, widths, -90, 4);
    qv::DrawDimensionChain(sgt, qv::ChainSide::Left, depths, -90, 4);
  }
  draw_title(sgt, place.x + 500, place.y - 1050, stair.data.text("words", "beam title"), "1:10");
}

}  // namespace

Sheet compose_stair(const Sample& project, const Sample& data) {
  Sheet sheet = new_sheet(project, data);
  CBase_SGT& sgt = *sheet.sgt;
  const Stair stair{data};
  const CFPoint plan = sheet.from_left(48, 205);
  draw_plan(sgt, stair, plan.x, plan.y);
  const CFPoint title = sheet.from_left(84, 144);
  draw_title(sgt, title.x, title.y, data.text("words", "title"), "1:50");
  const CFPoint section = sheet.from_left(212, 262);
  draw_section(sgt, stair, section.x, section.y);
  const CFPoint under = sheet.from_left(295, 200);
  draw_title(sgt, under.x, under.y, data.text("words", "section title"), "1:50");
  const CFPoint slab = sheet.from_left(222, 82);
  draw_slab(sgt, stair, slab.x, slab.y);
  const CFPoint below = sheet.from_left(290, 18);
  draw_title(sgt, below.x, below.y, data.text("words", "slab title"), "1:25");
  use_pen(sgt, "TEXT", "7");
  const CFPoint corner = sheet.from_right(124, 24);
  qv::SheetTable table = table_of(data, "schedule", {{15}, {22}, {30}, {24}, {28}}, {.textHeight = 3});
  table.SetTitle(data.text("words", "schedule"));
  table.Draw(sgt, corner.x, corner.y);
  draw_beam(sgt, stair, sheet.from_right(86, 178));
  draw_notes(sgt, data, sheet.from_left(14, 122), 142);
  return sheet;
}

}  // namespace qvdraw
