#include "qvtools/geometry/values/region.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "qvtools/geometry/values/internal/edge.h"
#include "qvtools/services/internal/out_of_memory.h"

using namespace qv::detail;

namespace {

/// One edge of an outline, in doubles. Its arc has no centre but the included angle C, so that a flat arc, whose centre
/// lies far away, keeps its digits.
struct Edge {
  const CFShoot& from;
  const CFShoot& to;

  Edge(const CFRegion& region, int i) : from(region[i]), to(region[i + 1 < region.GetSize() ? i + 1 : 0]) {}

  bool straight() const { return from.C == 0; }
  bool circle() const { return from.IsCircle() != 0; }
  double cotangent() const { return circle() ? 0 : 1 / std::tan(from.C / 2.0); }
  Vec chord() const { return between(from, to); }

  /// Twice the signed area between the origin, the edge and back.
  double doubled_area() const {
    const double triangle = static_cast<double>(from.x) * to.y - static_cast<double>(from.y) * to.x;
    if (straight()) return triangle;
    const double half = circle() ? kTurn / 2 : std::fabs(from.C) / 2.0;
    const double r = chord().length() / 2 / (circle() ? 1 : std::sin(half));
    return triangle - std::copysign(r * r * unit_segment_area(half), from.C);
  }

  /// Whether the edge changes the parity of p.
  bool changes_parity(const CFPoint& p) const {
    const Chord relative{between(p, from), between(p, to)};
    return relative.crosses_ray() != (!straight() && segment_contains(relative));
  }

  double distance_to_chord(const CFPoint& p) const {
    const Vec d = chord(), v = between(from, p);
    const double length2 = d.dot(d), t = length2 > 0 ? std::clamp(d.dot(v) / length2, 0.0, 1.0) : 0;
    return Vec{v.x - d.x * t, v.y - d.y * t}.length();
  }

  /// Grows a box by the quadrant points of the arc.
  void include_arc(EdgeBox& box) const {
    const Vec d = chord();
    const double off = cotangent() / 2;
    const Vec centre{d.x / 2 + d.y * off, d.y / 2 - d.x * off};
    const double r = centre.length();
    if (!std::isfinite(r)) return;
    const Vec first{-centre.x, -centre.y}, last{d.x - centre.x, d.y - centre.y};
    const Sweep sweep = from.C < 0 ? Sweep{first, last} : Sweep{last, first};
    box.include_arc(from.x + centre.x, from.y + centre.y, r,
                    [&](int i) { return circle() || sweep.contains(kQuadrants[i]); });
  }

