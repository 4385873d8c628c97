#pragma once

/// The nine kinds of drawing entity, as plain records. Coordinates and lengths are in drawing units, angles of records
/// in degrees counter-clockwise from +X; layer, line-type and style names are fixed arrays of GBK bytes, compared
/// exactly. A colour is an ACI number, or -1 for the layer's colour; a line type is a name, or "BYLAYER".
///
/// Every entity writes itself to and reads itself from an ASCII DXF stream, draws itself, and answers questions about
/// its extent and about picks. Records own nothing but a polyline's vertices, and copy by value.

#include <cstdio>

#include "qvtools/dxf/model/record_memory.h"
#include "qvtools/geometry/values/coor.h"
#include "qvtools/geometry/values/rect.h"
#include "qvtools/platform/device.h"

class CFRegion;

/// The kind of an entity, and the answer of the entity readers.
enum ACAD_Entity_Type {
  ACAD_TYPE_POINT = 0,
  ACAD_TYPE_LINE = 1,
  ACAD_TYPE_TEXT = 2,
  ACAD_TYPE_CIRCLE = 3,
  ACAD_TYPE_ARC = 4,
  ACAD_TYPE_POLYLINE = 5,
  ACAD_TYPE_SOLID = 6,
  ACAD_TYPE_3DFACE = 7,
  ACAD_TYPE_INSERT = 8,
  ACAD_TYPE_NONE = 9,  ///< no entity: the base class, or an entity that could not be read
  ACAD_TYPE_END = 10   ///< the end of the entity stream: ENDSEC, EOF, ENDBLK or the end of the file
};

namespace qv {
inline constexpr int kNameSize = 30;       ///< bytes of a name field, terminator included
inline constexpr int kContentsSize = 100;  ///< bytes of a text's contents, terminator included
inline constexpr int kFontFileSize = 255;  ///< bytes of a font file name, terminator included
inline constexpr int kByLayer = -1;        ///< the colour that stands for the layer's

/// A point in drawing units.
struct Point3 {
  float x = 0;
  float y = 0;
  float z = 0;
};
}  // namespace qv

/// The root of the entity records. Those that are made one by one lie in the pool of records.
class QV_API ACAD_ENTITY : public qv::PooledRecord {
 public:
  /// Reads the record at the stream's position. Returns 1, with the stream at the pair that ended the record, or 0 when
  /// the stream does not stand at such a record (or, for a few records, when it is malformed).
  virtual int Read(std::FILE* /*file*/) { return 1; }
  /// Writes the record to the stream; lines end in "\n", as the stream translates it. Returns 1, or 0 when a write
  /// failed.
  virtual int Write(std::FILE* /*file*/) { return 1; }
  /// The kind of the entity.
  virtual ACAD_Entity_Type GetType() { return ACAD_TYPE_NONE; }
  /// The plan extent in world units.
  virtual CFRect GetFRect() { return {}; }
  /// Draws in plan, displaced by (dx, dy) world units, with a one-pixel pen of the entity's colour and line type.
  virtual void Draw(CDC* /*dc*/, CFCoor* /*coor*/, float /*dx*/, float /*dy*/) {}
  /// The extent of the entity projected for the view angles a and b (radians; see `TouYing3Dto2D`).
  virtual CFRect GetFRect3D(float /*a*/, float /*b*/) { return {}; }
  /// Draws the entity projected for the view angles a and b.
  virtual void Draw3D(CDC* /*dc*/, CFCoor* /*coor*/, float /*a*/, float /*b*/) {}
  /// 1 when the entity projected for the view angles lies wholly inside the region or rectangle, or, with a mode other
  /// than 0, when it crosses its border as well; else 0. Tolerance is 0: the region gives it.
  virtual int HitTest(const CFRegion& /*region*/, int /*mode*/, float /*a*/, float /*b*/) { return 0; }
  virtual int HitTest(const CFRect& /*rect*/, int /*mode*/, float /*a*/, float /*b*/) { return 0; }
  /// Transforms every defining point by a 3 by 3 matrix (nine floats, row by row) and then adds an offset (three
  /// floats); either may be null. Radii, widths and heights stay. Returns 1 (the root: 0).
  virtual int Transfer(const float* /*matrix*/, const float* /*offset*/) { return 0; }
  virtual ~ACAD_ENTITY();

  /// The colour on screen of an ACI number: a fixed table for 0 to 15, a hue ramp above (`Get_RGB`), black for numbers
  /// that the ramp does not know, -1 among them.
  static COLORREF GetColor(int colour);
  /// Transforms one point as `Transfer` says. Returns 1.
  static int TransOne(float& x, float& y, float& z, const float* matrix, const float* offset);
};

