#include "qvtools/display/internal/world_window.h"

#include <algorithm>
#include <cmath>

namespace qv::detail {

namespace {

/// The next float below a number; the lowest bound where there is none.
float below(double v) {
  constexpr double kLargest = std::numeric_limits<float>::max();
  constexpr float kLowest = -std::numeric_limits<float>::infinity();
  return v > -kLargest && v < kLargest ? std::nextafter(static_cast<float>(v), kLowest) : kLowest;
}

}  // namespace

WorldWindow::WorldWindow(CSafeDC& safe, const CFCoor& coor, double margin) {
  const double scale = coor.GetScale();
  if (safe.GetDC()->IsMetafile() || !(scale > 0)) return;
  const CRect limits = safe.Limits();
  const double x = coor.GetOrigin().x;
  const double y = coor.GetOrigin().y;
  const double down = coor.IsReverseY() ? -1 : 1;
  const double y1 = y + down * (limits.top - margin) / scale;
  const double y2 = y + down * (limits.bottom + margin) / scale;
  x1_ = below(x + (limits.left - margin) / scale);
  x2_ = -below(-(x + (limits.right + margin) / scale));
  y1_ = below(std::min(y1, y2));
  y2_ = -below(-std::max(y1, y2));
}

}  // namespace qv::detail
