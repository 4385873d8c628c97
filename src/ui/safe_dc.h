#pragma once

/// A device context that is safe from coordinates far outside the window: lines, pixels, arcs and fills are clipped to
/// the screen, or to the page when printing, before they reach the device. A metafile records coordinates rather than
/// pixels: it gets them unclipped.

#include <cstdint>

#include "platform/device.h"

/// It does not own the device context, which must outlive its use. Drawing without one does nothing.
class QV_API CSafeDC {
 public:
  CSafeDC() : CSafeDC(nullptr) {}
  /// The limits are those of the screen until the first drawing call.
  explicit CSafeDC(CDC* dc);

  CDC* GetDC() const { return dc_; }
  /// Takes the limits of the page when the device's printing state has changed to printing, those of the screen when it
  /// has changed back. Returns 1 when it had changed. Every drawing call does this first.
  int SetLimit() {
    if (!dc_ || dc_->IsPrinting() == (printing_ != 0)) return 0;
    return change_limits();
  }

  /// Whether a segment cannot be seen: both ends lie beyond the same limit. Never so on a metafile.
  bool IsOutside(const CPoint& a, const CPoint& b) {
    SetLimit();
    return misses(a.x, a.y, b.x, b.y) && dc_ && !dc_->IsMetafile();
  }
  /// Clips a segment in place, first in x, then in y; 0 when it lies wholly outside.
  /// Quirk: x is not clipped again after y, so an end may stay slightly outside in x.
  int CutLine(int& x1, int& y1, int& x2, int& y2);

  /// Sets the current position, and returns it.
  CPoint MoveTo(int x, int y) {
    SetLimit();
    x_ = x;
    y_ = y;
    return {x, y};
  }
  CPoint MoveTo(const CPoint& p) { return MoveTo(p.x, p.y); }
  /// Draws from the current position to (x, y), which becomes the current position; 1 when any of it was visible.
  int LineTo(int x, int y);
  int LineTo(const CPoint& p) { return LineTo(p.x, p.y); }
  /// Sets a pixel within the limits, and returns the colour.
  COLORREF SetPixel(int x, int y, COLORREF color);
  COLORREF SetPixel(const CPoint& p, COLORREF color) { return SetPixel(p.x, p.y, color); }
  /// The outline of a rectangle, and of a polygon of n points. Nothing is filled. Return 1.
  int Rectangle(int l, int t, int r, int b);
  int Rectangle(const CRect* rect) { return Rectangle(rect->left, rect->top, rect->right, rect->bottom); }
  int Polygon(const CPoint* points, int n);
  /// A circular arc, counter-clockwise as seen on a device whose y runs down, from the direction of the start point to
  /// that of the end point, about the centre of the box; its radius is the start point's distance from the centre.
  /// Returns 0 when the box lies wholly outside, else 1.
  int Arc(int l, int t, int r, int b, int xs, int ys, int xe, int ye);
  int Arc(const CRect* box, const CPoint& start, const CPoint& end) {
    return Arc(box->left, box->top, box->right, box->bottom, start.x, start.y, end.x, end.y);
  }
  /// An arc as chords of about four pixels, at least five of them, from the angle `start` over `sweep` radians; `flip`
  /// turns counter-clockwise angles upward on a device whose y runs down. Only chords that can touch the limits are
  /// visited.
  void DrawArc(int cx, int cy, int r, float start, float sweep, int flip);
  /// Quirk: a degenerate arc without a sweep, as callers that draw circles by `DrawArc` rely on. Returns what `Arc`
  /// does.
  int Ellipse(int l, int t, int r, int b) { return Arc(l, t, r, b, l, t, l, t); }
  int Ellipse(const CRect* box) { return Ellipse(box->left, box->top, box->right, box->bottom); }
  /// Fills a region that touches the limits and whose box stays within -30000 to 30000; 1 when it was filled. A
  /// metafile gets every region.
  int FillRgn(const CRgn* region, const CBrush* brush);

 private:
  int change_limits();
  bool misses(int x1, int y1, int x2, int y2) const {
    return (x1 < left_ && x2 < left_) || (x1 > right_ && x2 > right_) || (y1 < top_ && y2 < top_) ||
           (y1 > bottom_ && y2 > bottom_);
  }
  bool is_inside(int x, int y) const { return x >= left_ && x <= right_ && y >= top_ && y <= bottom_; }

  CDC* dc_;
  int x_ = 0;
  int y_ = 0;
  int left_ = 0;
  int top_ = 0;
  int right_;
  int bottom_;
  int printing_ = 0;
};
