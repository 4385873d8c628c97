#pragma once

/// Polygons given as arrays of n vertices, closed by themselves. Counter-clockwise areas are positive.

#include "qvtools/api.h"
#include "qvtools/geometry/numerics/numeric.h"

/// Where p lies: 1 inside, 0 outside, -n on an edge, 2 or n + 1 at a vertex (or level with one and within reach of it).
/// Crossing parity along the ray towards +X with the fixed tolerance 0.0001, to which lengths, and products of two
/// heights, are compared alike.
/// Quirk: outlines of about a centimetre, given in metres, are answered wrongly; host programs give larger ones.
QV_API int in_domain(int n, const float* xs, const float* ys, float px, float py);
/// 1 when `in_domain` gives anything but 0; else, and for n < 1, 0.
QV_API int point_in_area(int n, const POINT_2D* points, float px, float py);

/// The area, positive when the points turn counter-clockwise.
QV_API float area_poli(int n, const float* xs, const float* ys);
/// The centroid; the first vertex when twice the area is below 1e-7. Nothing is written for n < 1.
QV_API void centroid_poli(int n, const float* xs, const float* ys, float* cx, float* cy);
/// The perimeter.
QV_API float zhouchang_poli(int n, const float* xs, const float* ys);
