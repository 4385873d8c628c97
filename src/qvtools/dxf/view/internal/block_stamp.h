#pragma once

#include <vector>

#include "qvtools/dxf/view/box_grid.h"
#include "qvtools/dxf/view/internal/draw.h"

namespace qv::detail {

/// A block as pixels: what its inserts show in one drawing, where all have one scale. Drawn once, and copied to each
/// insert's place, to a pixel.
class BlockStamp {
 public:
  /// The block of so many entities, which reach so far in the plane where no insert has moved them, and so many pixels
  /// beyond.
  BlockStamp(const ACAD_BLOCK& block, int entities, const Box& reach, int margin, const Plane& plane,
             DrawingContext& to);
  /// Whether a copy costs less than drawing the entities.
  bool pays() const { return pays_; }
  /// Copies the block as an insert shifts it in the plane.
  void draw(const CFPoint& shift, DrawingContext& to) const;

 private:
  /// Pixels of one colour side by side, the last not among them.
  struct Run {
    COLORREF color;
    int y;
    int begin;
    int end;
  };
  CFPoint corner_;  // the world point of pixel (0, 0)
  std::vector<Run> runs_;
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
