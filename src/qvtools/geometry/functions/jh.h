#pragma once

/// Planar geometry on plain floats: angles, distances, feet of perpendiculars, crossing points and touch tests. No
/// function keeps state or allocates. Arithmetic is done in double and rounded when a result is stored.
///
/// Figures are separate arguments, points as x then y:
///   point                      px, py
///   segment (LineSection)      x1, y1, x2, y2; a segment of no length is a point
///   line (Line)                two of its points, x1, y1, x2, y2
///   circle                     cx, cy, r; r <= 0 is the centre only
///   arc                        cx, cy, r, a1, a2: counter-clockwise from the angle a1 to a2 >= a1, which may exceed
///                              a full turn; a1 is expected in [0, TWO_PI_F]
///   partial annulus            cx, cy, r, w, a1, a2: the ring between r - w/2 and r + w/2, from the angle a1 to a2
///   (JvBuYuanHuan)
///   convex polygon (TuPolygon) n, xs[], ys[]: n >= 3 vertices, counter-clockwise, closed by itself; with n < 3 it
///                              contains nothing
///   implicit line              a, b, c with a y - b x = c
///
/// Angles are radians, counter-clockwise from +X; those that are returned lie in [0, TWO_PI_F) and may round up to
/// TWO_PI_F itself, which all functions here take. The last argument `tol` is a length, 0 or more; where an arc's
/// angles are tested it acts as the angle tol / r. Tests return 1 for yes, 0 for no. Infinite coordinates and NaN
/// give an answer without meaning, never a failure.

#include <cmath>

#include "qvtools/api.h"
#include "qvtools/geometry/values/constants.h"

// --- Frames and angles

/// Subtracts (dx, dy) from the point.
inline void JH_MovePoint0(float* x, float* y, float dx, float dy) {
  *x -= dx;
  *y -= dy;
}
/// Turns the point about the origin by a, clockwise: x' = y sin a + x cos a, y' = y cos a - x sin a.
QV_API void JH_RotatePoint0(float* x, float* y, float a);
/// The angle a reduced by whole turns of TWO_PI_F into [0, TWO_PI_F); 0 for what is not finite.
QV_API float JH_Set2PI(float a);
/// The direction from point 1 to point 2. HALF_PI_F for equal points.
QV_API float JH_GetAngle(float x1, float y1, float x2, float y2);
/// Whether an angle a in [0, TWO_PI_F) lies in the range from a1 to a2: nearer to a1 than tol (strict), or, lifted by a
/// turn where it is below a1, in [a1 - tol, a2 + tol]. Here tol is an angle.
inline int JH_TestAngleInArc(float a, float a1, float a2, float tol) {
  const double start = a1, t = tol;
  if (std::fabs(start - a) < t) return 1;
  const double lifted = a < a1 ? static_cast<double>(a) + TWO_PI_F : a;
  return start - t <= lifted && lifted <= a2 + t;
}

// --- Distances and areas

/// The distance of two points, and the same under its second name.
inline float JH_GetDistance(float x1, float y1, float x2, float y2) {
  const double dx = static_cast<double>(x2) - x1, dy = static_cast<double>(y2) - y1;
  return static_cast<float>(std::sqrt(dx * dx + dy * dy));
}
inline float JH_GetDist(float x1, float y1, float x2, float y2) {
  return JH_GetDistance(x2, y2, x1, y1);
}
/// Twice the signed area of a triangle, positive when its points turn counter-clockwise.
inline double JH_GetDet_Tri(double x1, double y1, double x2, double y2, double x3, double y3) {
  return x1 * y2 + x2 * y3 + x3 * y1 - y1 * x2 - y2 * x3 - y3 * x1;
}
/// The length of the arc about (cx, cy) from point 1, counter-clockwise to the direction of point 2.
QV_API float JH_GetLenArc(float cx, float cy, float x1, float y1, float x2, float y2);
/// The distance of a point from the infinite line; from its point when both are equal.
QV_API float JH_GetMinDist_PointToLine(float px, float py, float x1, float y1, float x2, float y2);
/// The distance of a point from the segment.
QV_API float JH_GetMinDist_PointToLineSection(float px, float py, float x1, float y1, float x2, float y2);
/// Grows the box to take in (x, y).
inline void JH_Update_OutLook_Rect(float* xmin, float* ymin, float* xmax, float* ymax, float x, float y) {
  if (x < *xmin) *xmin = x;
  if (y < *ymin) *ymin = y;
  if (x > *xmax) *xmax = x;
  if (y > *ymax) *ymax = y;
}

