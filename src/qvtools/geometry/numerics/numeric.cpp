#include "qvtools/geometry/numerics/numeric.h"

#include <algorithm>
#include <array>
#include <utility>

#include "qvtools/geometry/functions/jh.h"
#include "qvtools/geometry/values/internal/arc_math.h"

using qv::detail::Vec;

namespace {

std::array<double, 3> angles_of_tri(double x1, double y1, double x2, double y2, double x3, double y3) {
  const Vec side[] = {{x2 - x1, y2 - y1}, {x3 - x2, y3 - y2}, {x1 - x3, y1 - y3}};
  std::array<double, 3> angles{};
  for (std::size_t i = 0; i < 3; ++i) {
    const Vec& to = side[i];
    const Vec from{-side[(i + 2) % 3].x, -side[(i + 2) % 3].y};
    angles[i] = std::atan2(std::fabs(to.cross(from)), to.dot(from));
  }
  if (std::any_of(side, side + 3, [](const Vec& s) { return s.length() == 0; })) angles = {qv::kPi, 0, 0};
  return angles;
}

bool is_nearer_to_0(float a, float b) {
  return std::fabs(a) < std::fabs(b);
}

}  // namespace

double get_line_angle(double x1, double y1, double x2, double y2) {
  return qv::detail::normalize_angle(std::atan2(y2 - y1, x2 - x1));
}

double get_two_line_angle(double x1, double y1, double x2, double y2, double x3, double y3, double x4, double y4) {
  return qv::detail::normalize_angle(get_line_angle(x3, y3, x4, y4) - get_line_angle(x1, y1, x2, y2));
}

double max_angle_of_tri(double x1, double y1, double x2, double y2, double x3, double y3) {
  const auto angles = angles_of_tri(x1, y1, x2, y2, x3, y3);
  return *std::max_element(angles.begin(), angles.end());
}

double min_angle_of_tri(double x1, double y1, double x2, double y2, double x3, double y3) {
  const auto angles = angles_of_tri(x1, y1, x2, y2, x3, y3);
  return *std::min_element(angles.begin(), angles.end());
}

float get_dist_point_segment(float px, float py, float x1, float y1, float x2, float y2) {
  return JH_GetMinDist_PointToLineSection(px, py, x1, y1, x2, y2);
}

void polar(double x, double y, double angle, double distance, float* px, float* py) {
  *px = static_cast<float>(x + distance * std::cos(angle));
  *py = static_cast<float>(y + distance * std::sin(angle));
}

void line_offset_left(double x1, double y1, double x2, double y2, double d, float* ox1, float* oy1, float* ox2,
                      float* oy2) {
  const double length = get_dist(x1, y1, x2, y2);
  const double nx = length == 0 ? 0 : -(y2 - y1) / length * d, ny = length == 0 ? 0 : (x2 - x1) / length * d;
  *ox1 = static_cast<float>(x1 + nx);
  *oy1 = static_cast<float>(y1 + ny);
  *ox2 = static_cast<float>(x2 + nx);
  *oy2 = static_cast<float>(y2 + ny);
}

void line_func(float x1, float y1, float x2, float y2, float* a, float* b, float* c) {
  JH_GetLineFunction(x1, y1, x2, y2, a, b, c);
}

int line_func_inter(float a1, float b1, float c1, float a2, float b2, float c2, float* x, float* y) {
  constexpr float kParallel = 1e-6f;
  return JH_GetInterPoint_Line_ByFunc(a1, b1, c1, a2, b2, c2, x, y, kParallel);
}

int line_point_inter(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4, float* x,
                     float* y) {
  float a1, b1, c1, a2, b2, c2;
  line_func(x1, y1, x2, y2, &a1, &b1, &c1);
  line_func(x3, y3, x4, y4, &a2, &b2, &c2);
  return line_func_inter(a1, b1, c1, a2, b2, c2, x, y);
}