/// Projects a point for the view angles a and b, in radians: u = x cos a + y sin a, v = (y cos a - x sin a) sin b +
/// z cos b. Plan is a = 0, b = pi/2.
QV_API void TouYing3Dto2D(float x, float y, float z, float a, float b, float& u, float& v);

/// What every kind of entity overrides; `Ini` restores the defaults of its fields.
#define QV_ENTITY_OPERATIONS                                                \
  int Read(std::FILE* file) override;                                       \
  int Write(std::FILE* file) override;                                      \
  ACAD_Entity_Type GetType() override;                                      \
  CFRect GetFRect() override;                                               \
  void Draw(CDC* dc, CFCoor* coor, float dx, float dy) override;            \
  CFRect GetFRect3D(float a, float b) override;                             \
  void Draw3D(CDC* dc, CFCoor* coor, float a, float b) override;            \
  int HitTest(const CFRegion& region, int mode, float a, float b) override; \
  int HitTest(const CFRect& rect, int mode, float a, float b) override;     \
  int Transfer(const float* matrix, const float* offset) override;          \
  void Ini();

/// A point; drawn as one pixel. Its extent is the square of 10 units each way.
class QV_API ACAD_POINT : public ACAD_ENTITY {
 public:
  QV_ENTITY_OPERATIONS
  char m_szLayer[qv::kNameSize] = "0";  ///< group 8
  qv::Point3 m_Point;                   ///< group 10
};

/// A straight line.
class QV_API ACAD_LINE : public ACAD_ENTITY {
 public:
  QV_ENTITY_OPERATIONS
  char m_szLayer[qv::kNameSize] = "0";        ///< group 8
  char m_szLType[qv::kNameSize] = "BYLAYER";  ///< group 6; not written when it is "BYLAYER"
  int m_nColor = qv::kByLayer;                ///< group 62; not written when it is negative
  qv::Point3 m_Start;                         ///< group 10
  qv::Point3 m_End{1, 1, 1};                  ///< group 11
};

/// One line of text, drawn from its insertion point at the left end of the base line.
class QV_API ACAD_TEXT : public ACAD_ENTITY {
 public:
  QV_ENTITY_OPERATIONS
  /// The width of the contents in drawing units, measured with the shape fonts.
  float GetWidth();
  /// The four corners of the turned box of the text (lower left, lower right, upper right, upper left), x and y of four
  /// floats each. Returns 1.
  int GetOutLook(float* x, float* y);

  int m_bWidthGiven = 0;                       ///< whether group 41 was there when the text was read
  char m_szLayer[qv::kNameSize] = "0";         ///< group 8
  char m_szLType[qv::kNameSize] = "BYLAYER";   ///< group 6; not written when it is "BYLAYER"
  int m_nColor = qv::kByLayer;                 ///< group 62; not written when it is negative
  qv::Point3 m_Insert;                         ///< group 10: the left end of the base line
  float m_fHeight = 0.2F;                      ///< group 40
  char m_szText[qv::kContentsSize] = "";       ///< group 1, GBK
  char m_szStyle[qv::kNameSize] = "STANDARD";  ///< group 7
  float m_fRotation = 0;                       ///< group 50, degrees
  float m_fWidthFactor = 0.75F;                ///< group 41
  int m_nJustify = 0;                          ///< group 72; kept, the text is drawn from its insertion point
  qv::Point3 m_Align;                          ///< group 11; kept
};

/// A circle in the plane.
class QV_API ACAD_CIRCLE : public ACAD_ENTITY {
 public:
  QV_ENTITY_OPERATIONS
  char m_szLayer[qv::kNameSize] = "0";        ///< group 8
  char m_szLType[qv::kNameSize] = "BYLAYER";  ///< group 6; not written when it is "BYLAYER"
  int m_nColor = qv::kByLayer;                ///< group 62; not written when it is negative
  qv::Point3 m_Center;                        ///< group 10
  float m_fRadius = 1;                        ///< group 40
};

/// A circular arc, counter-clockwise from its start angle to its end angle.
class QV_API ACAD_ARC : public ACAD_ENTITY {
 public:
  QV_ENTITY_OPERATIONS
  char m_szLayer[qv::kNameSize] = "0";        ///< group 8
  char m_szLType[qv::kNameSize] = "BYLAYER";  ///< group 6; not written when it is "BYLAYER"
  int m_nColor = qv::kByLayer;                ///< group 62; not written when it is negative
  qv::Point3 m_Center;                        ///< group 10
  float m_fRadius = 1;                        ///< group 40
  float m_fStartAngle = 0;                    ///< group 50, degrees
  float m_fEndAngle = 90;                     ///< group 51, degrees
};

