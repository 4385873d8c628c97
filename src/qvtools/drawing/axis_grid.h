#pragma once

/// The axes of a plan: their places from spacings, their names, and how they are drawn.

#include <span>
#include <string>
#include <vector>

#include "qvtools/drawing/base_sgt.h"

namespace qv {

/// Upright axes, named 1, 2, ... from the left, and level ones, named A, B, ... from below without I, O and Z; from the
/// 24th on AA, BB, ... (GB/T 50001). Places are model units in the caller's frame.
class QV_API AxisGrid {
 public:
  /// How the axes are drawn; sizes are drawing millimetres.
  struct Look {
    double reach = 32;              ///< drawing mm from the outermost axes to the lines of the bubbles
    double stub = 8;                ///< the lines that end in the bubbles
    double chains[2] = {24, 16};    ///< dimension lines from the outermost axes: of the total, of the spacings
    const char* color = "1";        ///< of the axis lines
    const char* ltype = "DASHDOT";  ///< and their line type
  };

  /// The axes from (x, y) on; spacings that are not above 0 are left out.
  AxisGrid(float x, float y, std::span<const float> xSpacings, std::span<const float> ySpacings);

  /// The places of the upright axes along x, and of the level ones along y.
  const std::vector<float>& x() const { return x_; }
  const std::vector<float>& y() const { return y_; }
  /// The names, which may be changed; an empty one leaves its axis without bubbles.
  std::vector<std::string> xNames;
  std::vector<std::string> yNames;

  /// The place of an axis by its name, "3" or "B"; NaN when no axis has it.
  float X(const std::string& name) const;
  float Y(const std::string& name) const;

  /// Draws the lines (in the line type, which must be present, or "BYLAYER") with bubbles at both ends.
  void DrawAxes(CBase_SGT& sgt, const Look& look) const;
  void DrawAxes(CBase_SGT& sgt) const { DrawAxes(sgt, Look()); }
  /// Draws the chains of spacings and totals below, on the left, and with `allSides` above and on the right as well. A
  /// direction with fewer than two axes has none.
  void DrawDimensions(CBase_SGT& sgt, bool allSides, const Look& look) const;
  void DrawDimensions(CBase_SGT& sgt, bool allSides = false) const { DrawDimensions(sgt, allSides, Look()); }

 private:
  std::vector<float> x_;
  std::vector<float> y_;
};

}  // namespace qv
