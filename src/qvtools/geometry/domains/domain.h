#pragma once

/// Domains: closed outlines of straight and circular edges, as plain arrays of vertex records.

#include <cstdio>

#include "qvtools/api.h"
#include "qvtools/geometry/values/region.h"
#include "qvtools/platform/framework.h"

/// A vertex of an outline, with the edge that leaves it for the next vertex (the last edge closes on the first). The
/// radius of an arc is the distance of its centre from this vertex; the next vertex gives only the direction in which
/// it ends. An arc whose ends lie in one direction, and one of radius 0, has no sweep.
struct CDomainEdge {
  int reserved = 0;  ///< not used
  int side = 1;   ///< working mark of the crossing count: the piece lies above the test line (1), below (-1), on it (0)
  int isArc = 0;  ///< 1: the edge is a circular arc; 0: straight
  float x = 0;    ///< the vertex
  float y = 0;
  float cx = 0;  ///< centre, of arcs only
  float cy = 0;
  int ccw = 1;  ///< an arc's direction from this vertex to the next: 1 counter-clockwise, 0 clockwise
};

/// The edges of an outline as domain records, one for every vertex; returns their number. An arc too flat for its
/// centre to be a float becomes straight.
QV_API int Region_To_Domain(const CFRegion& region, CArray<CDomainEdge, CDomainEdge&>& edges);

/// Questions about a domain of n edges. Tolerances are lengths. An outline of no edges has no points.
class QV_API CPointInDomain {
 public:
  /// The bounding box of the domain last given to `Point_In_Domain` or `Point_In_OutLook_Domain`.
  float xmin = 0;
  float ymin = 0;
  float xmax = 0;
  float ymax = 0;

  /// 1 when the point is inside or within tol of the outline, else 0. For many questions about one outline
  /// `CPreparedDomain` answers the same faster.
  int Point_In_Domain(int n, const CDomainEdge* edges, float px, float py, float tol);
  /// 1 when the point lies in the bounding box grown by tol, borders included.
  int Point_In_OutLook_Domain(int n, const CDomainEdge* edges, float px, float py, float tol);
  /// 1 when the point lies on any edge.
  int Point_On_Edge_Domain(int n, const CDomainEdge* edges, float px, float py, float tol) const;
  /// Straight edge: distance < tol (strict). Arc: at most tol from the circle, and in a direction of the arc.
  int Point_On_One_Edge(const CDomainEdge& edge, const CDomainEdge& next, float px, float py, float tol) const;
  /// 1 when `Find_Cross_Points_H` is odd.
  int Point_Into_Domain(int n, const CDomainEdge* edges, float px, float py, float tol) const;
  /// How often the horizontal ray from the point towards +X crosses the outline: edges are broken at the ray's line,
  /// each piece gets a side, and changes of side to the right of the point are counted. For a point within tol of the
  /// outline the number has no meaning.
  int Find_Cross_Points_H(int n, const CDomainEdge* edges, float px, float py, float tol) const;

  /// Bounding boxes, arcs included. Nothing is written for n < 1.
  void Get_OutLook_One_Edge(const CDomainEdge& edge, const CDomainEdge& next, float& x1, float& y1, float& x2,
                            float& y2) const;
  void Get_OutLook_Domain(int n, const CDomainEdge* edges, float& x1, float& y1, float& x2, float& y2) const;

  /// The signed area, positive for a counter-clockwise outline.
  /// Quirk: the circular segment of a clockwise arc is left out; host programs describe their arcs accordingly.
  float Get_Area(int n, const CDomainEdge* edges) const;
  /// The centroid.
  /// Quirk: an area below 1e-5, a negative one too, is replaced by 1e-5 in the division; host programs give
  /// counter-clockwise outlines.
  void Get_Centroid(int n, const CDomainEdge* edges, float& x, float& y) const;
  /// Quirk: always 0; host programs link to it and compute perimeters themselves.
  float Get_ZhouChang(int, const CDomainEdge*) const { return 0; }
  /// The signed area of the triangle (x0, y0), vertex, next vertex, and its centroid.
  void Get_Tri_Area(const CDomainEdge& edge, const CDomainEdge& next, float x0, float y0, float& area, float& cx,
                    float& cy) const;
  /// The area between an arc and its chord, times the field ccw, and its centroid. For a straight edge, and an arc of
  /// no sweep or radius, the area is 0 and the centroid the middle of the chord.
  void Get_Arc_Para(const CDomainEdge& edge, const CDomainEdge& next, float& area, float& cx, float& cy) const;

  /// Whether a filled circle, or a rectangle given by its four corners in order (either way round), touches the domain.
  int Test_CrossRegon_Domain_Circle(int n, const CDomainEdge* edges, float cx, float cy, float r, float tol);
  int Test_CrossRegon_Domain_Rect(int n, const CDomainEdge* edges, const float* xs, const float* ys, float tol);
  /// Quirk: always 0; host programs link to it.
  int Test_CrossRegon_Domain_Domain(int, const CDomainEdge*, int, const CDomainEdge*, float) const { return 0; }

  /// Writes the edges as command-script lines, arcs counter-clockwise.
  void Draw_SCR(std::FILE* f, const CDomainEdge& edge, const CDomainEdge& next) const;
  void Draw_SCR(std::FILE* f, int n, const CDomainEdge* edges) const;

  /// Exchanges two values.
  void Swap(float& a, float& b) const { std::swap(a, b); }

  // The steps of the crossing count, on records relative to the tested point, whose ray is the X axis.

  /// Sets the side of a piece that does not cross the axis.
  void Find_SegmentPosition(CDomainEdge& edge, const CDomainEdge& next, float tol) const;
  /// Breaks the edge at an index of the closed outline where it crosses the axis: inserts up to two records after it
  /// and returns their number. Arcs keep their centre and direction.
  int Break_The_Edge(CArray<CDomainEdge, CDomainEdge&>& edges, int index) const;
  /// Inserts a record after an index.
  void Add_OneBian_AfterPosition(CArray<CDomainEdge, CDomainEdge&>& edges, int index, int isArc, float x, float y,
                                 float cx, float cy, int side, int ccw) const;
};
