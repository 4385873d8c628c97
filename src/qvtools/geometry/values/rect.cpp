#include "qvtools/geometry/values/rect.h"

#include <algorithm>
#include <cmath>

#include "qvtools/geometry/values/shape.h"
#include "qvtools/text/numbers.h"

CFRect::CFRect(float margin, const CFShape& shape) {
  CFPoint p1, p2;
  shape.GetRect(p1, p2);
  Init(p1.x - margin, p1.y - margin, p2.x + margin, p2.y + margin);
}

void CFRect::Init(float a, float b, float c, float d) {
  x1 = (std::min)(a, c);
  y1 = (std::min)(b, d);
  x2 = (std::max)(a, c);
  y2 = (std::max)(b, d);
}

int CFRect::IsFRectEmpty(float tol) const {
  return std::fabs(static_cast<double>(x2) - x1) < tol || std::fabs(static_cast<double>(y2) - y1) < tol;
}

int CFRect::IsFRectNull(float tol) const {
  return std::fabs(x1) < tol && std::fabs(y1) < tol && std::fabs(x2) < tol && std::fabs(y2) < tol;
}

CFRect CFRect::UnionFRect(const CFRect& r) const {
  CFRect all;
  all.x1 = (std::min)(x1, r.x1);
  all.y1 = (std::min)(y1, r.y1);
  all.x2 = (std::max)(x2, r.x2);
  all.y2 = (std::max)(y2, r.y2);
  return all;
}

CFRect& CFRect::operator+=(const CFPoint& p) {
  x1 += p.x;
  y1 += p.y;
  x2 += p.x;
  y2 += p.y;
  return *this;
}

CFRect& CFRect::operator-=(const CFPoint& p) {
  return *this += CFPoint(-p.x, -p.y);
}

void CFRect::Inflect(float l, float t, float r, float b) {
  x1 -= l;
  y1 -= t;
  x2 += r;
  y2 += b;
}

CFRect& CFRect::OffSet(const CSize& s) {
  const auto w = static_cast<float>(s.cx), h = static_cast<float>(s.cy);
  Inflect(w, h, w, h);
  return *this;
}

CFRect& CFRect::Rotate(const CFPoint& c, float a) {
  CFPoint corners[] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
  for (CFPoint& p : corners) p.Rotate(c, a);
  Init(corners[0], corners[2]);
  return *this = UnionFRect(CFRect(corners[1], corners[3]));
}

CFRect::operator CRect() const {
  return {qv::TruncInt(x1), qv::TruncInt(y1), qv::TruncInt(x2), qv::TruncInt(y2)};
}
