#pragma once

/// The construction-drawing composer: a drawing document that is filled with primitives and symbols in the caller's own
/// frame. It keeps a current environment (colour, layer, text style, line type, placement, symbol sizes, pen position),
/// takes every coordinate through the placement transform, and hands each primitive to one write call of the document.
///
/// Lengths are model units of the drawing. Sheet sizes (pen widths, text heights, symbol sizes) are drawing millimetres
/// times the scale denominator: at the default scale 100 a text of 2.5 mm is 250 units high. Angles are degrees,
/// counter-clockwise, unless a call says radians. No call returns a failure; one for which memory runs out reports it
/// (code 301) and may leave a part. Over-long texts are ignored.
///
/// Every setting after `SetBiLiChi(s)`, in model units, so that "2.5 s" is 2.5 mm on paper; b is `m_fBaseBiKuan` (0.65
/// mm). A value without s is NOT scaled: it has to be set by hand for another scale.
///
///   setting              value          what uses it
///   m_fBiLiChi           s              sizes that have no member: title blocks, axis bubbles (4 s), elevation marks
///                                       (3 s), circles of bar numbers (3 s), curved arrows (6 s), gaps of 1 s
///   m_fBaseBiKuan        0.65           mm, not scaled; the next `SetBiLiChi` makes the pens of it
///   m_fBiKuan[0..2]      b s, 0.5 b s, 0.35 b s    nothing of the composer's: for callers
///   m_fZiGao[0..5]       2.5, 3.5, 5, 7, 10, 14 s  captions of the title block ([3]), elevation marks ([0])
///   m_fZiKuan[0..5]      1.8, 2.5, 3.5, 5, 7, 10 s nothing of the composer's: for callers
///   m_fZiGao[6], m_fZiKuan[6]  0        never set: derived programs'
///   m_nDimTextFit        0              dimensions: where a text goes that does not fit; 0 lets it stand out
///   m_fDimOffset         100            NOT scaled. Dimensions: from the measured points to the dimension line; on a
///                                       sheet of 1:50 it is 2 mm. Set it before every dimension (or use
///                                       `qv::DrawDimensionChain`, which takes the place of the line)
///   m_fDimPolarA, B      20 s           dimensions: the long ends of the two extension lines; usually too long
///   m_fDimExt            2.5 s          dimensions: the short ends
///   m_fDimTick           2 s            dimensions and leaders: the oblique stroke
///   m_fDimLineWidth      b s            dimensions: the width of the stroke; times `m_fWidthFactor`
///   m_fDimTextHeight     2.5 s          dimensions, elevation marks, bar labels, axis bubbles
///   m_nDimDecimals       0              dimensions: decimals of the values, in model units
///   m_fTextGap           0.5 s          dimensions, elevation marks, bar labels, titles: between a line and its text
///   m_fCutSymA, B, C     2.5, 4, 0.75 s break line
///   m_fPouXianLen        10 s           section mark: bar; m_fPouXianWidth b s (times `m_fWidthFactor`),
///                                       m_fPouXianText 5 s
///   m_fTuMingText        7 s            drawing title; m_fTuMingWidth b s, its thick line. The lines are as long as
///                                       the text's bytes times half the height, whatever the text measures
///   m_fGJLineWidth       b s            bars, stirrups, ties. Times `m_fWidthFactor` for a bar between two points,
///                                       times `m_fLenFactor` for bars through n points, stirrups and ties
///   m_fGJDotWidth        1.5 b s        bars in section: diameter; hooks, ties; times `m_fLenFactor`
///   m_fArrowLen, Width   2.5, 0.8 s     arrowheads; times `m_fLenFactor`, but for angle dimensions
///   m_nAxisXFormat, Y    2              chart axes: decimals of the labels
///   m_fPenX, Y           0              the pen of MoveTo and LineTo
///   m_fOut2Para1..5      as they were   `Set_Para_Draw_Out_2PraLine` sets them
/// Not touched by `SetBiLiChi`: current colour, layer, style, line type, the placement, `m_bRectSide`, symbol colours.
///
/// What draws in which colour:
///   m_szCurColor         primitives, frame, title and countersign block, drawing titles, section marks, break lines,
///                        ground, arrows, `Draw_DoNut`, `Draw_YuanDian`, `Draw_Rect_*_CutL`, the outline of
///                        `Draw_Liang_Section`, the frame, labels and titles of charts
///   m_szGJColor ("1")    bars, stirrups, ties, bars in section
///   m_szBZColor ("4")    dimensions, angles, elevation marks, axis bubbles with their lines, leaders, labels, numbers
///   8                    the grid of charts
/// All are drawn on the current layer with the current line type.

