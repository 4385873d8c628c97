#pragma once

/// A device context that clips: lines, pixels, arcs and region fills are cut to the visible device area before the
/// wrapped context gets them, so that a plan can be drawn at any zoom. A metafile is passed everything, since it
/// records coordinates rather than draws them.

#include "qvtools/platform/device.h"

/// The clipping context.
class QV_API CSafeDC {
 public:
  /// What a device fills reaches at most so far, both ways.
  static constexpr int kFillReach = 30000;

  /// Wraps dc (which it does not own; null draws nothing). The limits are the screen's size.
  explicit CSafeDC(CDC* dc);
  /// Wraps nothing; the limits are the screen's size.
  CSafeDC();

  /// Fits the limits to the device: its resolution when it is printing, else the screen's size. Returns 1 when the
  /// printing state differed from the one that the limits were made for, else 0. Every call that draws runs it first.
  int SetLimit() { return dc_ && dc_->IsPrinting() != (printing_ != 0) ? change_limits() : 0; }

  /// The wrapped context.
  CDC* GetDC() const { return dc_; }
  /// The limits in force: left and top are always 0.
  CRect Limits() {
    SetLimit();
    return {0, 0, right_, bottom_};
  }
  /// Whether a segment is sure to be invisible: both ends lie beyond the same limit. Never so on a metafile.
  bool IsOutside(CPoint a, CPoint b) {
    SetLimit();
    return misses(a.x, a.y, b.x, b.y) && !records();
  }

  /// Clips a segment in place to the limits, borders included; returns 0 when it lies wholly outside. A clipped end may
  /// lie a pixel outside. On a metafile nothing is changed and the result is 1.
  int CutLine(int& x1, int& y1, int& x2, int& y2);

  /// Sets the current position and returns it.
  /// Quirk: the new position, not the one before; host programs read back where they are.
  CPoint MoveTo(int x, int y) {
    x_ = x;
    y_ = y;
    return {x, y};
  }
  CPoint MoveTo(CPoint p) { return MoveTo(p.x, p.y); }
  /// Draws the visible part of the segment from the current position to (x, y), which becomes the current position.
  /// Returns 1 when any of it is visible, else 0.
  int LineTo(int x, int y) {
    const int from_x = std::exchange(x_, x), from_y = std::exchange(y_, y);
    if (!dc_) return 0;
    SetLimit();
    // One branch for all four tests: separate ones are mispredicted.
    if ((inside(from_x, right_) & inside(from_y, bottom_) & inside(x, right_) & inside(y, bottom_)) != 0) {
      dc_->MoveTo(from_x, from_y);
      dc_->LineTo(x, y);
      return 1;
    }
    if (misses(from_x, from_y, x, y) && !dc_->IsMetafile()) return 0;
    return cut_and_draw({from_x, from_y}, x, y);
  }
  int LineTo(CPoint p) { return LineTo(p.x, p.y); }

  /// Sets a pixel inside the limits (any pixel on a metafile); returns the colour either way.
  COLORREF SetPixel(int x, int y, COLORREF color);
  COLORREF SetPixel(CPoint p, COLORREF color) { return SetPixel(p.x, p.y, color); }

  /// The outline of a rectangle as four lines; nothing is filled. Returns 1.
  int Rectangle(int l, int t, int r, int b);
  int Rectangle(const CRect* rect) { return Rectangle(rect->left, rect->top, rect->right, rect->bottom); }
  /// The outline of the closed polygon of n points; nothing is filled. Returns 1.
  int Polygon(const CPoint* points, int n);

  /// The circular arc about the middle of the box, counter-clockwise as seen from the direction of the start point to
  /// that of the end point. Returns 0 when the box lies outside the limits, else 1.
  /// Quirk: the radius is the start point's distance from the centre, not the box's half size; callers pass boxes that
  /// only roughly fit.
  int Arc(int l, int t, int r, int b, int xs, int ys, int xe, int ye);
  int Arc(const CRect* box, CPoint start, CPoint end) {
    return Arc(box->left, box->top, box->right, box->bottom, start.x, start.y, end.x, end.y);
  }

  /// A circular arc as chords of about 4 pixels, at least 5 of them: centre and radius in device units, start angle and
  /// sweep in radians. With `flip` angles turn counter-clockwise as seen, else clockwise.
  /// Quirk: a negative sweep runs the same way as a positive one and closes by a chord to its true end; callers draw a
  /// clockwise arc from its other end. Nothing is drawn for r < 1 or angles that are not finite. Only chords that can
  /// touch the limits are visited. A sweep of more than two turns is drawn as one turn; a metafile gets 20,000 chords
  /// at most.
  void DrawArc(int cx, int cy, int r, float start, float sweep, int flip);

  /// Quirk: an arc from the box's corner to the same corner, of no sweep, which shows nothing; host programs draw full
  /// circles by DrawArc and rely on no outline here.
  int Ellipse(int l, int t, int r, int b) { return Arc(l, t, r, b, l, t, l, t); }
  int Ellipse(const CRect* box) { return Ellipse(box->left, box->top, box->right, box->bottom); }

  /// Fills a region that touches the limits and whose bounding box lies within `kFillReach` both ways (any region on
  /// a metafile). Returns 1 when it was filled, else 0.
  int FillRgn(const CRgn* region, const CBrush* brush);

 private:
  /// Left and top are 0, so one unsigned comparison does for both sides.
  static unsigned inside(int v, int limit) { return static_cast<unsigned>(v) <= static_cast<unsigned>(limit) ? 1 : 0; }
  int cut_and_draw(CPoint from, int x, int y);
  int change_limits();
  bool records() const { return dc_ && dc_->IsMetafile(); }
  bool misses(int x1, int y1, int x2, int y2) const {
    return (x1 < left_ && x2 < left_) || (x1 > right_ && x2 > right_) || (y1 < top_ && y2 < top_) ||
           (y1 > bottom_ && y2 > bottom_);
  }

  CDC* dc_ = nullptr;
  int x_ = 0;  // the current position
  int y_ = 0;
  int left_ = 0;
  int top_ = 0;
  int right_ = 0;
  int bottom_ = 0;
  int printing_ = 0;
};
