#pragma once

/// What extents and picks share: the plane in which entities are measured, and the outlines of the kinds in it.

#include <cmath>

#include "qvtools/dxf/model/block.h"
#include "qvtools/dxf/model/visit.h"
#include "qvtools/geometry/values/shape.h"

namespace qv::detail {

/// The way from points of a record to the plane in which it is measured: in plan, or projected for two view angles;
/// moved by a shift in space (the place of a block's insert).
class Plane {
 public:
  Plane() = default;
  Plane(double a, double b) : plan_(false), ca_(std::cos(a)), sa_(std::sin(a)), cb_(std::cos(b)), sb_(std::sin(b)) {}
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

 private:
  bool plan_ = true;
  double ca_ = 1;
  double sa_ = 0;
  double cb_ = 0;
  double sb_ = 1;
  Point3 shift_;
};

inline CFShape circle_shape(const CFPoint& center, float radius) {
  return {center, radius, 0, 6.2831855F};
}

inline CFShape arc_shape(const ACAD_ARC& arc, const CFPoint& center) {
  constexpr float kRadian = 3.1415927F / 180;
  const float start = arc.m_fStartAngle * kRadian;
  float sweep = arc.m_fEndAngle * kRadian - start;
  if (sweep < 0) sweep += 6.2831855F;
  return {center, arc.m_fRadius, start, sweep};
}

/// Calls f(from, to, bulge) for each segment of a polyline, the closing one included.
template <class F>
void for_each_edge(const ACAD_POLYLINE& polyline, const Plane& plane, const F& f) {
  const int n = polyline.m_Vertices.GetSize();
  const int edges = (polyline.m_nFlags & 1) != 0 && n > 1 ? n : n - 1;
  for (int i = 0; i < edges; ++i) {
    const ACAD_VERTEX& from = polyline.m_Vertices[i];
    f(plane(from.m_Point), plane(polyline.m_Vertices[(i + 1) % n].m_Point), from.m_fBulge);
  }
}

inline bool is_straight(float bulge) {
  return std::fabs(bulge) < 0.0001F;
}

inline CFShape edge_shape(const CFPoint& from, const CFPoint& to, float bulge) {
  if (is_straight(bulge)) return {from, to};
  return {from, to, static_cast<float>(-4 * std::atan(static_cast<double>(bulge)))};
}

/// The turned box of a text, counter-clockwise from its insertion point.
struct TextBox {
  CFPoint corner[4];
  TextBox(const ACAD_TEXT& text, const Plane& plane);
};

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
  return r.m_Vertices.GetSize() == 0;
}

/// How far an insert moves its block.
inline Point3 displacement(const ACAD_BLOCK& block, const ACAD_INSERT& insert) {
  return {insert.m_Insert.x - block.m_Base.x, insert.m_Insert.y - block.m_Base.y, insert.m_Insert.z - block.m_Base.z};
}

}  // namespace qv::detail
