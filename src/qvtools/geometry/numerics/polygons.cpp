#include "qvtools/geometry/numerics/polygons.h"

#include <cmath>

namespace {

/// What one edge of `in_domain` says: nothing, a change of parity, or the end of the walk with its result.
struct Verdict {
  enum Kind { Pass, Toggle, Stop } kind = Pass;
  int result = 0;
};

/// The tolerance, for lengths and products of lengths alike.
constexpr double kE = 0.0001f;

struct Place {
  double x;
  double y;
};

/// Looks at the edge from p to q, both relative to the tested point.
Verdict judge_edge(const Place& p, const Place& q, int n) {
  const double a = p.y, b = q.y, ab = a * b;
  if (!(ab <= kE)) return {};
  if (std::fabs(a - b) <= kE) {
    return std::fabs(a) < kE && p.x * q.x < 0 ? Verdict{Verdict::Stop, -n} : Verdict{};
  }
  const double d = p.x - a * (q.x - p.x) / (b - a);
  if (std::fabs(ab) + std::fabs(d) < kE) {
    return {Verdict::Stop, std::fabs(p.x) + std::fabs(p.y) >= kE ? 2 : n + 1};
  }
  if (std::fabs(d) < kE) return {Verdict::Stop, -n};
  if (d < -kE) return {};
  const bool end_above = ab >= -kE && (a > kE || b > kE);
  return {end_above ? Verdict::Pass : Verdict::Toggle, 0};
}

int walk(int n, const auto& at, float px, float py) {
  int inside = 0;
  for (int i = 0; i < n; ++i) {
    const auto [x1, y1] = at(i);
    const auto [x2, y2] = at(i + 1 < n ? i + 1 : 0);
    const Verdict v = judge_edge({x1 - px, y1 - py}, {x2 - px, y2 - py}, n);
    if (v.kind == Verdict::Stop) return v.result;
    if (v.kind == Verdict::Toggle) inside = 1 - inside;
  }
  return inside;
}

struct Sums {
  double area2 = 0;
  double x = 0;
  double y = 0;
};

Sums sum_edges(int n, const float* xs, const float* ys) {
  Sums sums;
  for (int i = 0; i < n; ++i) {
    const int k = i + 1 < n ? i + 1 : 0;
    const double d = det_tri(0, 0, xs[i], ys[i], xs[k], ys[k]);
    sums.area2 += d;
    sums.x += (static_cast<double>(xs[i]) + xs[k]) * d / 3;
    sums.y += (static_cast<double>(ys[i]) + ys[k]) * d / 3;
  }
  return sums;
}

}  // namespace

int in_domain(int n, const float* xs, const float* ys, float px, float py) {
  const auto at = [&](int i) { return Place{xs[i], ys[i]}; };
  return walk(n, at, px, py);
}

int point_in_area(int n, const POINT_2D* points, float px, float py) {
  const auto at = [&](int i) { return Place{points[i].x, points[i].y}; };
  return walk(n, at, px, py) != 0;
}

float area_poli(int n, const float* xs, const float* ys) {
  return static_cast<float>(sum_edges(n, xs, ys).area2 / 2);
}

void centroid_poli(int n, const float* xs, const float* ys, float* cx, float* cy) {
  if (n < 1) return;
  const Sums sums = sum_edges(n, xs, ys);
  const bool flat = std::fabs(sums.area2) < 1e-7;
  *cx = flat ? xs[0] : static_cast<float>(sums.x / sums.area2);
  *cy = flat ? ys[0] : static_cast<float>(sums.y / sums.area2);
}

float zhouchang_poli(int n, const float* xs, const float* ys) {
  double sum = 0;
  for (int i = 0; i < n; ++i) {
    const int k = i + 1 < n ? i + 1 : 0;
    sum += get_dist(static_cast<double>(xs[i]), static_cast<double>(ys[i]), static_cast<double>(xs[k]),
                    static_cast<double>(ys[k]));
  }
  return static_cast<float>(sum);
}
