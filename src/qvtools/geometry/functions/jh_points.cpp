#include <algorithm>

#include "qvtools/geometry/functions/internal/jh_figures.h"

using namespace qv::detail;

void JH_RotatePoint0(float* x, float* y, float a) {
  store(Vec{*x, *y}.turned_back(a), x, y);
}

float JH_Set2PI(float a) {
  if (0 <= a && a < TWO_PI_F) return a;
  if (!std::isfinite(a)) return 0;
  const double rest = std::fmod(static_cast<double>(a), static_cast<double>(TWO_PI_F));
  return static_cast<float>(rest < 0 ? rest + TWO_PI_F : rest);
}

float JH_GetAngle(float x1, float y1, float x2, float y2) {
  const double dx = static_cast<double>(x2) - x1, dy = static_cast<double>(y2) - y1;
  if (dx == 0) return dy < 0 ? THREE_HALF_PI_F : HALF_PI_F;
  const auto a = static_cast<float>(std::atan(dy / dx));
  if (dx < 0) return a + PI_F;
  return dy < 0 ? a + TWO_PI_F : a;
}

float JH_GetLenArc(float cx, float cy, float x1, float y1, float x2, float y2) {
  double turn = static_cast<double>(JH_GetAngle(cx, cy, x2, y2)) - JH_GetAngle(cx, cy, x1, y1);
  if (turn < 0) turn += TWO_PI_F;
  return static_cast<float>(turn * JH_GetDistance(cx, cy, x1, y1));
}

float JH_GetMinDist_PointToLine(float px, float py, float x1, float y1, float x2, float y2) {
  const SegmentFrame line(x1, y1, x2, y2);
  if (line.length2 == 0) return JH_GetDistance(px, py, x1, y1);
  return static_cast<float>(std::fabs(line.across({px, py})) / line.length);
}

float JH_GetMinDist_PointToLineSection(float px, float py, float x1, float y1, float x2, float y2) {
  return static_cast<float>(SegmentFrame(x1, y1, x2, y2).distance({px, py}));
}

void JH_GetCuiZu_PointToLine(float px, float py, float x1, float y1, float x2, float y2, float* fx, float* fy) {
  const SegmentFrame line(x1, y1, x2, y2);
  store(line.length2 == 0 ? Vec{x1, y1} : line.at(line.along({px, py})), fx, fy);
}

int JH_GetCuiZu_PointToLineSection(float px, float py, float x1, float y1, float x2, float y2, float* fx, float* fy,
                                   float tol) {
  const SegmentFrame segment(x1, y1, x2, y2);
  if (!segment.contains(segment.along({px, py}), tol)) return 0;
  JH_GetCuiZu_PointToLine(px, py, x1, y1, x2, y2, fx, fy);
  return 1;
}

int JH_GetCuiZu_PointToArc(float px, float py, float cx, float cy, float r, float a1, float a2, float* fx, float* fy,
                           float tol) {
  if (!direction_in_arc(px, py, cx, cy, r, a1, a2, tol)) return 0;
  const Vec v{static_cast<double>(px) - cx, static_cast<double>(py) - cy};
  const double d = v.length();
  // From the centre itself every direction is right; the angle function says a quarter turn.
  store(d == 0 ? Vec{cx, 1.0 * cy + r} : Vec{cx + v.x * (r / d), cy + v.y * (r / d)}, fx, fy);
  return 1;
}

int JH_TestPointIn_Circle(float px, float py, float cx, float cy, float r, float tol) {
  return within(static_cast<double>(px) - cx, static_cast<double>(py) - cy, (std::max)(r, 0.0f) + 1.0 * tol);
}

int JH_TestPointIn_LineSection(float px, float py, float x1, float y1, float x2, float y2, float tol) {
  const SegmentFrame segment(x1, y1, x2, y2);
  if (segment.length2 == 0) return JH_TestPointIn_Rect(x1, y1, x1, y1, px, py, tol);
  return segment.contains(Vec{px, py}, tol);
}

int JH_TestPointIn_Arc(float px, float py, float cx, float cy, float r, float a1, float a2, float tol) {
  const double d = Vec{static_cast<double>(px) - cx, static_cast<double>(py) - cy}.length();
  return std::fabs((std::max)(r, 0.0f) - d) <= tol && direction_in_arc(px, py, cx, cy, r, a1, a2, tol);
}

int JH_TestPointIn_TuPolygon(float px, float py, int n, const float* xs, const float* ys, float tol) {
  if (n < 3) return 0;
  for (int i = n - 1, k = 0; k < n; i = k++) {
    const Vec edge{static_cast<double>(xs[k]) - xs[i], static_cast<double>(ys[k]) - ys[i]};
    const double det = edge.cross({static_cast<double>(px) - xs[i], static_cast<double>(py) - ys[i]});
    if (!(det >= 0) && !(det >= -tol * edge.length())) return 0;
  }
  return 1;
}

int JH_TestPointIn_JvBuYuanHuan(float px, float py, float cx, float cy, float r, float w, float a1, float a2,
                                float tol) {
  const double d = Vec{static_cast<double>(px) - cx, static_cast<double>(py) - cy}.length();
  return r - w / 2.0 - tol < d && d < r + w / 2.0 + tol && direction_in_arc(px, py, cx, cy, r, a1, a2, tol);
}