 private:
  /// Whether the tested point lies between the chord and its arc: on the arc's side of the chord and inside the circle,
  /// whose equation is p.q = -cross / tan(C / 2) for every included angle C.
  bool segment_contains(const Chord& relative) const {
    const double dot = relative.p.dot(relative.q);
    if (circle()) return dot < 0;
    return relative.on_arc_side(from.C < 0) && dot < -relative.cross() * cotangent();
  }
};

/// The distance within which points on the outline, computed along different edges, count as one.
float outline_tolerance(const CFRegion& region) {
  double largest = 0;
  for (const CFShoot& v : region) largest = (std::max)(largest, resolution({v}));
  return static_cast<float>(8 * largest);
}

/// Appends to the points out[0 .. count) those that are not there yet.
int add_new(CFPoint* out, int count, const CFPoint* found, int n, float tol) {
  for (int i = 0; i < n; ++i) {
    const auto same = [&](const CFPoint& p) { return p.HitTest(found[i], tol) != 0; };
    if (std::none_of(out, out + count, same)) out[count++] = found[i];
  }
  return count;
}

/// The parameter of a point p on a figure, from 0 at its start to 1 at its end.
double parameter_of(const CFShape& shape, const CFPoint& p) {
  const Vec v = between(shape, p);
  const double start = shape.R < 0 ? shape.A + qv::kPi : shape.A;
  if (shape.B == 0) return v.turned_back(start).x / shape.GetR();
  const double sweep = (std::min)(std::fabs(1.0 * shape.B), kTurn);
  return along_sweep(std::atan2(v.y, v.x) - start, shape.B) / sweep;
}

CFPoint point_at(const CFShape& shape, double parameter) {
  const Vec v = shape.B == 0 ? Vec{shape.R * parameter, 0}.turned(shape.A)
                             : Vec{shape.R, 0}.turned(shape.A + shape.B * parameter);
  return {static_cast<float>(shape.x + v.x), static_cast<float>(shape.y + v.y)};
}

/// The parameters at which a figure meets the outline or passes a vertex that lies on it, with 0 and 1, in order.
std::vector<double> cuts(const CFRegion& region, const CFShape& shape, float tol) {
  std::vector<double> parameters{0, 1};
  for (int i = 0; i < region.GetSize(); ++i) {
    CFPoint found[4];
    int n = shape.Intersect(region.GetEdge(i), found, 0, 0);
    if (n < 0) n = 0;
    if (shape.DistanceToFigure(region[i]) <= tol) found[n++] = region[i];
    for (int k = 0; k < n; ++k) parameters.push_back(std::clamp(parameter_of(shape, found[k]), 0.0, 1.0));
  }
  std::sort(parameters.begin(), parameters.end());
  return parameters;
}

bool any_edge(const CFRegion& region, const auto& test) {
  for (int i = 0; i < region.GetSize(); ++i)
    if (test(region.GetEdge(i))) return true;
  return false;
}

bool meet(const CFShape& a, const CFShape& b) {
  CFPoint found[2];
  return a.Intersect(b, found, 0, 0) != 0;
}

bool inside_or_on(const CFRegion& region, const CFPoint& p, float tol) {
  return region.InRegion(p) || region.HitTest(p, tol);
}

}  // namespace

CFRegion::CFRegion(const CFRect& r) {
  const CFPoint corners[] = {{r.x1, r.y1}, {r.x2, r.y1}, {r.x2, r.y2}, {r.x1, r.y2}};
  Init(corners, 4);
}

CFRegion& CFRegion::operator=(const CFRegion& other) {
  unless_out_of_memory([&] { CArray::operator=(other); });
  return *this;
}

void CFRegion::Init(const CFPoint* points, int n) {
  if (!unless_out_of_memory([&] { return SetSize(n), true; }, false)) return;
  for (int i = 0; i < n; ++i) (*this)[i] = CFShoot(points[i]);
}

CFShape CFRegion::GetEdge(int i) const {
  const Edge edge(*this, i);
  return edge.straight() ? CFShape(edge.from, edge.to) : CFShape(edge.from, edge.to, edge.from.C);
}

void CFRegion::GetRect(CFPoint& p1, CFPoint& p2) const {
  p1 = p2 = CFPoint(0, 0);
  if (GetSize() == 0) return;
  EdgeBox box((*this)[0]);
  for (int i = 0; i < GetSize(); ++i) {
    const Edge edge(*this, i);
    box.include(edge.from.x, edge.from.y);
    if (!edge.straight()) edge.include_arc(box);
  }
  p1 = {box.x1, box.y1};
  p2 = {box.x2, box.y2};
}

int CFRegion::IsOrder() const {
  double area = 0;
  for (int i = 0; i < GetSize(); ++i) area += Edge(*this, i).doubled_area();
  return area > 0;
}

int CFRegion::InRegion(const CFPoint& p) const {
  bool inside = false;
  for (int i = 0; i < GetSize(); ++i) inside ^= Edge(*this, i).changes_parity(p);
  return inside;
}

int CFRegion::HitTest(const CFPoint& p, float tol) const {
  for (int i = 0; i < GetSize(); ++i) {
    const Edge edge(*this, i);
    const double d = edge.straight() ? edge.distance_to_chord(p) : GetEdge(i).DistanceToFigure(p);
    if (d <= tol) return 1;
  }
  return 0;
}