#include "qvtools/dxf/model/document.h"

namespace qv {

inline constexpr std::size_t kEnvironmentText = 100;  ///< bytes of a current text, terminator included

/// What `CBase_SGT::Push_ENV` saves and `Pop_ENV` brings back.
struct QV_API SgtEnvironment {
  float m_fBiLiChi = 100;                            ///< scale denominator
  char m_szCurColor[kEnvironmentText] = "7";         ///< a DXF colour number
  char m_szCurLayer[kEnvironmentText] = "0";         ///< a layer of the document
  char m_szCurStyle[kEnvironmentText] = "STANDARD";  ///< a text style of the document
  char m_szCurLType[kEnvironmentText] = "BYLAYER";   ///< a line type of the document, or "BYLAYER"
  float m_fShiftX = 0;                               ///< placement: shift, added after turning and scaling
  float m_fShiftY = 0;
  float m_fLenFactor = 1;    ///< placement: factor of coordinates, radii and array-polyline widths
  float m_fRotAngle = 0;     ///< placement: rotation in degrees
  float m_fTextFactor = 1;   ///< factor of text heights
  float m_fWidthFactor = 1;  ///< factor of the widths of the two-point polyline
  int m_nDimTextFit = 0;     ///< where a dimension text goes that does not fit: 1 left, 2 right, 4 above, 8 below
  int m_nDimPara1 = 1;       ///< saved for derived programs only
  int m_nDimPara2 = 1;
  float m_fDimOffset = 0;  ///< from the measured points to the dimension line; 100 at every scale
  float m_fDimPolarA = 0;  ///< long ends of the two extension lines
  float m_fDimPolarB = 0;
  float m_fDimTick = 0;               ///< length of the oblique tick
  float m_fDimLineWidth = 0;          ///< width of the tick
  float m_fDimTextHeight = 0;         ///< of dimensions, elevation marks, labels, bubbles
  float m_fDimExt = 0;                ///< short ends of the extension lines
  float m_fTextGap = 0;               ///< gap between a line and its text
  int m_nDimDecimals = 0;             ///< decimals of dimension values
  int m_bRectSide[4] = {1, 1, 1, 1};  ///< which sides of a rectangle are drawn: bottom, right, top, left
  int m_nFramePara1 = 1;              ///< saved for derived programs only
  int m_nFramePara2 = 1;
  float m_fCutSymA = 0;  ///< break line: overshoot, height and width of the zig-zag
  float m_fCutSymB = 0;
  float m_fCutSymC = 0;
  float m_fPouXianLen = 0;    ///< section mark: length of the bar
  float m_fPouXianWidth = 0;  ///< its width
  float m_fPouXianText = 0;   ///< height of the text
  float m_fTuMingText = 0;    ///< drawing title: text height
  float m_fTuMingWidth = 0;   ///< width of the thick underline
  float m_fOut2Para1 = 0;     ///< the band of `Set_Para_Draw_Out_2PraLine`
  float m_fOut2Para2 = 0;
  float m_fOut2Para3 = 0;
  float m_fOut2Para4 = 0;
  float m_fOut2Para5 = 0;
  float m_fGJDotWidth = 0;                   ///< reinforcement: dots and ties
  float m_fGJLineWidth = 0;                  ///< reinforcement: lines
  char m_szGJColor[kEnvironmentText] = "1";  ///< colour of reinforcement
  char m_szBZColor[kEnvironmentText] = "4";  ///< colour of annotations
  float m_fArrowLen = 0;                     ///< arrowhead: length
  float m_fArrowWidth = 0;                   ///< half its width
  float m_fPenX = 0;                         ///< pen position of MoveTo and LineTo, in the caller's frame
  float m_fPenY = 0;
};

}  // namespace qv

