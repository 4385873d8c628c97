#include "qvtools/dxf/view/internal/draw.h"

#include <cstring>
#include <numbers>

#include "qvtools/fonts/internal/text_drawing.h"

namespace qv::detail {

PenStyle pen_style(const char* ltype) {
  const char* d = std::strchr(ltype, 'D');
  if (!d) return PenStyle::Solid;  // BYLAYER, CONTINUOUS and all others without the words
  if (std::strstr(d, "DASHED")) return PenStyle::Dash;
  if (std::strstr(d, "DASHDOT")) return PenStyle::DashDot;
  return std::strstr(d, "DOT") ? PenStyle::Dot : PenStyle::Solid;
}

namespace {

void draw_straight(const CFPoint& from, const CFPoint& until, DrawingContext& to) {
  CSafeDC& safe = to.safe();
  safe.MoveTo(to.coor().FPtoDP(from));
  safe.LineTo(to.coor().FPtoDP(until));
}

/// The square of a circle on the device, in order whichever way Y runs.
CRect device_square(const CFPoint& center, float radius, const CFCoor& coor) {
  CRect square = coor.FPtoDP(CFRect(center.x - radius, center.y - radius, center.x + radius, center.y + radius));
  if (square.top > square.bottom) std::swap(square.top, square.bottom);
  if (square.left > square.right) std::swap(square.left, square.right);
  return square;
}

/// An arc of at most half a turn or so, counter-clockwise in the world; with Y not reversed it runs clockwise on the
/// device.
void draw_part(const CFPoint& center, float radius, const CFPoint& from, const CFPoint& until, DrawingContext& to) {
  const CFCoor& coor = to.coor();
  const CRect square = device_square(center, radius, coor);
  const CPoint start = coor.FPtoDP(from);
  const CPoint end = coor.FPtoDP(until);
  if (coor.IsReverseY())
    to.safe().Arc(&square, start, end);
  else
    to.safe().Arc(&square, end, start);
}

/// A whole circle, in two halves, so that one far larger than the window is clipped correctly.
void draw_circle(const CFPoint& center, float radius, DrawingContext& to) {
  const CFPoint right(center.x + radius, center.y);
  const CFPoint left(center.x - radius, center.y);
  draw_part(center, radius, right, left, to);
  draw_part(center, radius, left, right, to);
}

/// What of the plane the limits of a device can show, and a little more.
PathRect seen_by(DrawingContext& to) {
  constexpr int kMargin = 4;
  const CRect limits = to.safe().Limits();
  const CFPoint a = to.coor().DPtoFP(CPoint(limits.left - kMargin, limits.top - kMargin));
  const CFPoint b = to.coor().DPtoFP(CPoint(limits.right + kMargin, limits.bottom + kMargin));
  return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

}  // namespace

bool draw_dashes(const Path& path, const char* ltype, DrawingContext& to) {
  const DashPattern* const pattern = to.pattern(ltype);
  if (!pattern) return false;
  Path dashes;
  // A dot is a pixel.
  dash(path, *pattern, 1 / std::fabs(double{to.coor().GetScale()}), seen_by(to), dashes);
  CFPoint from;
  for (const Path::Piece& piece : dashes.pieces()) {
    const CFPoint until(static_cast<float>(piece.to.x), static_cast<float>(piece.to.y));
    if (piece.kind == Path::Kind::Line) draw_straight(from, until, to);
    if (piece.kind == Path::Kind::Arc) {
      const CFPoint center(static_cast<float>(piece.center.x), static_cast<float>(piece.center.y));
      const auto radius = static_cast<float>(distance(piece.to, piece.center));
      draw_shape({center, radius, std::atan2(from.y - center.y, from.x - center.x), static_cast<float>(piece.sweep)},
                 from, until, to);
    }
    from = until;
  }
  return true;
}

bool draw_dashed(const ACAD_LINE& r, const Plane& plane, DrawingContext& to) {
  const CFPoint start = plane(r.m_Start);
  const CFPoint end = plane(r.m_End);
  if (!to.pattern(r.m_szLType) || to.safe().IsOutside(to.coor().FPtoDP(start), to.coor().FPtoDP(end))) return false;
  Path path;
  path.move_to({start.x, start.y});
  path.line_to({end.x, end.y});
  to.select(PenStyle::Solid, r.m_nColor);
  return draw_dashes(path, r.m_szLType, to);
}

void draw_shape(const CFShape& shape, const CFPoint& from, const CFPoint& until, DrawingContext& to) {
  const CFPoint center(shape.x, shape.y);
  const float radius = shape.R;
  if (shape.IsCircle()) return draw_circle(center, radius, to);
  if (!shape.IsArc()) return draw_straight(from, until, to);
  const bool clockwise = shape.B < 0;
  const CFPoint& first = clockwise ? until : from;
  const CFPoint& last = clockwise ? from : until;
  // Device points tell an arc from its rest of the circle only while they lie well apart.
  if (std::fabs(shape.B) <= std::numbers::pi_v<float>) return draw_part(center, radius, first, last, to);
  const CFPoint middle = shape.GetMiddlePoint();
  draw_part(center, radius, first, middle, to);
  draw_part(center, radius, middle, last, to);
}

void draw(const ACAD_POINT& r, const Plane& plane, DrawingContext& to) {
  to.safe().SetPixel(to.coor().FPtoDP(plane(r.m_Point)), 0);
}

void draw(const ACAD_TEXT& r, const Plane& plane, DrawingContext& to) {
  const CFCoor& coor = to.coor();
  const CPoint at = coor.FPtoDP(plane(r.m_Insert));
  to.select(pen_style(r.m_szLType, to), r.m_nColor);
  const auto height = static_cast<float>(coor.FPtoDP(static_cast<double>(r.m_fHeight)));
  const auto angle = static_cast<float>(r.m_fRotation * std::numbers::pi / 180);
  const auto draw_in = is_in_text_font(r) ? draw_txt : draw_hz;
  draw_in(G_ShapeFont, to.safe(), at, r.m_szText, height, angle, height * r.m_fWidthFactor, 1);
}

void draw(const ACAD_CIRCLE& r, const Plane& plane, DrawingContext& to) {
  to.select(pen_style(r.m_szLType, to), r.m_nColor);
  const CFPoint center = plane(r.m_Center);
  if (to.has_patterns()) {
    Path path;
    path.move_to({double{center.x} + r.m_fRadius, center.y});
    path.arc_to(path.end(), {center.x, center.y}, 2 * std::numbers::pi);
    if (draw_dashes(path, r.m_szLType, to)) return;
  }
  draw_circle(center, r.m_fRadius, to);
}

void draw(const ACAD_ARC& r, const Plane& plane, DrawingContext& to) {
  const CFPoint center = plane(r.m_Center);
  const CFShape shape = arc_shape(r, center);
  if (shape.B == 0) return;
  to.select(pen_style(r.m_szLType, to), r.m_nColor);
  const auto on_arc = [&](double degrees) {
    const double angle = degrees * std::numbers::pi / 180;
    return CFPoint(static_cast<float>(center.x + r.m_fRadius * std::cos(angle)),
                   static_cast<float>(center.y + r.m_fRadius * std::sin(angle)));
  };
  const CFPoint start = on_arc(r.m_fStartAngle);
  const CFPoint end = on_arc(r.m_fEndAngle);
  if (to.has_patterns()) {
    Path path;
    path.move_to({start.x, start.y});
    path.arc_to({end.x, end.y}, {center.x, center.y}, shape.B);
    if (draw_dashes(path, r.m_szLType, to)) return;
  }
  draw_shape(shape, start, end, to);
}

void draw(const ACAD_SOLID& r, const Plane& plane, DrawingContext& to) {
  const auto corner = [&](int i) { return to.coor().FPtoDP(plane(r.m_Corner[i])); };
  const CPoint corners[4] = {corner(0), corner(1), corner(3), corner(2)};
  fill(corners, 4, to.ink(r.m_nColor), to);
}

void draw(const ACAD_3DFACE& r, const Plane& plane, DrawingContext& to) {
  to.select(pen_style(r.m_szLType, to), r.m_nColor);
  if (to.has_patterns()) {
    Path path;
    for (int i = 0; i <= 4; ++i) {
      const CFPoint corner = plane(r.m_Corner[i % 4]);
      i == 0 ? path.move_to({corner.x, corner.y}) : path.line_to({corner.x, corner.y});
    }
    if (draw_dashes(path, r.m_szLType, to)) return;
  }
  for (int i = 0; i < 4; ++i) draw_straight(plane(r.m_Corner[i]), plane(r.m_Corner[(i + 1) % 4]), to);
}

namespace {

/// A program's own kind draws itself: displaced in plan, and in space on a transform that is displaced.
void draw_own(ACAD_ENTITY& entity, const Plane& plane, DrawingContext& to) {
  CFCoor coor = to.coor();
  const CFPoint shift = plane.shift();
  if (plane.is_plan()) return entity.Draw(to.dc(), &coor, shift.x, shift.y);
  const CFPoint origin = coor.GetOrigin();
  coor.SetOrigin({origin.x - shift.x, origin.y - shift.y});
  entity.Draw3D(to.dc(), &coor, plane.a(), plane.b());
}

}  // namespace

void draw_entity(ACAD_ENTITY& entity, const Plane& plane, DrawingContext& to) {
  visit_record(
      entity, [&](const auto& record) { draw(record, plane, to); },
      [&](ACAD_ENTITY& own) { draw_own(own, plane, to); });
}

void draw_block(const ACAD_BLOCK& block, const ACAD_INSERT& insert, const Plane& plane, DrawingContext& to) {
  const Plane placed = plane.moved(displacement(block, insert));
  walk_block(block, [&](ACAD_ENTITY& entity) {
    draw_entity(entity, placed, to);
    return to.is_given_up();
  });
}

}  // namespace qv::detail
