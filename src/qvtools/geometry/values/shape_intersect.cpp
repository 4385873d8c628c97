#include <algorithm>
#include <array>

#include "qvtools/geometry/values/internal/edge.h"
#include "qvtools/geometry/values/shape.h"

// Every figure is a carrier (a point, an infinite line or a full circle) with a range of parameters on it: lengths from
// the start of a line, angles from the start of an arc.

using namespace qv::detail;

namespace {

constexpr double kParallel = 3e-7;  // the sine that two rounded directions can differ by
constexpr int kCoincide = -1;

struct Figure {
  const CFShape& shape;
  double size;   // length or radius
  double start;  // direction of an arc's start point seen from its centre
  double sweep;  // turn of an arc, never negative
  bool round;
  bool whole;      // all of the carrier
  LineFrame line;  // of a line, from its start to its end

  Figure(const CFShape& s, int unbounded)
      : shape(s),
        size(s.GetR()),
        start(s.IsPoint() ? 0
              : s.R < 0   ? s.A + qv::kPi
                          : s.A),
        sweep(s.IsPoint() ? 0 : (std::min)(std::fabs(1.0 * s.B), kTurn)),
        round(s.IsArc() || s.IsCircle()),
        whole(s.IsCircle() || (s.IsLine() && unbounded)),
        line(LineFrame::with_unit({s.x, s.y}, unit_of(s))) {}

  const Vec& base() const { return line.base; }
  Vec from_base(const Vec& p) const { return {p.x - shape.x, p.y - shape.y}; }
  double largest() const { return (std::max)({std::fabs(1.0 * shape.x), std::fabs(1.0 * shape.y), size}); }

  /// The parameter of a point of the carrier; negative for points of a circle that lie just before the arc's start.
  double parameter(const Vec& p) const {
    if (!round) return line.along(p);
    const Vec v = from_base(p);
    const double turned = along_sweep(std::atan2(v.y, v.x) - start, shape.B);
    return turned > (kTurn + sweep) / 2 ? turned - kTurn : turned;
  }
  bool contains(const Vec& p, double eps) const {
    if (whole) return true;
    const double tolerance = round ? eps / size : eps, end = round ? sweep : size;
    const double u = parameter(p);
    return -tolerance <= u && u <= end + tolerance;
  }
  /// The signed distance of a point from an infinite line, positive to the left; from a circle, positive outside.
  double offset(const Vec& p) const {
    if (!round && !shape.IsPoint()) return line.across(p);
    return from_base(p).length() - (round ? size : 0);
  }

 private:
  static Vec unit_of(const CFShape& s) {
    if (!s.IsLine()) return {1, 0};
    const Vec unit = Direction(s.A).unit;
    return s.R < 0 ? Vec{-unit.x, -unit.y} : unit;
  }
};

struct Crossings {
  const Figure& a;
  const Figure& b;
  double eps;
  std::array<Vec, 2> points{};
  int count = 0;

