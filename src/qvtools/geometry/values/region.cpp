#include "qvtools/geometry/values/region.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "qvtools/geometry/values/internal/arc_math.h"

using qv::detail::between;
using qv::detail::Vec;

namespace {

/// One edge of an outline, in doubles and relative to its first end.
struct Edge {
  const CFShoot& from;
  const CFShoot& to;
  Vec chord;

  Edge(const CFRegion& region, int i)
      : from(region[i]), to(region[i + 1 < region.GetSize() ? i + 1 : 0]), chord(between(from, to)) {}

  bool straight() const { return from.C == 0; }
  bool circle() const { return from.IsCircle() != 0; }
  double cotangent() const { return circle() ? 0 : 1 / std::tan(from.C / 2.0); }

  /// Twice the signed area between the origin, the edge and back.
  double doubled_area() const {
    const double triangle = static_cast<double>(from.x) * to.y - static_cast<double>(from.y) * to.x;
    if (straight()) return triangle;
    const double half = circle() ? qv::detail::kTurn / 2 : std::fabs(from.C) / 2.0;
    const double r = std::sqrt(chord.dot(chord)) / 2 / (circle() ? 1 : std::sin(half));
    return triangle - std::copysign(r * r * (2 * half - std::sin(2 * half)), from.C);
  }

  /// Which side of the chord p is on, positive to the left. p on the chord counts as shifted right by less than any
  /// distance and up by still less, which is what the half-open crossing rule takes it for.
  double side(const CFPoint& p) const {
    const double cross = chord.cross(between(from, p));
    if (cross != 0) return cross;
    return chord.y != 0 ? -chord.y : chord.x;
  }

  /// Whether the ray from p to the right crosses the chord. The edge ends above the ray or not; no tie is left.
  bool chord_crosses(const CFPoint& p) const {
    const bool up = to.y > p.y;
    return (from.y > p.y) != up && (up ? side(p) > 0 : side(p) < 0);
  }

