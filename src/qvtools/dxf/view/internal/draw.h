#pragma once

/// Drawing of records in a plane, through the context of the call.

#include "qvtools/display/internal/drawing_context.h"
#include "qvtools/display/internal/path.h"
#include "qvtools/dxf/view/internal/outline.h"

namespace qv::detail {

/// The context of a call on a device: colours are `ACAD_ENTITY::GetColor`'s where the appearance has none.
inline DrawingContext drawing_context(CDC* dc, const CFCoor& coor, const Appearance& appearance = {}) {
  return {dc, coor, appearance, &ACAD_ENTITY::GetColor};
}

/// The pen style that a line-type name asks for.
PenStyle pen_style(const char* ltype);
/// The style of the pen that draws a line type: patterns are drawn dash by dash, with a solid one.
inline PenStyle pen_style(const char* ltype, const DrawingContext& to) {
  return to.has_patterns() ? PenStyle::Solid : pen_style(ltype);
}
/// Draws a line dash by dash; false when it has no pattern, and nothing was drawn.
bool draw_dashed(const ACAD_LINE& r, const Plane& plane, DrawingContext& to);

// Each kind, with a one-pixel pen of its colour and line type. An insert draws nothing: its block is drawn for it.
void draw(const ACAD_POINT& r, const Plane& plane, DrawingContext& to);
inline void draw(const ACAD_LINE& r, const Plane& plane, DrawingContext& to) {
  if (to.has_patterns() && draw_dashed(r, plane, to)) return;
  to.draw_line(plane(r.m_Start), plane(r.m_End), pen_style(r.m_szLType, to), r.m_nColor);
}
void draw(const ACAD_TEXT& r, const Plane& plane, DrawingContext& to);
void draw(const ACAD_CIRCLE& r, const Plane& plane, DrawingContext& to);
void draw(const ACAD_ARC& r, const Plane& plane, DrawingContext& to);
void draw(const ACAD_POLYLINE& r, const Plane& plane, DrawingContext& to);
void draw(const ACAD_SOLID& r, const Plane& plane, DrawingContext& to);
void draw(const ACAD_3DFACE& r, const Plane& plane, DrawingContext& to);
inline void draw(const ACAD_INSERT&, const Plane&, DrawingContext&) {}

/// Any entity; a program's own kind draws itself.
void draw_entity(ACAD_ENTITY& entity, const Plane& plane, DrawingContext& to);
/// The entities of a block as an insert places it, without the inserts in it.
void draw_block(const ACAD_BLOCK& block, const ACAD_INSERT& insert, const Plane& plane, DrawingContext& to);

// What the sources of the kinds share.

/// Draws a path of the plane dash by dash, with the pen that is selected; false when the line type has no pattern.
bool draw_dashes(const Path& path, const char* ltype, DrawingContext& to);
/// A figure's segment or arc, straight from its start or clockwise or counter-clockwise, as it is measured.
void draw_shape(const CFShape& shape, const CFPoint& from, const CFPoint& until, DrawingContext& to);
/// Fills a closed polygon, with winding rule. One that reaches beyond what devices fill is cut to the limits first.
void fill(const CPoint* points, int n, COLORREF color, DrawingContext& to);
/// Fills consecutive segments of a polyline, wide ones, as one outline: joints between straight segments are mitred.
/// With `closed` the last is joined to the first.
void fill_wide(const Segment* segments, int n, bool closed, COLORREF color, DrawingContext& to);
/// Whether a width shows more than one pixel.
inline bool is_wide(float width, const DrawingContext& to) {
  return to.coor().FPtoDP(static_cast<double>(width)) > 1;
}

}  // namespace qv::detail
