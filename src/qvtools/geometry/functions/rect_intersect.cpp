// The intersection of rectangles is a member of the value class, but the question whether two rectangles cross is the
// function library's.

#include <algorithm>

#include "qvtools/geometry/functions/jh.h"
#include "qvtools/geometry/values/rect.h"

CFRect CFRect::IntersectFRect(const CFRect& r) const {
  CFRect common;
  if (JH_TestCrossRegon_Rect(x1, y1, x2, y2, r.x1, r.y1, r.x2, r.y2, 0)) {
    common.x1 = (std::max)(x1, r.x1);
    common.y1 = (std::max)(y1, r.y1);
    common.x2 = (std::min)(x2, r.x2);
    common.y2 = (std::min)(y2, r.y2);
  }
  return common;
}
