#pragma once

/// Slides: small vector pictures (lines, filled quadrilaterals, colour changes) in the CAD system's slide format,
/// version 1 and 2. Coordinates are slide units, the dots of the virtual screen on which the slide was made, y up.

#include <cstdio>
#include <vector>

#include "qvtools/platform/device.h"

class DXF;

/// One item of a slide: a line (kind 255, points 0 and 1), a filled quadrilateral (kind 254, points 0 to 3 round its
/// outline), or a change to the colour that the kind is. So colours 254 and 255 cannot be told from items.
class QV_API CSlideItem : public CObject {
 public:
  static constexpr unsigned char kVector = 255;  ///< a line
  static constexpr unsigned char kSolid = 254;   ///< a filled quadrilateral
  unsigned char m_byKind = 0;                    ///< a line, a quadrilateral, or a colour
  float m_fX[4] = {};                            ///< slide units
  float m_fY[4] = {};                            ///< slide units
};

/// A slide: it is read from a file or filled by drawing calls, and draws itself or becomes a script.
class QV_API CWxSlide {
 public:
  /// Reads the slide file and appends its items to those already there. 0 when it cannot be opened or is no slide, and,
  /// after report 301 and with the items as they were, when the disk fails or memory runs out.
  int Read_SLD(const char* path);
  /// Reads one slide from the stream's position, and leaves the stream after what was read. 0 when no slide begins
  /// there, when the disk fails or memory runs out, else 1: a slide that breaks off, or has a record that is not known,
  /// gives what was read.
  int Read_SLD(std::FILE* file);
  /// The record readers; `m_nRecord` is the record's first word, which has been read.
  void Read_Line(std::FILE* file);
  void Read_Offset(std::FILE* file);
  void Read_Solid(std::FILE* file);
  void Read_Common_Pt(std::FILE* file);
  void Change_Color(std::FILE* file);

  /// Writes the items as script lines; 0 when the file cannot be written, and an old one is then as it was.
  /// Quirk: a colour above 127 becomes 256 minus itself; scripts of old slides were made so.
  int Form_SCR(const char* path);
  /// The box of all points of lines and solids, rounded; the empty rectangle when there are none.
  CRect GetRect() const;
  /// Fits the slide, with a margin, into the middle of a rectangle. 0 when the rectangle is narrower or lower than 2,
  /// or the slide's box has no area.
  int SetScale(const CRect* rect);
  /// The device point of a slide point, after `SetScale`; y is turned over.
  CPoint FPtoDP(float x, float y) const;
  /// The colour of a number: 0 to 15 from a fixed table, white for any other.
  static COLORREF GetColor(int number);
  /// Draws the slide fitted into the rectangle; all in black on a printer or metafile.
  void Draw(CDC* dc, const CRect* rect);
  /// Takes all items out.
  void Clear() { m_Items.clear(); }

  /// The drawing calls; they append items, or, after report 301, none when memory runs out.
  void SetColor(int color);
  void Draw_Line(float x1, float y1, float x2, float y2) { add_vector(x1, y1, x2, y2); }
  void Draw_Solid(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4);
  /// Quirk: the solid of a wide segment lies around the origin, not along the segment; callers place it themselves.
  void Draw_Pline(float x1, float y1, float x2, float y2, float w1, float w2);
  void Draw_Pline(float x1, float y1, float x2, float y2, float w) { Draw_Pline(x1, y1, x2, y2, w, w); }
  /// The pen: lines and wide lines from where it stands, absolute and relative; and n - 1 lines that join n points.
  void MoveTo(float x, float y) { m_fPenX = x, m_fPenY = y; }
  void MoveTo_Relative(float dx, float dy) { MoveTo(m_fPenX + dx, m_fPenY + dy); }
  void LineTo(float x, float y);
  void LineTo_Relative(float dx, float dy) { LineTo(m_fPenX + dx, m_fPenY + dy); }
  void PlineTo(float x, float y, float w1, float w2);
  void PlineTo_Relative(float dx, float dy, float w1, float w2) { PlineTo(m_fPenX + dx, m_fPenY + dy, w1, w2); }
  void Draw_Lines(int n, const float* x, const float* y);
  /// A rectangle about its centre, or by its lower left corner, turned counter-clockwise by degrees.
  void Draw_Rect_C(float w, float h, float cx, float cy, float angle);
  void Draw_Rect_LB(float w, float h, float x, float y, float angle);

  unsigned char m_Header[19] = {};  ///< identification, type indicator, level, as read
  unsigned char m_Level2[12] = {};  ///< the block of a level-2 header, as read
  unsigned char m_Level1[16] = {};  ///< the block of a level-1 header, as read; its last byte stays 0
  unsigned short m_nHighX = 0;      ///< the virtual screen's size
  unsigned short m_nHighY = 0;
  float m_fAspect = 0;  ///< width of the screen by its height, as read
  short m_nLastX = 0;   ///< the point that offsets count from
  short m_nLastY = 0;
  unsigned short m_nRecord = 0;     ///< the first word of the record that is being read
  std::vector<CSlideItem> m_Items;  ///< in file or call order
  float m_fScale = 1;               ///< device units a slide unit
  float m_fOriginX = 0;             ///< the slide point at the device origin
  float m_fOriginY = 0;
  float m_fPenX = 0;  ///< where the pen stands
  float m_fPenY = 0;

 private:
  template <class Source>
  bool read_header(Source&& in);
  template <class Source>
  void read_records(Source&& in);
  template <class Source>
  void read_line(Source&& in);
  template <class Source>
  void read_offset(Source&& in);
  template <class Source>
  void read_solid(Source&& in);
  template <class Source>
  void read_common_point(Source&& in);
  void change_color();
  void add(const CSlideItem& item);
  void add_vector(float x1, float y1, float x2, float y2);
};

/// Writes a slide into an open drawing: lines and solids on layer "0" with z = 0, in the colours of its colour items.
/// Returns 1.
QV_API int Form_Dxf(DXF* dxf, CWxSlide* slide);
