#pragma once

/// Planar geometry on plain floats: figures are separate arguments, points as x then y. No function keeps state or
/// allocates. The last argument `tol` is a length; each function says which of its bounds are strict.

#include "platform/api.h"

/// Whether the intervals [a1, a2] and [b1, b2], each ordered, overlap: b1 or b2 strictly between a1 - tol and
/// a2 + tol, or a1 or a2 strictly between b1 - tol and b2 + tol.
/// Quirk: all bounds are strict, so with tol 0 two identical intervals do not overlap; rectangles rely on it.
inline int JH_TestCross_Float_Domain(float a1, float a2, float b1, float b2, float tol) {
  const double t = tol;
  const auto between = [t](double v, double low, double high) { return low - t < v && v < high + t; };
  return between(b1, a1, a2) || between(b2, a1, a2) || between(a1, b1, b2) || between(a2, b1, b2);
}

/// Whether two rectangles, each given by its smallest and its largest corner, overlap: both the X and the Y intervals
/// do, with strict bounds.
inline int JH_TestCrossRegon_Rect(float ax1, float ay1, float ax2, float ay2, float bx1, float by1, float bx2,
                                  float by2, float tol) {
  return JH_TestCross_Float_Domain(ax1, ax2, bx1, bx2, tol) && JH_TestCross_Float_Domain(ay1, ay2, by1, by2, tol);
}
