#pragma once

/// Values of a field at many points: the answers of `CChang`, from a grid that is built once.

#include <cstdint>
#include <vector>

#include "qvtools/engineering/field.h"

namespace qv {

/// A field in a grid.
class QV_API FieldLocator {
 public:
  /// Sorts the mesh into a grid. The field is not owned; it must live, with its mesh unchanged, while it is asked.
  /// Takes some 30 bytes a triangle where they are of about one size, and never more than 300.
  /// When memory runs out, report 301, and every answer is the field's own, as slow as that is.
  explicit FieldLocator(const CChang& field);

  /// What `CChang::Get_Value` and `CChang::PointInChang` answer. Triangles much larger than the others are looked at
  /// one by one; so are nodes and triangles whose coordinates are no finite numbers.
  float Value(float x, float y) const;
  int Contains(float x, float y) const;

 private:
  void sort(const CChang& field);
  /// The numbers of what lies in each cell, cell after cell, in ascending order.
  struct Bins {
    std::vector<std::size_t> start;
    std::vector<std::uint32_t> items;
  };
  struct Cells {
    int left;
    int top;
    int right;
    int bottom;
  };
  template <class CellsOf>
  Bins sort_into_cells(int count, const CellsOf& cells_of) const;
  void lay_grid();
  Cells triangle_cells(const CChangTri& tri);
  Cells cells_around(double left, double top, double right, double bottom) const {
    return {column(left), row(top), column(right), row(bottom)};
  }
  int column(double x) const;
  int row(double y) const;
  std::size_t cell(int column, int row) const;
  int first_node_at(float x, float y) const;
  int first_triangle_at(float x, float y) const;
  int nearest_node(float x, float y) const;
  void scan_for_nearest(std::size_t at, float x, float y, float& least, int& nearest) const;

  const CChang& field_;
  bool ready_ = false;
  double left_ = 0;
  double top_ = 0;
  double cellsPerUnit_ = 1;
  int columns_ = 1;
  int rows_ = 1;
  double largest_ = 0;  // of all coordinates, without their signs
  Bins nodes_;
  Bins triangles_;
  std::vector<std::uint32_t> looseTriangles_;  // in no cell, in ascending order
};

}  // namespace qv
