#pragma once

#include "qvtools/geometry/values/point.h"
#include "qvtools/platform/framework.h"

class CFShape;

/// A rectangle in world units: (x1, y1) has the smallest coordinates, (x2, y2) the largest. Constructors and `Init`
/// put the corners in order; the other operations take a rectangle in order for granted.
class QV_API CFRect {
 public:
  float x1 = 0;  ///< the smallest x
  float y1 = 0;  ///< the smallest y
  float x2 = 0;  ///< the largest x
  float y2 = 0;  ///< the largest y

  CFRect() = default;
  /// The rectangle of two opposite corners (a, b) and (c, d), in any order.
  CFRect(float a, float b, float c, float d) { Init(a, b, c, d); }
  CFRect(const CFPoint& p1, const CFPoint& p2) { Init(p1, p2); }
  /// The extent of a shape, grown by `margin` on every side.
  CFRect(float margin, const CFShape& shape);

  /// Becomes the rectangle of two opposite corners, in any order.
  void Init(float a, float b, float c, float d);
  void Init(const CFPoint& p1, const CFPoint& p2) { Init(p1.x, p1.y, p2.x, p2.y); }
  void SetFRect(float a, float b, float c, float d) { Init(a, b, c, d); }
  void SetFRect(const CFPoint& p1, const CFPoint& p2) { Init(p1, p2); }

  /// Along x, and along y.
  float Width() const { return x2 - x1; }
  float Height() const { return y2 - y1; }
  /// The corner of the smallest coordinates, and the one of the largest.
  CFPoint Nearest() const { return {x1, y1}; }
  CFPoint Furthest() const { return {x2, y2}; }

  /// 1 when the width or the height is less than tol (strict).
  int IsFRectEmpty(float tol) const;
  /// 1 when all four fields are less than tol away from 0 (strict).
  int IsFRectNull(float tol) const;
  /// 1 when the point lies in the rectangle grown by tol, borders included.
  int FpInFRect(const CFPoint& p, float tol) const { return FpInFRect(p.x, p.y, tol); }
  int FpInFRect(float x, float y, float tol) const {
    const double t = tol;
    return x1 - t <= x && x <= x2 + t && y1 - t <= y && y <= y2 + t;
  }

  /// The intersection of two rectangles.
  /// Quirk: rectangles that only touch, and a rectangle with its own copy, give (0, 0, 0, 0), because the crossing
  /// test is strict; callers take that for "nothing in common".
  CFRect IntersectFRect(const CFRect& r) const;
  CFRect operator&(const CFRect& r) const { return IntersectFRect(r); }
  /// The smallest rectangle that contains both.
  CFRect UnionFRect(const CFRect& r) const;
  CFRect operator|(const CFRect& r) const { return UnionFRect(r); }

  /// Moves the rectangle by the vector p, or by its opposite.
  CFRect& operator+=(const CFPoint& p);
  CFRect& operator-=(const CFPoint& p);
  /// Moves the sides outward: left by l, bottom by t, right by r, top by b.
  void Inflect(float l, float t, float r, float b);
  /// Grows the rectangle by s.cx on the left and right and by s.cy below and above; it does not move it.
  CFRect& OffSet(const CSize& s);
  /// Becomes the extent of its four corners turned about c by a radians, counter-clockwise.
  CFRect& Rotate(const CFPoint& c, float a);

  /// The integer rectangle (x1, y1, x2, y2), each field truncated toward zero.
  operator CRect() const;
};
