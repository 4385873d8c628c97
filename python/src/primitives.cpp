#include <charconv>

#include "composer.h"

namespace qvpy {

namespace {

using py::arg;

/// A number of the environment as an attribute.
struct Setting {
  const char* name;
  float qv::SgtEnvironment::*member;
  const char* doc;
};
constexpr Setting kSettings[] = {
    {"shift_x", &qv::SgtEnvironment::m_fShiftX, "Placement: shift, added after turning and scaling (m_fShiftX)."},
    {"shift_y", &qv::SgtEnvironment::m_fShiftY, "Placement: shift (m_fShiftY)."},
    {"rotation", &qv::SgtEnvironment::m_fRotAngle, "Placement: rotation in degrees (m_fRotAngle)."},
    {"length_factor", &qv::SgtEnvironment::m_fLenFactor, "Placement: factor of coordinates and radii (m_fLenFactor)."},
    {"text_factor", &qv::SgtEnvironment::m_fTextFactor, "Factor of text heights (m_fTextFactor)."},
    {"width_factor", &qv::SgtEnvironment::m_fWidthFactor, "Factor of the widths of wide lines (m_fWidthFactor)."},
    {"dimension_offset", &qv::SgtEnvironment::m_fDimOffset,
     "From measured points to the dimension line; 100 at every scale (m_fDimOffset)."},
    {"dimension_long_a", &qv::SgtEnvironment::m_fDimPolarA, "Long end of the first extension line (m_fDimPolarA)."},
    {"dimension_long_b", &qv::SgtEnvironment::m_fDimPolarB, "Long end of the second extension line (m_fDimPolarB)."},
    {"dimension_short", &qv::SgtEnvironment::m_fDimExt, "Short ends of the extension lines (m_fDimExt)."},
    {"dimension_tick", &qv::SgtEnvironment::m_fDimTick, "Length of the oblique tick (m_fDimTick)."},
    {"dimension_pen", &qv::SgtEnvironment::m_fDimLineWidth, "Width of the tick (m_fDimLineWidth)."},
    {"dimension_text", &qv::SgtEnvironment::m_fDimTextHeight, "Height of dimension texts (m_fDimTextHeight)."},
    {"text_gap", &qv::SgtEnvironment::m_fTextGap, "Gap between a line and its text (m_fTextGap)."},
    {"break_over", &qv::SgtEnvironment::m_fCutSymA, "Break line: how far it reaches over (m_fCutSymA)."},
    {"break_height", &qv::SgtEnvironment::m_fCutSymB, "Break line: height of the zig-zag (m_fCutSymB)."},
    {"break_width", &qv::SgtEnvironment::m_fCutSymC, "Break line: width of the zig-zag (m_fCutSymC)."},
    {"section_length", &qv::SgtEnvironment::m_fPouXianLen, "Section mark: its bar (m_fPouXianLen)."},
    {"section_pen", &qv::SgtEnvironment::m_fPouXianWidth, "Section mark: width of the bar (m_fPouXianWidth)."},
    {"section_text", &qv::SgtEnvironment::m_fPouXianText, "Section mark: text height (m_fPouXianText)."},
    {"title_text", &qv::SgtEnvironment::m_fTuMingText, "Drawing title: text height (m_fTuMingText)."},
    {"title_pen", &qv::SgtEnvironment::m_fTuMingWidth, "Drawing title: width of the thick line (m_fTuMingWidth)."},
    {"bar_dot", &qv::SgtEnvironment::m_fGJDotWidth, "Bars in section: diameter of the dots (m_fGJDotWidth)."},
    {"bar_pen", &qv::SgtEnvironment::m_fGJLineWidth, "Bars, stirrups, ties: width of the lines (m_fGJLineWidth)."},
    {"arrow_length", &qv::SgtEnvironment::m_fArrowLen, "Arrowheads: length (m_fArrowLen)."},
    {"arrow_width", &qv::SgtEnvironment::m_fArrowWidth, "Arrowheads: half width (m_fArrowWidth)."},
    {"pen_x", &qv::SgtEnvironment::m_fPenX, "The pen of move_to and line_to (m_fPenX)."},
    {"pen_y", &qv::SgtEnvironment::m_fPenY, "The pen of move_to and line_to (m_fPenY)."},
};

/// A text of the environment: a name, or the number of a colour.
using Name = char (qv::SgtEnvironment::*)[qv::kEnvironmentText];

void set_name(Composer& self, Name name, const Text& text) {
  char(&field)[qv::kEnvironmentText] = self.sgt().*name;
  if (text.gbk.size() + 1 >= sizeof field) throw py::value_error("at most 98 bytes of GBK expected");
  qv::copy_text(field, text);
}

void name_setting(ComposerClass& composer, const char* name, Name member, const char* doc) {
  composer.def_property(
      name, [member](Composer& self) { return to_str(self.sgt().*member); },
      [member](Composer& self, const Text& text) { set_name(self, member, text); }, doc);
}

void color_setting(ComposerClass& composer, const char* name, Name member, const char* doc) {
  composer.def_property(
      name,
      [member](Composer& self) {
        const char* const color = self.sgt().*member;
        return std::string_view(color) == "BYLAYER" ? qv::kByLayer : qv::parse_int(color);
      },
      [member](Composer& self, int color) {
        set_name(self, member, {color == qv::kByLayer ? "BYLAYER" : std::to_string(color)});
      },
      doc);
}

template <std::size_t kSize>
py::tuple sizes(const float (&values)[kSize], std::size_t count) {
  py::tuple all(count);
  for (std::size_t i = 0; i < count; ++i) all[i] = values[i];
  return all;
}

void bind_settings(ComposerClass& composer) {
  for (const Setting& setting : kSettings)
    composer.def_property(
        setting.name, [member = setting.member](Composer& self) { return self.sgt().*member; },
        [member = setting.member](Composer& self, float value) { self.sgt().*member = value; }, setting.doc);
  name_setting(composer, "layer", &qv::SgtEnvironment::m_szCurLayer, "The current layer (SetCurLayer).");
  name_setting(composer, "style", &qv::SgtEnvironment::m_szCurStyle, "The current text style (SetCurStyle).");
  name_setting(composer, "ltype", &qv::SgtEnvironment::m_szCurLType, "The current line type (SetCurLType).");
  color_setting(composer, "color", &qv::SgtEnvironment::m_szCurColor, "The current colour number (SetCurColor).");
  color_setting(composer, "bar_color", &qv::SgtEnvironment::m_szGJColor, "The colour of reinforcement (m_szGJColor).");
  color_setting(composer, "mark_color", &qv::SgtEnvironment::m_szBZColor,
                "The colour of dimensions, marks and labels (m_szBZColor).");
  composer
      .def_property(
          "scale", [](Composer& self) { return self.sgt().m_fBiLiChi; },
          [](Composer& self, float scale) {
            if (!(scale > 0)) throw py::value_error("scale: a number above 0 expected");
            self.sgt().SetBiLiChi(scale);
          },
          "The sheet's scale, 50 for 1:50; to set it computes every size of symbols anew (SetBiLiChi).")
      .def_property(
          "base_pen", [](Composer& self) { return self.sgt().m_fBaseBiKuan; },
          [](Composer& self, float width) { self.sgt().SetBaseBiKuan(width); },
          "The thick pen in drawing mm, which the next scale makes the pens of (SetBaseBiKuan).")
      .def_property(
          "dimension_decimals", [](Composer& self) { return self.sgt().m_nDimDecimals; },
          [](Composer& self, int decimals) { self.sgt().m_nDimDecimals = decimals; },
          "Decimals of dimension values (m_nDimDecimals).")
      .def_property(
          "rect_sides",
          [](Composer& self) {
            const int(&on)[4] = self.sgt().m_bRectSide;
            return std::array{on[0] != 0, on[1] != 0, on[2] != 0, on[3] != 0};
          },
          [](Composer& self, const std::array<bool, 4>& sides) {
            for (std::size_t i = 0; i < 4; ++i) self.sgt().m_bRectSide[i] = sides[i] ? 1 : 0;
          },
          "Which sides of rectangles are drawn: bottom, right, top, left (m_bRectSide).")
      .def_property_readonly(
          "pens", [](Composer& self) { return sizes(self.sgt().m_fBiKuan, 3); },
          "Widths of the thick, the medium and the thin pen (m_fBiKuan).")
      .def_property_readonly(
          "heights", [](Composer& self) { return sizes(self.sgt().m_fZiGao, 6); },
          "Standard text heights, of 2.5 to 14 mm on paper (m_fZiGao).")
      .def(
          "push", [](Composer& self) { checked([&] { self.sgt().Push_ENV(); }); }, "Saves the settings (Push_ENV).")
      .def(
          "pop",
          [](Composer& self) {
            if (!self.sgt().Pop_ENV()) throw Error("There are no saved settings");
          },
          "Brings the settings back that were saved last (Pop_ENV).");
}

/// Calls `draw` for each row, until a report says that it fails.
template <class Draw>
void draw_rows(Composer& self, py::ssize_t rows, const Draw& draw) {
  CBase_SGT& sgt = self.sgt();
  Call call;
  {
    const Busy busy({&self});
    for (py::ssize_t i = 0; i < rows && !call.failed(); ++i) draw(sgt, i);
  }
  call.finish();
}

void draw_lines(Composer& self, const py::object& start, const py::object& end) {
  const Floats a = points_of(start, "start", 2);
  const Spread b(points_of(end, "end", 2), a.rows, "end");
  draw_rows(self, a.rows,
            [&](CBase_SGT& sgt, py::ssize_t i) { sgt.Draw_Line(a.row(i)[0], a.row(i)[1], b.row(i)[0], b.row(i)[1]); });
}

void draw_circles(Composer& self, const py::object& center, const py::object& radius) {
  const Floats c = points_of(center, "center", 2);
  const Spread radii(numbers_of(radius, "radius"), c.rows, "radius");
  draw_rows(self, c.rows, [&](CBase_SGT& sgt, py::ssize_t i) { sgt.Draw_Circle(c.row(i)[0], c.row(i)[1], radii[i]); });
}

void draw_points(Composer& self, const py::object& position) {
  const Floats p = points_of(position, "position", 2);
  draw_rows(self, p.rows, [&](CBase_SGT& sgt, py::ssize_t i) { sgt.Draw_Point(p.row(i)[0], p.row(i)[1]); });
}

void draw_path(Composer& self, const py::object& points) {
  const Coordinates p = coordinates_of(points, "points", 2);
  CBase_SGT& sgt = self.sgt();
  checked([&] { sgt.Draw_Lines(p.count(), p.x.data(), p.y.data()); });
}

void draw_polyline(Composer& self, const py::object& points, const py::object& width, const py::object& endWidth,
                   const py::object& bulges, bool closed) {
  Coordinates p = coordinates_of(points, "points", 2);
  std::vector<float> start = spread(width, p.count(), "width");
  std::vector<float> end = endWidth.is_none() ? start : spread(endWidth, p.count(), "end_width");
  const std::vector<float> bulge = spread(bulges, p.count(), "bulges");
  CBase_SGT& sgt = self.sgt();
  checked([&] {
    sgt.Draw_Pline(p.count(), p.x.data(), p.y.data(), bulge.data(), closed ? 1 : 0, start.data(), end.data());
  });
}

/// A rectangle, thin or of a width.
template <void (CBase_SGT::*kThin)(float, float, float, float, float),
          void (CBase_SGT::*kWide)(float, float, float, float, float, float)>
void draw_rect(Composer& self, float x, float y, float w, float h, float angle, std::optional<float> width) {
  CBase_SGT& sgt = self.sgt();
  checked([&] { width ? (sgt.*kWide)(w, h, x, y, angle, *width) : (sgt.*kThin)(w, h, x, y, angle); });
}

using Rect4 = void (CBase_SGT::*)(float, float, float, float, float);
using Rect5 = void (CBase_SGT::*)(float, float, float, float, float, float);

using Sgt = CBase_SGT;
using Six = void (Sgt::*)(float, float, float, float, float, float);

constexpr Method kPrimitives[] = {
    method<&Sgt::Draw_Point>("point", "x, y", "Draws a point (Draw_Point)."),
    method<&Sgt::Draw_Line>("line", "x1, y1, x2, y2", "Draws a line (Draw_Line)."),
    method<&Sgt::Draw_Circle>("circle", "x, y, radius", "Draws a circle (Draw_Circle)."),
    method<&Sgt::Draw_Arc>("arc", "x, y, radius, start_angle, end_angle",
                           "Draws an arc, counter-clockwise (Draw_Arc)."),
    method<static_cast<void (Sgt::*)(float, float, float, float, float, float)>(&Sgt::Draw_Pline)>(
        "wide_line", "x1, y1, x2, y2, width, end_width", "Draws a line of a width at each end (Draw_Pline)."),
    method<&Sgt::Draw_PArc>("wide_arc", "x, y, radius, start_angle, end_angle, width, end_width",
                            "Draws an arc of a width at each end (Draw_PArc)."),
    method<&Sgt::Draw_Solid>("solid", "x1, y1, x2, y2, x3, y3, x4, y4",
                             "Fills a quadrilateral; the third corner is opposite the second (Draw_Solid)."),
    method<&Sgt::Draw_3DFace>("face", "x1, y1, x2, y2, x3, y3, x4, y4", "Draws a face (Draw_3DFace)."),
    method<&Sgt::Draw_Text>(
        "text", "x, y, height, angle, text",
        "Writes a text from its lower left corner; one that would stand upside down is turned (Draw_Text)."),
    method<&Sgt::MoveTo>("move_to", "x, y", "Puts the pen to a place (MoveTo)."),
    method<&Sgt::LineTo>("line_to", "x, y", "Draws a line from the pen, which moves along (LineTo)."),
    method<&Sgt::PlineTo>("wide_line_to", "x, y, width, end_width", "The same, wide (PlineTo)."),
    method<&Sgt::ArrowTo>("arrow_to", "x, y", "The same with an arrowhead (ArrowTo)."),
    method<&Sgt::MoveTo_Relative>("move_by", "dx, dy", "Moves the pen (MoveTo_Relative)."),
    method<&Sgt::LineTo_Relative>("line_by", "dx, dy", "Draws a line from the pen (LineTo_Relative)."),
    method<&Sgt::PlineTo_Relative>("wide_line_by", "dx, dy, width, end_width", "The same, wide (PlineTo_Relative)."),
    method<&Sgt::ArrowTo_Relative>("arrow_by", "dx, dy", "The same with an arrowhead (ArrowTo_Relative)."),
    method<&Sgt::Draw_Text_Along_Line>(
        "text_along_line", "x1, y1, x2, y2, parts, part, text, height, offset",
        "Writes a text along a line at part/parts of it, offset to its left (Draw_Text_Along_Line)."),
    method<&Sgt::Draw_Text_Vertical_Line>("text_across_line", "x1, y1, x2, y2, parts, part, text, height, offset",
                                          "The same, across the line (Draw_Text_Vertical_Line)."),
    method<&Sgt::Draw_Text_Along_Arc>(
        "text_along_arc", "x, y, radius, start_angle, end_angle, parts, part, text, height, offset",
        "The same along an arc between two angles in radians, offset inside it (Draw_Text_Along_Arc)."),
};

}  // namespace

void bind_primitives(ComposerClass& composer) {
  bind_settings(composer);
  bind_methods(composer, kPrimitives);
  const auto x = arg("x"), y = arg("y"), width = arg("width"), height = arg("height"), radius = arg("radius");
  const auto angle = arg("angle") = 0;
  composer
      .def("lines", &draw_lines, arg("start"), arg("end"),
           R"(Draws lines from arrays of points, n by 2 (Draw_Line), one or a million.

When one fails, an Error is raised, and those before it stay.)")
      .def("circles", &draw_circles, arg("center"), radius, "Draws circles from arrays (Draw_Circle).")
      .def("points", &draw_points, arg("position"), "Draws points from an array (Draw_Point).")
      .def("path", &draw_path, arg("points"), "Draws the lines that join points (Draw_Lines).")
      .def("polyline", &draw_polyline, arg("points"), arg("width") = 0, arg("end_width") = py::none(),
           arg("bulges") = 0, arg("closed") = false,
           "Draws a polyline; widths and bulges are one number or one for each vertex (Draw_Pline).")
      .def("rect", &draw_rect<static_cast<Rect4>(&Sgt::Draw_Rect_LB), static_cast<Rect5>(&Sgt::Draw_Rect_LB)>, x, y,
           width, height, angle, arg("pen") = py::none(),
           R"(Draws a rectangle from its lower left corner, in thin lines or with a pen of a width (Draw_Rect_LB).

Thin lines turn counter-clockwise by the angle, wide ones clockwise; the corner of thin ones keeps its place at angle 0
only.)")
      .def("rect_centered", &draw_rect<static_cast<Rect4>(&Sgt::Draw_Rect_C), static_cast<Rect5>(&Sgt::Draw_Rect_C)>, x,
           y, width, height, angle, arg("pen") = py::none(), "The same about its centre (Draw_Rect_C).")
      .def(
          "placed",
          [](Composer& self, float px, float py) {
            self.sgt().Convert_XY(px, py);
            return std::pair(px, py);
          },
          x, y, "Where the placement takes a point (Convert_XY).");
}

}  // namespace qvpy
