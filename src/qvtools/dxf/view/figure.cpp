#include "qvtools/dxf/view/internal/figure.h"

#include <algorithm>

#include "qvtools/dxf/view/measure.h"

namespace qv {

namespace detail {

bool Figure::holds(const PlanePoint& p, double tolerance) const {
  if (is_arc()) return holds_angle(std::atan2(p.y - center.y, p.x - center.x), tolerance / radius);
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double square = dx * dx + dy * dy;
  if (square == 0) return distance(p, a) <= tolerance;
  const double t = ((p.x - a.x) * dx + (p.y - a.y) * dy) / square;
  const double over = tolerance / std::sqrt(square);
  return t >= -over && t <= 1 + over;
}

PlanePoint Figure::nearest(const PlanePoint& p) const {
  if (is_arc()) {
    const double angle = std::atan2(p.y - center.y, p.x - center.x);
    if (holds_angle(angle, 0)) return at_angle(angle);
    return distance(p, a) <= distance(p, b) ? a : b;
  }
  const double dx = b.x - a.x, dy = b.y - a.y;
  const double square = dx * dx + dy * dy;
  if (square == 0) return a;
  const double t = std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / square, 0.0, 1.0);
  return {a.x + t * dx, a.y + t * dy};
}

Figure Figure::bulged(const PlanePoint& from, const PlanePoint& to, double bulge) {
  // The centre lies beside the middle of the chord by (1 - b^2) / (4 b) chords, to the left of the way.
  const double side = (1 - bulge * bulge) / (4 * bulge);
  const PlanePoint c{(from.x + to.x) / 2 - side * (to.y - from.y), (from.y + to.y) / 2 + side * (to.x - from.x)};
  const double r = distance(c, from);
  if (!(r > 0) || !std::isfinite(r)) return line(from, to);
  const PlanePoint& first = bulge > 0 ? from : to;
  Figure f = arc(c, r, std::atan2(first.y - c.y, first.x - c.x), 4 * std::atan(std::fabs(bulge)));
  f.a = from;
  f.b = to;
  return f;
}

}  // namespace detail

namespace {

using detail::Figure;
using detail::Plane;

/// Twice the area to the left of the way from a to b, seen from a corner near by, that the figure adds.
double twice_area(const Figure& f, const PlanePoint& corner, bool clockwise) {
  const double straight = (f.a.x - corner.x) * (f.b.y - corner.y) - (f.b.x - corner.x) * (f.a.y - corner.y);
  if (!f.is_arc()) return straight;
  const double segment = f.radius * f.radius * (f.sweep - std::sin(f.sweep));
  return straight + (clockwise ? -segment : segment);
}

EntityMeasures measures(const ACAD_POLYLINE& r) {
  EntityMeasures m;
  double twice = 0;
  std::optional<PlanePoint> corner;
  PlanePoint last;
  detail::for_each_segment(r, Plane(), [&](const detail::Segment& s) {
    const PlanePoint from = detail::exact(s.from), to = detail::exact(s.to);
    const Figure f = s.is_straight() ? Figure::line(from, to) : Figure::bulged(from, to, s.bulge);
    if (!corner) corner = from;
    m.length += f.length();
    twice += twice_area(f, *corner, s.bulge < 0);
    last = to;
  });
  m.area = std::fabs(twice) / 2;
  m.closed = (r.m_nFlags & 1) != 0 || (corner && *corner == last && m.length > 0);
  return m;
}

EntityMeasures measures(const auto& r) {
  EntityMeasures m;
  double twice = 0;
  std::optional<PlanePoint> corner;
  detail::for_each_figure(r, Plane(), [&](const Figure& f) {
    if (!corner) corner = f.a;
    m.length += f.length();
    twice += twice_area(f, *corner, false);
  });
  constexpr bool kFace = requires {
    r.m_Corner;
  };
  constexpr bool kCircle = requires {
    r.m_fRadius;
  }
  &&!requires {
    r.m_fStartAngle;
  };
  m.closed = kFace || kCircle;
  m.area = std::fabs(twice) / 2;
  return m;
}

}  // namespace

EntityMeasures Measure(ACAD_ENTITY& entity) {
  return visit_entity(entity, [](auto& record) { return measures(record); });
}

}  // namespace qv
