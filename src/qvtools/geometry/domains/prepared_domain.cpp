#include "qvtools/geometry/domains/prepared_domain.h"

#include "qvtools/geometry/domains/internal/domain_edge.h"
#include "qvtools/services/internal/out_of_memory.h"

using namespace qv::detail;

namespace {

// Where in its cell a reference point lies: fractions so odd that it falls on no edge with round coordinates.
constexpr double kFractionX = 0.41421356237, kFractionY = 0.57721566490;
constexpr double kEntriesPerEdge = 64;
constexpr double kMostCells = 2048;  // along one side of the box

/// Whether the line from the tested point (the origin) to `target` crosses the chord. A vertex on the line is taken to
/// lie to its right, for both of its edges; a tested point on the chord has the side that the chord gives it.
bool crosses_line_to(const Vec& target, const RelativeEdge& edge) {
  const bool left_p = target.cross(edge.p) > 0, left_q = target.cross(edge.q) > 0;
  if (left_p == left_q) return false;
  const Vec chord{edge.q.x - edge.p.x, edge.q.y - edge.p.y};
  return (edge.side() > 0) != (chord.cross({target.x - edge.p.x, target.y - edge.p.y}) > 0);
}

}  // namespace

void CPreparedDomain::Axis::divide(double low, double high, int cells, double fraction) {
  start = low;
  end = high;
  count = high > low ? cells : 1;
  cell = (high - low) / count;
  scale = high > low ? count / (high - low) : 0;
  offset = cell * fraction;
}

int CPreparedDomain::Axis::at(double v) const {
  const double index = (v - start) * scale;
  return index > 0 ? static_cast<int>((std::min)(index, count - 1.0)) : 0;
}

int CPreparedDomain::Axis::first_beyond(double v) const {
  if (!(v > start + offset)) return 0;
  return static_cast<int>((std::min)((v - start - offset) * scale + 1, static_cast<double>(count)));
}

/// Fills the grid: first the number of entries of each cell, then the entries, then the reference points.
struct CPreparedDomain::Builder {
  CPreparedDomain& d;
  std::vector<std::uint32_t> last_edge;  // the edge that was entered last, + 1, for each cell
  double margin;

  explicit Builder(CPreparedDomain& domain)
      : d(domain), margin(1e-6 * ((d.x_.end - d.x_.start) + (d.y_.end - d.y_.start))) {}

