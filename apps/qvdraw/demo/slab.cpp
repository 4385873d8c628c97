#include "demo/demo.h"
#include "demo/storey.h"
#include "qvtools/drawing/dimension_chain.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/leaders.h"
#include "qvtools/drawing/second_scale.h"
#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/text/numbers.h"

namespace qvdraw {

namespace {

/// The bars of one kind: their mark, their text, how far they reach from the axis of a beam.
struct Kind {
  int mark;
  std::string text;
  float reach;
  Kind(const Sample& slab, const char* name) {
    const Sample::Row& row = slab.row("bars", name);
    mark = static_cast<int>(row.number(0));
    text = bar_text(row.text(1));
    reach = row.fields.size() > 2 ? row.number(2) : 0;
  }
};

/// The mark, and with it the text, on the left of a bar that runs from (x1, y1) to (x2, y2), at a distance along it.
void label(CBase_SGT& sgt, const Kind& kind, float x1, float y1, float x2, float y2, float along, bool marked) {
  use_pen(sgt, "DIM", "5");
  const float length = get_dist(x1, y1, x2, y2);
  const float u = (x2 - x1) / length;
  const float v = (y2 - y1) / length;
  const float h = sgt.m_fZiGao[0];
  const float off = 2.2F * sgt.m_fBiLiChi;
  if (marked)
    sgt.Draw_GJH_And_Text_Along_Line(x1 + along * u, y1 + along * v, x2, y2, 1, 0, kind.mark, kind.text.c_str(), h,
                                     off);
  else
    sgt.Draw_GJH(x1 + along * u - (off + h / 2) * v, y1 + along * v + (off + h / 2) * u, h, kind.mark);
}

/// The lines between which the slab spans upward: axes and secondary beams, with the panel row of each.
struct Band {
  float low;
  float high;
  std::size_t row;
};
std::vector<Band> bands_of(const Storey& storey) {
  std::vector<Band> bands;
  const auto& y = storey.grid.y();
  for (std::size_t j = 0; j + 1 < y.size(); ++j) {
    float low = y[j];
    for (const Sample::Row& beam : storey.data.rows("secondary beams"))
      if (beam.key == std::to_string(j)) {
        bands.push_back({low, storey.middle_of_row(beam.key), j});
        low = storey.middle_of_row(beam.key);
      }
    bands.push_back({low, y[j + 1], j});
  }
  return bands;
}

/// Where bars and their labels stand in a panel, so that no text is crossed: upright bars have their labels in the
/// lower part of the panel, level ones above it.
struct Places {
  float width;
  float height;
  bool narrow = width < 5000;
  bool low = height < 3500;
  float bottom = 0.55F * height;                    // of the bottom bar along x
  float top = 0.72F * height;                       // of the top bars over the axis on the left
  float upright = (narrow ? 0.6F : 0.33F) * width;  // of the bottom bar along y
  float across = (narrow ? 0.85F : 0.72F) * width;  // of the top bars along y
  float bottomLabel = narrow ? 1000 : 0.5F * width;
  static constexpr float kOffAxis = 480;  // from the axis of a beam to the middle of a mark beside it
  static constexpr float kOffHook = 560;  // where a hook stands between them
};

void draw_panels(CBase_SGT& sgt, const Storey& storey, const Sample& slab) {
  const float s = sgt.m_fBiLiChi;
  const float hook = 1.6F * s;
  constexpr float kIntoBeam = 100;
  const auto& x = storey.grid.x();
  const std::vector<Band> bands = bands_of(storey);
  const Kind alongX(slab, "bottom x"), alongY(slab, "bottom y"), topX(slab, "top x"), topY(slab, "top y");
  const Kind edgeX(slab, "edge x"), edgeY(slab, "edge y");
  // Top bars between two points with their mark at a distance from the first.
  const auto top = [&](const Kind& kind, float x1, float y1, float x2, float y2, float mark, bool marked = true) {
    use_pen(sgt, "STEEL", "1");
    draw_top_bar(sgt, x1, y1, x2, y2, 1.5F * s);
    label(sgt, kind, x1, y1, x2, y2, mark, marked);
  };
  const auto places = [&](std::size_t i, float height) {
    return Places{i + 1 < x.size() ? x[i + 1] - x[i] : 0, height};
  };
  const auto is_narrow = [&](std::size_t i) { return places(i, 0).narrow; };
  for (std::size_t b = 0; b < bands.size(); ++b) {
    const auto& [low, high, row] = bands[b];
    for (std::size_t i = 0; i < x.size(); ++i) {
      const bool open = i + 1 == x.size() || storey.is_stair(i, row);
      const bool openBefore = i == 0 || storey.is_stair(i - 1, row);
      const Places at = places(i, high - low);
      // A narrow bay's bars reach from side to side.
      if (open && !openBefore && !is_narrow(i - 1)) {
        const float level = low + at.top;
        top(edgeX, x[i] - edgeX.reach, level, x[i] + kIntoBeam, level, 0, false);
      }
      if (open) continue;
      const float level = low + at.top;
      if (openBefore) {
        top(edgeX, x[i] - kIntoBeam, level, x[i] + edgeX.reach, level, kIntoBeam + Places::kOffAxis);
      } else {
        const float end = at.narrow ? at.width + kIntoBeam : topX.reach;
        top(topX, x[i] - topX.reach, level, x[i] + end, level, topX.reach + Places::kOffAxis);
        use_pen(sgt, "TEXT", "7");
        const std::string reach = std::to_string(static_cast<int>(topX.reach));
        for (const float side : {-0.55F, 0.55F})
          if (side < 0 || !at.narrow)
            qv::DrawSheetText(sgt, x[i] + side * topX.reach, level - 3.6F * s, sgt.m_fZiGao[0], reach.c_str(),
                              qv::Across::Center);
      }
      // At the bottom, between the beams' middles.
      const float right = x[i + 1] - kIntoBeam;
      use_pen(sgt, "STEEL", "1");
      draw_bottom_bar(sgt, x[i] + kIntoBeam, low + at.bottom, right, low + at.bottom, hook);
      label(sgt, alongX, x[i], low + at.bottom, x[i + 1], low + at.bottom, at.bottomLabel, !at.narrow);
      const float upright = x[i] + at.upright;
      use_pen(sgt, "STEEL", "1");
      draw_bottom_bar(sgt, upright, low + kIntoBeam, upright, high - kIntoBeam, hook);
      label(sgt, alongY, upright, low, upright, high, Places::kOffHook, !at.low);
      // Over the beam below this band, and at the upper edge of the storey or of the stair.
      const float across = x[i] + at.across;
      const bool hasBelow = b > 0 && !storey.is_stair(i, bands[b - 1].row);
      const bool hasAbove = b + 1 < bands.size() && !storey.is_stair(i, bands[b + 1].row);
      if (hasBelow)
        top(topY, across, low - topY.reach, across, low + topY.reach, topY.reach + Places::kOffAxis, !at.low);
      else
        top(edgeY, across, low - kIntoBeam, across, low + edgeY.reach, kIntoBeam + Places::kOffAxis, !at.low);
      if (!hasAbove) top(edgeY, across, high - edgeY.reach, across, high + kIntoBeam, edgeY.reach - 500, false);
    }
  }
}

/// The slab over two spans with its bars.
void draw_section(CBase_SGT& sgt, const Storey& storey, const Sample& slab, CFPoint place) {
  constexpr float kScale = 25;
  constexpr float kSpan = 4200;
  constexpr float kStub = 900;
  constexpr float kSpacing = 150;  // of the bars that are cut
  const float thick = storey.data.number("sizes", "slab");
  const struct {
    float middle;
    float width;
    float depth;
  } beams[] = {{0, 300, 700}, {kSpan, 200, 500}, {2 * kSpan, 300, 700}};
  const float from = -150;
  const float to = 2 * kSpan + kStub;
  const Kind bottom(slab, "bottom y"), across(slab, "bottom x"), top(slab, "top y"), edge(slab, "edge y");
  const Kind spread(slab, "spread");
  qv::Leaders above(qv::Leaders::Side::Above, 560);
  qv::Leaders below(qv::Leaders::Side::Below, -420);
  float end = 0;
  {
    const qv::SecondScale detail(sgt, place.x, place.y, kScale);
    use_pen(sgt, "CONCRETE", "7");
    sgt.MoveTo(to, 0);
    sgt.LineTo(from, 0);
    for (const auto& beam : beams) {
      const float left = beam.middle - beam.width / 2;
      if (left > from) sgt.LineTo(left, -thick);
      sgt.LineTo(left, -beam.depth);
      sgt.LineTo(left + beam.width, -beam.depth);
      sgt.LineTo(left + beam.width, -thick);
    }
    sgt.LineTo(to, -thick);
    sgt.Draw_Cut_Sym(to, -thick, to, 0);
    use_pen(sgt, "STEEL", "1");
    const float low = -thick + 22;
    const float high = -22;
    for (int i = 0; i < 2; ++i) {
      const float x = static_cast<float>(i) * kSpan;
      draw_bottom_bar(sgt, x + 10, low, x + kSpan - 10, low, 30);
      for (float dot = x + 225; dot < x + kSpan - 150; dot += kSpacing) sgt.Draw_YuanDianGangJin(dot, low, 0, 1.9F);
    }
    draw_bottom_bar(sgt, 2 * kSpan + 10, low, to + 60, low, 30);
    draw_top_bar(sgt, -100, high, edge.reach, high, 75);
    draw_top_bar(sgt, kSpan - top.reach, high, kSpan + top.reach, high, 75);
    draw_top_bar(sgt, 2 * kSpan - top.reach, high, to + 60, high, 75);
    for (const float middle : {0.0F, kSpan, 2 * kSpan})
      for (float off = -975; off < top.reach; off += kSpacing)
        if (middle + off > 0 && middle + off < to) sgt.Draw_YuanDianGangJin(middle + off, high, 0, -1.9F);
    use_pen(sgt, "DIM", "5");
    above.Add(500, high, edge.text, edge.mark);
    above.Add(kSpan - 250, high, top.text, top.mark);
    above.Add(kSpan + 975, high - 12, spread.text, spread.mark);
    above.Add(2 * kSpan + 450, high, top.text, top.mark);
    above.Draw(sgt);
    below.Add(1400, low, bottom.text, bottom.mark);
    below.Add(2625, low + 12, across.text, across.mark);
    below.Add(kSpan + 1400, low, bottom.text, bottom.mark);
    below.Add(kSpan + 2625, low + 12, across.text, across.mark);
    below.Draw(sgt);
    const float reaches[] = {kSpan - top.reach, kSpan, kSpan + top.reach};
    qv::DrawDimensionChain(sgt, qv::ChainSide::Above, reaches, 260, 7);
    const float axes[] = {0, kSpan, 2 * kSpan};
    qv::DrawDimensionChain(sgt, qv::ChainSide::Below, axes, -1000, 6);
    const float depths[] = {0, -thick, -700};
    qv::DrawDimensionChain(sgt, qv::ChainSide::Left, depths, -400, 6);
    use_pen(sgt, "AXIS", "1", "DASHDOT");
    sgt.Draw_Line(0, 200, 0, -1200);
    sgt.Draw_Line(2 * kSpan, 200, 2 * kSpan, -1200);
    use_pen(sgt, "AXIS", "1");
    sgt.m_fDimTextHeight = sgt.m_fZiGao[1];
    sgt.Draw_ZhouFu(0, -1200, 0, -1260, "A");
    sgt.Draw_ZhouFu(2 * kSpan, -1200, 2 * kSpan, -1260, "B");
    end = detail.OnSheet(to, 0).x;
  }
  use_pen(sgt, "DIM", "5");
  sgt.Draw_Line(end + 1000, place.y, end + 3000, place.y);
  sgt.Draw_BiaoGao(end + 1500, place.y, storey.data.number("sizes", "level"), 0);
}

/// How the bars end at an outer beam, at 1:10.
void draw_edge(CBase_SGT& sgt, const Storey& storey, const Sample& slab, CFPoint place) {
  const float thick = storey.data.number("sizes", "slab");
  const Kind bottom(slab, "bottom y"), edge(slab, "edge y"), spread(slab, "spread");
  constexpr float kEnd = 1250;
  constexpr float kDepth = 420;
  const qv::SecondScale detail(sgt, place.x, place.y, 10);
  use_pen(sgt, "CONCRETE", "7");
  const float x[] = {kEnd, -150, -150};
  const float y[] = {0, 0, -kDepth};
  sgt.Draw_Lines(3, x, y);
  const float ux[] = {kEnd, 150, 150};
  const float uy[] = {-thick, -thick, -kDepth};
  sgt.Draw_Lines(3, ux, uy);
  sgt.Draw_Cut_Sym(-150, -kDepth, 150, -kDepth);
  sgt.Draw_Cut_Sym(kEnd, -thick, kEnd, 0);
  use_pen(sgt, "STEEL", "1");
  draw_bottom_bar(sgt, 0, -thick + 19, kEnd + 40, -thick + 19, 25);
  const float bx[] = {-120, -120, edge.reach, edge.reach};
  const float by[] = {-250, -19, -19, -100};
  sgt.Draw_XianGangJin(4, bx, by);
  for (float dot = 200; dot < edge.reach - 50; dot += 150) sgt.Draw_YuanDianGangJin(dot, -19, 0, -1.8F);
  use_pen(sgt, "AXIS", "1", "DASHDOT");
  sgt.Draw_Line(0, 60, 0, -kDepth - 60);
  use_pen(sgt, "DIM", "5");
  qv::Leaders above(qv::Leaders::Side::Above, 120);
  above.Add(275, -19, edge.text, edge.mark);
  above.Add(500, -29, spread.text, spread.mark);
  above.Draw(sgt);
  qv::Leaders below(qv::Leaders::Side::Below, -thick - 90);
  below.Add(500, -thick + 19, bottom.text, bottom.mark);
  below.Draw(sgt);
  const float lengths[] = {0, edge.reach};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, lengths, -thick - 200, 5);
  const float depths[] = {-thick, 0};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Right, depths, kEnd + 80, 4);
}

