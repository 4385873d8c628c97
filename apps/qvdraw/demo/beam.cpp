#include <algorithm>
#include <cmath>

#include "demo/demo.h"
#include "qvtools/drawing/bar_list.h"
#include "qvtools/drawing/dimension_chain.h"
#include "qvtools/drawing/fitted_text.h"
#include "qvtools/drawing/leaders.h"
#include "qvtools/drawing/second_scale.h"

namespace qvdraw {

namespace {

struct Bar {
  int mark;
  int count;
  std::string text;
  int grade;
  int diameter;
  Bar(const Sample& data, const char* name) {
    const Sample::Row& row = data.row("bars", name);
    mark = static_cast<int>(row.number(0));
    count = static_cast<int>(row.number(1));
    text = bar_text(row.text(2));
    grade = static_cast<int>(row.number(3));
    diameter = static_cast<int>(row.number(4));
  }
};

struct Beam {
  const Sample& data;
  std::vector<float> axes;
  float top;  // of the concrete, on the sheet
  float depth = data.number("sizes", "depth");
  float width = data.number("sizes", "width");
  float half = data.number("sizes", "column") / 2;
  float dense = data.number("sizes", "dense");  // zone of close stirrups at a support
  float reach = data.number("sizes", "extra");  // of the extra top bars from a support
  Bar upper{data, "top"}, lower{data, "bottom"}, side{data, "side"}, stirrup{data, "stirrup"}, extra{data, "extra"},
      tie{data, "tie"};

  Beam(const Sample& sample, CFPoint place) : data(sample), top(place.y) {
    axes.push_back(place.x);
    for (const float span : sample.numbers("sizes", "spans", 1)) axes.push_back(axes.back() + span);
  }
  float bottom() const { return top - depth; }
  float left() const { return axes.front() - half + kInset; }  // ends of the long bars
  float right() const { return axes.back() + half - kInset; }
  float middle() const { return (axes.front() + axes.back()) / 2; }
  /// How far side bars reach into the end columns.
  float anchorage() const { return 15 * static_cast<float>(side.diameter); }
  /// The heights of the side bars, from below.
  float side_level(int i) const {
    return bottom() + kInset + static_cast<float>(i) * (depth - 2 * kInset) / static_cast<float>(side.count / 2 + 1);
  }
  /// Where the stirrups of a span stand: the first 50 mm from the column, close ones at both ends.
  std::vector<float> stirrups(std::size_t span) const {
    std::vector<float> places;
    const float from = axes[span] + half + 50;
    const float to = axes[span + 1] - half - 50;
    const float close = dense - 50;
    for (float at = from; at <= to + 1; at += at < from + close || at > to - close - 1 ? 100.0F : 200.0F)
      places.push_back(at);
    return places;
  }