// --- Feet of perpendiculars

/// The foot of p on the infinite line.
QV_API void JH_GetCuiZu_PointToLine(float px, float py, float x1, float y1, float x2, float y2, float* fx, float* fy);
/// 1, with the foot written, when it lies on the segment or at most tol beyond its ends; else 0.
QV_API int JH_GetCuiZu_PointToLineSection(float px, float py, float x1, float y1, float x2, float y2, float* fx,
                                          float* fy, float tol);
/// 1, with the foot written, when the direction of p from the centre is in the arc; else 0.
QV_API int JH_GetCuiZu_PointToArc(float px, float py, float cx, float cy, float r, float a1, float a2, float* fx,
                                  float* fy, float tol);

// --- Point tests

/// The rectangle of its smallest and largest corner, grown by tol, borders included. The figure comes first here.
inline int JH_TestPointIn_Rect(float x1, float y1, float x2, float y2, float px, float py, float tol) {
  const double t = tol;
  return x1 - t <= px && px <= x2 + t && y1 - t <= py && py <= y2 + t;
}
/// Distance from the centre < r + tol (strict).
QV_API int JH_TestPointIn_Circle(float px, float py, float cx, float cy, float r, float tol);
/// At most tol beyond the ends along the segment, and at most tol sideways.
QV_API int JH_TestPointIn_LineSection(float px, float py, float x1, float y1, float x2, float y2, float tol);
/// At most tol from the circle, and in the range of angles.
QV_API int JH_TestPointIn_Arc(float px, float py, float cx, float cy, float r, float a1, float a2, float tol);
/// To the left of every edge or at most tol to its right.
QV_API int JH_TestPointIn_TuPolygon(float px, float py, int n, const float* xs, const float* ys, float tol);
/// In the range of angles, and r - w/2 - tol < distance from the centre < r + w/2 + tol (strict).
QV_API int JH_TestPointIn_JvBuYuanHuan(float px, float py, float cx, float cy, float r, float w, float a1, float a2,
                                       float tol);
/// Quirk: always 0; reserved, and host programs link to it.
inline int JH_TestPointIn_Polygon(float, float, int, const float*, const float*, float) {
  return 0;
}

// --- Implicit lines

/// The form a y - b x = c of the line through two points: a = 1 when |y2 - y1| <= |x2 - x1|, else b = 1. Equal points
/// give the level line through them.
QV_API void JH_GetLineFunction(float x1, float y1, float x2, float y2, float* a, float* b, float* c);
/// The crossing of two implicit lines: 1 with the point written, or 0 when |a2 b1 - a1 b2| < tol: parallel.
QV_API int JH_GetInterPoint_Line_ByFunc(float a1, float b1, float c1, float a2, float b2, float c2, float* x, float* y,
                                        float tol);
/// The same for two lines by two points each.
QV_API int JH_GetInterPoint_Line(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4,
                                 float* x, float* y, float tol);

// --- Crossing points

/// The crossing of two segments: 1 with the point, which lies on the first segment's line, at most tol beyond its ends;
/// 2, with nothing written, when they are parallel (slope below 1e-5) and less than tol apart sideways; else 0. The
/// bounding boxes must overlap within tol (strict). A segment of no length gives 1 when its point is on the other.
QV_API int JH_GetInterPoint_LineSection_LineSection(float x1, float y1, float x2, float y2, float x3, float y3,
                                                    float x4, float y4, float* x, float* y, float tol);
/// The same function under its second name, and its older form, which does not look at the bounding boxes first (so
/// that it gives 2 for segments on one line wherever they lie).
QV_API int JH_GetInterPoint_LineSection(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4,
                                        float* x, float* y, float tol);
QV_API int JH_GetInterPoint_LineSection_Old(float x1, float y1, float x2, float y2, float x3, float y3, float x4,
                                            float y4, float* x, float* y, float tol);

// The functions below return the number of points written, to (ax, ay) first, then to (bx, by); -1, with nothing
// written, when the figures lie on one circle and share a stretch of it.

/// The line of the segment touches the circle when its distance d from the centre has |d - r| <= tol: then the foot is
/// the one point. Points at most tol beyond the ends of the segment count; two come in order along it.
QV_API int JH_GetInterPoint_Circle_LineSection(float cx, float cy, float r, float x1, float y1, float x2, float y2,
                                               float* ax, float* ay, float* bx, float* by, float tol);
