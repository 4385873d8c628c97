#include <algorithm>

#include "qvtools/geometry/functions/internal/jh_figures.h"

using namespace qv::detail;

namespace {

constexpr double kParallelSlope = 1e-5;
constexpr int kCoincide = -1;

/// A crossing of segments when one of them is only a point: that point, when it lies on the other.
int point_on_segment(const SegmentFrame& segment, const Vec& p, float* x, float* y, float tol) {
  const bool on = segment.length2 == 0 ? segment.distance_to_start(p) <= tol : segment.contains(p, tol);
  if (on) store(p, x, y);
  return on;
}

int cross_segments(const SegmentFrame& a, const SegmentFrame& b, float* x, float* y, float tol) {
  if (b.length2 == 0) return point_on_segment(a, b.base, x, y, tol);
  if (a.length2 == 0) return point_on_segment(b, a.base, x, y, tol);
  // The frame of the first segment, lengths multiplied by a.length.
  const double reach = tol * a.length;
  const double v3 = a.across(b.base), v4 = a.across({b.base.x + b.span.x, b.base.y + b.span.y});
  if ((v3 > reach && v4 > reach) || (v3 < -reach && v4 < -reach)) return 0;
  const double u3 = a.along(b.base);
  const double du = a.span.dot(b.span), dv = a.span.cross(b.span);
  if (std::fabs(dv) <= std::fabs(du) && std::fabs(dv) < kParallelSlope * std::fabs(du)) {
    return std::fabs(v3 - u3 * (dv / du)) < reach ? 2 : 0;
  }
  const double crossing = u3 - v3 * (du / dv);
  if (!a.contains(crossing, tol)) return 0;
  store(a.at(crossing), x, y);
  return 1;
}

bool boxes_overlap(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4, float tol) {
  return JH_TestCrossRegon_Rect((std::min)(x1, x2), (std::min)(y1, y2), (std::max)(x1, x2), (std::max)(y1, y2),
                                (std::min)(x3, x4), (std::min)(y3, y4), (std::max)(x3, x4), (std::max)(y3, y4),
                                tol) != 0;
}

struct Pair {
  float* x[2];
  float* y[2];
  int count = 0;
  Pair(float* ax, float* ay, float* bx, float* by) : x{ax, bx}, y{ay, by} {}
  void add(const Vec& p) {
    store(p, x[count], y[count]);
    ++count;
  }
  /// Keeps those points for which keep(x, y) is true, the first of them in the first pair.
  int filter(int n, const auto& keep) {
    count = 0;
    for (int i = 0; i < n; ++i) {
      const float px = *x[i], py = *y[i];
      if (keep(px, py)) add({px, py});
    }
    return count;
  }
};

/// Circles whose distance d is neither too large nor too small for a crossing, nor that of touching from outside.
int cross_or_touch_inside(const Vec& c1, double r1, const Vec& c2, double r2, double d, Pair& out, float tol) {
  const CentreLine line(c1, c2, d);
  if (d >= std::fabs(r1 - r2) + tol) {
    const double s = line.foot(r1, r2), h = half_chord(r1 * r1, s * s);
    out.add(line.at(s, h));
    out.add(line.at(s, -h));
  } else if (r1 <= r2) {
    out.add(line.at(-r1, 0));
  } else {
    out.add({c2.x + line.unit.x * r2, c2.y + line.unit.y * r2});
  }
  return out.count;
}

}  // namespace

void JH_GetLineFunction(float x1, float y1, float x2, float y2, float* a, float* b, float* c) {
  const double dx = static_cast<double>(x2) - x1, dy = static_cast<double>(y2) - y1;
  if (std::fabs(dy) <= std::fabs(dx)) {
    const double slope = dx == 0 ? 0 : dy / dx;
    *a = 1;
    *b = static_cast<float>(slope);
    *c = static_cast<float>(y1 - x1 * slope);
  } else {
    const double slope = dx / dy;
    *a = static_cast<float>(slope);
    *b = 1;
    *c = static_cast<float>(y1 * slope - x1);
  }
}

int JH_GetInterPoint_Line_ByFunc(float a1, float b1, float c1, float a2, float b2, float c2, float* x, float* y,
                                 float tol) {
  const Vec f1{a1, b1}, f2{a2, b2};
  const double det = f2.cross(f1);
  if (det == 0 || std::fabs(det) < tol) return 0;
  store({(f1.x * c2 - f2.x * c1) / det, (f1.y * c2 - f2.y * c1) / det}, x, y);
  return 1;
}

int JH_GetInterPoint_Line(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4, float* x,
                          float* y, float tol) {
  float a1, b1, c1, a2, b2, c2;
  JH_GetLineFunction(x1, y1, x2, y2, &a1, &b1, &c1);
  JH_GetLineFunction(x3, y3, x4, y4, &a2, &b2, &c2);
  return JH_GetInterPoint_Line_ByFunc(a1, b1, c1, a2, b2, c2, x, y, tol);
}

