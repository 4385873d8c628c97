#pragma once

/// Another drawing under one's own: an architect's plan, say, imported by `qv::Import`.

#include <string>

#include "qvtools/drawing/base_sgt.h"
#include "qvtools/import/import.h"

namespace qv {

/// Where a drawing comes.
struct UnderlayPlace {
  float x = 0;  ///< where the drawing's origin comes, in the composer's frame (its placement included)
  float y = 0;
  float angle = 0;  ///< degrees, counter-clockwise
};

/// On which layers, and in which colour.
struct UnderlayLayer {
  std::string name = "UNDERLAY";  ///< the layer that takes everything; with `prefix`, what stands before each name
  bool prefix = false;            ///< "A-WALL" of "WALL" for the name "A-"; names longer than 29 bytes are cut
  int color = 8;                  ///< the colour of everything (8 is grey); `kByLayer`: colours stay as they are
};

/// Adds a copy of an in-memory drawing to the composer's drawing, its lengths times `scale`: points, radii, widths,
/// text heights, and the patterns of its line types, which get the name's prefix too. Layers, line types, styles and
/// blocks that the composer has not are added, its tables enlarged as needed, and a layer takes what it hides along: a
/// layer that is off stays off with `prefix`, and is left out without. Blocks keep their names, so one that the
/// composer has already is the composer's. What is drawn later lies over it.
///
/// Returns 1; 0, and nothing is added, when the composer writes to a file, the drawing is not in memory, the scale is
/// not above 0, or memory runs out. Add layers and styles of your own before: an enlarged table has no room left.
QV_API int Underlay(CBase_SGT& composer, DXF& drawing, const UnderlayPlace& place, double scale,
                    const UnderlayLayer& layer = {});

/// How many of `to` one of `from` is: 1000 from metres to millimetres. 1 where either is `Unit::None`. `ImportReport`
/// tells the unit of a drawing; with `ImportOptions::unit` the import has converted it already.
QV_API double UnitFactor(Unit from, Unit to);

}  // namespace qv
