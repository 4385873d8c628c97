#pragma once

#include <string>

#include "demo/sample.h"
#include "qvtools/drawing/axis_grid.h"

namespace qvdraw {

/// A storey on its axes.
struct Storey {
  const Sample& data;
  qv::AxisGrid grid;
  Storey(const Sample& sample, float x, float y)
      : data(sample), grid(x, y, sample.numbers("axes", "x", 6), sample.numbers("axes", "y", 3)) {}
  /// Whether the panel between axes i and i + 1, j and j + 1 is the stair's opening.
  bool is_stair(std::size_t i, std::size_t j) const;
  /// The mark of the column where axes i and j cross.
  const std::string& column_at(std::size_t i, std::size_t j) const;
  /// Its width and depth.
  CFPoint column_size(std::size_t i, std::size_t j) const;
  /// The middle of a row of panels, where its secondary beam runs.
  float middle_of_row(const std::string& row) const;
};

/// The axes with their dimensions, columns, beams and the opening of the stair.
void draw_framing(CBase_SGT& sgt, const Storey& storey);

}  // namespace qvdraw
