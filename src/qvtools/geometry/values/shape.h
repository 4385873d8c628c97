#pragma once

#include <cmath>

#include "qvtools/geometry/values/constants.h"
#include "qvtools/geometry/values/point.h"

/// One value for a point, a straight segment, a circular arc or a full circle, in world units and radians.
///
/// The base point is the start of a line and the centre of an arc or circle. (R, A) and (-R, A + pi) describe the same
/// figure; accessors hide the sign of R, and setters keep it. The kind is the first that applies: a point when R = 0,
/// a line when B = 0, an arc when |B| < 6.283185307, else a circle.
class QV_API CFShape : public CFPoint {
 public:
  float R;  ///< signed length (line) or radius (arc, circle); 0 for a point
  float A;  ///< direction of a line; start angle of an arc, seen from its centre
  float B;  ///< signed sweep of an arc, positive counter-clockwise; 0 for a line

  /// A point; the other fields are left as they are.
  CFShape() : R(0) {}
  CFShape(float px, float py) : CFPoint(px, py), R(0), A(0), B(0) {}
  CFShape(const CFPoint& p) : CFPoint(p), R(0), A(0), B(0) {}
  /// The line of length 1 from p in direction a.
  CFShape(const CFPoint& p, float a) : CFPoint(p), R(1), A(a), B(0) {}
  /// The segment from p1 to p2.
  CFShape(const CFPoint& p1, const CFPoint& p2);
  /// All fields as given.
  CFShape(const CFPoint& p, float r, float a, float b) : CFPoint(p), R(r), A(a), B(b) {}
  /// The arc from p1 to p2 with the included angle |c|: clockwise for c > 0, counter-clockwise for c < 0 (so a DXF
  /// bulge b is c = -4 atan(b)); the sweep becomes -c. c = 0, equal points, and an arc so flat that its radius
  /// overflows a float give the segment; |c| >= 6.283185307 gives the full circle on p1 p2 as its diameter.
  CFShape(const CFPoint& p1, const CFPoint& p2, float c);
  /// The arc from p1 through p2 to p3 on their common circle. Points on one line give the segment from p1 to p3.
  CFShape(const CFPoint& p1, const CFPoint& p2, const CFPoint& p3);

  /// The kind: 1 for yes, 0 for no.
  int IsPoint() const { return R == 0; }
  int IsLine() const { return R != 0 && B == 0; }
  int IsArc() const { return R != 0 && B != 0 && std::fabs(B) < qv::kTwoPi; }
  int IsCircle() const { return R != 0 && std::fabs(B) >= qv::kTwoPi; }

  /// The fields, as a figure whose R is not negative has them; both names of each do the same.
  float GetR() const { return std::fabs(R); }
  float GetRadius() const { return std::fabs(R); }
  float GetA() const { return R < 0 ? static_cast<float>(A + qv::kPi) : A; }
  float GetStartAngle() const { return GetA(); }
  float GetB() const { return B; }
  float GetEndAngle() const { return static_cast<float>((R < 0 ? A + qv::kPi : A) + B); }
  /// Set them; the sign of R stays.
  void SetA(double a) { A = static_cast<float>(R < 0 ? a + qv::kPi : a); }
  void SetR(float r) { R = R < 0 ? -r : r; }
  void SetB(float b) { B = b; }

  /// The ends of the figure, in the direction of its sweep.
  CFPoint GetStartPoint() const;
  CFPoint GetEndPoint() const;
  /// Half-way along the figure; for a circle its top.
  CFPoint GetMiddlePoint() const;
  /// The length of a line, the arc length of an arc or circle.
  double GetLength() const;
  /// The extent: p1 receives the smallest coordinates, p2 the largest.
  void GetRect(CFPoint& p1, CFPoint& p2) const;

