#include "qvtools/import/internal/regions.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <map>

namespace qv::importing {

namespace {

/// An edge that runs upward.
struct Edge {
  Vec low;
  Vec high;

  double x_at(double y) const { return low.x + (high.x - low.x) * ((y - low.y) / (high.y - low.y)); }
};

std::vector<Edge> edges_of(const Loops& loops) {
  std::vector<Edge> edges;
  for (const std::vector<Vec>& loop : loops)
    for (std::size_t i = 0; i < loop.size(); ++i) {
      const Vec& a = loop[i];
      const Vec& b = loop[(i + 1) % loop.size()];
      if (a.y == b.y || !is_finite(a) || !is_finite(b)) continue;
      edges.push_back(a.y < b.y ? Edge{a, b} : Edge{b, a});
    }
  return edges;
}

/// Sweeps upward band by band; a trapezoid goes on as long as the same two edges bound it.
class Sweep {
 public:
  Sweep(std::vector<Edge> edges, const std::function<void(const Vec (&corners)[4])>& put)
      : edges_(std::move(edges)), put_(put) {
    std::ranges::stable_sort(edges_, {}, [](const Edge& e) { return e.low.y; });
    for (const Edge& edge : edges_) {
      levels_.push_back(edge.low.y);
      levels_.push_back(edge.high.y);
    }
    std::ranges::sort(levels_);
    levels_.erase(std::unique(levels_.begin(), levels_.end()), levels_.end());
  }

  bool run() {
    std::size_t next = 0;
    for (std::size_t i = 0; i + 1 < levels_.size(); ++i) {
      const double low = levels_[i];
      std::erase_if(active_, [&](std::size_t e) { return edges_[e].high.y <= low; });
      for (; next < edges_.size() && edges_[next].low.y <= low; ++next)
        if (edges_[next].high.y > low) active_.push_back(next);
      work_ += 1 + active_.size();
      if (work_ > kMostWork) return false;
      band(low, levels_[i + 1], kDeepest);
    }
    if (!levels_.empty()) close_all(levels_.back());
    return true;
  }

 private:
  static constexpr std::size_t kMostWork = 50000000;
  static constexpr int kDeepest = 12;
  using Key = std::uint64_t;

  void band(double low, double high, int depth) {
    // In the band's middle the edges lie in their order; where two change it, they cross, and the band is divided.
    const double mid = low + (high - low) / 2;
    std::ranges::stable_sort(active_, {}, [&](std::size_t e) { return edges_[e].x_at(mid); });
    work_ += active_.size();
    for (std::size_t i = 0; i + 1 < active_.size() && depth > 0; ++i) {
      const double y = crossing(edges_[active_[i]], edges_[active_[i + 1]], low, high);
      if (y <= low || y >= high) continue;
      band(low, y, depth - 1);
      band(y, high, depth - 1);
      return;
    }
    std::map<Key, double> now;
    for (std::size_t i = 0; i + 1 < active_.size(); i += 2) {
      const Key key = static_cast<Key>(active_[i]) << 32 | active_[i + 1];
      const auto before = open_.find(key);
      now.emplace(key, before == open_.end() ? low : before->second);
      if (before != open_.end()) open_.erase(before);
    }
    close_all(low);
    open_ = std::move(now);
  }

  /// Where two edges cross strictly between two levels; below them when they do not.
  static double crossing(const Edge& a, const Edge& b, double low, double high) {
    const double before = b.x_at(low) - a.x_at(low);
    const double after = b.x_at(high) - a.x_at(high);
    const double slack = 1e-9 * (std::fabs(b.x_at(low)) + std::fabs(a.x_at(low)) + (high - low));
    if ((before < -slack) == (after < -slack)) return low;
    return low + (high - low) * (before / (before - after));
  }

  void close_all(double y) {
    for (const auto& [key, from] : open_) {
      const Edge& left = edges_[static_cast<std::size_t>(key >> 32)];
      const Edge& right = edges_[key & 0xFFFFFFFF];
      const Vec corners[4] = {{left.x_at(from), from, left.low.z},
                              {right.x_at(from), from, left.low.z},
                              {left.x_at(y), y, left.low.z},
                              {right.x_at(y), y, left.low.z}};
      if (y > from) put_(corners);
    }
    open_.clear();
  }

