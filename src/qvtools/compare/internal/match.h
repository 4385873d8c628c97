#pragma once

/// Which piece of one drawing is which of the other.

#include <optional>

#include "qvtools/compare/compare.h"
#include "qvtools/compare/internal/pieces.h"

namespace qv::detail {

/// What the steps of matching found out.
struct Matches {
  static constexpr int kNone = -1;
  std::vector<int> mate;  ///< of each new piece: the old one; `kNone` for what was added
  std::vector<Comparison::Fate> before;
  std::vector<Comparison::Fate> after;
  CFPoint shift{0, 0};
};

Matches match(const Pieces& before, const Pieces& after, const CompareOptions& options);

/// Joins lines that are left over of both drawings and show the same in other pieces: broken where the others are not.
void match_broken(const Pieces& before, const Pieces& after, Matches& matches, double tolerance);

/// The places of the differences, and in each difference the number of its place.
std::vector<DifferentPlace> find_places(std::vector<Difference>& differences, double near);

}  // namespace qv::detail