  /// The distance of p from the infinite line, or from the circle of an arc.
  /// Quirk: an arc stored with a negative R gives the distance from its centre plus |R|; callers store R >= 0 where
  /// they want the true distance.
  double Distance(const CFPoint& p) const;
  /// 1 when p lies strictly to the left of the line through the base point in direction A. When p is so near to the
  /// line that the rounding of the float A decides its side, p counts as on the line.
  int AtLeft(const CFPoint& p) const;
  /// 1 when p is on the figure: less than tol away sideways (strict), and at most tol beyond its ends (inclusive).
  /// A point is hit at a distance of at most tol.
  int OnShape(const CFPoint& p, float tol) const;
  /// 1 when the foot of p on the line lies within [-a, length + b] along it; for an arc, when the point of its circle
  /// nearest to p lies within these arc lengths. The foot on a point is the point; a circle takes every p.
  int OverLine(const CFPoint& p, float a, float b) const;
  /// 1 when the finite figure comes within tol of p (inclusive).
  int HitTest(const CFPoint& p, float tol) const { return DistanceToFigure(p) <= tol; }
  /// Selection by the rectangle of two opposite corners. 1 when the figure lies wholly inside (borders included);
  /// when p1.x > p2.x also when it crosses the rectangle's border.
  int Contain(const CFPoint& p1, const CFPoint& p2) const;
  /// The distance of p from the finite figure.
  double DistanceToFigure(const CFPoint& p) const;

  /// Crossing points of this shape and s, written to out[0], out[1] in their order along this shape. flag1 belongs to
  /// this shape, flag2 to s: 1 takes a line as unbounded, 0 as a segment; arcs and circles take no notice. Returns the
  /// number of points (0, 1, 2), or -1 when the figures coincide over a stretch (nothing is written then). Ends and
  /// tangents count within the float resolution of the figures, 1/2,000,000 of their largest coordinate.
  int Intersect(const CFShape& s, CFPoint* out, int flag1, int flag2) const;

  /// Compares kind, then base point, |R| and start angle (each within tol, inclusive), then the sweep.
  /// Quirk: the last comparison is reversed: 1 only when the sweeps differ by more than tol. Host programs built
  /// around it; a shape is not similar to itself.
  int Similar(const CFShape& s, float tol) const;

  /// Turns the figure about c by a radians, counter-clockwise, or scales its distances from c by k.
  CFShape& Rotate(const CFPoint& c, double a);
  CFShape& Stretch(const CFPoint& c, double k);
  /// The mirror image in the line through p1 and p2; the sweep turns round.
  CFShape& Mirror(const CFPoint& p1, const CFPoint& p2);
  /// Moves the figure sideways by d, to the left of its direction: a line shifts to the side that `AtLeft` calls left,
  /// a counter-clockwise arc or circle shrinks by d and a clockwise one grows. A point stays.
  CFShape& VertMove(float d);

  /// Stores or loads x, y, R, A, B as 4-byte floats.
  void Serialize(CArchive& archive);
};

/// A vertex of an outline, with the form of the edge that leaves it.
class QV_API CFShoot : public CFPoint {
 public:
  /// The included angle of the edge in radians, as in `CFShape(p1, p2, c)`: 0 for a straight edge, positive for an arc
  /// that runs clockwise, negative for one that runs counter-clockwise.
  float C;

  /// A vertex; without c its edge is straight.
  CFShoot() : C(0) {}
  CFShoot(float px, float py, float c = 0) : CFPoint(px, py), C(c) {}
  CFShoot(const CFPoint& p, float c = 0) : CFPoint(p), C(c) {}

  /// Whether the edge is straight, an arc (a full circle too), a full circle; and its angle.
  int IsLine() const { return C == 0; }
  int IsArc() const { return C != 0; }
  int IsCircle() const { return std::fabs(C) >= qv::kTwoPi; }
  float GetC() const { return C; }
  void SetC(float c) { C = c; }

  /// Stores or loads x, y, C as 4-byte floats.
  void Serialize(CArchive& archive);
};
