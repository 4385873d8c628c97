#include "geometry/random_case.h"

#include <cmath>

namespace qvtest {

namespace {
constexpr long double kTurn = 6.283185307179586476925L;

long double lift(long double angle) {
  const long double rest = std::fmod(angle, kTurn);
  return rest < 0 ? rest + kTurn : rest;
}
}  // namespace

Judge::Judge(const CFRegion& region) {
  for (int i = 0; i < region.GetSize(); ++i) {
    const CFShoot &p = region[i], &q = region[(i + 1) % region.GetSize()];
    Edge e{p.x, p.y, q.x, q.y, p.C != 0 && !(p == q), 0, 0, 0, 0, 0};
    if (e.arc) {
      const long double d = std::hypot(e.x2 - e.x1, e.y2 - e.y1), half = std::fabs(p.C) / 2.0L;
      const long double towards = (p.C < 0 ? 1 : -1) * d / 2 / std::tan(half);
      e.cx = (e.x1 + e.x2) / 2 - (e.y2 - e.y1) / d * towards;
      e.cy = (e.y1 + e.y2) / 2 + (e.x2 - e.x1) / d * towards;
      e.r = std::hypot(e.x1 - e.cx, e.y1 - e.cy);
      e.start = p.C < 0 ? std::atan2(e.y1 - e.cy, e.x1 - e.cx) : std::atan2(e.y2 - e.cy, e.x2 - e.cx);
      e.sweep = 2 * half;
    }
    edges_.push_back(e);
  }
}

long double Judge::clearance(const CFPoint& p) const {
  long double least = 1e9L;
  for (const Edge& e : edges_) {
    long double d;
    if (e.arc) {
      d = std::fabs(std::hypot(p.x - e.cx, p.y - e.cy) - e.r);
    } else {
      const long double dx = e.x2 - e.x1, dy = e.y2 - e.y1, l2 = dx * dx + dy * dy;
      const long double t = l2 > 0 ? std::min(1.0L, std::max(0.0L, ((p.x - e.x1) * dx + (p.y - e.y1) * dy) / l2)) : 0;
      d = std::hypot(p.x - e.x1 - t * dx, p.y - e.y1 - t * dy);
    }
    least = std::min(least, d);
  }
  return least;
}

int Judge::crossings(const CFPoint& p, long double angle) const {
  constexpr long double kTolerance = 1e-7L;
  const long double c = std::cos(angle), s = std::sin(angle);
  int count = 0;
  for (const Edge& e : edges_) {
    // The edge in the frame of the ray.
    const long double u1 = (e.x1 - p.x) * c + (e.y1 - p.y) * s, v1 = (e.y1 - p.y) * c - (e.x1 - p.x) * s;
    const long double u2 = (e.x2 - p.x) * c + (e.y2 - p.y) * s, v2 = (e.y2 - p.y) * c - (e.x2 - p.x) * s;
    if (std::fabs(v1) < kTolerance || std::fabs(v2) < kTolerance) return -1;
    if (!e.arc) {
      if ((v1 > 0) != (v2 > 0) && u1 - v1 * (u2 - u1) / (v2 - v1) > 0) ++count;
      continue;
    }
    const long double u = (e.cx - p.x) * c + (e.cy - p.y) * s, v = (e.cy - p.y) * c - (e.cx - p.x) * s;
    if (std::fabs(std::fabs(v) - e.r) < kTolerance) return -1;
    if (std::fabs(v) > e.r) continue;
    const long double h = std::sqrt(e.r * e.r - v * v);
    for (const long double at : {u - h, u + h}) {
      const long double direction = std::atan2(-v, at - u) + angle;
      if (at > 0 && lift(direction - e.start) < e.sweep) ++count;
    }
  }
  return count;
}

bool Judge::inside(const CFPoint& p, Random& random) const {
  for (;;) {
    const int count = crossings(p, random.real(0, 6.28));
    if (count >= 0) return count % 2 != 0;
  }
}

CFRegion random_region(Random& random, int most_vertices, bool arcs) {
  CFRegion region;
  const int n = random.whole(3, most_vertices);
  for (int i = 0; i < n; ++i) {
    CFShoot v(static_cast<float>(random.whole(-4, 4)), static_cast<float>(random.whole(-4, 4)));
    const float bulges[] = {0, random.real(0.1, 6), 3.14159274f, random.real(0.1, 1.5), 4.712389f};
    if (arcs) v.C = bulges[random.whole(0, 4)] * static_cast<float>(random.whole(0, 1) * 2 - 1);
    region.Add(v);
  }
  return region;
}

}  // namespace qvtest
