#pragma once

/// The measures of a sheet, for what is placed on it.

#include "qvtools/drawing/base_sgt.h"

namespace qv {

/// The sheet whose frame `CBase_SGT::Draw_TuKuang` draws with the same arguments, at the scale that the composer has.
/// Rectangles and points are in the caller's frame, in model units. Source of the sizes: GB/T 50001, A0 to A3.
struct QV_API SheetFrame {
  /// `size` is 0 to 3 for A0 to A3 (taken into that range), `extra` lengthens the long side (mm), portrait when not 0.
  SheetFrame(const CBase_SGT& sgt, float x, float y, int size, int extra = 0, int portrait = 0);

  CFRect paper;            ///< the edges of the sheet
  CFRect inside;           ///< the frame: what is drawn stands in it
  CFRect title;            ///< the title block, 180 by 40 mm, in the lower right corner of the frame
  CFRect countersign;      ///< the counter-sign block, 75 by 20 mm, outside the frame
  bool countersignTurned;  ///< whether its texts run upward: on sheets that are not portrait
  float frameWidth;        ///< pen of the frame
  float titleWidth;        ///< pen of the title block's outline
};

}  // namespace qv