  std::size_t cell_count() const { return static_cast<std::size_t>(d.x_.count) * static_cast<std::size_t>(d.y_.count); }
  std::size_t cell(int row, int column) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(d.x_.count) + static_cast<std::size_t>(column);
  }
  int edge_count() const { return static_cast<int>(d.edges_.size()) - 1; }
  const CDomainEdge& edge(int i) const { return d.edges_[static_cast<std::size_t>(i)]; }

  void fill() {
    d.cells_.assign(cell_count() + 1, Cell{0, 0});
    each_entry([&](int, int row, int column) { ++d.cells_[cell(row, column)].first; });
    std::uint32_t total = 0;
    for (Cell& c : d.cells_) {
      total += c.first;
      c.first = total;
    }
    d.entries_.resize(total);
    each_entry([&](int i, int row, int column) {
      d.entries_[--d.cells_[cell(row, column)].first] =
          static_cast<std::uint32_t>(i) << 1 | contains_reference(i, row, column);
    });
    mark_references();
  }

  std::uint32_t contains_reference(int i, int row, int column) const {
    if (!edge(i).isArc) return 0;
    return RelativeArc(edge(i), edge(i + 1), d.x_.reference(column), d.y_.reference(row)).segment_contains();
  }

  /// Calls visit(edge, row, column) once for every cell that an edge or the chord of an arc may reach into.
  void each_entry(const auto& visit) {
    last_edge.assign(cell_count(), 0);
    for (int i = 0; i < edge_count(); ++i) {
      const auto cells = [&](int row, double from, double to) {
        for (int column = d.x_.at(from - margin), end = d.x_.at(to + margin); column <= end; ++column) {
          std::uint32_t& last = last_edge[cell(row, column)];
          if (last == static_cast<std::uint32_t>(i) + 1) continue;
          last = static_cast<std::uint32_t>(i) + 1;
          visit(i, row, column);
        }
      };
      chord_cells(edge(i), edge(i + 1), cells);
      if (edge(i).isArc) arc_cells(edge(i), edge(i + 1), cells);
    }
  }

  void chord_cells(const CDomainEdge& from, const CDomainEdge& to, const auto& cells) const {
    const double x1 = from.x, y1 = from.y, dx = to.x - x1, dy = to.y - y1;
    const double low = (std::min)(y1, y1 + dy) - margin, high = (std::max)(y1, y1 + dy) + margin;
    for (int row = d.y_.at(low), end = d.y_.at(high); row <= end; ++row) {
      // The parameters of the chord, from 0 to 1, that lie in the row.
      const double below = d.y_.start + row * d.y_.cell - margin, above = below + d.y_.cell + 2 * margin;
      double a = dy != 0 ? (below - y1) / dy : 0, b = dy != 0 ? (above - y1) / dy : 1;
      if (a > b) std::swap(a, b);
      a = (std::max)(a, 0.0);
      b = (std::min)(b, 1.0);
      if (a <= b) cells(row, x1 + (std::min)(dx * a, dx * b), x1 + (std::max)(dx * a, dx * b));
    }
  }

  /// The cells of the whole circle that lie in the arc's box.
  void arc_cells(const CDomainEdge& from, const CDomainEdge& to, const auto& cells) const {
    float x1, y1, x2, y2;
    CPointInDomain().Get_OutLook_One_Edge(from, to, x1, y1, x2, y2);
    const double r2 = RelativeArc(from, to, 0, 0).radius2;
    for (int row = d.y_.at(y1 - margin), end = d.y_.at(y2 + margin); row <= end; ++row) {
      const double below = d.y_.start + row * d.y_.cell - margin - from.cy, above = below + d.y_.cell + 2 * margin;
      const double least = below <= 0 && above >= 0 ? 0 : (std::min)(std::fabs(below), std::fabs(above));
      const double most = (std::max)(std::fabs(below), std::fabs(above));
      const double outer = std::sqrt((std::max)(0.0, r2 - least * least));
      const double inner = std::sqrt((std::max)(0.0, r2 - most * most));
      const auto side = [&](double a, double b) {
        a = (std::max)(a, 1.0 * x1);
        b = (std::min)(b, 1.0 * x2);
        if (a <= b + 2 * margin) cells(row, (std::min)(a, b), (std::max)(a, b));
      };
      side(from.cx - outer, from.cx - inner);
      side(from.cx + inner, from.cx + outer);
    }
  }

  /// Every edge flips the reference points of a row that lie left of its chord, and those in its circular segment.
  void mark_references() {
    std::vector<std::uint32_t> flips(cell_count() + static_cast<std::size_t>(d.y_.count));
    const auto flip = [&](int row, double from, double to) {
      if (!(from < to)) return;
      const std::size_t start = cell(row, 0) + static_cast<std::size_t>(row);
      flips[start + static_cast<std::size_t>(d.x_.first_beyond(from))] ^= 1;
      flips[start + static_cast<std::size_t>(d.x_.first_beyond(to))] ^= 1;
    };
    for (int i = 0; i < edge_count(); ++i) flip_by_edge(edge(i), edge(i + 1), flip);
    for (int row = 0; row < d.y_.count; ++row) {
      std::uint32_t inside = 0;
      for (int column = 0; column < d.x_.count; ++column) {
        inside ^= flips[cell(row, column) + static_cast<std::size_t>(row)];
        d.cells_[cell(row, column)].inside = inside;
      }
    }
  }

  void flip_by_edge(const CDomainEdge& from, const CDomainEdge& to, const auto& flip) const {
    float x1, y1, x2, y2;
    CPointInDomain().Get_OutLook_One_Edge(from, to, x1, y1, x2, y2);
    for (int row = d.y_.first_beyond(y1 - margin), end = d.y_.first_beyond(y2 + margin); row < end; ++row) {
      const double y = d.y_.reference(row), dy = static_cast<double>(to.y) - from.y;
      const double chord_x = from.x + (y - from.y) * ((static_cast<double>(to.x) - from.x) / dy);
      if ((from.y > y) != (to.y > y)) flip(row, -HUGE_VAL, chord_x);
      if (!from.isArc) continue;
      const double r2 = RelativeArc(from, to, 0, 0).radius2, off = y - from.cy;
      if (!(off * off < r2)) continue;
      const double h = std::sqrt(r2 - off * off);
      double a = from.cx - h, b = from.cx + h;
      // Left of an upward chord is where x is less; the arc lies to the right of the chord when it runs
      // counter-clockwise.
      const bool less = (dy > 0) != (from.ccw != 0);
      if (dy == 0) {
        const bool left = (y - from.y) * (static_cast<double>(to.x) - from.x) > 0;
        if (left == (from.ccw != 0) || from.x == to.x) continue;
      } else {
        (less ? b : a) = less ? (std::min)(b, chord_x) : (std::max)(a, chord_x);
      }
      flip(row, a, b);
    }
  }
};

