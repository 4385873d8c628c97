#pragma once

/// Values of a field at many points: the answers of `CChang`, from a grid that is built once.

#include <cstdint>
#include <limits>
#include <vector>

#include "qvtools/engineering/field.h"

namespace qv {

/// A field in a grid.
class QV_API FieldLocator {
 public:
  /// Sorts the mesh into a grid. The field is not owned; it must live, with its mesh unchanged, while it is asked.
  /// Takes some 90 bytes a triangle where they are of about one size, and never more than 1,400; while it is made, 90
  /// more.
  /// When memory runs out, report 301, and every answer is the field's own, as slow as that is.
  explicit FieldLocator(const CChang& field);

  /// What `CChang::Get_Value` and `CChang::PointInChang` answer. Triangles much larger than the others are looked at
  /// one by one; so are those whose coordinates are no finite numbers.
  float Value(float x, float y) const;
  int Contains(float x, float y) const;

 private:
  /// A part of the grid in steps of a cell's 128th, its last steps included; nothing when they come before the first.
  struct Box {
    std::int64_t left;
    std::int64_t top;
    std::int64_t right;
    std::int64_t bottom;
  };
  static constexpr Box kNowhere = {0, 0, -1, -1};
  static constexpr Box kEverywhere = {0, 0, std::numeric_limits<std::int64_t>::max() / 2, 0};
  /// What reaches into a cell, and into which part of it: a triangle with its corners, or a node alone. Numbers count
  /// from 0.
  struct Entry {
    std::uint32_t part;
    int node[3];
    bool is_node() const { return node[1] < 0; }
  };
  /// A cell and the place in it.
  struct Place {
    std::size_t cell;
    std::uint32_t within;
  };
  /// The grid's cells along x or along y.
  struct Axis {
    double origin = 0;
    int cells = 1;
    double lastStep = 0;
  };
  void lay_grid();
  void sort_into_cells();
  static std::int64_t cells_of(const Box& box);
  Box box_around(double left, double top, double right, double bottom) const;
  Box reach(const CChangNode& node) const;
  Box reach(const CChangTri& tri) const;
  std::int64_t step(double at, const Axis& axis) const;
  std::size_t cell(std::int64_t column, std::int64_t row) const;
  Place place(float x, float y) const;
  bool is_at(const Entry& entry, float x, float y) const;
  const Entry* first_at(float x, float y) const;
  const Entry* first_loose_before(int number, float x, float y) const;
  int nearest_node(float x, float y) const;
  void scan_for_nearest(std::size_t at, float x, float y, float& least, int& nearest) const;

  const CChang& field_;
  bool ready_ = false;
  Axis columns_;
  Axis rows_;
  double cellSize_ = 1;
  double stepsPerUnit_ = 1;
  double largest_ = 0;  // of all coordinates, without their signs
  // The entries of each cell, cell after cell: nodes, then triangles, each in ascending order of their numbers.
  std::vector<std::uint32_t> start_;
  std::vector<Entry> entries_;
  // Triangles that are in no cell, in ascending order; only with them the numbers of what is entered are needed.
  std::vector<Entry> loose_;
  std::vector<int> looseNumbers_;
  std::vector<int> numbers_;
};

}  // namespace qv
