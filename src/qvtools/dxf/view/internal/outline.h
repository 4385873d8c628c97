#pragma once

/// What drawing, extents and picks share: the plane of a view, and the outlines of the kinds in it. What is drawn is
/// what is measured; wide polylines are measured along their middle lines.

#include <cmath>

#include "qvtools/dxf/model/block.h"
#include "qvtools/dxf/model/internal/walk.h"
#include "qvtools/dxf/model/visit.h"
#include "qvtools/geometry/values/constants.h"
#include "qvtools/geometry/values/shape.h"

namespace qv::detail {

/// The way from points of a record to the plane of a view: in plan, or projected for two view angles; moved by a shift
/// in space (the place of a block's insert).
class Plane {
 public:
  Plane() = default;
  Plane(float a, float b)
      : plan_(false),
        a_(a),
        b_(b),
        ca_(std::cos(double{a})),
        sa_(std::sin(double{a})),
        cb_(std::cos(double{b})),
        sb_(std::sin(double{b})) {}
  Plane moved(const Point3& shift) const {
    Plane plane = *this;
    plane.shift_ = shift;
    return plane;
  }
  CFPoint operator()(const Point3& p) const {
    const float x = p.x + shift_.x;
    const float y = p.y + shift_.y;
    if (plan_) return {x, y};
    return {static_cast<float>(x * ca_ + y * sa_),
            static_cast<float>((y * ca_ - x * sa_) * sb_ + (p.z + shift_.z) * cb_)};
  }

  bool is_plan() const { return plan_; }
  float a() const { return a_; }
  float b() const { return b_; }
  /// The shift, as it is seen in the plane.
  CFPoint shift() const { return (*this)({0, 0, 0}); }

 private:
  bool plan_ = true;
  float a_ = 0;
  float b_ = HALF_PI_F;
  double ca_ = 1;
  double sa_ = 0;
  double cb_ = 0;
  double sb_ = 1;
  Point3 shift_;
};

inline CFShape circle_shape(const CFPoint& center, float radius) {
  return {center, radius, 0, TWO_PI_F};
}

inline CFShape arc_shape(const ACAD_ARC& arc, const CFPoint& center) {
  constexpr float kRadian = PI_F / 180;
  const float start = arc.m_fStartAngle * kRadian;
  float sweep = arc.m_fEndAngle * kRadian - start;
  if (sweep < 0) sweep += TWO_PI_F;
  return {center, arc.m_fRadius, start, sweep};
}

/// One segment of a polyline in a plane, with its widths at both ends in world units.
struct Segment {
  CFPoint from;
  CFPoint to;
  float bulge;
  float startWidth;
  float endWidth;

  bool is_straight() const { return std::fabs(bulge) < 0.0001F; }
  bool is_point() const { return from.x == to.x && from.y == to.y; }
  CFShape shape() const {
    if (is_straight()) return {from, to};
    return {from, to, static_cast<float>(-4 * std::atan(static_cast<double>(bulge)))};
  }
};

/// Whether the vertex is on the curve: of a fitted curve and of a spline only the computed vertices are.
inline bool is_on_curve(const ACAD_POLYLINE& polyline, const ACAD_VERTEX& vertex) {
  if (polyline.m_nFlags == 2) return vertex.m_nFlags == 1;
  if (polyline.m_nFlags == 4) return vertex.m_nFlags == 8;
  return true;
}

/// The first vertex on the curve; null when there is none.
inline const ACAD_VERTEX* first_vertex(const ACAD_POLYLINE& polyline) {
  for (const ACAD_VERTEX& vertex : polyline.m_Vertices)
    if (is_on_curve(polyline, vertex)) return &vertex;
  return nullptr;
}

/// Calls f(segment) for each segment between consecutive vertices on the curve, the closing one included when flag 1 is
/// set. Vertices have their own widths, or, when none has any, the polyline's.
void for_each_segment(const ACAD_POLYLINE& polyline, const Plane& plane, const auto& f) {
  bool own = false;
  for (const ACAD_VERTEX& v : polyline.m_Vertices) own = own || v.m_fStartWidth != 0 || v.m_fEndWidth != 0;
  const auto segment = [&](const ACAD_VERTEX& a, const ACAD_VERTEX& b) {
    return Segment{plane(a.m_Point), plane(b.m_Point), a.m_fBulge, own ? a.m_fStartWidth : polyline.m_fStartWidth,
                   own ? a.m_fEndWidth : polyline.m_fEndWidth};
  };
  const ACAD_VERTEX* const first = first_vertex(polyline);
  const ACAD_VERTEX* last = nullptr;
  for (const ACAD_VERTEX& vertex : polyline.m_Vertices) {
    if (!is_on_curve(polyline, vertex)) continue;
    if (last) f(segment(*last, vertex));
    last = &vertex;
  }
  if ((polyline.m_nFlags & 1) != 0 && first != last) f(segment(*last, *first));
}

/// Whether a text is drawn with the text font alone; all others mix it with the big font.
bool is_in_text_font(const ACAD_TEXT& text);
/// The width of a text in the font that draws it, at a height, in the height's unit.
float text_width(const ACAD_TEXT& text, float height);

/// The turned box of a text, counter-clockwise from its insertion point.
struct TextBox {
  CFPoint corner[4];
  TextBox(const ACAD_TEXT& text, const Plane& plane);
};

/// The extent of a point, each way.
inline constexpr float kPointExtent = 10;

// The extent of each kind in a plane; the empty rectangle for an insert and a polyline without vertices.
inline CFRect extent(const ACAD_LINE& r, const Plane& plane) {
  return {plane(r.m_Start), plane(r.m_End)};
}
CFRect extent(const ACAD_POINT& r, const Plane& plane);
CFRect extent(const ACAD_TEXT& r, const Plane& plane);
CFRect extent(const ACAD_CIRCLE& r, const Plane& plane);
CFRect extent(const ACAD_ARC& r, const Plane& plane);
CFRect extent(const ACAD_POLYLINE& r, const Plane& plane);
CFRect extent(const ACAD_SOLID& r, const Plane& plane);
CFRect extent(const ACAD_3DFACE& r, const Plane& plane);
inline CFRect extent(const ACAD_INSERT&, const Plane&) {
  return {};
}
/// Whether a record has no extent.
inline bool is_empty(const auto&) {
  return false;
}
inline bool is_empty(const ACAD_POLYLINE& r) {
  return !first_vertex(r);
}
/// The extent of a program's own kind, as it answers itself; null where it has none.
CFRect own_extent(ACAD_ENTITY& entity, const Plane& plane);

/// How far an insert moves its block.
inline Point3 displacement(const ACAD_BLOCK& block, const ACAD_INSERT& insert) {
  return {insert.m_Insert.x - block.m_Base.x, insert.m_Insert.y - block.m_Base.y, insert.m_Insert.z - block.m_Base.z};
}

/// Calls f(entity) for what a placed block shows, its entities without the inserts among them, until f returns true;
/// whether it did.
bool walk_block(const ACAD_BLOCK& block, const auto& f) {
  return walk_until(block.m_EntityList,
                    [&](ACAD_ENTITY& entity) { return entity.GetType() != ACAD_TYPE_INSERT && f(entity); });
}

}  // namespace qv::detail
