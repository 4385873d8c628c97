#pragma once

#include <limits>

#include "qvtools/display/safe_dc.h"
#include "qvtools/geometry/values/coor.h"

namespace qv::detail {

/// What of the world the limits of a context can show, a few pixels more on every side: most of a large drawing lies
/// outside a small window, and is passed over without being taken to the device. A metafile, and a scale that is
/// not positive, show everything.
class WorldWindow {
 public:
  static constexpr double kMargin = 4;
  WorldWindow(CSafeDC& safe, const CFCoor& coor, double margin = kMargin);

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

}  // namespace qv::detail
