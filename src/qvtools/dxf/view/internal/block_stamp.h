#pragma once

#include <vector>

#include "qvtools/dxf/view/box_grid.h"
#include "qvtools/dxf/view/internal/draw.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace qv::detail {

/// A block as pixels: what its inserts show in one drawing, where all have one scale. Drawn at up to sixteen
/// places within a pixel, each when it is first asked for, and copied to each insert's place from the picture of the
/// nearest: the ends of a line then lie where they belong, or a few of them a pixel aside.
class BlockStamp {
 public:
  /// The block of so many entities, which reach so far in the plane where no insert has moved them, and so many pixels
  /// beyond. It has to outlive the stamp.
  BlockStamp(const ACAD_BLOCK& block, int entities, const Box& reach, int margin, const Plane& plane,
             DrawingContext& to);
  /// Copies the block as an insert shifts it in the plane. Returns false, with nothing drawn, where a copy would cost
  /// more than drawing the entities or not show what they show, to a pixel: what shows otherwise a part of a pixel
  /// aside (details, ends of arcs, areas) has to lie on straight lines. So it does where the device rounds another way,
  /// at negative places, and where single precision moves the entities by a good part of a pixel.
  bool draw(const CFPoint& shift, DrawingContext& to);

 private:
  static constexpr int kSide = 4;  // places in a pixel along an axis
  static constexpr int kPlaces = kSide * kSide;
  /// Pixels of one colour side by side, the last not among them.
  struct Run {
    COLORREF color;
    int y;
    int begin;
    int end;
  };
  struct Picture {
    std::vector<Run> runs;
    int left = 0;  // the first pixel that is set, each way
    int top = 0;
    bool isMade = false;
  };
  bool make_picture(int place, DrawingContext& to);
  bool take(const BitmapContext& bitmap, Picture& picture) const;

  const ACAD_BLOCK& block_;
  Plane plane_;
  std::size_t mostRuns_;
  bool pays_;  // as far as it is known
  CSize size_;
  CFPoint corner_;  // the world point of pixel (0, 0) of the first picture
  COLORREF ground_ = 0;
  std::vector<Box> others_;  // the reaches of the entities that may show other pixels a part of a pixel aside
  Picture pictures_[kPlaces];
};

/// Whether copies of pixels can stand for what is drawn through the context: on screens and bitmaps, with pens that
/// cover what is there.
inline bool takes_stamps(const DrawingContext& to) {
  const CDC& dc = *to.dc();
  return !dc.IsPrinting() && !dc.IsMetafile() && dc.Rop2() == RasterOp::CopyPen && to.coor().GetScale() > 0;
}
/// Whether an entity looks the same wherever it is copied: it is one of the nine kinds, and its lines are solid or are
/// dashed by patterns.
bool can_be_stamped(ACAD_ENTITY& entity, const DrawingContext& to);

}  // namespace qv::detail
