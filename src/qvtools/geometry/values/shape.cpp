#include "qvtools/geometry/values/shape.h"

#include <algorithm>
#include <limits>

#include "qvtools/geometry/values/internal/edge.h"
#include "qvtools/geometry/values/rect.h"
#include "qvtools/platform/framework.h"

using namespace qv::detail;

namespace {

CFPoint circle_point(const CFPoint& base, double r, double angle) {
  return {static_cast<float>(base.x + r * std::cos(angle)), static_cast<float>(base.y + r * std::sin(angle))};
}

/// A point in the frame of a line: along it from its start to its end, and to the left of its stored direction, with
/// the tolerance that the rounding of the direction leaves in the latter.
struct BesideLine {
  double along;
  double left;
  double tolerance;

  BesideLine(const CFShape& line, const CFPoint& p) {
    const Direction d(line.A);
    const auto stored = LineFrame::with_unit({line.x, line.y}, d.unit);
    along = line.R < 0 ? -stored.along({p.x, p.y}) : stored.along({p.x, p.y});
    left = stored.across({p.x, p.y});
    tolerance = std::fabs(along) * d.tolerance;
  }
};

/// The angle in [0, 2 pi) from the start of an arc to `direction`, seen from its centre, in the sense of its sweep.
double turned_to(const CFShape& s, double direction) {
  return along_sweep(direction - (s.R < 0 ? s.A + qv::kPi : s.A), s.B);
}

/// Whether a direction from the centre meets the arc extended by the angles `before` and `after`.
bool within_sweep(const CFShape& s, double direction, double before, double after) {
  const double turned = turned_to(s, direction);
  return turned <= std::fabs(s.B) + after || turned - kTurn >= -before;
}

}  // namespace

CFShape::CFShape(const CFPoint& p1, const CFPoint& p2) : CFPoint(p1), R(static_cast<float>(p1.Distance(p2))), B(0) {
  const Vec v = between(p1, p2);
  A = static_cast<float>(std::atan2(v.y, v.x));
}

CFShape::CFShape(const CFPoint& p1, const CFPoint& p2, float c) : CFShape(p1, p2) {
  if (c == 0 || R == 0) return;
  const Vec chord = between(p1, p2);
  const double d = chord.length();
  const bool full = std::fabs(c) >= qv::kTwoPi;
  // The centre lies off the middle of the chord by `off` chord lengths, to the left of p1 p2 for an arc that turns
  // left.
  const double half = c / 2.0;
  const double off = full ? 0 : -0.5 / std::tan(half);
  const double r = full ? d / 2 : d / (2 * std::sin(std::fabs(half)));
  if (!(r <= (std::numeric_limits<float>::max)())) return;
  const Vec centre{p1.x + chord.x / 2 - chord.y * off, p1.y + chord.y / 2 + chord.x * off};
  *this = CFShape(CFPoint(static_cast<float>(centre.x), static_cast<float>(centre.y)), static_cast<float>(r),
                  static_cast<float>(std::atan2(p1.y - centre.y, p1.x - centre.x)), -c);
}

CFShape::CFShape(const CFPoint& p1, const CFPoint& p2, const CFPoint& p3) : CFShape(p1, p3) {
  // Circumcentre relative to p1 (Cramer's rule on the two bisectors).
  const Vec u = between(p1, p2), v = between(p1, p3);
  const double det = 2 * u.cross(v), uu = u.dot(u), vv = v.dot(v);
  const Vec centre{(v.y * uu - u.y * vv) / det, (u.x * vv - v.x * uu) / det};
  const double r = centre.length();
  const bool straight = std::fabs(det) <= 2 * v.length() * resolution({p1, p2, p3});
  if (straight || !(r <= (std::numeric_limits<float>::max)())) return;
  // p2 right of p1 p3 makes the arc turn left.
  const double start = std::atan2(-centre.y, -centre.x);
  const double end = std::atan2(v.y - centre.y, v.x - centre.x);
  const double sweep = along_sweep(end - start, det);
  *this = CFShape(CFPoint(static_cast<float>(p1.x + centre.x), static_cast<float>(p1.y + centre.y)),
                  static_cast<float>(r), static_cast<float>(start), static_cast<float>(det < 0 ? -sweep : sweep));
}

CFPoint CFShape::GetStartPoint() const {
  return IsPoint() || B == 0 ? CFPoint(*this) : circle_point(*this, R, A);
}

CFPoint CFShape::GetEndPoint() const {
  if (IsPoint()) return *this;
  return circle_point(*this, R, B != 0 ? static_cast<double>(A) + B : A);
}

CFPoint CFShape::GetMiddlePoint() const {
  if (IsPoint()) return *this;
  if (B == 0) return circle_point(*this, R / 2.0, A);
  if (IsCircle()) return {x, y + std::fabs(R)};
  return circle_point(*this, R, A + B / 2.0);
}

double CFShape::GetLength() const {
  return IsPoint() || B == 0 ? std::fabs(R) : std::fabs(static_cast<double>(R) * B);
}

