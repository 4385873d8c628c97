#pragma once

/// What the ways of drawing a document share.

#include <limits>

#include "qvtools/display/safe_dc.h"
#include "qvtools/dxf/model/document.h"
#include "qvtools/geometry/values/coor.h"
#include "qvtools/platform/device.h"

namespace qv::detail {

/// The library-wide clipping context, on the device context that is drawn on.
CSafeDC& clipping_context(CDC* dc);

/// The pen style that a line-type name asks for.
PenStyle pen_style(const char* ltype);

/// What of the world the limits of a context can show, a few pixels more on every side: most of a large drawing lies
/// outside a small window, and is passed over without being taken to the device. A metafile, and a transform that turns
/// x over, show everything.
class WorldWindow {
 public:
  static constexpr double kMargin = 4;
  WorldWindow(CSafeDC& safe, const CDC& dc, const CFCoor& coor, double margin = kMargin);

  /// Whether what lies in the box of two corners (in any order) is sure to be invisible.
  bool misses(float ax, float ay, float bx, float by) const {
    return (ax < x1_ && bx < x1_) || (ax > x2_ && bx > x2_) || (ay < y1_ && by < y1_) || (ay > y2_ && by > y2_);
  }

 private:
  static constexpr float kEverything = std::numeric_limits<float>::infinity();
  float x1_ = -kEverything;
  float y1_ = -kEverything;
  float x2_ = kEverything;
  float y2_ = kEverything;
};

/// Draws the lines of a drawing with pens selected anew only where they change: most lines have the pen of the line
/// before. Sets the clipping context and a transparent background, and gives the pen back in the end.
class LinePainter {
 public:
  LinePainter(CDC* dc, const CFCoor& coor);
  ~LinePainter() {
    if (before_) dc_->SelectObject(before_);
  }
  LinePainter(const LinePainter&) = delete;
  LinePainter& operator=(const LinePainter&) = delete;

  void draw(const CFPoint& start, const CFPoint& end, PenStyle style, int color) {
    const CPoint from = coor_.FPtoDP(start);
    const CPoint to = coor_.FPtoDP(end);
    // Other entities may have set the context to others in between.
    CSafeDC& safe = clipping_context(dc_);
    if (safe.IsOutside(from, to)) return;  // no pen for what cannot be seen
    select(style, color);
    safe.MoveTo(from.x, from.y);
    safe.LineTo(to.x, to.y);
  }

 private:
  void select(PenStyle style, int color) {
    if (before_ && style == pen_.style && color == color_) return;
    change(style, color);
  }
  void change(PenStyle style, int color);

  CDC* dc_;
  const CFCoor& coor_;
  bool black_;
  int color_ = 0;
  CPen pen_;
  const CPen* before_ = nullptr;
};

}  // namespace qv::detail