  static constexpr float kInset = 40;
  static constexpr float kStub = 800;
};

void draw_concrete(CBase_SGT& sgt, const Beam& beam) {
  use_pen(sgt, "CONCRETE", "7");
  const float low = beam.bottom() - Beam::kStub;
  const float high = beam.top + Beam::kStub;
  for (std::size_t i = 0; i < beam.axes.size(); ++i) {
    const bool first = i == 0;
    const bool last = i + 1 == beam.axes.size();
    const float left = beam.axes[i] - beam.half;
    const float right = beam.axes[i] + beam.half;
    sgt.Draw_Line(left, high, left, first ? low : beam.top);
    sgt.Draw_Line(right, high, right, last ? low : beam.top);
    if (!first) sgt.Draw_Line(left, beam.bottom(), left, low);
    if (!last) sgt.Draw_Line(right, beam.bottom(), right, low);
    sgt.Draw_Cut_Sym(left, high, right, high);
    sgt.Draw_Cut_Sym(left, low, right, low);
    if (last) break;
    sgt.Draw_Line(right, beam.top, beam.axes[i + 1] - beam.half, beam.top);
    sgt.Draw_Line(right, beam.bottom(), beam.axes[i + 1] - beam.half, beam.bottom());
  }
  sgt.m_fDimTextHeight = sgt.m_fZiGao[1];
  for (std::size_t i = 0; i < beam.axes.size(); ++i) {
    use_pen(sgt, "AXIS", "1", "DASHDOT");
    sgt.Draw_Line(beam.axes[i], high + 300, beam.axes[i],
                  beam.bottom() - 1050);  // open where the column's width stands
    sgt.Draw_Line(beam.axes[i], beam.bottom() - 1250, beam.axes[i], beam.bottom() - 2150);
    use_pen(sgt, "AXIS", "1");
    sgt.Draw_ZhouFu(beam.axes[i], beam.bottom() - 2150, beam.axes[i], beam.bottom() - 2300,
                    std::to_string(i + 1).c_str());
  }
  sgt.m_fDimTextHeight = sgt.m_fZiGao[0];
}

void draw_bars(CBase_SGT& sgt, const Beam& beam) {
  use_pen(sgt, "STEEL", "1");
  const float top = beam.top - Beam::kInset;
  const float bottom = beam.bottom() + Beam::kInset;
  const float x[] = {beam.left(), beam.left(), beam.right(), beam.right()};
  const float y[] = {top - 375, top, top, top - 375};
  sgt.Draw_XianGangJin(4, x, y);
  // Extra top bars lie in the second row.
  sgt.Draw_XianGangJin(beam.axes[1] - beam.reach, top - 60, beam.axes[1] + beam.reach, top - 60);
  const float x2[] = {beam.left() + 60, beam.left() + 60, beam.right() - 60, beam.right() - 60};
  const float y2[] = {bottom + 330, bottom, bottom, bottom + 330};
  sgt.Draw_XianGangJin(4, x2, y2);
  const float reach = beam.half - beam.anchorage();
  for (int i = 1; i <= beam.side.count / 2; ++i)
    sgt.Draw_XianGangJin(beam.axes.front() + reach, beam.side_level(i), beam.axes.back() - reach, beam.side_level(i));
  use_pen(sgt, "STEEL", "3");
  for (std::size_t i = 0; i + 1 < beam.axes.size(); ++i)
    for (const float at : beam.stirrups(i)) sgt.Draw_Line(at, bottom, at, top);
}

float place_of_section(const Beam& beam, const Sample::Row& row) {
  const float span = row.number(1);
  return axis(beam.axes, span - 1) + row.number(2) * (axis(beam.axes, span) - axis(beam.axes, span - 1));
}

void draw_marks(CBase_SGT& sgt, const Beam& beam) {
  use_pen(sgt, "DIM", "5");
  const float top = beam.top - Beam::kInset;
  const float first = beam.axes[0];
  const float middle = beam.axes[1];
  qv::Leaders above(qv::Leaders::Side::Above, beam.top + 1000);
  above.Add(first + 1300, top, beam.upper.text, beam.upper.mark);
  above.Add(middle - 1000, top - 60, beam.extra.text, beam.extra.mark);
  above.Add(middle + 2600, beam.top - 350, beam.stirrup.text, beam.stirrup.mark);
  above.Add(middle + 4500, beam.side_level(beam.side.count / 2), beam.side.text, beam.side.mark);
  above.Draw(sgt);
  qv::Leaders below(qv::Leaders::Side::Below, beam.bottom() - 420);
  below.Add(first + 4100, beam.bottom() + Beam::kInset, beam.lower.text, beam.lower.mark);
  below.Add(middle + 3600, beam.bottom() + Beam::kInset, beam.lower.text, beam.lower.mark);
  below.Draw(sgt);
  use_pen(sgt, "DIM", "7");
  for (const Sample::Row& row : beam.data.rows("sections")) {
    const float x = place_of_section(beam, row);
    sgt.Draw_PouXian(x, beam.top + 420, x, beam.bottom() - 420, row.text(0).c_str(), 0, 1);
  }
  use_pen(sgt, "DIM", "5");
  const float right = beam.axes.back() + beam.half;
  sgt.Draw_Line(right + 100, beam.top, right + 1500, beam.top);
  sgt.Draw_BiaoGao(right + 700, beam.top, beam.data.number("sizes", "level"), 0);

  std::vector<float> sides;
  for (const float axis : beam.axes) {
    sides.push_back(axis - beam.half);
    sides.push_back(axis + beam.half);
    if (axis != beam.axes.front()) sides.push_back(axis - beam.half - beam.dense);
    if (axis != beam.axes.back()) sides.push_back(axis + beam.half + beam.dense);
  }
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, sides, beam.bottom() - 1250, 4);
  qv::DrawDimensionChain(sgt, qv::ChainSide::Below, beam.axes, beam.bottom() - 1700, 4);
  const float depth[] = {beam.bottom(), beam.top};
  qv::DrawDimensionChain(sgt, qv::ChainSide::Left, depth, beam.axes.front() - beam.half - 450, 8);
}

/// The bars drawn apart under the elevation, each with its number and label; the list of them.
qv::BarList draw_bars_apart(CBase_SGT& sgt, const Beam& beam, float y) {
  const float cover = beam.data.number("sizes", "cover");
  const float length = beam.right() - beam.left();
  const float between = beam.axes.back() - beam.axes.front() - 2 * beam.half;
  const float sides = between + 2 * beam.anchorage();
  // By the elevation; a tie for each pair of side bars at twice the distance of the stirrups at mid-span.
  std::size_t stirrups = 0;
  int ties = 0;
  for (std::size_t i = 0; i + 1 < beam.axes.size(); ++i) {
    stirrups += beam.stirrups(i).size();
    const double clear = beam.axes[i + 1] - beam.axes[i] - 2 * beam.half - 100;
    ties += beam.side.count / 2 * (static_cast<int>(clear / std::max(beam.data.number("sizes", "ties"), 20.0F)) + 1);
  }
  using qv::BarShape;
  qv::BarList list;
  const auto add = [&](const Bar& bar, BarShape shape, int count, double a, double b, double c) {
    list.Add({std::to_string(bar.mark), shape, bar.grade, bar.diameter, count, a, b, c, 0});
  };
  add(beam.upper, BarShape::BentTwice, beam.upper.count, length, 375, 375);
  add(beam.lower, BarShape::BentTwice, beam.lower.count, length - 120, 330, 330);
  add(beam.side, BarShape::Straight, beam.side.count, sides, 0, 0);
  add(beam.stirrup, BarShape::Stirrup, static_cast<int>(stirrups), beam.width - 2 * cover, beam.depth - 2 * cover, 0);
  add(beam.extra, BarShape::Straight, beam.extra.count, 2 * beam.reach, 0, 0);
  add(beam.tie, BarShape::Tie, ties, beam.width - 2 * cover, 0, 0);

  const float h = sgt.m_fZiGao[0];
  const struct {
    const Bar& bar;
    float x1;
    float x2;
    float hook;  // up at both ends
    double length;
  } bars[] = {{beam.upper, beam.left(), beam.right(), -375, qv::BarList::Length(list.bars()[0])},
              {beam.extra, beam.axes[1] - beam.reach, beam.axes[1] + beam.reach, 0, 2 * beam.reach},
              {beam.side, beam.middle() - sides / 2, beam.middle() + sides / 2, 0, sides},
              {beam.lower, beam.left() + 60, beam.right() - 60, 330, qv::BarList::Length(list.bars()[1])}};
  for (const auto& bar : bars) {
    use_pen(sgt, "STEEL", "1");
    const float x[] = {bar.x1, bar.x1, bar.x2, bar.x2};
    const float ys[] = {y + bar.hook, y, y, y + bar.hook};
    if (bar.hook == 0)
      sgt.Draw_XianGangJin(bar.x1, y, bar.x2, y);
    else
      sgt.Draw_XianGangJin(4, x, ys);
    use_pen(sgt, "DIM", "5");
    const std::string text = bar.bar.text + "  L=" + std::to_string(std::lround(bar.length));
    sgt.Draw_GJH_And_Text_Along_Line(bar.x1, y, bar.x2, y, 20, bar.hook == 0 ? 3 : 4, bar.bar.mark, text.c_str(), h,
                                     130);
    y -= 750;
  }
  return list;
}

/// The sections side by side, at 1:10.
void draw_sections(CBase_SGT& sgt, const Beam& beam, CFPoint place) {
  constexpr float kScale = 10;
  constexpr float kLine = 8;  // stirrups and bars are as large as they are
  constexpr float kDot = 24;
  using Bars = CBase_SGT::CLiangZongJin;
  const auto entry = [](const Bar& bar, int row) { return Bars{bar.count, bar.grade, bar.diameter, row}; };
  // Numbered through, with the stirrup behind them, as the data has them.
  const Bars bars[] = {entry(beam.upper, -1), entry(beam.lower, 1), entry(beam.side, 0)};
  const float cover = beam.data.number("sizes", "cover");
  const float inset = cover + kLine + kDot / 2;
  for (const Sample::Row& row : beam.data.rows("sections")) {
    const bool second = row.number(1) > 1;
    {
      const qv::SecondScale detail(sgt, place.x, place.y, kScale);
      sgt.m_fGJDotWidth = kDot;
      sgt.m_fGJLineWidth = kLine;
      use_pen(sgt, "CONCRETE", "7");
      sgt.Draw_Liang_Section(0, 0, beam.width, beam.depth, cover, 3, bars,
                             {beam.stirrup.grade, beam.stirrup.diameter, static_cast<int>(row.number(3)), 2},
                             beam.upper.mark);
      use_pen(sgt, "STEEL", "1");
      const int rows = beam.side.count / 2;
      const auto level = [&](int i) {
        return inset + static_cast<float>(i) * (beam.depth - 2 * inset) / static_cast<float>(rows + 1);
      };
      for (int i = 1; i <= rows; ++i) sgt.Draw_LaJieJin(inset, level(i), beam.width - inset, level(i), 0);
      const float out = beam.width + 30;
      const float tie[] = {beam.width / 2, level(1) + kDot / 2};
      const auto length = [&](const std::string& text) {
        return static_cast<float>(text.size()) * 0.8F * sgt.m_fDimTextHeight + 2 * sgt.m_fBiLiChi;
      };
      sgt.Draw_GangJin_BiaoZhu(out, level(1) - 70, 1, &tie[0], &tie[1], length(beam.tie.text), beam.tie.mark, 0, 1,
                               beam.tie.text.c_str());
      if (second) {
        // The extra bars, in the second row.
        const float high = beam.depth - inset - 2 * kDot;
        const float x[] = {inset, beam.width - inset};
        const float y[] = {high, high};
        for (const float at : x) sgt.Draw_YuanDianGangJin(at, high, 0, 0);
        sgt.Draw_GangJin_BiaoZhu(out, high - 2.4F * kDot, 2, x, y, length(beam.extra.text), beam.extra.mark, 0, 1,
                                 beam.extra.text.c_str());
      }
      use_pen(sgt, "DIM", "5");
      const float widths[] = {0, beam.width};
      const float depths[] = {0, beam.depth};
      qv::DrawDimensionChain(sgt, qv::ChainSide::Below, widths, -90, 4);
      qv::DrawDimensionChain(sgt, qv::ChainSide::Left, depths, -90, 4);
    }
    sgt.m_fTuMingText = sgt.m_fZiGao[2];
    draw_title(sgt, place.x + 750, place.y - 1000, row.text(0) + " - " + row.text(0), "1:10");
    sgt.m_fTuMingText = sgt.m_fZiGao[3];
    place.x += 4100;
  }
}

/// How the ends of a stirrup are bent.
void draw_hook(CBase_SGT& sgt, const Beam& beam, CFPoint place) {
  const float length = 1000;
  const auto run = static_cast<float>(length * std::sqrt(0.5));
  const auto [x, y] = place;
  use_pen(sgt, "STEEL", "1");
  const float px[] = {x, x, x + run};
  const float py[] = {y - 1500, y, y - run};
  sgt.Draw_XianGangJin(3, px, py);
  use_pen(sgt, "AXIS", "1", "DASHDOT");
  sgt.Draw_Line(x, y, x, y + 750);
  use_pen(sgt, "DIM", "5");
  sgt.Draw_DimJiaoDu(x, y, 450, -45, "", 135);
  sgt.Draw_GangJin_BiaoZhu(x + 0.8F * run, y - 0.8F * run, x + 900, y - 300, 500, 0, "10d");
  sgt.m_fTuMingText = sgt.m_fZiGao[2];
  draw_title(sgt, x + 400, y - 2200, beam.data.text("words", "hook"), "");
  sgt.m_fTuMingText = sgt.m_fZiGao[3];
}

}  // namespace

