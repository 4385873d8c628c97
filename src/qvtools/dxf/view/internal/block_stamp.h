#pragma once

#include <vector>

#include "qvtools/dxf/view/box_grid.h"
#include "qvtools/dxf/view/internal/draw.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace qv::detail {

/// A block as pixels: what its inserts show in one drawing, where all have one scale. Drawn at sixteen
/// places within a pixel, and copied to each insert's place from the picture of the nearest: the ends of a line then
/// lie where they belong, or a few of them a pixel aside.
class BlockStamp {
 public:
  /// The block of so many entities, which reach so far in the plane where no insert has moved them, and so many pixels
  /// beyond.
  BlockStamp(const ACAD_BLOCK& block, int entities, const Box& reach, int margin, const Plane& plane,
             DrawingContext& to);
  /// Whether a copy costs less than drawing the entities, and shows what they show, to a pixel: details that are there
  /// or not as they happen to be rounded, with nothing else beside them, cannot be copied.
  bool pays() const { return pays_; }
  /// Copies the block as an insert shifts it in the plane. Returns false, with nothing drawn, where the device rounds
  /// another way: at negative places, and where single precision moves the entities by a good part of a pixel.
  bool draw(const CFPoint& shift, DrawingContext& to) const;

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
  };
  class Mask;
  static bool take(const BitmapContext& bitmap, COLORREF ground, std::size_t mostRuns, Picture& picture, Mask& mask);
  bool draw_pictures(const ACAD_BLOCK& block, std::size_t mostRuns, CSize size, const Plane& plane,
                     const DrawingContext& to);

  CFPoint corner_;  // the world point of pixel (0, 0) of the first picture
  Picture pictures_[kPlaces];
  bool pays_ = false;
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
