#pragma once

/// The boxes that records are drawn and picked in.

#include <algorithm>
#include <cmath>

#include "qvtools/dxf/model/internal/points.h"
#include "qvtools/dxf/view/box_grid.h"
#include "qvtools/dxf/view/internal/outline.h"

namespace qv::detail {

/// Letters hang over a text's ends and below its line by less than this many heights.
inline constexpr double kOverhang = 2;

/// How far a text is drawn or picked from its insertion point, in its heights.
inline double text_reach(const ACAD_TEXT& r) {
  return std::fabs(static_cast<double>(text_width(r, 1))) + kOverhang;
}

/// Adds a point; one that is not finite makes the box endless.
inline void add_point(Box& box, const CFPoint& p) {
  if (std::isfinite(p.x) && std::isfinite(p.y))
    box.add(p);
  else
    box = Box::everything();
}

/// Widens a box by a length, and by as much again as single precision may lose.
inline void widen(Box& box, double by) {
  if (box.is_empty()) return;
  constexpr double kLoss = 1e-6;
  const double farthest = std::max({std::fabs(box.x1), std::fabs(box.y1), std::fabs(box.x2), std::fabs(box.y2)});
  const auto d = static_cast<float>(std::fabs(by) + farthest * kLoss);
  box = std::isfinite(d) ? Box{box.x1 - d, box.y1 - d, box.x2 + d, box.y2 + d} : Box::everything();
}

// How far a record can be drawn or picked beyond the box of its points.

double beyond_points(const auto&, const Box&) {
  return 0;
}
inline double beyond_points(const ACAD_POINT&, const Box&) {
  return kPointExtent;
}
inline double beyond_points(const ACAD_TEXT& r, const Box&) {
  return r.m_fHeight * text_reach(r);
}
inline double beyond_points(const ACAD_CIRCLE& r, const Box&) {
  return r.m_fRadius;
}
inline double beyond_points(const ACAD_ARC& r, const Box&) {
  return r.m_fRadius;
}
inline double beyond_points(const ACAD_POLYLINE& r, const Box& box) {
  double width = std::max(std::fabs(r.m_fStartWidth), std::fabs(r.m_fEndWidth));
  double bulge = 0;
  for (const ACAD_VERTEX& vertex : r.m_Vertices) {
    width = std::max<double>({width, std::fabs(vertex.m_fStartWidth), std::fabs(vertex.m_fEndWidth)});
    bulge = std::max<double>(bulge, std::fabs(vertex.m_fBulge));
  }
  // No point of an arc lies farther from its nearer end than its apex does, chord / 2 * sqrt(1 + b^2), which is at most
  // chord * (1 + b) / 2; the tip of a mitre lies within five half widths of its vertex.
  const double chord = std::hypot(static_cast<double>(box.x2) - box.x1, static_cast<double>(box.y2) - box.y1);
  return (bulge > 0 ? chord * (1 + bulge) / 2 : 0) + width * 2.5;
}

/// Where a record can be drawn or picked, in a plane; empty for what is never drawn.
Box reach(const auto& r, const Plane& plane) {
  Box box;
  for_each_point(r, [&](const Point3& p) { add_point(box, plane(p)); });
  widen(box, beyond_points(r, box));
  return box;
}

}  // namespace qv::detail
