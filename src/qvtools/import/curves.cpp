#include "qvtools/import/internal/curves.h"

#include <algorithm>
#include <cmath>

namespace qv::importing {

namespace {
constexpr int kMostChords = 4096;
constexpr std::size_t kMostPoints = 50000;  // of one spline
}  // namespace

int chord_count(double sweep, double tolerance) {
  // A chord of angle a lies off by r (1 - cos(a / 2)).
  const double share = std::clamp(2 * tolerance, 1e-9, 1.0);
  const double step = 2 * std::acos(1 - share);
  return static_cast<int>(std::clamp(std::ceil(std::fabs(sweep) / step), 2.0, double{kMostChords}));
}

void flatten_ellipse(const Vec& center, const Vec& major, const Vec& minor, double start, double sweep,
                     double tolerance, std::vector<Vec>& out) {
  const int n = chord_count(sweep, tolerance);
  for (int i = 0; i <= n; ++i) {
    const double t = start + sweep * i / n;
    out.push_back(center + major * std::cos(t) + minor * std::sin(t));
  }
}

void flatten_arc(const Vec& center, double radius, double start, double sweep, double tolerance,
                 std::vector<Vec>& out) {
  flatten_ellipse(center, {radius, 0, 0}, {0, radius, 0}, start, sweep, tolerance, out);
}

void flatten_bulge(Vec from, Vec to, double bulge, double tolerance, std::vector<Vec>& out) {
  const Vec chord = to - from;
  const double c = std::hypot(chord.x, chord.y);
  const double sagitta = std::fabs(bulge) * c / 2;
  if (!(sagitta > 1e-12 * c) || !std::isfinite(sagitta)) {
    out.push_back(to);
    return;
  }
  const double sweep = 4 * std::atan(bulge);
  const double toCenter = (1 - bulge * bulge) / (4 * bulge);  // in chords, to the left of the chord's middle
  const Vec center = middle(from, to) + Vec{-chord.y, chord.x, 0} * toCenter;
  const Vec radius = from - center;
  const int n = chord_count(sweep, tolerance);
  for (int i = 1; i < n; ++i) {
    const double angle = sweep * i / n;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    const Vec p = center + Vec{radius.x * cosine - radius.y * sine, radius.x * sine + radius.y * cosine, 0};
    out.push_back({p.x, p.y, from.z + chord.z * i / n});
  }
  out.push_back(to);
}

namespace {

struct Homogeneous {
  Vec p;
  double w;
};

/// A piece of curve over one parameter interval.
template <class Curve>
void flatten_piece(const Curve& curve, double t0, const Vec& p0, double t1, const Vec& p1, double slack, int depth,
                   std::vector<Vec>& out) {
  const auto off = [&](double share) {
    const Vec p = curve(t0 + (t1 - t0) * share);
    const Vec chord = p1 - p0;
    const double n = length(chord);
    return n > 0 ? length(cross(p - p0, chord)) / n : length(p - p0);
  };
  const bool close =
      depth <= 0 || out.size() >= kMostPoints || (off(0.25) <= slack && off(0.5) <= slack && off(0.75) <= slack);
  if (close) {
    out.push_back(p1);
    return;
  }
  const double t = (t0 + t1) / 2;
  const Vec p = curve(t);
  flatten_piece(curve, t0, p0, t, p, slack, depth - 1, out);
  flatten_piece(curve, t, p, t1, p1, slack, depth - 1, out);
}

template <class Curve>
void flatten_span(const Curve& curve, double t0, double t1, double slack, std::vector<Vec>& out) {
  constexpr int kPieces = 4;  // at least: a curve that turns back lies on its chord's middle
  constexpr int kDeepest = 12;
  Vec before = curve(t0);
  if (out.empty()) out.push_back(before);
  for (int i = 1; i <= kPieces; ++i) {
    const double a = t0 + (t1 - t0) * (i - 1) / kPieces;
    const double b = t0 + (t1 - t0) * i / kPieces;
    const Vec p = curve(b);
    flatten_piece(curve, a, before, b, p, slack, kDeepest, out);
    before = p;
  }
}

double size_of(const std::vector<Vec>& points) {
  Vec least{1e300, 1e300, 1e300};
  Vec most{-1e300, -1e300, -1e300};
  for (const Vec& p : points) {
    least = {std::min(least.x, p.x), std::min(least.y, p.y), std::min(least.z, p.z)};
    most = {std::max(most.x, p.x), std::max(most.y, p.y), std::max(most.z, p.z)};
  }
  return length(most - least);
}

/// The point of the spline at t, which lies in the span of knots `span` to `span` + 1 (de Boor).
Vec point_at(const Spline& s, std::size_t span, double t) {
  Homogeneous d[kHighestDegree + 1];
  const auto degree = static_cast<std::size_t>(s.degree);
  for (std::size_t j = 0; j <= degree; ++j) {
    const std::size_t i = span - degree + j;
    const double w = s.weights.empty() ? 1 : s.weights[i];
    d[j] = {s.control[i] * w, w};
  }
  for (std::size_t r = 1; r <= degree; ++r)
    for (std::size_t j = degree; j >= r; --j) {
      const double low = s.knots[span - degree + j];
      const double high = s.knots[span + 1 + j - r];
      const double k = high > low ? (t - low) / (high - low) : 0;
      d[j] = {d[j - 1].p * (1 - k) + d[j].p * k, d[j - 1].w * (1 - k) + d[j].w * k};
    }
  return d[degree].w != 0 ? d[degree].p * (1 / d[degree].w) : d[degree].p;
}

void make_uniform(Spline& s) {
  const std::size_t n = s.control.size();
  const auto degree = static_cast<std::size_t>(s.degree);
  s.knots.clear();
  for (std::size_t i = 0; i < n + degree + 1; ++i)
    s.knots.push_back(static_cast<double>(i <= degree ? 0 : std::min(i - degree, n - degree)));
}

void flatten_control(Spline& s, double tolerance, std::vector<Vec>& out) {
  const std::size_t n = s.control.size();
  const auto degree = static_cast<std::size_t>(s.degree);
  const bool whole = s.knots.size() == n + degree + 1 && std::ranges::is_sorted(s.knots) &&
                     std::ranges::all_of(s.knots, [](double k) { return std::isfinite(k); }) &&
                     s.knots[n] > s.knots[degree];
  if (!whole) make_uniform(s);
  if (s.weights.size() != n) s.weights.clear();
  for (double& w : s.weights)
    if (!(w > 0) || !std::isfinite(w)) w = 1;
  const double slack = tolerance * size_of(s.control);
  for (std::size_t i = degree; i < n; ++i) {
    if (!(s.knots[i + 1] > s.knots[i])) continue;
    const auto curve = [&](double t) { return point_at(s, i, t); };
    flatten_span(curve, s.knots[i], s.knots[i + 1], slack, out);
  }
}

/// The second derivatives of the cubic through the points at the parameters, along one coordinate: natural at an end
/// without a tangent.
struct Ends {
  const double* start;
  const double* end;
};
std::vector<double> moments(const std::vector<double>& t, const std::vector<double>& y, const Ends& ends) {
  const std::size_t n = t.size();
  std::vector<double> diagonal(n, 1), upper(n, 0), right(n, 0), lower(n, 0);
  const auto slope = [&](std::size_t i) { return (y[i + 1] - y[i]) / (t[i + 1] - t[i]); };
  if (ends.start) {
    const double h = t[1] - t[0];
    diagonal[0] = 2 * h;
    upper[0] = h;
    right[0] = 6 * (slope(0) - *ends.start);
  }
  if (ends.end) {
    const double h = t[n - 1] - t[n - 2];
    diagonal[n - 1] = 2 * h;
    lower[n - 1] = h;
    right[n - 1] = 6 * (*ends.end - slope(n - 2));
  }
  for (std::size_t i = 1; i + 1 < n; ++i) {
    lower[i] = t[i] - t[i - 1];
    upper[i] = t[i + 1] - t[i];
    diagonal[i] = 2 * (t[i + 1] - t[i - 1]);
    right[i] = 6 * (slope(i) - slope(i - 1));
  }
  for (std::size_t i = 1; i < n; ++i) {
    const double k = lower[i] / diagonal[i - 1];
    diagonal[i] -= k * upper[i - 1];
    right[i] -= k * right[i - 1];
  }
  std::vector<double> m(n);
  for (std::size_t i = n; i-- > 0;) m[i] = (right[i] - (i + 1 < n ? upper[i] * m[i + 1] : 0)) / diagonal[i];
  return m;
}

void flatten_fit(Spline& s, double tolerance, std::vector<Vec>& out) {
  std::vector<Vec> p;
  for (const Vec& v : s.fit)
    if (p.empty() || length(v - p.back()) > 0) p.push_back(v);
  if (s.closed && p.size() > 2 && length(p.front() - p.back()) > 0) p.push_back(p.front());
  Vec start = unit(s.startTangent, {});
  Vec end = unit(s.endTangent, {});
  if (p.size() < 2 || (p.size() == 2 && length(start) == 0 && length(end) == 0)) {
    out = p;
    return;
  }
  std::vector<double> t(p.size(), 0);
  for (std::size_t i = 1; i < p.size(); ++i) t[i] = t[i - 1] + length(p[i] - p[i - 1]);
  if (s.closed && length(start) == 0) start = end = unit(p[1] - p[p.size() - 2], {});  // smooth across the seam
  std::vector<double> m[3];
  for (const int axis : {0, 1, 2}) {
    const auto of = [&](const Vec& v) { return axis == 0 ? v.x : axis == 1 ? v.y : v.z; };
    std::vector<double> y;
    for (const Vec& v : p) y.push_back(of(v));
    const double a = of(start);
    const double b = of(end);
    m[axis] = moments(t, y, {length(start) > 0 ? &a : nullptr, length(end) > 0 ? &b : nullptr});
  }
  const double slack = tolerance * size_of(p);
  for (std::size_t i = 0; i + 1 < p.size(); ++i) {
    const double h = t[i + 1] - t[i];
    const auto curve = [&](double at) {
      const double b = (at - t[i]) / h;
      const double a = 1 - b;
      const double c = (a * a * a - a) * h * h / 6;
      const double d = (b * b * b - b) * h * h / 6;
      return p[i] * a + p[i + 1] * b + Vec{m[0][i], m[1][i], m[2][i]} * c +
             Vec{m[0][i + 1], m[1][i + 1], m[2][i + 1]} * d;
    };
    flatten_span(curve, t[i], t[i + 1], slack, out);
  }
}

}  // namespace

bool flatten_spline(Spline s, double tolerance, std::vector<Vec>& out) {
  for (const std::vector<Vec>* points : {&s.control, &s.fit})
    if (!std::ranges::all_of(*points, [](const Vec& p) { return is_finite(p); })) return false;
  if (s.degree < 1 || s.degree > kHighestDegree) return false;
  if (s.control.size() > static_cast<std::size_t>(s.degree))
    flatten_control(s, tolerance, out);
  else if (s.fit.size() > 1)
    flatten_fit(s, tolerance, out);
  return out.size() > 1;
}

std::vector<Vertex> vertices_of(const std::vector<Vec>& points) {
  std::vector<Vertex> vertices;
  vertices.reserve(points.size());
  for (const Vec& p : points) vertices.push_back({p});
  return vertices;
}

}  // namespace qv::importing