/// The bars beside an opening of the slab, at 1:25.
void draw_opening(CBase_SGT& sgt, const Sample& slab, CFPoint place) {
  const Sample::Row& row = slab.row("details", "opening");
  const float half = row.number(0) / 2;
  const float reach = half + row.number(1);
  const qv::SecondScale detail(sgt, place.x, place.y, 25);
  use_pen(sgt, "CONCRETE", "7");
  sgt.Draw_Rect_C(2 * half, 2 * half, 0, 0, 0);
  const float x[] = {-half, -half / 2, half};
  const float y[] = {-half, half / 2, half};
  sgt.Draw_Lines(3, x, y);  // the sign of an opening
  use_pen(sgt, "STEEL", "1");
  for (const float off : {half + 50, half + 100})
    for (const float side : {-off, off}) {
      sgt.Draw_XianGangJin(-reach, side, reach, side);
      sgt.Draw_XianGangJin(side, -reach, side, reach);
    }
  use_pen(sgt, "DIM", "5");
  qv::Leaders labels(qv::Leaders::Side::Right, reach + 120);
  labels.Add(half + 100, reach - 100, bar_text(row.text(2)));
  labels.Add(reach - 150, -half - 100, bar_text(row.text(2)));
  labels.Draw(sgt);
  const float widths[] = {-reach, -half, half, reach};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, widths, -reach - 250, 5);
  const float heights[] = {-half, half};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, heights, -reach - 200, 5);
}

}  // namespace