/// The composer: a drawing document, what it is drawn with at present, and the calls that draw.
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
  /// A point, and a line, in the current layer, colour and line type, as all that follows.
  void Draw_Point(float x, float y);
  void Draw_Line(float x1, float y1, float x2, float y2);
  /// n - 1 lines that join n points.
  void Draw_Lines(int n, const float* x, const float* y);
  /// A circle, and the arc from a1 to a2 counter-clockwise, in degrees.
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
  /// A record holds 99 bytes: what is longer is cut there, between two characters.
  void Draw_Text(float x, float y, float h, float angle, const char* text);

  /// The pen: lines and wide lines from where it stands, absolute and relative.
  void MoveTo(float x, float y) { m_fPenX = x, m_fPenY = y; }
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

  // Symbols. Sizes are drawing mm times the scale denominator s. An anchored symbol takes its anchor points through the
  // placement and keeps its sheet size and orientation whatever the placement is; a transformed one passes its
  // coordinates to the primitives, so that the placement applies to every point. Every symbol leaves the environment as
  // it was; only `ArrowTo` moves the pen. Texts are not null unless said.

  /// Sheet frame with binding margin, title block and countersign block, (x, y) its lower left corner; transformed.
  /// `size` is 0 to 3 for A0 to A3 (taken into that range), `extra` lengthens the long side (mm); portrait when not 0.
  void Draw_TuKuang(float x, float y, int size, int extra, int portrait);
  /// Title block of 180 by 40 mm with captions in the style "HZ", (x, y) its lower right corner, `width` the pen of its
  /// outline; transformed.
  void Draw_BiaoTiLan(float x, float y, float width);
  /// Countersign block of 75 by 20 mm, (x, y) its lower right corner, turned clockwise by the angle about it;
  /// transformed.
  void Draw_HuiQianLan(float x, float y, float angle);
  /// Drawing title centred on (x, y), in the style "HZ", with a thick and a thin underline; anchored.
  void Draw_TuMing(float x, float y, const char* text, int thickLine, int thinLine);
  /// Axis line from point 1 to point 2 with a bubble of 4 mm radius behind point 2; anchored.
  void Draw_ZhouFu(float x1, float y1, float x2, float y2, const char* text);

  /// Linear dimension of a length from (x, y) in a direction, `m_fDimOffset` to the right of it, with a text or with
  /// the length in `m_nDimDecimals` (0 to 20) decimals; anchored. The text stands on the line, or under it when `above`
  /// is 0. The long ends of the extension lines run toward the measured points, or away from them when `longSide` is 0.
  /// Nothing for lengths below 0.0001. An angle that is not finite counts as 0.
  void Draw_Dim_Polar(float x, float y, float len, const char* text, float angle, int above, int longSide);
  void Draw_Dim_Polar(float x, float y, float len, float angle, int above, int longSide);
  /// The same between two points, and a chain along n points; `reverse` puts a chain on its other side.
  void Draw_Dim_Points(float x1, float y1, float x2, float y2, int above, int longSide);
  void Draw_Dim_Points(float x1, float y1, float x2, float y2, const char* text, int above, int longSide);
  void Draw_Dim_Points(int n, const float* x, const float* y, int reverse, int above, int longSide);
  /// Elevation mark with its tip at (x, y) and its value in three decimals, to the right or to the left; transformed.
  /// Zero, to 0.0001, gets the plus-minus sign of the text fonts, byte 133.
  void Draw_BiaoGao(float x, float y, float value, int leftSide);
  /// Angle dimension: an arc about (x, y) with arrowheads, from `angle` over `sweep` degrees (either way), the text
  /// along and outside it; anchored. A null or empty text becomes the sweep with the degree sign, byte 127. Nothing for
  /// a sweep below 0.0001 or not finite.
  void Draw_DimJiaoDu(float x, float y, float r, float angle, const char* text, float sweep);

  /// Break line from point 1 to point 2, reaching `over` beyond both, with a zig-zag in its middle; anchored. The short
  /// form takes its sizes from `m_fCutSymA`, `m_fCutSymB` and `m_fCutSymC`.
  void Draw_Cut_Sym(float x1, float y1, float x2, float y2, float over, float height, float width);
  void Draw_Cut_Sym(float x1, float y1, float x2, float y2) {
    Draw_Cut_Sym(x1, y1, x2, y2, m_fCutSymA, m_fCutSymB, m_fCutSymC);
  }
  /// Section mark: at both points a bar along the line and a text beside it, along the line or across it, on the left
  /// of the line when `flag` is not 0, else on its right; anchored. The short form takes its sizes from the members.
  void Draw_PouXian(float x1, float y1, float x2, float y2, const char* text, float len, float width, float textHeight,
                    int alongLine, int flag);
  void Draw_PouXian(float x1, float y1, float x2, float y2, const char* text, int alongLine, int flag) {
    Draw_PouXian(x1, y1, x2, y2, text, m_fPouXianLen, m_fPouXianWidth, m_fPouXianText, alongLine, flag);
  }
  /// Ground surface: a line with groups of three 45 degree strokes of the depth `size` (3 mm when not positive) on its
  /// left when `side` is not 0, else on its right; anchored. A line shorter than a group (2 size) has none; at most
  /// 1000 groups are drawn.
  void Draw_TuMianXian(float x1, float y1, float x2, float y2, float size, int side);
  /// Open arrowhead of `m_fArrowLen` and `m_fArrowWidth` with its tip at (x, y), alone, at the end of a line, or of a
  /// line from the pen, which moves along; transformed.
  void DrawArrow(float x, float y, float angle);
  void DrawLineArrow(float x1, float y1, float x2, float y2);
  void ArrowTo(float x, float y);
  void ArrowTo_Relative(float dx, float dy) { ArrowTo(m_fPenX + dx, m_fPenY + dy); }
  /// Arc of 60 degrees and 6 mm radius whose middle is (x, y), where its tangent has the direction `angle`; it bulges
  /// to the left of that direction. The arrowhead is at its start, which lies ahead (arcs run counter-clockwise), or,
  /// when `atStart` is 0, at its end, which lies behind; transformed.
  void DrawArcArrow(float x, float y, float angle, int atStart);

  // Reinforcement, in the colour `m_szGJColor` unless said, transformed.

  /// A bar in elevation, of width `m_fGJLineWidth`: between two points, or through the first 20 of n points.
  void Draw_XianGangJin(float x1, float y1, float x2, float y2);
  void Draw_XianGangJin(int n, const float* x, const float* y);
  /// A line in the current colour, thin or of a width, or a bar, where it runs outside the band of
  /// `Set_Para_Draw_Out_2PraLine`: the axis through (1, 3) and (2, 4), half the full width 5 to either side.
  void Draw_Line_Out_2PraLine(float x1, float y1, float x2, float y2);
  void Draw_PLine_Out_2PraLine(float x1, float y1, float x2, float y2, float width);
  void Draw_XianGangJin_Out_2PraLine(float x1, float y1, float x2, float y2);
  /// A ring between two radii, a ring by its mean radius and width, a filled dot, in the current colour; and a ring in
  /// the reinforcement colour.
  void Draw_DoNut(float x, float y, float r1, float r2);
  void Draw_DoNut_RW(float x, float y, float r, float w) { Draw_DoNut(x, y, r - w / 2, r + w / 2); }
  void Draw_YuanDian(float x, float y, float r) { Draw_DoNut(x, y, 0, r); }
  void Draw_DoNutGangJin(float x, float y, float r1, float r2);
  /// A bar in section, a dot of the diameter `m_fGJDotWidth` moved by (dx, dy) radii: (1, 1) sets it into the corner at
  /// (x, y).
  void Draw_YuanDianGangJin(float x, float y, float dx, float dy);
  /// A stirrup, turned clockwise: about its centre, k line widths smaller than w by h (1: outer edges meet w by h), or
  /// from its lower left corner.
  void Draw_RectGangJin_C(float w, float h, float cx, float cy, float angle, float k);
  void Draw_RectGangJin_LB(float w, float h, float x, float y, float angle);
  /// The same with two hooks at the upper left corner, see `Draw_Rect_C_CutL`.
  void Draw_RectGangJin_C_CutL(float w, float h, float cx, float cy, float angle, float a, float b, float k);
  void Draw_RectGangJin_LB_CutL(float w, float h, float x, float y, float angle, float a, float b);
  /// A rectangle whose outline passes its upper left corner at both ends and turns inward at 45 degrees: the hooks of a
  /// stirrup around a bar of `m_fGJDotWidth` in the corner. The hook at the upper side reaches a along x (and down),
  /// the one at the left side b along y (and right). In the current colour; thin and wide forms turn as those of
  /// `Draw_Rect_C` do.
  void Draw_Rect_C_CutL(float w, float h, float cx, float cy, float angle, float a, float b);
  void Draw_Rect_C_CutL(float w, float h, float cx, float cy, float angle, float width, float a, float b);
  void Draw_Rect_LB_CutL(float w, float h, float x, float y, float angle, float a, float b);
  void Draw_Rect_LB_CutL(float w, float h, float x, float y, float angle, float width, float a, float b);
  /// A tie between two dots, hooked around both. Quirk: with side = 1 all but the last hook's end is mirrored. Dots
  /// nearer than twice the sum of dot and line widths, halved, give coordinates that are not numbers.
  void Draw_LaJieJin(float x1, float y1, float x2, float y2, int side);

  // Bar labels, in the colour `m_szBZColor`, anchored.

  /// The text of bars: count, grade sign, diameter ("4", byte 139, "25"), and of stirrups: grade sign, diameter,
  /// spacing. Grades 1, 2 and 3 have the signs 130, 131 and 139; for others `dst` is left as it is. The last forms a
  /// prestressing strand of diameter 9, 12 or 15; others get no diameter. `dst` has room for 64 bytes.
  static void FormString_GJ_nqd(char* dst, int n, int grade, int d);
  static void FormString_GJ_qdas(char* dst, int grade, int d, int s);
  static void FormString_GJX_nqd(char* dst, int n, int d);
  /// A leader with a tick at its first point.
  void Draw_Line_BiaoZhu(float x1, float y1, float x2, float y2);
  /// Label of one bar: a leader from (x, y) to (x2, y2), a horizontal part of the length `len` (negative: to the left)
  /// with the text over it, and at its far end the bar number in a circle of 3 mm radius when it is above 0. `len` is
  /// not scaled by the placement.
  void Draw_GangJin_BiaoZhu(float x, float y, float x2, float y2, float len, int number, const char* text);
  /// Label of n bars: upright leaders from the bars, with ticks when `flag` is 1, to a horizontal part that starts at
  /// the farthest of them, passes (x, y), where the text begins, and ends `len` to the right of it, or to the left when
  /// `side` is not 0.
  void Draw_GangJin_BiaoZhu(float x, float y, int n, const float* xs, const float* ys, float len, int number, int side,
                            int flag, const char* text);
  /// A bar number of text height h in a thin circle of radius 1.2 h about (x, y).
  void Draw_GJH(float x, float y, float h, int number);
  /// The same placed as `Draw_Text_Along_Line` places a text, with a label 1 mm behind it along the line.
  void Draw_GJH_And_Text_Along_Line(float x1, float y1, float x2, float y2, int n, int i, int number, const char* text,
                                    float h, float off);

  /// Bars of a beam section that stand in one row: 1, 2, ... from the bottom, -1, -2, ... from the top, 0 in turns up
  /// the left and right sides.
  struct CLiangZongJin {
    int count;
    int grade;
    int diameter;
    int row;
  };
  /// The stirrups of a beam section; two of the legs are the outer stirrup's.
  struct CLiangGuJin {
    int grade;
    int diameter;
    int spacing;
    int legs;
  };
  /// Beam section with its lower left corner at (x, y): concrete outline of w by h in the current colour, stirrup inset
  /// by the cover, n entries of bars evenly spaced in their rows (at most 1000 in each, and as many legs), and on the
  /// right the labels, numbered from `number` on (0: without numbers) in the order of the entries, the stirrup last.
  /// Bars are drawn at the sheet's dot size, not to their diameters; labels stand at least 7 mm apart.
  void Draw_Liang_Section(float x, float y, float w, float h, float cover, int n, const CLiangZongJin* bars,
                          const CLiangGuJin& stirrup, int number);

  // Charts, transformed.

  /// Axis box with its lower left corner at (x0, y0) for a range of values: a grid in colour 8 with about nx and ny
  /// divisions (1 to 1000) at steps of one significant digit, labels in the formats `m_nAxisXFormat` and
  /// `m_nAxisYFormat`, the frame in the current colour, and titles in the style "HZ".
  /// Quirk: formats 3, 4 and 5 give Y labels one decimal less than X labels, and the label height follows ny in both
  /// directions; charts are laid out with both.
  void Draw_Axis(float x0, float y0, float xmin, float xmax, float ymin, float ymax, float width, float height, int nx,
                 int ny, const char* xTitle, const char* yTitle);
  /// A curve through n points with its axis box. `ltype` is an index of the default line types: 0 continuous, 1 dashed,
  /// 2 dotted, 3 dash-dot (continuous when the document lacks it); `marker` is 0 none, 1 circle, 2 square, 3 cross.
  void Draw_Curve(float x0, float y0, int n, const float* x, const float* y, float xmin, float xmax, float ymin,
                  float ymax, float width, float height, int nx, int ny, const char* xTitle, const char* yTitle,
                  int color, int ltype, int marker);
  /// Two curves over the same x. The second has the next colour (1 follows 7), line type and marker.
  void Draw_Curve2(float x0, float y0, int n, const float* x, const float* y, const float* y2, float xmin, float xmax,
                   float ymin, float ymax, float width, float height, int nx, int ny, const char* xTitle,
                   const char* yTitle, int color, int ltype, int marker);
  /// How `Draw_XY` draws its curve.
  struct CURVEINFO {
    float x0 = 0;      ///< the axis box: its lower left corner
    float y0 = 0;      ///< its lower left corner
    float width = 0;   ///< its size
    float height = 0;  ///< its size
    float xmin = 0;    ///< the values it shows
    float xmax = 0;
    float ymin = 0;
    float ymax = 0;
    int nx = 10;  ///< divisions
    int ny = 10;
    CString xTitle;  ///< beside the axes, GBK
    CString yTitle;  ///< beside the axes, GBK
    int color = 1;   ///< of the curve: a DXF colour number
    int ltype = 0;   ///< as in `Draw_Curve`
    int marker = 0;  ///< as in `Draw_Curve`
    int values = 0;  ///< not 0: y is written at each point, in two decimals, under it when negative
  };
  /// A curve with its axis box. Returns 1, or 0 with nothing drawn when the arrays differ in length or hold fewer than
  /// two points.
  int Draw_XY(CURVEINFO info, const CArray<float, float>& x, const CArray<float, float>& y);

  float m_fBaseBiKuan = 0.65F;  ///< base pen width, drawing mm
  float m_fBiKuan[3] = {};      ///< thick, medium and thin pen, scaled
  float m_fZiGao[7] = {};       ///< text heights, scaled; the last is left to derived programs
  float m_fZiKuan[7] = {};      ///< text widths, scaled; the last is left to derived programs
  int m_nAxisXFormat = 2;       ///< label format of the x axis of `Draw_Axis`
  int m_nAxisYFormat = 2;       ///< and of its y axis
  CPtrList m_ENVList;           ///< the saved environments, owned; its head is the last saved
};

/// A new composer with an in-memory document, the style "HZ" (fonts "txt" and "hztxt") added; null when memory runs
/// out. The caller owns it.
QV_API CBase_SGT* NewMemDxf();
