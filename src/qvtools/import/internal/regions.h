#pragma once

/// Areas bounded by closed chains of points in a plane; what lies inside is what an odd number of chains surround.

#include <functional>
#include <vector>

#include "qvtools/import/internal/space.h"

namespace qv::importing {

using Loops = std::vector<std::vector<Vec>>;

/// Calls `put` with trapezoids that make up the area: two corners on the lower side, left first, then two on the upper.
/// False when the area would take too long.
bool for_each_trapezoid(const Loops& loops, const std::function<void(const Vec (&corners)[4])>& put);

/// One family of parallel lines of a pattern.
struct PatternLine {
  double angle = 0;  // radians
  Vec base;
  Vec offset;  // from one line to the next, and along it
  std::vector<double> dashes;
};
/// Calls `put` with the dashes within the area; both points alike for a dot. False, with nothing put, when there would
/// be more than `most`.
bool for_each_dash(const Loops& loops, const PatternLine& line, double most,
                   const std::function<void(const Vec& from, const Vec& to)>& put);

}  // namespace qv::importing
