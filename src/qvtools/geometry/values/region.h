#pragma once

#include "qvtools/geometry/values/point.h"
#include "qvtools/geometry/values/rect.h"
#include "qvtools/geometry/values/shape.h"
#include "qvtools/platform/framework.h"

/// A closed outline of straight and circular edges: its vertices in order, each with the form of the edge that leaves
/// it (`CFShoot::C`); the last edge closes on the first vertex. An edge with |C| >= 6.283185307 is the full circle on
/// its chord as diameter, together with the chord.
class QV_API CFRegion : public CArray<CFShoot, const CFShoot&> {
 public:
  CFRegion() = default;
  /// The outline through n points, all edges straight.
  CFRegion(const CFPoint* points, int n) { Init(points, n); }
  /// The four corners of a rectangle, counter-clockwise from the smallest.
  CFRegion(const CFRect& r);

  /// A copy.
  CFRegion(const CFRegion& other) : CArray() { *this = other; }
  CFRegion& operator=(const CFRegion& other);
  /// Becomes the outline through n points, all edges straight, or a copy.
  void Init(const CFPoint* points, int n);
  void Init(const CFRegion& other) { *this = other; }

  /// The edge that leaves vertex i (below the size), as a shape.
  CFShape GetEdge(int i) const;
  /// The extent: p1 receives the smallest coordinates, p2 the largest; (0, 0) twice when there is no vertex.
  void GetRect(CFPoint& p1, CFPoint& p2) const;
  /// 1 when the outline turns counter-clockwise (its signed area, circular segments counted, is positive), else 0.
  int IsOrder() const;

  /// 1 when p lies inside, by the parity of crossings on a horizontal ray from p. An edge counts when exactly one of
  /// its ends is above the ray, an arc as its pieces between the top and the bottom of its circle do. Points on the
  /// outline itself may get either answer.
  int InRegion(const CFPoint& p) const;
  /// Quirk: these two always give 0; host programs link to them and expect no more.
  int InRegion(const CFShape&) const { return 0; }
  int Similar(const CFRegion&, float) const { return 0; }
  /// 1 when p is within tol of the outline (inclusive).
  int HitTest(const CFPoint& p, float tol) const;
  /// Whether a shape lies wholly inside (borders included), or, for a mode other than 0, inside or across or touching
  /// the outline.
  int HitShape(const CFShape& shape, int mode) const;
  /// Selection by the rectangle of two opposite corners. 1 when the outline lies wholly inside (borders included); when
  /// p1.x > p2.x also when it crosses the rectangle's border.
  int Contain(const CFPoint& p1, const CFPoint& p2) const;

  /// The points where the outline meets a shape (lines as segments), in order around the outline and each once.
  /// `out` has room for two points for every edge. Returns their number, or -1 when an edge coincides with the shape
  /// over a stretch; the points are then incomplete.
  int Intersect(const CFShape& shape, CFPoint* out) const;
  /// The points where two outlines meet. `out` has room for two points for every pair of edges; when first_only is not
  /// 0, the first found is the only one. Returns their number, or -1 when edges coincide over a stretch.
  int Intersect(const CFRegion& other, CFPoint* out, int first_only) const;
  /// 1 when two outlines meet; when `inside` is not 0 also when one lies inside the other; else 0.
  int Intersect(const CFRegion& other, int inside) const;

  /// Moves the outline by a vector, and turns it about c by a radians, counter-clockwise.
  CFRegion& Offset(const CFPoint& by);
  CFRegion& Rotate(const CFPoint& c, double a);
  /// The mirror image in the line through p1 and p2; arcs turn round.
  CFRegion& Mirror(const CFPoint& p1, const CFPoint& p2);
  /// Scales the distances from c by k.
  CFRegion& Stretch(const CFPoint& c, double k);

  /// Stores or loads an unsigned 32-bit vertex count, then x, y, C of each vertex as 4-byte floats. When fewer bytes
  /// are left than the count asks for, the region stays as it was and the archive's failed flag is set.
  void Serialize(CArchive& archive) override;
};
