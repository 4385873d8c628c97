#pragma once

/// A grid over many boxes, which finds those that may lie in a window without looking at all of them.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

#include "qvtools/geometry/values/point.h"

namespace qv::detail {

/// An axis-parallel box, its smallest coordinates first. It begins with nothing and grows.
struct Box {
  static constexpr float kInfinity = std::numeric_limits<float>::infinity();
  float x1 = kInfinity;
  float y1 = kInfinity;
  float x2 = -kInfinity;
  float y2 = -kInfinity;

  static constexpr Box everything() { return {-kInfinity, -kInfinity, kInfinity, kInfinity}; }
  bool is_empty() const { return x1 > x2; }
  /// NaN adds nothing.
  void add(const Box& b) { *this = {std::min(x1, b.x1), std::min(y1, b.y1), std::max(x2, b.x2), std::max(y2, b.y2)}; }
  void add(const CFPoint& p) { add(Box{p.x, p.y, p.x, p.y}); }
};

/// Every box belongs to the cell that its middle lies in, and every cell knows the box of all that belongs to it; so
/// boxes of any size and any overlap are kept once. Boxes without finite bounds are in the first cell.
class BoxGrid {
 public:
  BoxGrid() = default;
  explicit BoxGrid(const std::vector<Box>& boxes);

  /// The cells whose box `misses` does not reject, and in `reached` how many boxes belong to them.
  template <class Misses>
  std::vector<std::uint32_t> cells_in(const Misses& misses, std::size_t& reached) const {
    std::vector<std::uint32_t> found;
    reached = 0;
    for (std::uint32_t c = 0; c < bounds_.size(); ++c) {
      if (misses(bounds_[c])) continue;
      found.push_back(c);
      reached += starts_[c + 1] - starts_[c];
    }
    return found;
  }
  /// Calls f with the index of each box that belongs to the cell.
  void for_each_of(std::uint32_t cell, const auto& f) const {
    for (std::uint32_t k = starts_[cell]; k < starts_[cell + 1]; ++k) f(order_[k]);
  }

 private:
  std::vector<std::uint32_t> cells_of(const std::vector<Box>& boxes, std::size_t side) const;

  std::vector<Box> bounds_;            // of each cell
  std::vector<std::uint32_t> order_;   // the boxes, cell by cell
  std::vector<std::uint32_t> starts_;  // where each cell's begin, and one more for the end
};

}  // namespace qv::detail