  /// Whether p lies between the chord and its arc: on the arc's side of the chord and inside the circle, whose equation
  /// is (p - from).(p - to) = -cross / tan(C / 2) for every included angle C.
  bool segment_holds(const CFPoint& p) const {
    const Vec a = between(from, p), b = between(to, p);
    if (circle()) return a.dot(b) < 0;
    if (from.C < 0 ? side(p) > 0 : side(p) < 0) return false;
    return a.dot(b) < -chord.cross(a) * cotangent();
  }
};

/// Grows [low, high] by the quadrant points of the arc of an edge.
void include_arc(const Edge& edge, Vec& low, Vec& high) {
  const double off = edge.cotangent() / 2;
  const Vec centre{edge.chord.x / 2 + edge.chord.y * off, edge.chord.y / 2 - edge.chord.x * off};
  const double r = centre.length();
  if (!std::isfinite(r)) return;
  const auto on_arc = [&](double x, double y) {
    const double cross = edge.chord.cross({centre.x + x, centre.y + y});
    return edge.circle() || (edge.from.C < 0 ? cross < 0 : cross > 0);
  };
  if (on_arc(r, 0)) high.x = (std::max)(high.x, edge.from.x + centre.x + r);
  if (on_arc(0, r)) high.y = (std::max)(high.y, edge.from.y + centre.y + r);
  if (on_arc(-r, 0)) low.x = (std::min)(low.x, edge.from.x + centre.x - r);
  if (on_arc(0, -r)) low.y = (std::min)(low.y, edge.from.y + centre.y - r);
}

double distance_to_segment(const Edge& edge, const CFPoint& p) {
  const Vec v = between(edge.from, p);
  const double length2 = edge.chord.dot(edge.chord);
  const double t = length2 > 0 ? std::clamp(edge.chord.dot(v) / length2, 0.0, 1.0) : 0;
  return Vec{v.x - edge.chord.x * t, v.y - edge.chord.y * t}.length();
}

/// The distance within which points on the outline, computed along different edges, count as one.
float grain(const CFRegion& region) {
  double largest = 0;
  for (const CFShoot& v : region) largest = (std::max)(largest, qv::detail::resolution({v}));
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

/// The part of a figure, from 0 at its start to 1 at its end, that lies before the point p on it.
double part_before(const CFShape& shape, const CFPoint& p) {
  const Vec v = between(shape, p);
  const double start = shape.R < 0 ? shape.A + qv::kPi : shape.A;
  if (shape.B == 0) return v.turned_back(start).x / shape.GetR();
  const double sweep = (std::min)(std::fabs(1.0 * shape.B), qv::detail::kTurn);
  return qv::detail::along_sweep(std::atan2(v.y, v.x) - start, shape.B) / sweep;
}

CFPoint point_at(const CFShape& shape, double part) {
  const Vec v =
      shape.B == 0 ? Vec{shape.R * part, 0}.turned(shape.A) : Vec{shape.R, 0}.turned(shape.A + shape.B * part);
  return {static_cast<float>(shape.x + v.x), static_cast<float>(shape.y + v.y)};
}

/// The parts of a figure at which it meets the outline or passes a vertex that lies on it, with 0 and 1, in order.
std::vector<double> cuts(const CFRegion& region, const CFShape& shape, float tol) {
  std::vector<double> parts{0, 1};
  for (int i = 0; i < region.GetSize(); ++i) {
    CFPoint found[4];
    int n = shape.Intersect(region.GetEdge(i), found, 0, 0);
    if (n < 0) n = 0;
    if (shape.DistanceToFigure(region[i]) <= tol) found[n++] = region[i];
    for (int k = 0; k < n; ++k) parts.push_back(std::clamp(part_before(shape, found[k]), 0.0, 1.0));
  }
  std::sort(parts.begin(), parts.end());
  return parts;
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
  CArray::operator=(other);
  return *this;
}

void CFRegion::Init(const CFPoint* points, int n) {
  SetSize(n);
  for (int i = 0; i < n; ++i) (*this)[i] = CFShoot(points[i]);
}

CFShape CFRegion::GetEdge(int i) const {
  const Edge edge(*this, i);
  return edge.straight() ? CFShape(edge.from, edge.to) : CFShape(edge.from, edge.to, edge.from.C);
}

void CFRegion::GetRect(CFPoint& p1, CFPoint& p2) const {
  p1 = p2 = CFPoint(0, 0);
  if (GetSize() == 0) return;
  Vec low{(*this)[0].x, (*this)[0].y}, high = low;
  for (int i = 0; i < GetSize(); ++i) {
    const Edge edge(*this, i);
    low = {(std::min)(low.x, 1.0 * edge.from.x), (std::min)(low.y, 1.0 * edge.from.y)};
    high = {(std::max)(high.x, 1.0 * edge.from.x), (std::max)(high.y, 1.0 * edge.from.y)};
    if (!edge.straight()) include_arc(edge, low, high);
  }
  p1 = {static_cast<float>(low.x), static_cast<float>(low.y)};
  p2 = {static_cast<float>(high.x), static_cast<float>(high.y)};
}

int CFRegion::IsOrder() const {
  double area = 0;
  for (int i = 0; i < GetSize(); ++i) area += Edge(*this, i).doubled_area();
  return area > 0;
}

int CFRegion::InRegion(const CFPoint& p) const {
  bool inside = false;
  for (int i = 0; i < GetSize(); ++i) {
    const Edge edge(*this, i);
    inside ^= edge.chord_crosses(p);
    if (!edge.straight()) inside ^= edge.segment_holds(p);
  }
  return inside;
}

int CFRegion::HitTest(const CFPoint& p, float tol) const {
  for (int i = 0; i < GetSize(); ++i) {
    const Edge edge(*this, i);
    const double d = edge.straight() ? distance_to_segment(edge, p) : GetEdge(i).DistanceToFigure(p);
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
  const float slack = grain(*this);
  if (from.x > high.x + slack || to.x < low.x - slack || from.y > high.y + slack || to.y < low.y - slack) return 0;
  if (mode != 0) {
    for (int i = 0; i < GetSize(); ++i) {
      CFPoint found[2];
      if (shape.Intersect(GetEdge(i), found, 0, 0) != 0) return 1;
    }
    return InRegion(shape.GetMiddlePoint());
  }
  if (!box.FpInFRect(from, slack) || !box.FpInFRect(to, slack)) return 0;
  if (shape.IsPoint()) return inside_or_on(*this, shape, slack);
  const std::vector<double> parts = cuts(*this, shape, slack);
  for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
    if (!inside_or_on(*this, point_at(shape, (parts[i] + parts[i + 1]) / 2), slack)) return 0;
  }
  return 1;
}

int CFRegion::Contain(const CFPoint& p1, const CFPoint& p2) const {
  if (GetSize() == 0) return 0;
  CFPoint low, high;
  GetRect(low, high);
  if (low.Contain(p1, p2) && high.Contain(p1, p2)) return 1;
  if (!(p1.x > p2.x)) return 0;
  for (int i = 0; i < GetSize(); ++i) {
    if (GetEdge(i).Contain(p1, p2)) return 1;
  }
  return 0;
}

int CFRegion::Intersect(const CFShape& shape, CFPoint* out) const {
  const float tol = grain(*this);
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
  const float tol = (std::max)(grain(*this), grain(other));
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
  for (int i = 0; i < GetSize(); ++i) {
    const CFShape edge = GetEdge(i);
    for (int k = 0; k < other.GetSize(); ++k) {
      CFPoint found[2];
      if (edge.Intersect(other.GetEdge(k), found, 0, 0) != 0) return 1;
    }
  }
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
    archive << static_cast<std::uint32_t>(GetSize());
    for (CFShoot& v : *this) v.Serialize(archive);
    return;
  }
  std::uint32_t count = 0;
  archive >> count;
  CFRegion loaded;
  for (std::uint32_t i = 0; i < count && !archive.Failed(); ++i) {
    CFShoot v;
    v.Serialize(archive);
    loaded.Add(v);
  }
  if (!archive.Failed()) *this = loaded;
}