Sheet compose_slab(const Sample& project, const Sample& slab, const Sample& data) {
  Sheet sheet = new_sheet(project, slab);
  CBase_SGT& sgt = *sheet.sgt;
  const CFPoint corner = sheet.from_left(58, 206);
  const Storey storey(data, corner.x, corner.y);
  draw_framing(sgt, storey);
  draw_panels(sgt, storey, slab);
  use_pen(sgt, "DIM", "7");
  const float cut = storey.grid.x()[1] + 3000;
  const float s = sgt.m_fBiLiChi;
  sgt.Draw_PouXian(cut, storey.grid.y()[1] + 10 * s, cut, storey.grid.y()[0] - 8 * s, "2", 0, 1);
  const CFPoint title = sheet.from_left(310, 142);
  draw_title(sgt, title.x, title.y, slab.text("words", "title"), "1:100");
  draw_section(sgt, storey, slab, sheet.from_left(80, 92));
  const CFPoint under = sheet.from_left(310, 18);
  draw_title(sgt, under.x, under.y, slab.text("words", "section title"), "1:25");

  const float below = draw_notes(sgt, slab, sheet.from_right(166, 12), 122);
  qv::SheetTable bars = table_of(slab, "schedule", {{20}, {34}, {46, qv::Across::Left}, {46}});
  bars.SetTitle(slab.text("words", "schedule"));
  const float next = bars.Draw(sgt, sheet.from_right(166, 0).x, below - 20 * s).all().y1;
  const float middle = sheet.from_right(88, 0).x;
  draw_edge(sgt, storey, slab, {sheet.from_right(152, 0).x, next - 50 * s});
  draw_title(sgt, middle, next - 112 * s, slab.text("words", "edge title"), "1:10");
  draw_opening(sgt, slab, {middle - 1500, next - 185 * s});
  draw_title(sgt, middle, next - 262 * s, slab.text("words", "opening title"), "1:25");
  return sheet;
}

}  // namespace qvdraw