Sheet compose_beam(const Sample& project, const Sample& data) {
  Sheet sheet = new_sheet(project, data);
  CBase_SGT& sgt = *sheet.sgt;
  const Beam beam(data, sheet.from_left(34, 342));
  draw_concrete(sgt, beam);
  draw_bars(sgt, beam);
  draw_marks(sgt, beam);
  draw_title(sgt, beam.middle(), sheet.from_left(0, 260).y, data.text("words", "title"), "1:50");
  const qv::BarList list = draw_bars_apart(sgt, beam, sheet.from_left(0, 246).y);
  sgt.m_fTuMingText = sgt.m_fZiGao[2];
  draw_title(sgt, beam.middle(), sheet.from_left(0, 182).y, data.text("words", "apart"), "1:50");
  sgt.m_fTuMingText = sgt.m_fZiGao[3];
  draw_sections(sgt, beam, sheet.from_left(34, 66));
  draw_hook(sgt, beam, sheet.from_left(292, 108));
  use_pen(sgt, "TEXT", "7");
  const CFPoint corner = sheet.from_right(150, 22);
  const float below = list.Draw(sgt, corner.x, corner.y).y1;
  draw_notes(sgt, data, {corner.x, below - 10 * sgt.m_fBiLiChi}, 110);
  return sheet;
}

}  // namespace qvdraw
