#pragma once

/// The construction-drawing composer: a drawing document that is filled with primitives and symbols in the caller's own
/// frame. It keeps a current environment (colour, layer, text style, line type, placement, symbol sizes, pen position),
/// takes every coordinate through the placement transform, and hands each primitive to one write call of the document.
///
/// Lengths are model units of the drawing. Sheet sizes (pen widths, text heights, symbol sizes) are drawing millimetres
/// times the scale denominator: at the default scale 100 a text of 2.5 mm is 250 units high. Angles are degrees,
/// counter-clockwise, unless a call says radians. No primitive reports failure; over-long texts are ignored.

#include "dxf/document.h"

namespace qv {

inline constexpr std::size_t kEnvironmentText = 100;  ///< bytes of a current text, terminator included

/// What `CBase_SGT::Push_ENV` saves and `Pop_ENV` brings back.
struct QV_API SgtEnvironment {
  float m_fBiLiChi = 100;                     ///< scale denominator
  char m_szCurColor[kEnvironmentText] = "7";  ///< a DXF colour number
  char m_szCurLayer[kEnvironmentText] = "0";
  char m_szCurStyle[kEnvironmentText] = "STANDARD";
  char m_szCurLType[kEnvironmentText] = "BYLAYER";
  float m_fShiftX = 0;  ///< placement: shift, added after turning and scaling
  float m_fShiftY = 0;
  float m_fLenFactor = 1;    ///< placement: factor of coordinates, radii and array-polyline widths
  float m_fRotAngle = 0;     ///< placement: rotation in degrees
  float m_fTextFactor = 1;   ///< factor of text heights
  float m_fWidthFactor = 1;  ///< factor of the widths of the two-point polyline
  int m_nDimTextFit = 0;     ///< where a dimension text goes that does not fit: 1 left, 2 right, 4 above, 8 below
  int m_nDimPara1 = 1;       ///< saved for derived programs only
  int m_nDimPara2 = 1;
  float m_fDimOffset = 0;  ///< from the measured points to the dimension line
  float m_fDimPolarA = 0;  ///< long ends of the two extension lines
  float m_fDimPolarB = 0;
  float m_fDimTick = 0;  ///< length of the oblique tick
  float m_fDimLineWidth = 0;
  float m_fDimTextHeight = 0;
  float m_fDimExt = 0;                ///< short ends of the extension lines
  float m_fTextGap = 0;               ///< gap between a line and its text
  int m_nDimDecimals = 0;             ///< decimals of dimension values
  int m_bRectSide[4] = {1, 1, 1, 1};  ///< which sides of a rectangle are drawn: bottom, right, top, left
  int m_nFramePara1 = 1;              ///< saved for derived programs only
  int m_nFramePara2 = 1;
  float m_fCutSymA = 0;  ///< break line: overshoot, height and width of the zig-zag
  float m_fCutSymB = 0;
  float m_fCutSymC = 0;
  float m_fPouXianLen = 0;  ///< section mark: bar length, bar width, text height
  float m_fPouXianWidth = 0;
  float m_fPouXianText = 0;
  float m_fTuMingText = 0;  ///< drawing title: text height, thick underline
  float m_fTuMingWidth = 0;
  float m_fOut2Para1 = 0;  ///< the band of `Set_Para_Draw_Out_2PraLine`
  float m_fOut2Para2 = 0;
  float m_fOut2Para3 = 0;
  float m_fOut2Para4 = 0;
  float m_fOut2Para5 = 0;
  float m_fGJDotWidth = 0;                   ///< reinforcement: dots and ties
  float m_fGJLineWidth = 0;                  ///< reinforcement: lines
  char m_szGJColor[kEnvironmentText] = "1";  ///< colour of reinforcement
  char m_szBZColor[kEnvironmentText] = "4";  ///< colour of annotations
  float m_fArrowLen = 0;                     ///< arrowhead: length, half width
  float m_fArrowWidth = 0;
  float m_fPenX = 0;  ///< pen position of MoveTo and LineTo, in the caller's frame
  float m_fPenY = 0;
};

}  // namespace qv

class QV_API CBase_SGT : public DXF, public qv::SgtEnvironment {
 public:
  static const float m_fGF_BiKuan[6];  ///< standard pen widths, drawing mm
  static const float m_fGF_ZiGao[7];   ///< standard text heights, drawing mm
  static const float m_fGF_ZiKuan[7];  ///< the text widths that go with them, drawing mm

  /// An environment of defaults at scale 100.
  CBase_SGT();
  ~CBase_SGT() override;

  /// Sets the scale denominator, recomputes every size that depends on it, and moves the pen to (0, 0).
  void SetBiLiChi(float scale);
  /// Sets the base pen width in drawing mm, or entry i (0 to 5, not checked) of the standard widths; the pen widths
  /// follow at the next `SetBiLiChi`.
  void SetBaseBiKuan(float width) { m_fBaseBiKuan = width; }
  void SetBaseBiKuan(int i) { m_fBaseBiKuan = m_fGF_BiKuan[i]; }
  /// Sets the current colour, layer, style or line type; a text of 99 bytes or more is ignored.
  void SetCurColor(const char* color);
  void SetCurLayer(const char* layer);
  void SetCurStyle(const char* style);
  void SetCurLType(const char* ltype);
  /// Restores colour, line type, layer, style, placement, rectangle sides and symbol colours to their defaults.
  /// Quirk: the stored scale becomes 1 while pen widths and heights stay as they were; derived programs set the scale
  /// after it.
  void Set_Default_ENV();
  /// Adds the line types "DASHED", "DOT" and "DASHDOT".
  void Add_Default_LineType();
  /// Saves the environment on a stack of any depth; 0, with nothing saved, when memory runs out.
  /// Quirk: pen widths, text heights and the axis formats are not saved.
  int Push_ENV();
  /// Brings the last saved environment back; 0 when there is none.
  int Pop_ENV();

