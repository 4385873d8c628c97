#pragma once

/// Random cases for property tests. Every generator prints its seed; QV_SEED in the environment sets another.

#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include "qvtools/geometry/domains/domain.h"
#include "qvtools/geometry/values/region.h"

namespace qvtest {

class Random {
 public:
  explicit Random(unsigned seed)
      : seed_(std::getenv("QV_SEED") ? static_cast<unsigned>(std::atoi(std::getenv("QV_SEED"))) : seed) {
    std::printf("seed %u\n", seed_);
    engine_.seed(seed_);
  }
  float real(double low, double high) {
    return static_cast<float>(std::uniform_real_distribution<double>(low, high)(engine_));
  }
  int whole(int low, int high) { return std::uniform_int_distribution<int>(low, high)(engine_); }
  CFPoint point(double reach) { return {real(-reach, reach), real(-reach, reach)}; }

 private:
  unsigned seed_;
  std::mt19937 engine_;
};

/// The edges of an outline in long doubles, as an independent judge of what is inside: the parity of crossings on a ray
/// in a random direction, arcs by the angles of their crossing points.
class Judge {
 public:
  explicit Judge(const CFRegion& region);
  /// The distance of p from the outline, arcs taken as whole circles (so never too large).
  long double clearance(const CFPoint& p) const;
  bool inside(const CFPoint& p, Random& random) const;

 private:
  struct Edge {
    long double x1, y1, x2, y2;
    bool arc;
    long double cx, cy, r, start, sweep;  // sweep counter-clockwise from start, positive
  };
  /// Crossings of a ray with the outline; negative when the ray comes too near to a vertex or tangent to tell.
  int crossings(const CFPoint& p, long double angle) const;
  std::vector<Edge> edges_;
};

/// An outline on a coarse lattice, so that vertices and edges lie level with each other and with the queries. Bulges
/// are straight, flat, half and more than half circles.
CFRegion random_region(Random& random, int most_vertices, bool arcs);

}  // namespace qvtest