void CFShape::GetRect(CFPoint& p1, CFPoint& p2) const {
  const float reach = IsCircle() ? GetR() : 0;
  const CFPoint a = IsCircle() ? CFPoint(x - reach, y - reach) : GetStartPoint();
  const CFPoint b = IsCircle() ? CFPoint(x + reach, y + reach) : GetEndPoint();
  p1 = {(std::min)(a.x, b.x), (std::min)(a.y, b.y)};
  p2 = {(std::max)(a.x, b.x), (std::max)(a.y, b.y)};
  if (!IsArc()) return;
  EdgeBox box(p1);
  box.include(p2.x, p2.y);
  box.include_arc(x, y, GetRadius(), [this](int i) { return within_sweep(*this, i * kTurn / 4, 0, 0); });
  p1 = {box.x1, box.y1};
  p2 = {box.x2, box.y2};
}

double CFShape::Distance(const CFPoint& p) const {
  const Vec v = between(*this, p);
  // Quirk: R keeps its sign, so that a negative radius adds; see the header.
  if (B != 0) return std::fabs(v.length() - R);
  return std::fabs(v.turned_back(A).y);
}

double CFShape::DistanceToFigure(const CFPoint& p) const {
  const Vec v = between(*this, p);
  if (IsPoint()) return v.length();
  if (B != 0) {
    if (IsCircle() || within_sweep(*this, std::atan2(v.y, v.x), 0, 0)) return std::fabs(v.length() - GetRadius());
    return (std::min)(between(GetStartPoint(), p).length(), between(GetEndPoint(), p).length());
  }
  const BesideLine at(*this, p);
  return Vec{at.along < 0 ? at.along : (std::max)(0.0, at.along - GetR()), at.left}.length();
}

int CFShape::AtLeft(const CFPoint& p) const {
  const BesideLine at(*this, p);
  return at.left > at.tolerance;
}

int CFShape::OnShape(const CFPoint& p, float tol) const {
  const Vec v = between(*this, p);
  if (IsPoint()) return v.length() <= tol;
  if (B != 0) {
    const double ends = static_cast<double>(tol) / GetRadius();
    return std::fabs(v.length() - GetRadius()) < tol &&
           (IsCircle() || within_sweep(*this, std::atan2(v.y, v.x), ends, ends));
  }
  const BesideLine at(*this, p);
  return std::fabs(at.left) + at.tolerance < tol && -static_cast<double>(tol) <= at.along &&
         at.along <= static_cast<double>(GetR()) + tol;
}

int CFShape::OverLine(const CFPoint& p, float a, float b) const {
  const Vec v = between(*this, p);
  if (IsCircle()) return 1;
  if (IsArc()) {
    const double r = GetRadius();
    return within_sweep(*this, std::atan2(v.y, v.x), a / r, b / r);
  }
  const double u = IsPoint() ? 0 : BesideLine(*this, p).along;
  return -static_cast<double>(a) <= u && u <= static_cast<double>(GetR()) + b;
}

int CFShape::Contain(const CFPoint& p1, const CFPoint& p2) const {
  CFPoint low, high;
  GetRect(low, high);
  const CFRect box(p1, p2);
  // End points are rounded: a figure that ends on the border stays inside.
  const auto tol = static_cast<float>(resolution({low, high, p1, p2}));
  if (box.FpInFRect(low, tol) && box.FpInFRect(high, tol)) return 1;
  if (!(p1.x > p2.x)) return 0;
  const CFPoint corners[] = {p1, {p2.x, p1.y}, p2, {p1.x, p2.y}};
  for (int i = 0; i < 4; ++i) {
    CFPoint crossings[2];
    if (Intersect(CFShape(corners[i], corners[(i + 1) % 4]), crossings, 0, 0) != 0) return 1;
  }
  return 0;
}

int CFShape::Similar(const CFShape& s, float tol) const {
  const auto agree = [tol](double a, double b) { return std::fabs(a - b) <= tol; };
  if (IsPoint() || s.IsPoint()) return 0;  // two points have no sweep that could differ
  if (IsLine() != s.IsLine() || IsArc() != s.IsArc() || IsCircle() != s.IsCircle()) return 0;
  if (!CFPoint::HitTest(s, tol) || !agree(GetR(), s.GetR()) || !agree(GetA(), s.GetA())) return 0;
  // Quirk: reversed; host programs rely on it, see the header.
  return !agree(B, s.B);
}

CFShape& CFShape::Rotate(const CFPoint& c, double a) {
  CFPoint::Rotate(c, a);
  A = static_cast<float>(A + a);
  return *this;
}

CFShape& CFShape::Stretch(const CFPoint& c, double k) {
  CFPoint::Stretch(c, k);
  R = static_cast<float>(R * k);
  return *this;
}

CFShape& CFShape::Mirror(const CFPoint& p1, const CFPoint& p2) {
  const Vec axis = between(p1, p2);
  CFPoint::Mirror(p1, p2);
  A = static_cast<float>(2 * std::atan2(axis.y, axis.x) - A);
  B = -B;
  return *this;
}

CFShape& CFShape::VertMove(float d) {
  if (IsPoint()) return *this;
  if (B != 0) {
    const float r = B > 0 ? GetR() - d : GetR() + d;
    R = R < 0 ? -r : r;
  } else {
    x = static_cast<float>(x - d * std::sin(static_cast<double>(A)));
    y = static_cast<float>(y + d * std::cos(static_cast<double>(A)));
  }
  return *this;
}

void CFShape::Serialize(CArchive& archive) {
  CFPoint::Serialize(archive);
  archive.Exchange(R, A, B);
}

void CFShoot::Serialize(CArchive& archive) {
  CFPoint::Serialize(archive);
  archive.Exchange(C);
}