  /// The placement, in place: turned by the rotation about the origin, times the length factor, plus the shift.
  void Convert_XY(float& x, float& y) const;
  void Draw_Point(float x, float y);
  void Draw_Line(float x1, float y1, float x2, float y2);
  /// n - 1 lines that join n points.
  void Draw_Lines(int n, const float* x, const float* y);
  void Draw_Circle(float x, float y, float r);
  void Draw_Arc(float x, float y, float r, float a1, float a2);
  /// A polyline of two points; its widths take the width factor.
  void Draw_Pline(float x1, float y1, float x2, float y2, float w1, float w2);
  /// A polyline of n points (none for n < 2), closed when `closed` is 1.
  /// Quirk: the caller's coordinates are converted and its widths multiplied by the length factor, in place.
  void Draw_Pline(int n, float* x, float* y, const float* bulge, int closed, float* w1, float* w2);
  /// An arc as a polyline of two vertices; the widths are taken as they are.
  void Draw_PArc(float cx, float cy, float r, float a1, float a2, float w1, float w2);
  /// A filled quadrilateral, its corners in zigzag order, and a face.
  void Draw_Solid(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4);
  void Draw_3DFace(float x1, float y1, float x2, float y2, float x3, float y3, float x4, float y4);
  /// A text from its lower left corner. One that would stand upside down (91 to 271 degrees) is turned within its box.
  void Draw_Text(float x, float y, float h, float angle, const char* text);

  /// The pen: lines and wide lines from where it stands, absolute and relative.
  void MoveTo(float x, float y);
  void MoveTo_Relative(float dx, float dy) { MoveTo(m_fPenX + dx, m_fPenY + dy); }
  void LineTo(float x, float y);
  void LineTo_Relative(float dx, float dy) { LineTo(m_fPenX + dx, m_fPenY + dy); }
  void PlineTo(float x, float y, float w1, float w2);
  void PlineTo_Relative(float dx, float dy, float w1, float w2) { PlineTo(m_fPenX + dx, m_fPenY + dy, w1, w2); }

  /// A rectangle of w by h about its centre, the sides that `m_bRectSide` asks for.
  /// Quirk: thin lines turn counter-clockwise by the angle, wide ones clockwise; drawings are laid out with both.
  void Draw_Rect_C(float w, float h, float cx, float cy, float angle);
  void Draw_Rect_C(float w, float h, float cx, float cy, float angle, float width);
  /// The same placed by its lower left corner.
  /// Quirk: the corner keeps its place at every angle for wide lines, and at angle 0 only for thin ones.
  void Draw_Rect_LB(float w, float h, float x, float y, float angle);
  void Draw_Rect_LB(float w, float h, float x, float y, float angle, float width);

  /// A text at i/n of the line from (x1, y1), `off` to its left, along it or across it (a quarter turn further). n = 0
  /// is n = 1.
  void Draw_Text_Along_Line(float x1, float y1, float x2, float y2, int n, int i, const char* text, float h, float off);
  void Draw_Text_Vertical_Line(float x1, float y1, float x2, float y2, int n, int i, const char* text, float h,
                               float off);
  /// A text centred at i/n of the arc from a1 to a2 (radians), `off` inside it, along it.
  void Draw_Text_Along_Arc(float cx, float cy, float r, float a1, float a2, int n, int i, const char* text, float h,
                           float off);
  /// The band that `Draw_*_Out_2PraLine` leave out. Quirk: b and c cross over, so callers pass x1, y1, x2, y2 and the
  /// width.
  void Set_Para_Draw_Out_2PraLine(float a, float b, float c, float d, float e);
  /// A line, thin or of a width, turned by the angle in radians about the origin and then shifted.
  void Draw_Line_Rotate_Shift(float angle, float dx, float dy, float x1, float y1, float x2, float y2);
  void Draw_PLine_Rotate_Shift(float angle, float dx, float dy, float x1, float y1, float x2, float y2, float width);
  /// Where a dimension text of the given width goes along a dimension line of length `len`, on or under it, in the
  /// line's frame. x and y stay untouched when a text that does not fit has no side to go to.
  void Cal_Text_Position(int above, float len, float textWidth, float& x, float& y) const;

  float m_fBaseBiKuan = 0.65F;  ///< base pen width, drawing mm
  float m_fBiKuan[3] = {};      ///< thick, medium and thin pen, scaled
  float m_fZiGao[7] = {};       ///< text heights, scaled; the last is left to derived programs
  float m_fZiKuan[7] = {};      ///< text widths, scaled; the last is left to derived programs
  int m_nAxisXFormat = 2;       ///< label formats of `Draw_Axis`
  int m_nAxisYFormat = 2;
  CPtrList m_ENVList;  ///< the saved environments, owned; its head is the last saved
};

/// A new composer with an in-memory document, the style "HZ" (fonts "txt" and "hztxt") added; null when memory runs
/// out. The caller owns it.
QV_API CBase_SGT* NewMemDxf();
