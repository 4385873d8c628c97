#include "geometry/numeric.h"

#include <utility>

#include "geometry/arc_math.h"

double get_line_angle(double x1, double y1, double x2, double y2) {
  return qv::detail::full_turn(std::atan2(y2 - y1, x2 - x1));
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