  std::vector<Edge> edges_;
  const std::function<void(const Vec (&corners)[4])>& put_;
  std::vector<double> levels_;
  std::vector<std::size_t> active_;
  std::map<Key, double> open_;  // by the edges that bound it: where it began
  std::size_t work_ = 0;
};

}  // namespace

bool for_each_trapezoid(const Loops& loops, const std::function<void(const Vec (&corners)[4])>& put) {
  return Sweep(edges_of(loops), put).run();
}

namespace {

/// Where a line of the family goes through the border.
struct Crossing {
  double line;  // a whole number
  double along;
  friend auto operator<=>(const Crossing&, const Crossing&) = default;
};

/// A plane turned so that the lines of a pattern run along x.
struct Turned {
  double cosine;
  double sine;

  Vec to(const Vec& p) const { return {p.x * cosine + p.y * sine, p.y * cosine - p.x * sine, p.z}; }
  Vec back(const Vec& p) const { return {p.x * cosine - p.y * sine, p.x * sine + p.y * cosine, p.z}; }
};

/// The border's crossings with all lines; false when there are more than `most`.
bool find_crossings(const Loops& loops, const Turned& turned, double base, double spacing, double most,
                    std::vector<Crossing>& out) {
  double count = 0;
  for (const std::vector<Vec>& loop : loops)
    for (std::size_t i = 0; i < loop.size(); ++i) {
      const Vec a = turned.to(loop[i]);
      const Vec b = turned.to(loop[(i + 1) % loop.size()]);
      const double la = (a.y - base) / spacing;
      const double lb = (b.y - base) / spacing;
      // Half open: a corner that lies on a line counts with one of its two edges.
      const double first = std::ceil(std::min(la, lb));
      const double last = std::ceil(std::max(la, lb));
      count += last - first;
      if (!(count <= most)) return false;
      for (double k = first; k < last; ++k) out.push_back({k, a.x + (b.x - a.x) * ((k - la) / (lb - la))});
    }
  std::ranges::sort(out);
  return true;
}

}  // namespace

bool for_each_dash(const Loops& loops, const PatternLine& line, double most,
                   const std::function<void(const Vec& from, const Vec& to)>& put) {
  const Turned turned{std::cos(line.angle), std::sin(line.angle)};
  const Vec offset = turned.to(line.offset);
  const Vec base = turned.to(line.base);
  const double spacing = offset.y;
  double period = 0;
  for (const double dash : line.dashes) period += std::fabs(dash);
  if (!(std::fabs(spacing) > 1e-12) || !std::isfinite(spacing) || !std::isfinite(period) || loops.empty()) return true;
  const double z = loops[0].empty() ? 0 : loops[0][0].z;
  std::vector<Crossing> crossings;
  if (!find_crossings(loops, turned, base.y, spacing, 2 * most, crossings)) return false;
  double dashes = 0;
  for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
    const double run = crossings[i + 1].along - crossings[i].along;
    dashes += 1 + (period > 0 ? run / period * static_cast<double>(line.dashes.size()) : 0);
  }
  if (!(dashes <= most)) return false;
  const auto put_part = [&](double from, double to, double y) {
    put(turned.back({from, y, z}), turned.back({to, y, z}));
  };
  for (std::size_t i = 0; i + 1 < crossings.size(); i += 2) {
    const double from = crossings[i].along;
    const double to = crossings[i + 1].along;
    const double y = base.y + crossings[i].line * spacing;
    if (!(period > 0)) {
      if (to > from) put_part(from, to, y);
      continue;
    }
    const double origin = base.x + crossings[i].line * offset.x;
    double at = origin + std::floor((from - origin) / period) * period;
    while (at < to) {
      const double before = at;
      for (const double dash : line.dashes) {
        const double end = at + std::fabs(dash);
        const double low = std::max(at, from);
        const double high = std::min(end, to);
        if (dash > 0 ? low < high : dash == 0 && at >= from && at < to) put_part(low, dash > 0 ? high : low, y);
        at = end;
      }
      if (!(at > before)) break;  // lost to rounding
    }
  }
  return true;
}

}  // namespace qv::importing