int CFRegion::HitShape(const CFShape& shape, int mode) const {
  if (GetSize() == 0) return 0;
  CFPoint low, high, from, to;
  GetRect(low, high);
  shape.GetRect(from, to);
  const CFRect box(low, high);
  const float tol = outline_tolerance(*this);
  if (from.x > high.x + tol || to.x < low.x - tol || from.y > high.y + tol || to.y < low.y - tol) return 0;
  if (mode != 0)
    return any_edge(*this, [&](const CFShape& edge) { return meet(shape, edge); }) || InRegion(shape.GetMiddlePoint());
  if (!box.FpInFRect(from, tol) || !box.FpInFRect(to, tol)) return 0;
  if (shape.IsPoint()) return inside_or_on(*this, shape, tol);
  const auto all_parts_inside = [&] {
    const std::vector<double> parameters = cuts(*this, shape, tol);
    for (std::size_t i = 0; i + 1 < parameters.size(); ++i) {
      if (!inside_or_on(*this, point_at(shape, (parameters[i] + parameters[i + 1]) / 2), tol)) return 0;
    }
    return 1;
  };
  return unless_out_of_memory(all_parts_inside, 0);
}

int CFRegion::Contain(const CFPoint& p1, const CFPoint& p2) const {
  if (GetSize() == 0) return 0;
  CFPoint low, high;
  GetRect(low, high);
  if (low.Contain(p1, p2) && high.Contain(p1, p2)) return 1;
  return p1.x > p2.x && any_edge(*this, [&](const CFShape& edge) { return edge.Contain(p1, p2) != 0; });
}

int CFRegion::Intersect(const CFShape& shape, CFPoint* out) const {
  const float tol = outline_tolerance(*this);
  int count = 0;
  for (int i = 0; i < GetSize(); ++i) {
    CFPoint found[2];
    const int n = GetEdge(i).Intersect(shape, found, 0, 0);
    if (n < 0) return -1;
    count = add_new(out, count, found, n, tol);
  }
  return count;
}

int CFRegion::Intersect(const CFRegion& other, CFPoint* out, int first_only) const {
  const float tol = (std::max)(outline_tolerance(*this), outline_tolerance(other));
  int count = 0;
  for (int i = 0; i < GetSize(); ++i) {
    const CFShape edge = GetEdge(i);
    for (int k = 0; k < other.GetSize(); ++k) {
      CFPoint found[2];
      const int n = edge.Intersect(other.GetEdge(k), found, 0, 0);
      if (n < 0) return -1;
      count = add_new(out, count, found, n, tol);
      if (first_only && count > 0) return 1;
    }
  }
  return count;
}

int CFRegion::Intersect(const CFRegion& other, int inside) const {
  if (GetSize() == 0 || other.GetSize() == 0) return 0;
  const auto meets_other = [&](const CFShape& edge) {
    return any_edge(other, [&](const CFShape& of_other) { return meet(edge, of_other); });
  };
  if (any_edge(*this, meets_other)) return 1;
  return inside && (InRegion(CFPoint(other[0])) || other.InRegion(CFPoint((*this)[0])));
}

CFRegion& CFRegion::Offset(const CFPoint& by) {
  for (CFShoot& v : *this) v += by;
  return *this;
}

CFRegion& CFRegion::Rotate(const CFPoint& c, double a) {
  for (CFShoot& v : *this) v.Rotate(c, a);
  return *this;
}

CFRegion& CFRegion::Mirror(const CFPoint& p1, const CFPoint& p2) {
  for (CFShoot& v : *this) {
    v.Mirror(p1, p2);
    v.C = -v.C;
  }
  return *this;
}

CFRegion& CFRegion::Stretch(const CFPoint& c, double k) {
  for (CFShoot& v : *this) v.Stretch(c, k);
  return *this;
}

void CFRegion::Serialize(CArchive& archive) {
  if (archive.IsStoring()) {
    unless_out_of_memory([&] {
      archive << static_cast<std::uint32_t>(GetSize());
      for (CFShoot& v : *this) v.Serialize(archive);
    });
    return;
  }
  std::uint32_t count = 0;
  archive >> count;
  unless_out_of_memory([&] {
    CFRegion loaded;
    for (std::uint32_t i = 0; i < count && !archive.Failed(); ++i) {
      CFShoot v;
      v.Serialize(archive);
      loaded.Add(v);
    }
    if (!archive.Failed()) Swap(loaded);
  });
}
