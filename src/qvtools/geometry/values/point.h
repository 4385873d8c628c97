#pragma once

#include "qvtools/api.h"

class CArchive;

/// A point in world units: two floats. Arithmetic is done in double and rounded when stored. Angles are radians,
/// counter-clockwise from +X.
class QV_API CFPoint {
 public:
  float x;  ///< world units
  float y;  ///< world units

  /// Leaves both fields as they are.
  CFPoint() {}
  /// Both fields as given.
  CFPoint(float px, float py) : x(px), y(py) {}

  /// The fields, as host programs read and set them.
  float GetX() const { return x; }
  float GetY() const { return y; }
  void SetX(float v) { x = v; }
  void SetY(float v) { y = v; }

  /// Exact comparison of both fields.
  bool operator==(const CFPoint& p) const { return x == p.x && y == p.y; }
  bool operator!=(const CFPoint& p) const { return !(*this == p); }
  /// Sums and differences, field by field.
  CFPoint operator+(const CFPoint& p) const { return {x + p.x, y + p.y}; }
  CFPoint operator-(const CFPoint& p) const { return {x - p.x, y - p.y}; }
  CFPoint& operator+=(const CFPoint& p) { return *this = *this + p; }
  CFPoint& operator-=(const CFPoint& p) { return *this = *this - p; }

  /// The distance to p; the two differences are rounded to float before they are squared.
  double Distance(const CFPoint& p) const;
  /// 1 when |x - p.x| <= tol and |y - p.y| <= tol: a square about p, borders included; else 0.
  int HitTest(const CFPoint& p, float tol) const;
  /// 1 when the point lies in the rectangle with the opposite corners p1 and p2 (in any order), borders included.
  int Contain(const CFPoint& p1, const CFPoint& p2) const;

  /// Turns the point about c by a radians, counter-clockwise.
  CFPoint& Rotate(const CFPoint& c, double a);
  /// Reflects the point in the line through p1 and p2.
  CFPoint& Mirror(const CFPoint& p1, const CFPoint& p2);
  /// Scales the point's distance from c by k.
  CFPoint& Stretch(const CFPoint& c, double k);

  /// Stores or loads x, y as 4-byte floats.
  void Serialize(CArchive& archive);
};
