#include "qvtools/engineering/field_locator.h"

#include <cmath>
#include <limits>

#include "qvtools/engineering/internal/field_mesh.h"
#include "qvtools/services/internal/out_of_memory.h"
#include "qvtools/system/internal/prefetch.h"

namespace qv {

namespace {

// A triangle that reaches into more cells than this is entered in none; every query looks at it instead.
constexpr std::int64_t kMostCells = 64;
constexpr double kNothing = std::numeric_limits<double>::infinity();

bool is_finite(const CChangNode& node) {
  return std::isfinite(node.x) && std::isfinite(node.y);
}

}  // namespace

FieldLocator::FieldLocator(const CChang& field) : field_(field) {
  ready_ = detail::unless_out_of_memory([&] { return sort(field), true; }, false);
}

void FieldLocator::sort(const CChang& field) {
  lay_grid();
  nodes_ = sort_into_cells(field.m_Nodes.GetSize(), [&](int i) -> Cells {
    const CChangNode& node = field.m_Nodes[i];
    if (!is_finite(node)) return {0, 0, -1, -1};
    return cells_around(node.x, node.y, node.x, node.y);
  });
  std::vector<Cells> cells;
  cells.reserve(static_cast<std::size_t>(field.m_Tris.GetSize()));
  for (int i = 0; i < field.m_Tris.GetSize(); ++i) {
    Cells found = triangle_cells(field.m_Tris[i]);
    const std::int64_t area = static_cast<std::int64_t>(found.right - found.left + 1) * (found.bottom - found.top + 1);
    if (area > kMostCells) {
      looseTriangles_.push_back(static_cast<std::uint32_t>(i));
      found = {0, 0, -1, -1};
    }
    cells.push_back(found);
  }
  triangles_ = sort_into_cells(field.m_Tris.GetSize(), [&](int i) { return cells[static_cast<std::size_t>(i)]; });
}

/// A grid over the nodes with about two triangles or one node to a cell.
void FieldLocator::lay_grid() {
  double right = -kNothing, bottom = -kNothing;
  left_ = top_ = kNothing;
  for (const CChangNode& node : field_.m_Nodes) {
    if (!is_finite(node)) continue;
    left_ = std::min<double>(left_, node.x);
    right = std::max<double>(right, node.x);
    top_ = std::min<double>(top_, node.y);
    bottom = std::max<double>(bottom, node.y);
  }
  if (!(left_ <= right)) left_ = right = top_ = bottom = 0;
  largest_ = std::max({std::fabs(left_), std::fabs(right), std::fabs(top_), std::fabs(bottom)});
  const double width = right - left_, height = bottom - top_;
  const double cells = std::max(1.0, std::max(field_.m_Nodes.GetSize(), field_.m_Tris.GetSize() / 2) * 1.0);
  const double longer = std::max(width, height);
  if (!(longer > 0)) return;
  // A long thin region gets a row of cells, never more than are wanted.
  const double size = std::max(std::sqrt(width * height / cells), longer / cells);
  cellsPerUnit_ = 1 / size;
  columns_ = static_cast<int>(width * cellsPerUnit_) + 1;
  rows_ = static_cast<int>(height * cellsPerUnit_) + 1;
}

int FieldLocator::column(double x) const {
  const double at = (x - left_) * cellsPerUnit_;
  return at > 0 ? static_cast<int>(std::min(at, columns_ - 1.0)) : 0;
}

int FieldLocator::row(double y) const {
  const double at = (y - top_) * cellsPerUnit_;
  return at > 0 ? static_cast<int>(std::min(at, rows_ - 1.0)) : 0;
}

std::size_t FieldLocator::cell(int column, int row) const {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(column);
}

template <class CellsOf>
FieldLocator::Bins FieldLocator::sort_into_cells(int count, const CellsOf& cells_of) const {
  Bins bins;
  bins.start.assign(cell(0, rows_) + 2, 0);
  const auto for_each_cell = [&](int i, const auto& f) {
    const Cells cells = cells_of(i);
    for (int y = cells.top; y <= cells.bottom; ++y) {
      for (int x = cells.left; x <= cells.right; ++x) f(cell(x, y));
    }
  };
  // Counted one place up and summed, start[c + 1] is where cell c begins; filling moves it to where the cell ends.
  for (int i = 0; i < count; ++i) for_each_cell(i, [&](std::size_t c) { ++bins.start[c + 2]; });
  for (std::size_t c = 2; c < bins.start.size(); ++c) bins.start[c] += bins.start[c - 1];
  bins.items.resize(bins.start.back());
  for (int i = 0; i < count; ++i) {
    for_each_cell(i, [&](std::size_t c) { bins.items[bins.start[c + 1]++] = static_cast<std::uint32_t>(i); });
  }
  return bins;
}

/// The cells in which a point could be found to lie in the triangle; none when no point can, all when that cannot be
/// told. Areas are wrong by rounding, so that a point counts as inside when each is above minus that error: its
/// barycentric coordinates then exceed -error / area, and it lies within the box widened by that share of its size.
FieldLocator::Cells FieldLocator::triangle_cells(const CChangTri& tri) {
  constexpr Cells kNone = {0, 0, -1, -1};
  const Cells kAll = {0, 0, std::numeric_limits<int>::max() - 1, 0};
  const detail::Corners t = detail::corners(field_, tri);
  if (!t) return kNone;
  if (!is_finite(*t.a) || !is_finite(*t.b) || !is_finite(*t.c)) return kAll;
  const double error = 32 * std::numeric_limits<double>::epsilon() * largest_ * largest_;
  const double area = det_tri(t.a->x, t.a->y, t.b->x, t.b->y, t.c->x, t.c->y);
  if (area < -4 * error) return kNone;
  if (area < 10 * error || !std::isfinite(error)) return kAll;
  const auto [left, right] = std::minmax({t.a->x, t.b->x, t.c->x});
  const auto [top, bottom] = std::minmax({t.a->y, t.b->y, t.c->y});
  const double widen =
      4 * error / area * std::max(static_cast<double>(right) - left, static_cast<double>(bottom) - top);
  return cells_around(left - widen, top - widen, right + widen, bottom + widen);
}

/// The first node at the point, -1 when there is none.
int FieldLocator::first_node_at(float x, float y) const {
  // A little more than the tolerance: distances are rounded.
  constexpr double kReach = 1.01 * static_cast<double>(detail::kSamePlace);
  const Cells cells = cells_around(x - kReach, y - kReach, x + kReach, y + kReach);
  std::uint32_t first = ~0U;
  for (int r = cells.top; r <= cells.bottom; ++r) {
    for (int c = cells.left; c <= cells.right; ++c) {
      const std::size_t at = cell(c, r);
      for (std::size_t i = nodes_.start[at]; i < nodes_.start[at + 1] && nodes_.items[i] < first; ++i) {
        const CChangNode& node = field_.m_Nodes[static_cast<int>(nodes_.items[i])];
        if (get_dist(node.x, node.y, x, y) < detail::kSamePlace) first = nodes_.items[i];
      }
    }
  }
  return static_cast<int>(first);
}

/// The first triangle that contains the point, -1 when there is none.
int FieldLocator::first_triangle_at(float x, float y) const {
  const auto contains = [&](std::uint32_t i) {
    return detail::contains(detail::corners(field_, field_.m_Tris[static_cast<int>(i)]), x, y);
  };
  const std::size_t at = cell(column(x), row(y));
  std::uint32_t first = ~0U;
  for (std::size_t i = triangles_.start[at]; i < triangles_.start[at + 1] && first == ~0U; ++i) {
    if (contains(triangles_.items[i])) first = triangles_.items[i];
  }
  for (const std::uint32_t i : looseTriangles_) {
    if (i >= first) break;
    if (contains(i)) return static_cast<int>(i);
  }
  return static_cast<int>(first);
}

void FieldLocator::scan_for_nearest(std::size_t at, float x, float y, float& least, int& nearest) const {
  for (std::size_t i = nodes_.start[at]; i < nodes_.start[at + 1]; ++i) {
    const int number = static_cast<int>(nodes_.items[i]);
    const CChangNode& node = field_.m_Nodes[number];
    const float distance = get_dist(node.x, node.y, x, y);
    if (distance < least || (distance == least && number < nearest)) {
      least = distance;
      nearest = number;
    }
  }
}

/// The nearest node, the first of equally near ones, -1 when all are too far. Rings of cells around the point's own
/// are looked at until the next is farther than the best node.
int FieldLocator::nearest_node(float x, float y) const {
  if (!std::isfinite(x) || !std::isfinite(y)) return -1;
  const int homeColumn = column(x), homeRow = row(y);
  float least = detail::kFarAway;
  int nearest = -1;
  for (int ring = 0; ring < std::max(columns_, rows_); ++ring) {
    const int left = homeColumn - ring, right = homeColumn + ring, top = homeRow - ring, bottom = homeRow + ring;
    // The point may lie outside the grid: then all cells are at least as far as the ring's own side of it.
    const double reach = ring > 1 ? (ring - 1) / cellsPerUnit_ : 0;
    if (reach > static_cast<double>(least) * 1.0001) break;
    for (int r = std::max(top, 0); r <= std::min(bottom, rows_ - 1); ++r) {
      const bool whole = r == top || r == bottom;
      for (int c = left; c <= right; c += whole || ring == 0 ? 1 : 2 * ring) {
        if (c >= 0 && c < columns_) scan_for_nearest(cell(c, r), x, y, least, nearest);
      }
    }
  }
  return nearest;
}

float FieldLocator::Value(float x, float y) const {
  if (!ready_) return field_.Get_Value(x, y);
  const int k = detail::value_index(field_);
  // The nodes are looked at first, mostly without result; meanwhile this comes from memory.
  detail::prefetch(&triangles_.start[cell(column(x), row(y))]);
  if (const int node = first_node_at(x, y); node >= 0) return field_.m_Nodes[node].value[k];
  if (const int i = first_triangle_at(x, y); i >= 0) {
    return detail::interpolate(detail::corners(field_, field_.m_Tris[i]), k, x, y);
  }
  const int nearest = nearest_node(x, y);
  return nearest >= 0 ? field_.m_Nodes[nearest].value[k] : 0;
}

int FieldLocator::Contains(float x, float y) const {
  if (!ready_) return field_.PointInChang(x, y);
  return first_node_at(x, y) >= 0 || first_triangle_at(x, y) >= 0 ? 1 : 0;
}

}  // namespace qv
