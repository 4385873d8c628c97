#pragma once

/// Small numerical helpers on plane points: angles, distances, areas, turns and shifts. Angles are radians,
/// counter-clockwise from +X.

#include <cmath>

#include "platform/api.h"

/// The point record of the array functions.
struct POINT_2D {
  float x;
  float y;
  float z;  ///< carried along, not read by the library
};

/// The distance of two points, in the plane and in space.
inline float get_dist(float x1, float y1, float x2, float y2) {
  const double dx = static_cast<double>(x2) - x1, dy = static_cast<double>(y2) - y1;
  return static_cast<float>(std::sqrt(dx * dx + dy * dy));
}
inline double get_dist(double x1, double y1, double x2, double y2) {
  const double dx = x2 - x1, dy = y2 - y1;
  return std::sqrt(dx * dx + dy * dy);
}
inline double get_dist(double x1, double y1, double z1, double x2, double y2, double z2) {
  const double dx = x2 - x1, dy = y2 - y1, dz = z2 - z1;
  return std::sqrt(dx * dx + dy * dy + dz * dz);
}

/// The direction from point 1 to point 2, in [0, 2 pi); 0 for equal points.
QV_API double get_line_angle(double x1, double y1, double x2, double y2);

/// Twice the signed area of a triangle, positive when its points turn counter-clockwise.
inline double det_tri(double x1, double y1, double x2, double y2, double x3, double y3) {
  return x1 * y2 + x2 * y3 + x3 * y1 - y1 * x2 - y2 * x3 - y3 * x1;
}
/// The signed area of a triangle.
inline double area_tri(double x1, double y1, double x2, double y2, double x3, double y3) {
  return det_tri(x1, y1, x2, y2, x3, y3) / 2;
}

/// Turns the point, or n points, about the origin by a radians, clockwise for a > 0.
QV_API void rotate_coordinate(double a, float& x, float& y);
QV_API void rotate_points(int n, float* x, float* y, double a);
/// Subtracts (dx, dy) from the point.
QV_API void shift_coordinate(double dx, double dy, float& x, float& y);
/// Adds (dx, dy) to n points.
QV_API void shift_points(int n, float* x, float* y, double dx, double dy);

/// Exchange two values.
QV_API void swap_float(float& a, float& b);
QV_API void swap_double(double& a, double& b);
QV_API void swap_int(int& a, int& b);

/// A hue ramp: 0 is red, 256 yellow, 512 green, 768 cyan, 1024 blue, 1280 magenta. With h = (n >> 8) & 255 and
/// l = n & 255, components are 0 to 255. For h above 5 nothing is assigned.
QV_API void Get_RGB(int n, int& r, int& g, int& b);