  /// Takes a crossing of the carriers when it lies on both figures.
  void offer(const Vec& p) {
    if (a.contains(p, eps) && b.contains(p, eps)) points[static_cast<std::size_t>(count++)] = p;
  }
};

void cross_point(Crossings& found, const Figure& point, const Figure& other) {
  if (std::fabs(other.offset(point.base())) <= found.eps) found.offer(point.base());
}

int cross_collinear(Crossings& found, const Figure& a, const Figure& b) {
  if (a.whole || b.whole) return kCoincide;
  const double t0 = a.parameter(b.base()), t1 = a.parameter(b.line.at(b.size));
  const double low = (std::max)(0.0, (std::min)(t0, t1)), high = (std::min)(a.size, (std::max)(t0, t1));
  if (high - low > found.eps) return kCoincide;
  if (high - low >= -found.eps) found.offer(a.line.at((low + high) / 2));
  return found.count;
}

int cross_lines(Crossings& found, const Figure& a, const Figure& b) {
  const double det = a.line.span.cross(b.line.span);
  if (std::fabs(det) <= kParallel) {
    return std::fabs(a.line.across(b.base())) <= found.eps ? cross_collinear(found, a, b) : 0;
  }
  found.offer(a.line.at(a.from_base(b.base()).cross(b.line.span) / det));
  return found.count;
}

/// Half the chord that a line or circle cuts at the distance `distance` from the centre; 0 for a tangent within the
/// resolution, negative where there is no crossing.
double half_chord(double r, double distance, double eps) {
  if (distance > r + eps) return -1;
  return distance >= r - eps / 4 ? 0 : qv::detail::half_chord(r * r, distance * distance);
}

int cross_line_circle(Crossings& found, const Figure& line, const Figure& circle) {
  const double foot = line.parameter(circle.base());
  const double h = half_chord(circle.size, std::fabs(line.offset(circle.base())), found.eps);
  if (h < 0) return 0;
  found.offer(line.line.at(foot - h));
  if (h > 0) found.offer(line.line.at(foot + h));
  return found.count;
}

/// Arcs on one circle: over a stretch in common, or end to end in up to two points.
int cross_same_circle(Crossings& found, const Figure& a, const Figure& b) {
  const auto first = [](const Figure& f) { return f.shape.B < 0 ? f.start - f.sweep : f.start; };
  const double ahead = normalize_angle(first(b) - first(a)), tolerance = found.eps / a.size;
  double contacts[2];
  int n = 0;
  for (const double from : {ahead, ahead - kTurn}) {
    const double low = (std::max)(0.0, from), high = (std::min)(a.sweep, from + b.sweep);
    if (high - low > tolerance) return kCoincide;
    if (high - low >= -tolerance) contacts[n++] = first(a) + (low + high) / 2;
  }
  for (int i = 0; i < n; ++i) {
    found.offer({a.shape.x + a.size * std::cos(contacts[i]), a.shape.y + a.size * std::sin(contacts[i])});
  }
  return found.count;
}

int cross_circles(Crossings& found, const Figure& a, const Figure& b) {
  const double distance = a.from_base(b.base()).length(), eps = found.eps;
  if (distance <= eps) return std::fabs(a.size - b.size) <= eps ? cross_same_circle(found, a, b) : 0;
  if (distance > a.size + b.size + eps || distance < std::fabs(a.size - b.size) - eps) return 0;
  const CentreLine line(a.base(), b.base(), distance);
  const double s = line.foot(a.size, b.size);
  const double h = (std::max)(0.0, half_chord(a.size, std::fabs(s), eps));
  // A tangent point lies on the circle a, even where s falls short of it or beyond.
  const double along = h > 0 ? s : std::copysign(a.size, s);
  found.offer(line.at(along, -h));
  if (h > 0) found.offer(line.at(along, h));
  return found.count;
}

int cross(Crossings& found, const Figure& a, const Figure& b) {
  if (a.shape.IsPoint() || b.shape.IsPoint()) {
    a.shape.IsPoint() ? cross_point(found, a, b) : cross_point(found, b, a);
    return found.count;
  }
  if (a.round && b.round) return cross_circles(found, a, b);
  if (!a.round && !b.round) return cross_lines(found, a, b);
  return a.round ? cross_line_circle(found, b, a) : cross_line_circle(found, a, b);
}

}  // namespace

int CFShape::Intersect(const CFShape& s, CFPoint* out, int flag1, int flag2) const {
  const Figure a(*this, flag1), b(s, flag2);
  Crossings found{a, b, 5e-7 * (std::max)(a.largest(), b.largest())};
  const int count = cross(found, a, b);
  if (count == 2 && a.parameter(found.points[1]) < a.parameter(found.points[0]))
    std::swap(found.points[0], found.points[1]);
  for (int i = 0; i < count; ++i) {
    const Vec& p = found.points[static_cast<std::size_t>(i)];
    out[i] = CFPoint(static_cast<float>(p.x), static_cast<float>(p.y));
  }
  return count;
}
