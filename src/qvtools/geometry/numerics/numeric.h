#pragma once

/// Small numerical helpers on plane points: angles, distances, areas, turns and shifts. Angles are radians,
/// counter-clockwise from +X.

#include <cmath>

#include "qvtools/api.h"

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

/// The same for points.
inline double det3_point_2d(const POINT_2D& a, const POINT_2D& b, const POINT_2D& c) {
  return det_tri(a.x, a.y, b.x, b.y, c.x, c.y);
}
inline float get_dist_point_2d(const POINT_2D& a, const POINT_2D& b) {
  return get_dist(a.x, a.y, b.x, b.y);
}

/// The distance of p from the segment from point 1 to point 2.
QV_API float get_dist_point_segment(float px, float py, float x1, float y1, float x2, float y2);
inline float get_dist_point_segment_2d(const POINT_2D& p, const POINT_2D& a, const POINT_2D& b) {
  return get_dist_point_segment(p.x, p.y, a.x, a.y, b.x, b.y);
}

/// The turn from the direction of line 1 (points 1, 2) to that of line 2 (points 3, 4), counter-clockwise, in [0, 2
/// pi).
QV_API double get_two_line_angle(double x1, double y1, double x2, double y2, double x3, double y3, double x4,
                                 double y4);
/// The largest and the smallest inner angle of a triangle; with equal points among its corners, pi and 0.
QV_API double max_angle_of_tri(double x1, double y1, double x2, double y2, double x3, double y3);
QV_API double min_angle_of_tri(double x1, double y1, double x2, double y2, double x3, double y3);

/// The point at a distance from (x, y) in the direction `angle`.
QV_API void polar(double x, double y, double angle, double distance, float* px, float* py);
/// The line from point 1 to point 2, moved by d to its left. Equal points stay.
QV_API void line_offset_left(double x1, double y1, double x2, double y2, double d, float* ox1, float* oy1, float* ox2,
                             float* oy2);

/// The implicit form a y - b x = c of the line through two points, with the larger of |a|, |b| equal to 1. Equal points
/// give the level line through them.
QV_API void line_func(float x1, float y1, float x2, float y2, float* a, float* b, float* c);
/// The crossing of two lines, in implicit form or by two points each: 1 with the point written, or 0 when they are
/// parallel (the determinant of their implicit forms is below 1e-6).
QV_API int line_func_inter(float a1, float b1, float c1, float a2, float b2, float c2, float* x, float* y);
QV_API int line_point_inter(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4, float* x,
                            float* y);
/// The crossing of two segments, ends included: 1 with the point written, or 0 when there is none or they are parallel.
QV_API int segment_cross_point(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4, float* x,
                               float* y);
/// The points where the infinite line through points 1 and 2 meets the border of the rectangle (two opposite corners),
/// in order along the line: their number, 0, 1 (a corner) or 2. A line along a side meets it at the side's ends.
QV_API int get_rect_jiaodian(float x1, float y1, float x2, float y2, float left, float bottom, float right, float top,
                             float* ax, float* ay, float* bx, float* by);

/// Over n values: the largest and smallest value, and the largest and smallest magnitude. 0 for n < 1.
QV_API float get_dim_max(int n, const float* values);
QV_API float get_dim_min(int n, const float* values);
QV_API float get_dim_absmax(int n, const float* values);
QV_API float get_dim_absmin(int n, const float* values);

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
