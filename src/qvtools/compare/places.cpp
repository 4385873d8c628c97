#include <algorithm>
#include <cmath>

#include "qvtools/compare/internal/match.h"

namespace qv::detail {

namespace {

/// A raster over all differences. Those whose cells touch belong together.
class Raster {
 public:
  Raster(const CFRect& all, double near) : x_(all.x1), y_(all.y1) {
    constexpr double kMostCells = 256;  // each way
    const double side = std::max(double{all.x2} - all.x1, double{all.y2} - all.y1);
    cell_ = std::max({near, side / kMostCells, 1e-6});
    columns_ = count(double{all.x2} - all.x1);
    rows_ = count(double{all.y2} - all.y1);
    parent_.resize(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_), kEmpty);
  }

  /// Marks the cells along the border of a box: what differs is drawn of lines.
  void mark(const CFRect& box) {
    const Cells c = cells(box);
    for (int x = c.x1; x <= c.x2; ++x) mark(x, c.y1), mark(x, c.y2);
    for (int y = c.y1; y <= c.y2; ++y) mark(c.x1, y), mark(c.x2, y);
  }
  /// Joins neighbouring cells, and those of one box.
  void join(const CFRect& box) {
    const Cells c = cells(box);
    const int first = at(c.x1, c.y1);
    for (int x = c.x1; x <= c.x2; ++x) unite(first, at(x, c.y1)), unite(first, at(x, c.y2));
    for (int y = c.y1; y <= c.y2; ++y) unite(first, at(c.x1, y)), unite(first, at(c.x2, y));
  }
  void join_neighbours() {
    for (int y = 0; y < rows_; ++y)
      for (int x = 0; x < columns_; ++x) {
        if (parent_[static_cast<std::size_t>(at(x, y))] == kEmpty) continue;
        for (const auto& [dx, dy] : {std::pair(1, 0), std::pair(0, 1), std::pair(1, 1), std::pair(-1, 1)})
          if (x + dx >= 0 && x + dx < columns_ && y + dy < rows_) unite(at(x, y), at(x + dx, y + dy));
      }
  }
  int place_of(const CFRect& box) {
    const Cells c = cells(box);
    return root(at(c.x1, c.y1));
  }
  std::size_t size() const { return parent_.size(); }

 private:
  static constexpr int kEmpty = -1;
  struct Cells {
    int x1, y1, x2, y2;
  };
  int count(double length) const { return std::clamp(static_cast<int>(length / cell_) + 1, 1, 257); }
  int part(double v, int n) const {
    return v > 0 ? static_cast<int>(std::min(v / cell_, static_cast<double>(n - 1))) : 0;
  }
  Cells cells(const CFRect& b) const {
    return {part(double{b.x1} - x_, columns_), part(double{b.y1} - y_, rows_), part(double{b.x2} - x_, columns_),
            part(double{b.y2} - y_, rows_)};
  }
  int at(int x, int y) const { return y * columns_ + x; }
  void mark(int x, int y) {
    int& parent = parent_[static_cast<std::size_t>(at(x, y))];
    if (parent == kEmpty) parent = at(x, y);
  }
  int root(int i) {
    while (parent_[static_cast<std::size_t>(i)] != i) {
      int& parent = parent_[static_cast<std::size_t>(i)];
      parent = parent_[static_cast<std::size_t>(parent)];
      i = parent;
    }
    return i;
  }
  void unite(int a, int b) {
    if (parent_[static_cast<std::size_t>(b)] == kEmpty) return;
    parent_[static_cast<std::size_t>(root(b))] = root(a);
  }

  double x_;
  double y_;
  double cell_;
  int columns_;
  int rows_;
  std::vector<int> parent_;  // of each cell that is marked
};

bool is_finite(const CFRect& r) {
  return std::isfinite(r.x1) && std::isfinite(r.y1) && std::isfinite(r.x2) && std::isfinite(r.y2);
}

void add(CFRect& to, const CFRect& r) {
  to = CFRect(std::min(to.x1, r.x1), std::min(to.y1, r.y1), std::max(to.x2, r.x2), std::max(to.y2, r.y2));
}

}  // namespace

std::vector<DifferentPlace> find_places(std::vector<Difference>& differences, double near) {
  std::vector<DifferentPlace> places;
  const auto first =
      std::find_if(differences.begin(), differences.end(), [](const auto& d) { return is_finite(d.box); });
  if (differences.empty()) return places;
  CFRect all = first == differences.end() ? CFRect() : first->box;
  for (Difference& d : differences) {
    if (!is_finite(d.box)) d.box = all;
    add(all, d.box);
  }
  Raster raster(all, near);
  for (const Difference& d : differences) raster.mark(d.box);
  for (const Difference& d : differences) raster.join(d.box);
  raster.join_neighbours();
  std::vector<int> numbers(raster.size(), -1);
  for (std::size_t i = 0; i < differences.size(); ++i) {
    int& number = numbers[static_cast<std::size_t>(raster.place_of(differences[i].box))];
    if (number < 0) {
      number = static_cast<int>(places.size());
      places.push_back({differences[i].box, {}});
    }
    DifferentPlace& place = places[static_cast<std::size_t>(number)];
    add(place.box, differences[i].box);
    place.differences.push_back(static_cast<int>(i));
  }
  std::sort(places.begin(), places.end(), [&](const DifferentPlace& a, const DifferentPlace& b) {
    return a.box.y2 != b.box.y2 ? a.box.y2 > b.box.y2 : a.box.x1 < b.box.x1;
  });
  for (std::size_t p = 0; p < places.size(); ++p)
    for (const int d : places[p].differences) differences[static_cast<std::size_t>(d)].place = static_cast<int>(p);
  return places;
}

}  // namespace qv::detail