/// One vertex of a polyline and the segment that leaves it: widths at its two ends, and its bulge, the tangent of a
/// quarter of the arc's included angle (positive counter-clockwise, 0 straight).
struct QV_API ACAD_VERTEX {
  char m_szLayer[qv::kNameSize] = "0";        ///< group 8
  char m_szLType[qv::kNameSize] = "BYLAYER";  ///< group 6; not written when it is "BYLAYER"
  int m_nColor = qv::kByLayer;                ///< group 62; not written when it is negative
  qv::Point3 m_Point;                         ///< group 10
  float m_fStartWidth = 0;                    ///< group 40
  float m_fEndWidth = 0;                      ///< group 41
  float m_fBulge = 0;                         ///< group 42
  int m_nFlags = 0;                           ///< group 70
};

/// A polyline. It owns its vertices; copies are deep. The two points repeat its first two vertices and are never
/// written.
class QV_API ACAD_POLYLINE : public ACAD_ENTITY {
 public:
  ACAD_POLYLINE() = default;
  ACAD_POLYLINE(const ACAD_POLYLINE&) = delete;
  /// Becomes a deep copy of the other polyline.
  void Copy(const ACAD_POLYLINE* other);
  ACAD_POLYLINE& operator=(const ACAD_POLYLINE& other);

  QV_ENTITY_OPERATIONS

  char m_szLayer[qv::kNameSize] = "0";           ///< group 8
  char m_szLType[qv::kNameSize] = "BYLAYER";     ///< group 6; not written when it is "BYLAYER"
  int m_nColor = qv::kByLayer;                   ///< group 62; not written when it is negative
  qv::Point3 m_First;                            ///< the first vertex
  qv::Point3 m_Second{1, 1, 1};                  ///< the second vertex
  float m_fStartWidth = 0;                       ///< group 40: of vertices without a width of their own
  float m_fEndWidth = 0;                         ///< group 41
  int m_nFlags = 0;                              ///< group 70: 1 closed
  CArray<ACAD_VERTEX, ACAD_VERTEX&> m_Vertices;  ///< in order
};

/// A filled quadrilateral; its corners are stored in zigzag order (the third is opposite the second).
class QV_API ACAD_SOLID : public ACAD_ENTITY {
 public:
  QV_ENTITY_OPERATIONS
  char m_szLayer[qv::kNameSize] = "0";        ///< group 8
  char m_szLType[qv::kNameSize] = "BYLAYER";  ///< group 6; not written when it is "BYLAYER"
  int m_nColor = qv::kByLayer;                ///< group 62; not written when it is negative
  qv::Point3 m_Corner[4];                     ///< groups 10, 11, 12, 13
};

/// A face in space, drawn as its four edges.
class QV_API ACAD_3DFACE : public ACAD_ENTITY {
 public:
  QV_ENTITY_OPERATIONS
  char m_szLayer[qv::kNameSize] = "0";        ///< group 8
  char m_szLType[qv::kNameSize] = "BYLAYER";  ///< group 6; not written when it is "BYLAYER"
  int m_nColor = qv::kByLayer;                ///< group 62; not written when it is negative
  qv::Point3 m_Corner[4];                     ///< groups 10, 11, 12, 13
};

/// A placed block. It draws nothing itself, and its own extent is empty: the block's operations take the insert.
class QV_API ACAD_INSERT : public ACAD_ENTITY {
 public:
  QV_ENTITY_OPERATIONS
  char m_szLayer[qv::kNameSize] = "0";  ///< group 8
  int m_nColor = qv::kByLayer;          ///< kept, never written
  char m_szBlock[qv::kNameSize] = "";   ///< group 2: the block's name
  qv::Point3 m_Insert;                  ///< group 10: where the base point comes
  float m_fScaleX = 1;                  ///< group 41; kept, blocks are drawn unscaled
  float m_fScaleY = 1;                  ///< group 42; likewise
  float m_fRotation = 0;                ///< group 50, degrees; kept, blocks are drawn unturned
};

#undef QV_ENTITY_OPERATIONS

/// The nine kinds of entity in the order of their numbers, for what every kind does in the same way: X(KEYWORD,
/// member), where KEYWORD is the word of the file and the end of the names of the class and of its number, and `member`
/// the kind's working record.
#define QV_FOR_EACH_ENTITY_KIND(X) \
  X(POINT, m_Point)                \
  X(LINE, m_Line)                  \
  X(TEXT, m_Text)                  \
  X(CIRCLE, m_Circle)              \
  X(ARC, m_Arc)                    \
  X(POLYLINE, m_Polyline)          \
  X(SOLID, m_Solid)                \
  X(3DFACE, m_3DFace)              \
  X(INSERT, m_Insert)