int segment_cross_point(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4, float* x,
                        float* y) {
  const Vec u{static_cast<double>(x2) - x1, static_cast<double>(y2) - y1};
  const Vec v{static_cast<double>(x4) - x3, static_cast<double>(y4) - y3};
  const Vec d{static_cast<double>(x3) - x1, static_cast<double>(y3) - y1};
  const double det = u.cross(v), s = d.cross(v) / det, t = d.cross(u) / det;
  if (det == 0 || !(0 <= s && s <= 1 && 0 <= t && t <= 1)) return 0;
  *x = static_cast<float>(x1 + u.x * s);
  *y = static_cast<float>(y1 + u.y * s);
  return 1;
}

int get_rect_jiaodian(float x1, float y1, float x2, float y2, float left, float bottom, float right, float top,
                      float* ax, float* ay, float* bx, float* by) {
  // The range of the parameter t in which x1 + t dx, y1 + t dy lies between both pairs of sides.
  const double from[] = {x1, y1}, step[] = {static_cast<double>(x2) - x1, static_cast<double>(y2) - y1};
  const double low[] = {(std::min)(left, right), (std::min)(bottom, top)};
  const double high[] = {(std::max)(left, right), (std::max)(bottom, top)};
  double enter = -HUGE_VAL, leave = HUGE_VAL;
  for (int i = 0; i < 2; ++i) {
    if (step[i] == 0) {
      if (from[i] < low[i] || from[i] > high[i]) return 0;
      continue;
    }
    const double t1 = (low[i] - from[i]) / step[i], t2 = (high[i] - from[i]) / step[i];
    enter = (std::max)(enter, (std::min)(t1, t2));
    leave = (std::min)(leave, (std::max)(t1, t2));
  }
  if (!(enter <= leave) || !std::isfinite(enter) || !std::isfinite(leave)) return 0;
  *ax = static_cast<float>(from[0] + step[0] * enter);
  *ay = static_cast<float>(from[1] + step[1] * enter);
  if (enter == leave) return 1;
  *bx = static_cast<float>(from[0] + step[0] * leave);
  *by = static_cast<float>(from[1] + step[1] * leave);
  return 2;
}

float get_dim_max(int n, const float* values) {
  return n < 1 ? 0 : *std::max_element(values, values + n);
}
float get_dim_min(int n, const float* values) {
  return n < 1 ? 0 : *std::min_element(values, values + n);
}
float get_dim_absmax(int n, const float* values) {
  return n < 1 ? 0 : std::fabs(*std::max_element(values, values + n, is_nearer_to_0));
}
float get_dim_absmin(int n, const float* values) {
  return n < 1 ? 0 : std::fabs(*std::min_element(values, values + n, is_nearer_to_0));
}

void rotate_coordinate(double a, float& x, float& y) {
  rotate_points(1, &x, &y, a);
}

void rotate_points(int n, float* x, float* y, double a) {
  const double c = std::cos(a), s = std::sin(a);
  for (int i = 0; i < n; ++i) {
    const double px = x[i], py = y[i];
    x[i] = static_cast<float>(px * c + py * s);
    y[i] = static_cast<float>(py * c - px * s);
  }
}

void shift_coordinate(double dx, double dy, float& x, float& y) {
  shift_points(1, &x, &y, -dx, -dy);
}

void shift_points(int n, float* x, float* y, double dx, double dy) {
  for (int i = 0; i < n; ++i) {
    x[i] = static_cast<float>(x[i] + dx);
    y[i] = static_cast<float>(y[i] + dy);
  }
}

void swap_float(float& a, float& b) {
  std::swap(a, b);
}
void swap_double(double& a, double& b) {
  std::swap(a, b);
}
void swap_int(int& a, int& b) {
  std::swap(a, b);
}

void Get_RGB(int n, int& r, int& g, int& b) {
  const int l = n & 255;
  const int ramp[6][3] = {{255, l, 0},       {255 - l, 255, 0}, {0, 255, l},
                          {0, 255 - l, 255}, {l, 0, 255},       {255, 0, 255 - l}};
  const int h = (n >> 8) & 255;
  if (h > 5) return;
  r = ramp[h][0];
  g = ramp[h][1];
  b = ramp[h][2];
}
