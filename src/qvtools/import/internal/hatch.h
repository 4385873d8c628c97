#pragma once

/// A hatch taken apart.

#include "qvtools/import/internal/drawing.h"
#include "qvtools/import/internal/regions.h"

namespace qv::importing {

struct Hatch {
  bool solid = false;
  int fillColor = 0;      // ACI, of a polygon with a border; 0: the border's
  int gradientColor = 0;  // ACI; 0: no gradient
  int gradientTrueColor = -1;
  double elevation = 0;
  Loops loops;  // those that bound the area
  std::vector<PatternLine> pattern;
};
Hatch hatch_of(const Record& record, double tolerance);

}  // namespace qv::importing