/// Circles within tol of touching, from outside or inside, give the touching point; those whose centres and radii agree
/// within tol (strict) coincide. With tol 0 only what is exactly so does.
QV_API int JH_GetInterPoint_Circle_Circle(float x1, float y1, float r1, float x2, float y2, float r2, float* ax,
                                          float* ay, float* bx, float* by, float tol);
/// Those crossings of the circles whose angle is in the arc, or in both arcs.
QV_API int JH_GetInterPoint_LineSection_Arc(float x1, float y1, float x2, float y2, float cx, float cy, float r,
                                            float a1, float a2, float* ax, float* ay, float* bx, float* by, float tol);
QV_API int JH_GetInterPoint_Circle_Arc(float x1, float y1, float r1, float cx, float cy, float r, float a1, float a2,
                                       float* ax, float* ay, float* bx, float* by, float tol);
QV_API int JH_GetInterPoint_Arc_Arc(float x1, float y1, float r1, float a1, float b1, float x2, float y2, float r2,
                                    float a2, float b2, float* ax, float* ay, float* bx, float* by, float tol);

// --- Touch tests: whether two figures share a point, within tol. Circles, polygons and annuli are filled.

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
/// The outline of the circle, not its inside: 0 also when both ends are inside by tol or more.
QV_API int JH_TestCross_Circle_LineSection(float cx, float cy, float r, float x1, float y1, float x2, float y2,
                                           float tol);
QV_API int JH_TestCross_LineSection_Arc(float x1, float y1, float x2, float y2, float cx, float cy, float r, float a1,
                                        float a2, float tol);

/// Distance of the centres < r1 + r2 + tol (strict); a circle within another touches it.
QV_API int JH_TestCrossRegon_Circle_Circle(float x1, float y1, float r1, float x2, float y2, float r2, float tol);
/// Distance from the centre to the segment < r + tol (strict).
QV_API int JH_TestCrossRegon_Circle_LineSection(float cx, float cy, float r, float x1, float y1, float x2, float y2,
                                                float tol);
QV_API int JH_TestCrossRegon_Circle_Arc(float x1, float y1, float r1, float cx, float cy, float r, float a1, float a2,
                                        float tol);
QV_API int JH_TestCrossRegon_Circle_TuPolygon(float cx, float cy, float r, int n, const float* xs, const float* ys,
                                              float tol);
QV_API int JH_TestCrossRegon_Circle_JvBuYuanHuan(float x1, float y1, float r1, float cx, float cy, float r, float w,
                                                 float a1, float a2, float tol);
/// Segments on one line count as touching.
QV_API int JH_TestCrossRegon_LineSection_LineSection(float x1, float y1, float x2, float y2, float x3, float y3,
                                                     float x4, float y4, float tol);
QV_API int JH_TestCrossRegon_LineSection_Arc(float x1, float y1, float x2, float y2, float cx, float cy, float r,
                                             float a1, float a2, float tol);
QV_API int JH_TestCrossRegon_LineSection_TuPolygon(float x1, float y1, float x2, float y2, int n, const float* xs,
                                                   const float* ys, float tol);
QV_API int JH_TestCrossRegon_LineSection_JvBuYuanHuan(float x1, float y1, float x2, float y2, float cx, float cy,
                                                      float r, float w, float a1, float a2, float tol);
QV_API int JH_TestCrossRegon_Arc_Arc(float x1, float y1, float r1, float a1, float b1, float x2, float y2, float r2,
                                     float a2, float b2, float tol);
QV_API int JH_TestCrossRegon_Arc_TuPolygon(float cx, float cy, float r, float a1, float a2, int n, const float* xs,
                                           const float* ys, float tol);
QV_API int JH_TestCrossRegon_Arc_JvBuYuanHuan(float x1, float y1, float r1, float a1, float b1, float cx, float cy,
                                              float r, float w, float a2, float b2, float tol);
/// Vertices of one polygon are looked for in the other with the fixed tolerance 1e-5.
QV_API int JH_TestCrossRegon_TuPolygon_TuPolygon(int n1, const float* xs1, const float* ys1, int n2, const float* xs2,
                                                 const float* ys2, float tol);
QV_API int JH_TestCrossRegon_TuPolygon_JvBuYuanHuan(int n, const float* xs, const float* ys, float cx, float cy,
                                                    float r, float w, float a1, float a2, float tol);
QV_API int JH_TestCrossRegon_JvBuYuanHuan_JvBuYuanHuan(float x1, float y1, float r1, float w1, float a1, float b1,
                                                       float x2, float y2, float r2, float w2, float a2, float b2,
                                                       float tol);
