#include "qvtools/dxf/view/box_grid.h"

#include <cmath>

namespace qv::detail {

namespace {

bool is_finite(const Box& b) {
  return std::isfinite(b.x1) && std::isfinite(b.y1) && std::isfinite(b.x2) && std::isfinite(b.y2);
}

float middle(float a, float b) {
  return static_cast<float>((static_cast<double>(a) + b) / 2);
}

/// The part of `side` equal ones between low and high that v lies in.
std::size_t part(float v, float low, float high, std::size_t side) {
  const double t = (static_cast<double>(v) - low) / (static_cast<double>(high) - low) * static_cast<double>(side);
  return t > 0 ? static_cast<std::size_t>(std::min(t, static_cast<double>(side - 1))) : 0;
}

std::size_t side_for(std::size_t boxes) {
  constexpr std::size_t kBoxesOfCell = 16;
  constexpr std::size_t kLongestSide = 512;
  const double cells = static_cast<double>(boxes / kBoxesOfCell);
  return std::clamp<std::size_t>(static_cast<std::size_t>(std::sqrt(cells)), 1, kLongestSide);
}

}  // namespace

std::vector<std::uint32_t> BoxGrid::cells_of(const std::vector<Box>& boxes, std::size_t side) const {
  Box all;
  for (const Box& b : boxes)
    if (is_finite(b)) all.add(CFPoint(middle(b.x1, b.x2), middle(b.y1, b.y2)));
  std::vector<std::uint32_t> cells;
  cells.reserve(boxes.size());
  for (const Box& b : boxes) {
    const std::size_t row = is_finite(b) ? part(middle(b.y1, b.y2), all.y1, all.y2, side) : 0;
    const std::size_t column = is_finite(b) ? part(middle(b.x1, b.x2), all.x1, all.x2, side) : 0;
    cells.push_back(static_cast<std::uint32_t>(row * side + column));
  }
  return cells;
}

BoxGrid::BoxGrid(const std::vector<Box>& boxes) : order_(boxes.size()) {
  const std::size_t side = side_for(boxes.size());
  const std::vector<std::uint32_t> cells = cells_of(boxes, side);
  bounds_.resize(side * side);
  starts_.assign(side * side + 1, 0);
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    bounds_[cells[i]].add(boxes[i]);
    ++starts_[cells[i] + 1];
  }
  for (std::size_t c = 0; c < side * side; ++c) starts_[c + 1] += starts_[c];
  std::vector<std::uint32_t> next(starts_.begin(), starts_.end() - 1);
  for (std::size_t i = 0; i < boxes.size(); ++i) order_[next[cells[i]]++] = static_cast<std::uint32_t>(i);
}

}  // namespace qv::detail
