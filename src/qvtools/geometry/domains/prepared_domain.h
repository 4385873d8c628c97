#pragma once

#include <cstdint>
#include <vector>

#include "qvtools/api.h"
#include "qvtools/geometry/domains/domain.h"

/// A domain made ready for many point queries. It keeps its own copy of the edges, and a grid over their bounding box
/// in which every cell knows the edges that reach into it and whether one reference point of it is inside. A query
/// looks at the edges of one cell. The grid takes up to about 1 KB for an edge of a short outline, less for an edge of
/// a long one, and about the time of a thousand queries without it.
class QV_API CPreparedDomain {
 public:
  /// When memory runs out, report 301, and a domain without points.
  CPreparedDomain(int n, const CDomainEdge* edges);

  /// The answer of `CPointInDomain::Point_In_Domain`: 1 when the point is inside or within tol of the outline, else 0.
  int Point_In_Domain(float px, float py, float tol) const;

 private:
  struct Axis {
    double start = 0;
    double end = 0;
    double cell = 0;    // size of a cell
    double scale = 0;   // cells per unit
    double offset = 0;  // of the reference point from the start of its cell
    int count = 1;

    void divide(double low, double high, int cells, double fraction);
    int at(double v) const;
    double reference(int i) const { return start + i * cell + offset; }
    /// The first cell whose reference point lies beyond v, 0 to count.
    int first_beyond(double v) const;
  };
  struct Cell {
    std::uint32_t first;   // of its entries; they end where the next cell's begin
    std::uint32_t inside;  // whether the reference point is
  };
  struct Builder;

  void prepare(int n, const CDomainEdge* edges);
  bool on_any(int row1, int row2, int column1, int column2, float px, float py, float tol) const;

  std::vector<CDomainEdge> edges_;      // with the first one repeated at the end
  std::vector<Cell> cells_;             // row by row, and one more for the end; empty when there is no finite box
  std::vector<std::uint32_t> entries_;  // edge * 2 + whether its circular segment contains the reference point
  Axis x_;
  Axis y_;
};