int JH_GetInterPoint_LineSection_LineSection(float x1, float y1, float x2, float y2, float x3, float y3, float x4,
                                             float y4, float* x, float* y, float tol) {
  if (!boxes_overlap(x1, y1, x2, y2, x3, y3, x4, y4, tol)) return 0;
  return cross_segments(SegmentFrame(x1, y1, x2, y2), SegmentFrame(x3, y3, x4, y4), x, y, tol);
}

int JH_GetInterPoint_LineSection(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4,
                                 float* x, float* y, float tol) {
  return JH_GetInterPoint_LineSection_LineSection(x1, y1, x2, y2, x3, y3, x4, y4, x, y, tol);
}

int JH_GetInterPoint_LineSection_Old(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4,
                                     float* x, float* y, float tol) {
  return cross_segments(SegmentFrame(x1, y1, x2, y2), SegmentFrame(x3, y3, x4, y4), x, y, tol);
}

int JH_GetInterPoint_Circle_LineSection(float cx, float cy, float r, float x1, float y1, float x2, float y2, float* ax,
                                        float* ay, float* bx, float* by, float tol) {
  const SegmentFrame segment(x1, y1, x2, y2);
  const double radius = (std::max)(r, 0.0f), t = tol;
  if (segment.length2 == 0) {
    if (!(std::fabs(segment.distance_to_start({cx, cy}) - radius) <= t)) return 0;
    return store({x1, y1}, ax, ay), 1;
  }
  const double foot = segment.along({cx, cy}), d = std::fabs(segment.across({cx, cy}));
  if (d > (radius + t) * segment.length) return 0;
  Pair out(ax, ay, bx, by);
  const auto offer = [&](double parameter) {
    if (segment.contains(parameter, t)) out.add(segment.at(parameter));
  };
  if (d >= (radius - t) * segment.length) {
    offer(foot);
  } else {
    const double half = half_chord(radius * radius * segment.length2, d * d);
    offer(foot - half);
    offer(foot + half);
  }
  return out.count;
}

int JH_GetInterPoint_Circle_Circle(float x1, float y1, float r1, float x2, float y2, float r2, float* ax, float* ay,
                                   float* bx, float* by, float tol) {
  const Vec c1{x1, y1}, c2{x2, y2};
  const double p = (std::max)(r1, 0.0f), q = (std::max)(r2, 0.0f), t = tol;
  const double dx = c2.x - c1.x, dy = c2.y - c1.y, d2 = dx * dx + dy * dy;
  if (d2 > (p + q + t) * (p + q + t)) return 0;
  const double d = std::sqrt(d2);
  Pair out(ax, ay, bx, by);
  if (d > p + q - t || p + q == 0) {
    const double share = p + q == 0 ? 0 : p / (p + q);
    out.add({c1.x + dx * share, c1.y + dy * share});
    return 1;
  }
  if (d < t && std::fabs(p - q) < t) return kCoincide;
  if (std::fabs(p - q) - t > d) return 0;
  if (d == 0) return kCoincide;
  return cross_or_touch_inside(c1, p, c2, q, d, out, tol);
}

int JH_GetInterPoint_LineSection_Arc(float x1, float y1, float x2, float y2, float cx, float cy, float r, float a1,
                                     float a2, float* ax, float* ay, float* bx, float* by, float tol) {
  const int n = JH_GetInterPoint_Circle_LineSection(cx, cy, r, x1, y1, x2, y2, ax, ay, bx, by, tol);
  return Pair(ax, ay, bx, by).filter(n, [&](float px, float py) {
    return direction_in_arc(px, py, cx, cy, r, a1, a2, tol);
  });
}

int JH_GetInterPoint_Circle_Arc(float x1, float y1, float r1, float cx, float cy, float r, float a1, float a2,
                                float* ax, float* ay, float* bx, float* by, float tol) {
  const int n = JH_GetInterPoint_Circle_Circle(x1, y1, r1, cx, cy, r, ax, ay, bx, by, tol);
  if (n < 0) return n;
  return Pair(ax, ay, bx, by).filter(n, [&](float px, float py) {
    return direction_in_arc(px, py, cx, cy, r, a1, a2, tol);
  });
}

int JH_GetInterPoint_Arc_Arc(float x1, float y1, float r1, float a1, float b1, float x2, float y2, float r2, float a2,
                             float b2, float* ax, float* ay, float* bx, float* by, float tol) {
  const int n = JH_GetInterPoint_Circle_Circle(x1, y1, r1, x2, y2, r2, ax, ay, bx, by, tol);
  if (n < 0) {
    const bool overlap = JH_TestAngleInArc(JH_Set2PI(a2), a1, b1, r1 > 0 ? tol / r1 : 0) ||
                         JH_TestAngleInArc(JH_Set2PI(a1), a2, b2, r2 > 0 ? tol / r2 : 0);
    return overlap ? kCoincide : 0;
  }
  return Pair(ax, ay, bx, by).filter(n, [&](float px, float py) {
    return direction_in_arc(px, py, x1, y1, r1, a1, b1, tol) && direction_in_arc(px, py, x2, y2, r2, a2, b2, tol);
  });
}
