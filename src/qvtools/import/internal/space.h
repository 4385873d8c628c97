#pragma once

/// Points and transforms in double: what records hold is rounded once, when it is stored.

#include <cmath>

namespace qv::importing {

struct Vec {
  double x = 0;
  double y = 0;
  double z = 0;

  friend Vec operator+(const Vec& a, const Vec& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
  friend Vec operator-(const Vec& a, const Vec& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
  friend Vec operator*(const Vec& a, double k) { return {a.x * k, a.y * k, a.z * k}; }
  friend bool operator==(const Vec&, const Vec&) = default;
};

inline double dot(const Vec& a, const Vec& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec cross(const Vec& a, const Vec& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double length(const Vec& v) {
  return std::sqrt(dot(v, v));
}
/// The direction of v; the fallback for what has none.
inline Vec unit(const Vec& v, const Vec& fallback) {
  const double n = length(v);
  return n > 1e-12 && std::isfinite(n) ? v * (1 / n) : fallback;
}
inline bool is_finite(const Vec& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}
inline Vec middle(const Vec& a, const Vec& b) {
  return (a + b) * 0.5;
}

/// An affine transform: where the axes' unit vectors go, and the origin.
struct Matrix {
  Vec x{1, 0, 0};
  Vec y{0, 1, 0};
  Vec z{0, 0, 1};
  Vec origin;

  Vec direction(const Vec& v) const { return x * v.x + y * v.y + z * v.z; }
  Vec operator()(const Vec& p) const { return direction(p) + origin; }
  friend bool operator==(const Matrix&, const Matrix&) = default;
};

/// First b, then a.
inline Matrix operator*(const Matrix& a, const Matrix& b) {
  return {a.direction(b.x), a.direction(b.y), a.direction(b.z), a(b.origin)};
}

inline Matrix translation(const Vec& by) {
  Matrix m;
  m.origin = by;
  return m;
}
inline Matrix scaling(double x, double y, double z) {
  return {{x, 0, 0}, {0, y, 0}, {0, 0, z}, {}};
}
/// About z, in radians.
inline Matrix turning(double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return {{c, s, 0}, {-s, c, 0}, {0, 0, 1}, {}};
}

/// The frame of an entity's own coordinates by its direction of extrusion (the arbitrary-axis rule): axes as unit
/// vectors. A direction without length is that of z.
inline Matrix extrusion_frame(const Vec& direction) {
  const Vec n = unit(direction, {0, 0, 1});
  if (n.x == 0 && n.y == 0 && n.z > 0) return {};
  constexpr double kNearZ = 1.0 / 64;
  const bool is_near_z = std::fabs(n.x) < kNearZ && std::fabs(n.y) < kNearZ;
  const Vec x = unit(is_near_z ? cross({0, 1, 0}, n) : cross({0, 0, 1}, n), {1, 0, 0});
  return {x, cross(n, x), n, {}};
}

/// How the plane z = 0 of a frame lies in the drawing's plan.
struct PlanView {
  bool flat = false;      ///< lengths in the plane are all scaled alike, and the plane lies level
  bool mirrored = false;  ///< seen from behind
  double scale = 1;
  double turn = 0;  ///< of the x axis, radians
};
inline PlanView plan_view(const Matrix& m) {
  const double a = length(m.x);
  const double b = length(m.y);
  const double most = std::max(a, b);
  const double slack = 1e-6 * most;
  PlanView view;
  view.flat = std::fabs(a - b) <= slack && std::fabs(dot(m.x, m.y)) <= slack * most && std::fabs(m.x.z) <= slack &&
              std::fabs(m.y.z) <= slack && most > 0;
  view.mirrored = m.x.x * m.y.y - m.x.y * m.y.x < 0;
  view.scale = a;
  view.turn = std::atan2(m.x.y, m.x.x);
  return view;
}

inline constexpr double kPi = 3.14159265358979323846;
inline double radians(double degrees) {
  return degrees * kPi / 180;
}
inline double degrees(double radians) {
  return radians * 180 / kPi;
}

}  // namespace qv::importing
