#pragma once

/// The marks of a page that is drawn in pixels, kept so that they can be drawn again on each part of a large picture.

#include <cstdint>
#include <vector>

#include "qvtools/platform/device.h"
#include "qvtools/plot/internal/canvas.h"

namespace qv::detail {

class PixelMarks {
 public:
  /// A page of the given height in mm, at so many pixels a millimetre. `whole_widths`: widths are whole pixels, so that
  /// parallel lines of one pen look alike; otherwise they are what they are, but at least two pixels.
  PixelMarks(double height, double scale, bool whole_widths)
      : height_(height), scale_(scale), whole_widths_(whole_widths) {}

  void stroke(const Path& path, const Stroke& stroke);
  void fill(const Path& path, Ink ink);
  std::size_t count() const { return marks_.size(); }
  void clear() {
    points_.clear();
    marks_.clear();
  }

  /// The colours of all marks, 0xRRGGBB, each once; `most` of them at most.
  std::vector<std::uint32_t> colors(std::size_t most) const;
  /// Draws the marks that reach into a part of the page of this size, whose upper left pixel, (left, top) of the page,
  /// lies at the device's (0, 0); false when there are none.
  bool draw(CDC& dc, CSize size, int left, int top) const;

 private:
  /// In pixels, downwards; pixel i lies at the coordinate i.
  struct Point {
    float x;
    float y;
  };
  struct Mark {
    std::size_t first;  // of `points_`
    std::uint32_t count;
    COLORREF color;
    float width;  // 0: a fill
    Stroke::Ends ends;
    Stroke::Joins joins;
    bool closed;
    float left, top, right, bottom;
  };
  class Brush;

  void add_point(PathPoint p);
  void end_mark(Mark mark);
  void draw_stroke(Brush& brush, const Mark& mark) const;
  void draw_fill(Brush& brush, const Mark& mark) const;

  double height_;
  double scale_;
  bool whole_widths_;
  Path straight_;  // the present path without arcs
  std::vector<Point> points_;
  std::vector<Mark> marks_;
};

}  // namespace qv::detail
