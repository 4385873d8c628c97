#include "composer.h"

namespace qvpy {

namespace {

using py::arg;
using Sgt = CBase_SGT;

void draw_dimension(CBase_SGT& sgt, float x1, float y1, float x2, float y2, const std::optional<Text>& text, bool above,
                    bool longSide) {
  text ? sgt.Draw_Dim_Points(x1, y1, x2, y2, *text, above, longSide)
       : sgt.Draw_Dim_Points(x1, y1, x2, y2, above, longSide);
}

void draw_dimension_polar(CBase_SGT& sgt, float x, float y, float length, float angle, const std::optional<Text>& text,
                          bool above, bool longSide) {
  text ? sgt.Draw_Dim_Polar(x, y, length, *text, angle, above, longSide)
       : sgt.Draw_Dim_Polar(x, y, length, angle, above, longSide);
}

void draw_dimensions(CBase_SGT& sgt, const py::object& points, bool reverse, bool above, bool longSide) {
  const Coordinates p = coordinates_of(points, "points", 2);
  sgt.Draw_Dim_Points(p.count(), p.x.data(), p.y.data(), reverse, above, longSide);
}

void draw_angle(CBase_SGT& sgt, float x, float y, float radius, float start, float sweep, const Text& text) {
  sgt.Draw_DimJiaoDu(x, y, radius, start, text, sweep);
}

void draw_break_line(CBase_SGT& sgt, float x1, float y1, float x2, float y2) {
  sgt.Draw_Cut_Sym(x1, y1, x2, y2);
}

void draw_section_mark(CBase_SGT& sgt, float x1, float y1, float x2, float y2, const Text& text, bool along,
                       bool left) {
  sgt.Draw_PouXian(x1, y1, x2, y2, text, along, left);
}

void draw_bar_path(CBase_SGT& sgt, const py::object& points) {
  const Coordinates p = coordinates_of(points, "points", 2);
  if (p.count() > 20) throw py::value_error("points: at most 20 expected");
  sgt.Draw_XianGangJin(p.count(), p.x.data(), p.y.data());
}

void draw_bar_label(CBase_SGT& sgt, float x, float y, float x2, float y2, float length, const Text& text, int number) {
  sgt.Draw_GangJin_BiaoZhu(x, y, x2, y2, length, number, text);
}

void draw_bars_label(CBase_SGT& sgt, float x, float y, const py::object& bars, float length, const Text& text,
                     int number, bool leftSide, bool ticks) {
  const Coordinates p = coordinates_of(bars, "bars", 1);
  sgt.Draw_GangJin_BiaoZhu(x, y, p.count(), p.x.data(), p.y.data(), length, number, leftSide, ticks, text);
}

using Bars = std::vector<std::tuple<int, int, int, int>>;

void draw_beam_section(CBase_SGT& sgt, float x, float y, float width, float height, float cover, const Bars& bars,
                       const std::tuple<int, int, int, int>& stirrup, int number) {
  std::vector<Sgt::CLiangZongJin> rows;
  for (const auto& [count, grade, diameter, row] : bars) rows.push_back({count, grade, diameter, row});
  const auto [grade, diameter, spacing, legs] = stirrup;
  sgt.Draw_Liang_Section(x, y, width, height, cover, static_cast<int>(rows.size()), rows.data(),
                         {grade, diameter, spacing, legs}, number);
}

/// What charts have in common: the axis box, the values that it shows, divisions and titles.
Sgt::CURVEINFO chart(const py::tuple& place, const std::pair<float, float>& x, const std::pair<float, float>& y,
                     const std::pair<int, int>& divisions, const std::pair<Text, Text>& titles) {
  Sgt::CURVEINFO info;
  std::tie(info.x0, info.y0, info.width, info.height) = place.cast<std::tuple<float, float, float, float>>();
  std::tie(info.xmin, info.xmax) = x;
  std::tie(info.ymin, info.ymax) = y;
  std::tie(info.nx, info.ny) = divisions;
  info.xTitle = titles.first.gbk.c_str();
  info.yTitle = titles.second.gbk.c_str();
  return info;
}

void draw_axes(CBase_SGT& sgt, const py::tuple& place, const std::pair<float, float>& xRange,
               const std::pair<float, float>& yRange, const std::pair<int, int>& divisions,
               const std::pair<Text, Text>& titles) {
  const auto c = chart(place, xRange, yRange, divisions, titles);
  sgt.Draw_Axis(c.x0, c.y0, c.xmin, c.xmax, c.ymin, c.ymax, c.width, c.height, c.nx, c.ny, c.xTitle, c.yTitle);
}

void draw_curve(CBase_SGT& sgt, const py::tuple& place, const py::object& xs, const py::object& ys,
                const std::pair<float, float>& xRange, const std::pair<float, float>& yRange, const py::object& ys2,
                const std::pair<int, int>& divisions, const std::pair<Text, Text>& titles, int color, int ltype,
                const std::string& marker, bool values) {
  auto c = chart(place, xRange, yRange, divisions, titles);
  c.color = color;
  c.ltype = ltype;
  c.marker = choice(marker, {"", "circle", "square", "cross"}, "marker");
  c.values = values;
  const Floats x = numbers_of(xs, "x"), y = numbers_of(ys, "y");
  const Floats y2 = ys2.is_none() ? y : numbers_of(ys2, "y2");
  const int n = static_cast<int>(x.rows);
  if (x.rows != y.rows || x.rows != y2.rows || n < 2)
    throw py::value_error("x, y: as many numbers in each expected, at least 2");
  if (!ys2.is_none())
    return sgt.Draw_Curve2(c.x0, c.y0, n, x.data, y.data, y2.data, c.xmin, c.xmax, c.ymin, c.ymax, c.width, c.height,
                           c.nx, c.ny, c.xTitle, c.yTitle, c.color, c.ltype, c.marker);
  CArray<float, float> xArray, yArray;
  xArray.SetSize(n), yArray.SetSize(n);
  std::copy_n(x.data, n, xArray.GetData());
  std::copy_n(y.data, n, yArray.GetData());
  sgt.Draw_XY(c, xArray, yArray);
}

/// A text that the library forms of numbers.
template <class... A>
auto formed(void (*form)(char*, A...)) {
  return [form](A... numbers) {
    char text[64] = "";
    form(text, numbers...);
    if (!*text) throw py::value_error("there is no such grade");
    return to_str(text);
  };
}

constexpr Method kSheetSymbols[] = {
    method<&Sgt::Draw_BiaoTiLan>("title_block", "x, y, pen",
                                 "Draws a title block with captions, (x, y) its lower right corner (Draw_BiaoTiLan)."),
    method<&Sgt::Draw_HuiQianLan>("countersign_block", "x, y, angle=0",
                                  "Draws a countersign block, (x, y) its lower right corner (Draw_HuiQianLan)."),
    method<&Sgt::Draw_TuMing>("drawing_title", "x, y, text, thick_line=1, thin_line=1",
                              "Draws the title of a drawing, centred on (x, y), with its underlines (Draw_TuMing)."),
    method<&Sgt::Draw_ZhouFu>("axis", "x1, y1, x2, y2, text",
                              "Draws an axis line with a bubble behind its second point (Draw_ZhouFu)."),
    method<&Sgt::Draw_BiaoGao>("elevation_mark", "x, y, value, left_side=0",
                               "Draws an elevation mark with its tip at (x, y), the value in metres (Draw_BiaoGao)."),
    method<&Sgt::Draw_TuMianXian>("ground_line", "x1, y1, x2, y2, size=0, left_side=0",
                                  "Draws a ground surface; 3 mm deep unless a size is given (Draw_TuMianXian)."),
    method<&Sgt::DrawArrow>("arrow", "x, y, angle", "Draws an arrowhead with its tip at (x, y) (DrawArrow)."),
    method<&Sgt::DrawLineArrow>("line_arrow", "x1, y1, x2, y2",
                                "Draws a line with an arrowhead at its end (DrawLineArrow)."),
    method<&Sgt::DrawArcArrow>("arc_arrow", "x, y, angle, at_start=0",
                               "Draws a curved arrow whose middle is (x, y) (DrawArcArrow)."),
    method<&draw_dimension>(
        "dimension", "x1, y1, x2, y2, text=None, above=True, long_side=True",
        R"(Draws a dimension between two points, dimension_offset to the right of the way between them (Draw_Dim_Points).

Without a text it is the length. above: the text stands on the line. long_side: the long ends of the extension lines
run toward the points. dimension_chain draws where one says.)"),
    method<&draw_dimensions>(
        "dimensions", "points, reverse=False, above=True, long_side=True",
        "Draws a chain of dimensions along points; reverse puts it on the other side (Draw_Dim_Points)."),
    method<&draw_dimension_polar>("dimension_polar", "x, y, length, angle, text=None, above=True, long_side=True",
                                  "Draws the dimension of a length from (x, y) in a direction (Draw_Dim_Polar)."),
    method<&draw_angle>(
        "angle_dimension", "x, y, radius, angle, sweep, text=''",
        "Draws the dimension of an angle about (x, y); without a text it is the sweep (Draw_DimJiaoDu)."),
    method<&draw_break_line>("break_line", "x1, y1, x2, y2", "Draws a break line (Draw_Cut_Sym)."),
    method<&draw_section_mark>("section_mark", "x1, y1, x2, y2, text, along_line=False, left=False",
                               "Draws the mark of a section between two points (Draw_PouXian)."),
};

using Cut4 = void (Sgt::*)(float, float, float, float, float, float, float);
using Cut5 = void (Sgt::*)(float, float, float, float, float, float, float, float);

constexpr Method kBars[] = {
    method<static_cast<void (Sgt::*)(float, float, float, float)>(&Sgt::Draw_XianGangJin)>(
        "bar", "x1, y1, x2, y2", "Draws a bar in elevation (Draw_XianGangJin)."),
    method<&Sgt::Set_Para_Draw_Out_2PraLine>(
        "band", "x1, y1, x2, y2, width",
        "Sets the band that the ..._outside calls leave out: an axis and its width (Set_Para_Draw_Out_2PraLine)."),
    method<&Sgt::Draw_Line_Out_2PraLine>("line_outside", "x1, y1, x2, y2",
                                         "Draws a line outside the band (Draw_Line_Out_2PraLine)."),
    method<&Sgt::Draw_PLine_Out_2PraLine>("wide_line_outside", "x1, y1, x2, y2, width",
                                          "Draws a wide line outside the band (Draw_PLine_Out_2PraLine)."),
    method<&Sgt::Draw_XianGangJin_Out_2PraLine>("bar_outside", "x1, y1, x2, y2",
                                                "Draws a bar outside the band (Draw_XianGangJin_Out_2PraLine)."),
    method<&Sgt::Draw_DoNut>("ring", "x, y, inner, outer", "Draws a ring (Draw_DoNut)."),
    method<&Sgt::Draw_YuanDian>("dot", "x, y, radius", "Draws a filled dot (Draw_YuanDian)."),
    method<&Sgt::Draw_DoNutGangJin>("bar_ring", "x, y, inner, outer",
                                    "Draws a ring in the colour of bars (Draw_DoNutGangJin)."),
    method<&Sgt::Draw_YuanDianGangJin>(
        "bar_section", "x, y, dx=0, dy=0",
        "Draws a bar in section, moved by (dx, dy) of its radii (Draw_YuanDianGangJin)."),
    placed_method<&Sgt::Draw_RectGangJin_LB>("stirrup", "x, y, width, height, angle=0",
                                             "Draws a stirrup from its lower left corner (Draw_RectGangJin_LB)."),
    placed_method<&Sgt::Draw_RectGangJin_C>(
        "stirrup_centered", "x, y, width, height, angle=0, inset=1",
        "Draws a stirrup about its centre; inset 1: its outer edges meet width by height (Draw_RectGangJin_C)."),
    placed_method<&Sgt::Draw_RectGangJin_LB_CutL>(
        "hooked_stirrup", "x, y, width, height, angle, hook_a, hook_b",
        "Draws a stirrup with hooks at its upper left corner (Draw_RectGangJin_LB_CutL)."),
    placed_method<&Sgt::Draw_RectGangJin_C_CutL>("hooked_stirrup_centered",
                                                 "x, y, width, height, angle, hook_a, hook_b, inset=1",
                                                 "The same about its centre (Draw_RectGangJin_C_CutL)."),
    placed_method<static_cast<Cut4>(&Sgt::Draw_Rect_LB_CutL)>(
        "hooked_rect", "x, y, width, height, angle, hook_a, hook_b",
        "Draws the outline of a hooked stirrup in thin lines (Draw_Rect_LB_CutL)."),
    placed_method<static_cast<Cut4>(&Sgt::Draw_Rect_C_CutL)>("hooked_rect_centered",
                                                             "x, y, width, height, angle, hook_a, hook_b",
                                                             "The same about its centre (Draw_Rect_C_CutL)."),
    placed_method<static_cast<Cut5>(&Sgt::Draw_Rect_LB_CutL)>("wide_hooked_rect",
                                                              "x, y, width, height, angle, pen, hook_a, hook_b",
                                                              "The same with a pen of a width (Draw_Rect_LB_CutL)."),
    placed_method<static_cast<Cut5>(&Sgt::Draw_Rect_C_CutL)>("wide_hooked_rect_centered",
                                                             "x, y, width, height, angle, pen, hook_a, hook_b",
                                                             "The same about its centre (Draw_Rect_C_CutL)."),
    method<&Sgt::Draw_LaJieJin>("tie", "x1, y1, x2, y2, side=0",
                                "Draws a tie between two dots, hooked around both (Draw_LaJieJin)."),
    method<&Sgt::Draw_Line_BiaoZhu>("leader", "x1, y1, x2, y2",
                                    "Draws a leader with a tick at its first point (Draw_Line_BiaoZhu)."),
    method<&Sgt::Draw_GJH>("bar_number", "x, y, height, number", "Draws a bar number in its circle (Draw_GJH)."),
    method<&Sgt::Draw_GJH_And_Text_Along_Line>(
        "bar_number_along_line", "x1, y1, x2, y2, parts, part, number, text, height, offset",
        "Draws a bar number and a label along a line (Draw_GJH_And_Text_Along_Line)."),
    method<&draw_bar_path>("bar_path", "points", "Draws a bar through 2 to 20 points (Draw_XianGangJin)."),
    method<&draw_bar_label>("bar_label", "x, y, x2, y2, length, text, number=0",
                            "Labels a bar at (x, y): a leader to (x2, y2), a line of a length under the text, a number "
                            "(Draw_GangJin_BiaoZhu)."),
    method<&draw_bars_label>("bars_label", "x, y, bars, length, text, number=0, left_side=False, ticks=True",
                             "Labels several bars with one text that begins at (x, y) (Draw_GangJin_BiaoZhu)."),
    method<&draw_beam_section>("beam_section", "x, y, width, height, cover, bars, stirrup, number=0",
                               R"(Draws a beam section with its bars, stirrups and labels (Draw_Liang_Section).

bars: tuples (count, grade, diameter, row), rows 1, 2 from the bottom, -1, -2 from the top, 0 at the sides. stirrup:
(grade, diameter, spacing, legs). number: of the first label; 0 for labels without numbers.)"),
};

constexpr Method kCharts[] = {
    method<&draw_axes>("axes", "place, x_range, y_range, divisions=(10,10), titles=('','')",
                       "Draws an axis box at place (x, y, width, height) for ranges of values (Draw_Axis)."),
    method<&draw_curve>("curve",
                        "place, x, y, x_range, y_range, y2=None, divisions=(10,10), titles=('',''), color=1, ltype=0, "
                        "marker='', values=False",
                        R"(Draws a curve, or two over the same x, in an axis box (Draw_XY, Draw_Curve2).

ltype: 0 continuous, 1 dashed, 2 dotted, 3 dash-dot. marker: "", "circle", "square" or "cross". values: each y is
written at its point; of a single curve only.)"),
};

}  // namespace

void bind_symbols(ComposerClass& composer) {
  for (const auto methods :
       {std::span<const Method>(kSheetSymbols), std::span<const Method>(kBars), std::span<const Method>(kCharts)})
    bind_methods(composer, methods);
  composer
      .def_static("bar_text", formed(&Sgt::FormString_GJ_nqd), arg("count"), arg("grade"), arg("diameter"),
                  "The text of bars, with the sign of their grade, 1 to 3 (FormString_GJ_nqd).")
      .def_static("stirrup_text", formed(&Sgt::FormString_GJ_qdas), arg("grade"), arg("diameter"), arg("spacing"),
                  "The text of stirrups (FormString_GJ_qdas).")
      .def_static("strand_text", formed(&Sgt::FormString_GJX_nqd), arg("count"), arg("diameter"),
                  "The text of prestressing strands of 9, 12 or 15 mm (FormString_GJX_nqd).");
}

}  // namespace qvpy
