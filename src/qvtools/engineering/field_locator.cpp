#include "qvtools/engineering/field_locator.h"

#include <cmath>
#include <limits>
#include <new>

#include "qvtools/engineering/internal/field_mesh.h"
#include "qvtools/services/internal/out_of_memory.h"

namespace qv {

namespace {

// A triangle that reaches into more cells than this is entered in none; every query looks at it instead.
constexpr std::int64_t kMostCells = 64;
constexpr double kNothing = std::numeric_limits<double>::infinity();
// Nodes are looked for this far: a little more than the tolerance, since distances are rounded.
constexpr double kNodeReach = 1.01 * static_cast<double>(detail::kSamePlace);

// A cell's steps, and a step's place in its cell.
constexpr int kStepBits = 7;
constexpr std::int64_t kSteps = 1 << kStepBits;
constexpr std::int64_t kLastOfCell = kSteps - 1;

// Parts of cells and places in them are four numbers of seven bits in the bytes of a word: what each is at least. A
// place lies in a part when none of its numbers is less; the eighth bits, set in places, then outlast a subtraction.
constexpr std::uint32_t kEighthBits = 0x80808080U;

std::uint32_t word(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom) {
  return static_cast<std::uint32_t>(left | (kLastOfCell - right) << 8 | top << 16 | (kLastOfCell - bottom) << 24);
}

bool lies_in(std::uint32_t place, std::uint32_t part) {
  return ((place - part) & kEighthBits) == kEighthBits;
}

bool is_finite(const CChangNode& node) {
  return std::isfinite(node.x) && std::isfinite(node.y);
}

}  // namespace

FieldLocator::FieldLocator(const CChang& field) : field_(field) {
  const auto sort = [this] { return lay_grid(), sort_into_cells(), true; };
  ready_ = detail::unless_out_of_memory(sort, false);
}

/// A grid over the nodes with about two triangles or one node to a cell, whose cells are larger than a node's reach.
void FieldLocator::lay_grid() {
  double left = kNothing, top = kNothing, right = -kNothing, bottom = -kNothing;
  for (const CChangNode& node : field_.m_Nodes) {
    if (!is_finite(node)) continue;
    left = std::min<double>(left, node.x);
    right = std::max<double>(right, node.x);
    top = std::min<double>(top, node.y);
    bottom = std::max<double>(bottom, node.y);
  }
  if (!(left <= right)) left = right = top = bottom = 0;
  largest_ = std::max({std::fabs(left), std::fabs(right), std::fabs(top), std::fabs(bottom)});
  const double width = right - left, height = bottom - top;
  const double cells = std::max(1.0, std::max(field_.m_Nodes.GetSize(), field_.m_Tris.GetSize() / 2) * 1.0);
  // A long thin region gets a row of cells, never more than are wanted.
  cellSize_ = std::max({std::sqrt(width * height / cells), std::max(width, height) / cells, 4 * kNodeReach});
  stepsPerUnit_ = static_cast<double>(kSteps) / cellSize_;
  const auto axis = [&](double origin, double length) -> Axis {
    const int count = static_cast<int>(length / cellSize_) + 1;
    return {origin, count, static_cast<double>(count * kSteps - 1)};
  };
  columns_ = axis(left, width);
  rows_ = axis(top, height);
}

/// The step at a coordinate; what lies outside the grid counts to its border.
inline std::int64_t FieldLocator::step(double at, const Axis& axis) const {
  const double steps = (at - axis.origin) * stepsPerUnit_;
  return steps > 0 ? static_cast<std::int64_t>(std::min(steps, axis.lastStep)) : 0;
}

inline std::size_t FieldLocator::cell(std::int64_t column, std::int64_t row) const {
  return static_cast<std::size_t>(row * columns_.cells + column);
}

inline FieldLocator::Place FieldLocator::place(float x, float y) const {
  const std::int64_t across = step(x, columns_), down = step(y, rows_);
  const std::int64_t column = across & kLastOfCell, row = down & kLastOfCell;
  return {cell(across >> kStepBits, down >> kStepBits), word(column, row, column, row) | kEighthBits};
}

FieldLocator::Box FieldLocator::box_around(double left, double top, double right, double bottom) const {
  return {step(left, columns_), step(top, rows_), step(right, columns_), step(bottom, rows_)};
}

/// The number of cells that a box reaches into.
std::int64_t FieldLocator::cells_of(const Box& box) {
  return ((box.right >> kStepBits) - (box.left >> kStepBits) + 1) *
         ((box.bottom >> kStepBits) - (box.top >> kStepBits) + 1);
}

/// Nodes and triangles are entered in all cells that they reach into.
void FieldLocator::sort_into_cells() {
  struct Item {
    Box box;
    Entry entry;
    int number;
  };
  std::vector<Item> items;
  items.reserve(static_cast<std::size_t>(field_.m_Nodes.GetSize()) + static_cast<std::size_t>(field_.m_Tris.GetSize()));
  for (int i = 0; i < field_.m_Nodes.GetSize(); ++i) items.push_back({reach(field_.m_Nodes[i]), {0, {i, -1, -1}}, -1});
  for (int i = 0; i < field_.m_Tris.GetSize(); ++i) {
    const Box box = reach(field_.m_Tris[i]);
    if (cells_of(box) == 0) continue;
    const auto& node = field_.m_Tris[i].node;
    const Entry entry = {0, {node[0] - 1, node[1] - 1, node[2] - 1}};
    if (cells_of(box) <= kMostCells) {
      items.push_back({box, entry, i});
    } else {
      loose_.push_back(entry);
      looseNumbers_.push_back(i);
    }
  }
  const auto for_each_cell = [&](const Box& box, const auto& enter) {
    for (std::int64_t top = box.top; top <= box.bottom; top = (top | kLastOfCell) + 1) {
      const std::int64_t bottom = std::min(box.bottom, top | kLastOfCell);
      for (std::int64_t left = box.left; left <= box.right; left = (left | kLastOfCell) + 1) {
        const std::int64_t right = std::min(box.right, left | kLastOfCell);
        enter(cell(left >> kStepBits, top >> kStepBits),
              word(left & kLastOfCell, top & kLastOfCell, right & kLastOfCell, bottom & kLastOfCell));
      }
    }
  };
  // Counted one place up and summed, start[c + 1] is where cell c begins; filling moves it to where the cell ends.
  start_.assign(cell(0, rows_.cells) + 2, 0);
  std::uint64_t entered = 0;
  for (const Item& item : items) {
    for_each_cell(item.box, [&](std::size_t c, std::uint32_t) { ++start_[c + 2], ++entered; });
  }
  if (entered > std::numeric_limits<std::uint32_t>::max()) throw std::bad_alloc();
  for (std::size_t c = 2; c < start_.size(); ++c) start_[c] += start_[c - 1];
  entries_.resize(start_.back());
  if (!loose_.empty()) numbers_.resize(entries_.size());
  for (const Item& item : items) {
    for_each_cell(item.box, [&](std::size_t c, std::uint32_t part) {
      const std::uint32_t place = start_[c + 1]++;
      entries_[place] = item.entry;
      entries_[place].part = part;
      if (!loose_.empty()) numbers_[place] = item.number;
    });
  }
}

FieldLocator::Box FieldLocator::reach(const CChangNode& node) const {
  if (!is_finite(node)) return kNowhere;
  return box_around(node.x - kNodeReach, node.y - kNodeReach, node.x + kNodeReach, node.y + kNodeReach);
}

/// Where a point could be found to lie in the triangle; everywhere when that cannot be told. Areas are wrong by
/// rounding, so that a point counts as inside when each is above minus that error: its barycentric coordinates then
/// exceed -error / area, and it lies within the box widened by that share of its size.
FieldLocator::Box FieldLocator::reach(const CChangTri& tri) const {
  const detail::Corners t = detail::corners(field_, tri);
  if (!t) return kNowhere;
  if (!is_finite(*t.a) || !is_finite(*t.b) || !is_finite(*t.c)) return kEverywhere;
  const double error = 32 * std::numeric_limits<double>::epsilon() * largest_ * largest_;
  const double area = det_tri(t.a->x, t.a->y, t.b->x, t.b->y, t.c->x, t.c->y);
  if (area < -4 * error) return kNowhere;
  if (area < 10 * error || !std::isfinite(error)) return kEverywhere;
  const auto [left, right] = std::minmax({t.a->x, t.b->x, t.c->x});
  const auto [top, bottom] = std::minmax({t.a->y, t.b->y, t.c->y});
  const double widen =
      4 * error / area * std::max(static_cast<double>(right) - left, static_cast<double>(bottom) - top);
  return box_around(left - widen, top - widen, right + widen, bottom + widen);
}

/// Whether the point is the entry's node, or lies in its triangle.
inline bool FieldLocator::is_at(const Entry& entry, float x, float y) const {
  const CChangNode* const nodes = field_.m_Nodes.GetData();
  const CChangNode& a = nodes[entry.node[0]];
  if (entry.is_node()) return get_dist(a.x, a.y, x, y) < detail::kSamePlace;
  return detail::contains({&a, nodes + entry.node[1], nodes + entry.node[2]}, x, y);
}

/// What answers for the point: the first node there or, without one, the first triangle that contains it; null when
/// there is neither.
inline const FieldLocator::Entry* FieldLocator::first_at(float x, float y) const {
  const Place at = place(x, y);
  const Entry* const end = entries_.data() + start_[at.cell + 1];
  const Entry* found = entries_.data() + start_[at.cell];
  while (found != end && !(lies_in(at.within, found->part) && is_at(*found, x, y))) ++found;
  if (found == end) found = nullptr;
  if (loose_.empty() || (found && found->is_node())) return found;
  const Entry* const loose =
      first_loose_before(found ? numbers_[found - entries_.data()] : field_.m_Tris.GetSize(), x, y);
  return loose ? loose : found;
}

const FieldLocator::Entry* FieldLocator::first_loose_before(int number, float x, float y) const {
  for (std::size_t i = 0; i < loose_.size() && looseNumbers_[i] < number; ++i) {
    if (is_at(loose_[i], x, y)) return &loose_[i];
  }
  return nullptr;
}

void FieldLocator::scan_for_nearest(std::size_t at, float x, float y, float& least, int& nearest) const {
  for (std::size_t i = start_[at]; i < start_[at + 1] && entries_[i].is_node(); ++i) {
    const int number = entries_[i].node[0];
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
  const std::int64_t homeColumn = step(x, columns_) >> kStepBits, homeRow = step(y, rows_) >> kStepBits;
  float least = detail::kFarAway;
  int nearest = -1;
  for (int ring = 0; ring < std::max(columns_.cells, rows_.cells); ++ring) {
    const std::int64_t left = homeColumn - ring, right = homeColumn + ring, top = homeRow - ring,
                       bottom = homeRow + ring;
    // The point may lie outside the grid: then all cells are at least as far as the ring's own side of it.
    const double reach = ring > 1 ? (ring - 1) * cellSize_ : 0;
    if (reach > static_cast<double>(least) * 1.0001) break;
    for (std::int64_t r = std::max<std::int64_t>(top, 0); r <= std::min<std::int64_t>(bottom, rows_.cells - 1); ++r) {
      const bool whole = r == top || r == bottom;
      for (std::int64_t c = left; c <= right; c += whole || ring == 0 ? 1 : 2 * ring) {
        if (c >= 0 && c < columns_.cells) scan_for_nearest(cell(c, r), x, y, least, nearest);
      }
    }
  }
  return nearest;
}

float FieldLocator::Value(float x, float y) const {
  if (!ready_) return field_.Get_Value(x, y);
  const int k = detail::value_index(field_);
  const CChangNode* const nodes = field_.m_Nodes.GetData();
  if (const Entry* const found = first_at(x, y)) {
    const CChangNode* const a = nodes + found->node[0];
    return found->is_node() ? a->value[k]
                            : detail::interpolate({a, nodes + found->node[1], nodes + found->node[2]}, k, x, y);
  }
  const int nearest = nearest_node(x, y);
  return nearest >= 0 ? nodes[nearest].value[k] : 0;
}

int FieldLocator::Contains(float x, float y) const {
  if (!ready_) return field_.PointInChang(x, y);
  return first_at(x, y) ? 1 : 0;
}

}  // namespace qv
