#include "qvtools/geometry/values/point.h"

#include <algorithm>
#include <cmath>

#include "qvtools/platform/framework.h"

namespace {

CFPoint polar_from(const CFPoint& c, double r, double angle) {
  return {static_cast<float>(c.x + r * std::cos(angle)), static_cast<float>(c.y + r * std::sin(angle))};
}

double angle_from(const CFPoint& from, const CFPoint& to) {
  return std::atan2(static_cast<double>(to.y) - from.y, static_cast<double>(to.x) - from.x);
}

}  // namespace

double CFPoint::Distance(const CFPoint& p) const {
  const double dx = x - p.x, dy = y - p.y;
  return std::sqrt(dx * dx + dy * dy);
}

int CFPoint::HitTest(const CFPoint& p, float tol) const {
  return std::fabs(static_cast<double>(x) - p.x) <= tol && std::fabs(static_cast<double>(y) - p.y) <= tol;
}

int CFPoint::Contain(const CFPoint& p1, const CFPoint& p2) const {
  return (std::min)(p1.x, p2.x) <= x && x <= (std::max)(p1.x, p2.x) && (std::min)(p1.y, p2.y) <= y &&
         y <= (std::max)(p1.y, p2.y);
}

CFPoint& CFPoint::Rotate(const CFPoint& c, double a) {
  return *this = polar_from(c, Distance(c), angle_from(c, *this) + a);
}

CFPoint& CFPoint::Mirror(const CFPoint& p1, const CFPoint& p2) {
  const double phi = angle_from(p1, *this), psi = angle_from(p1, p2);
  return *this = polar_from(p1, Distance(p1), phi + 2 * (psi - phi));
}

CFPoint& CFPoint::Stretch(const CFPoint& c, double k) {
  x = static_cast<float>(c.x + (static_cast<double>(x) - c.x) * k);
  y = static_cast<float>(c.y + (static_cast<double>(y) - c.y) * k);
  return *this;
}

void CFPoint::Serialize(CArchive& archive) {
  archive.Exchange(x, y);
}
