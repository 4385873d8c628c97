#pragma once

/// A scalar field over a plane region: a mesh of triangles with up to five values at each node (stresses or
/// displacements of a slab, say), its values at any point, and its picture as a colour contour.
///
/// The file, as text: "N,M", the numbers of nodes and triangles; N lines "x,y,v0,v1,v2,v3,v4" with six decimals; M
/// lines "a,b,c" with the numbers of three nodes, from 1. Blanks separate fields too; missing fields are 0.

#include <cstdio>

#include "qvtools/geometry/values/coor.h"
#include "qvtools/platform/device.h"
#include "qvtools/platform/framework.h"

/// A node: its place in metres and its values.
class QV_API CChangNode {
 public:
  static constexpr int kValues = 5;  ///< values at a node

  float x = 0;                ///< metres
  float y = 0;                ///< metres
  float value[kValues] = {};  ///< what was computed there

  /// Reads one line. Returns 1; 0, with all fields 0, at the end of the file.
  int LoadData(std::FILE* fp);
  /// Writes one line. Returns 1.
  int SaveData(std::FILE* fp) const;
};

/// A triangle: the numbers of its nodes, from 1, counter-clockwise. One with a number that is no node's is passed over.
class QV_API CChangTri {
 public:
  int node[3] = {};  ///< numbers from 1

  /// As those of a node.
  int LoadData(std::FILE* fp);
  int SaveData(std::FILE* fp) const;
};

/// The field: nodes, triangles, and which of the values counts.
class QV_API CChang {
 public:
  /// The mesh.
  CArray<CChangNode> m_Nodes;
  CArray<CChangTri> m_Tris;
  /// Which of the five values counts, 0 to 4; any other index is taken to the nearest of them.
  int m_nValueIndex = 0;

  CChang() = default;
  CChang(const CChang&) = delete;
  CChang& operator=(const CChang&) = delete;
  virtual ~CChang();

  /// Reads a field and appends it; the numbers in its triangles count from the first node of all. A file that ends
  /// before its counts gives what is there. Returns 1; 0, after report 301 and with the field as it was, when the disk
  /// fails or memory runs out.
  int LoadData(std::FILE* fp);
  /// Writes the field; the host opens the stream (that of a `qv::SavedFile` for a file that is whole or absent).
  /// Returns 1, or 0 when a write failed.
  int SaveData(std::FILE* fp) const;
  /// Empties the field and frees its memory.
  void Clear();

  /// The value at a point: that of the first node nearer than 0.0001; else, in the first triangle that contains the
  /// point (edges do not), that of the plane through its nodes; else that of the nearest node; 0 without nodes. Looks
  /// at all nodes and triangles; for many points there is `qv::FieldLocator`.
  float Get_Value(float x, float y) const;
  /// 1 when a node is nearer than 0.0001 or a triangle contains the point, else 0.
  int PointInChang(float x, float y) const;

  /// Paints the field, pixel by pixel, and a legend. `coor` takes millimetres to the device, so places in metres are
  /// multiplied by 1000; pixels from 0 to the width and height of `r` are painted (of the page when printing), edges
  /// of triangles included. Only triangles that turn clockwise on a device whose y runs down, so counter-clockwise ones
  /// in a transform that reverses y, are seen. Colours run from red at the least value to magenta at the largest; where
  /// all values are equal, all is red. A triangle that shrinks to a line takes the mean value of its nodes. The legend
  /// has the least value at its top, and both values beside it in white (black when printing). Returns 1; 0, after
  /// report 301 and with nothing painted, when memory runs out.
  virtual int Draw_CaiSeTu(CDC* dc, CRect* r, CFCoor* coor);
};