CPreparedDomain::CPreparedDomain(int n, const CDomainEdge* edges) {
  if (n < 1) return;
  const bool prepared = unless_out_of_memory([&] { return prepare(n, edges), true; }, false);
  if (prepared) return;
  edges_.clear();
  cells_.clear();
}

void CPreparedDomain::prepare(int n, const CDomainEdge* edges) {
  edges_.assign(edges, edges + n);
  edges_.push_back(edges[0]);
  float x1, y1, x2, y2;
  CPointInDomain().Get_OutLook_Domain(n, edges, x1, y1, x2, y2);
  const double width = static_cast<double>(x2) - x1, height = static_cast<double>(y2) - y1;
  double spans = 0;
  for (int i = 0; i < n; ++i) {
    float ex1, ey1, ex2, ey2;
    CPointInDomain().Get_OutLook_One_Edge(edges_[static_cast<std::size_t>(i)], edges_[static_cast<std::size_t>(i) + 1],
                                          ex1, ey1, ex2, ey2);
    spans += (width > 0 ? (ex2 - ex1) / width : 0) + (height > 0 ? (ey2 - ey1) / height : 0);
  }
  if (!std::isfinite(spans) || !std::isfinite(width + height) || spans > 4.0 * n) return;
  const double most = (std::min)(8 * std::sqrt(static_cast<double>(n)) + 4, kMostCells);
  const int cells = static_cast<int>(std::clamp(kEntriesPerEdge * n / (spans + 1), 1.0, most));
  x_.divide(x1, x2, cells, kFractionX);
  y_.divide(y1, y2, cells, kFractionY);
  Builder(*this).fill();
}

bool CPreparedDomain::on_any(int row1, int row2, int column1, int column2, float px, float py, float tol) const {
  for (int row = row1; row <= row2; ++row) {
    const Cell* cells = cells_.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(x_.count);
    // The cells of a row lie one after the other, and so do their entries.
    for (std::uint32_t k = cells[column1].first; k < cells[column2 + 1].first; ++k) {
      const CDomainEdge* edge = &edges_[entries_[k] >> 1];
      if (on_edge(edge[0], edge[1], px, py, tol)) return true;
    }
  }
  return false;
}

int CPreparedDomain::Point_In_Domain(float px, float py, float tol) const {
  if (cells_.empty()) {
    const int n = edges_.empty() ? 0 : static_cast<int>(edges_.size()) - 1;
    return CPointInDomain().Point_In_Domain(n, edges_.data(), px, py, tol);
  }
  const double reach = tol > 0 ? tol : 0;
  if (!(x_.start - reach <= px && px <= x_.end + reach && y_.start - reach <= py && py <= y_.end + reach)) return 0;
  const int row1 = y_.at(py - reach), row2 = y_.at(py + reach);
  const int column1 = x_.at(px - reach), column2 = x_.at(px + reach);
  const bool one_cell = row1 == row2 && column1 == column2;
  if (!one_cell && on_any(row1, row2, column1, column2, px, py, tol)) return 1;

  const int row = y_.at(py), column = x_.at(px);
  const Cell* cell =
      &cells_[static_cast<std::size_t>(row) * static_cast<std::size_t>(x_.count) + static_cast<std::size_t>(column)];
  const Vec reference{x_.reference(column) - px, y_.reference(row) - py};
  std::uint32_t inside = cell[0].inside;
  for (std::uint32_t k = cell[0].first; k < cell[1].first; ++k) {
    const CDomainEdge* edge = &edges_[entries_[k] >> 1];
    if (one_cell && on_edge(edge[0], edge[1], px, py, tol)) return 1;
    const RelativeEdge chord(edge[0], edge[1], px, py);
    inside ^= static_cast<std::uint32_t>(crosses_line_to(reference, chord));
    if (edge->isArc) inside ^= RelativeArc(edge[0], edge[1], px, py).segment_contains() ^ (entries_[k] & 1);
  }
  const bool in_box = x_.start <= px && px <= x_.end && y_.start <= py && py <= y_.end;
  return in_box ? static_cast<int>(inside) : 0;
}
