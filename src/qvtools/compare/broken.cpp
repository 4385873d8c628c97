#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "qvtools/compare/internal/match.h"

namespace qv::detail {

namespace {

using Fate = Comparison::Fate;

struct Place {
  double x;
  double y;
  double z;
};

double distance(const Place& a, const Place& b) {
  return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z);
}

/// The lines of one drawing that are left over, by their ends.
class LooseLines {
 public:
  LooseLines(const Pieces& of, std::vector<Fate>& fates, CFPoint shift, double tolerance)
      : of_(of), fates_(fates), shift_(shift), per_cell_(1 / (4 * tolerance)), tolerance_(tolerance) {
    for (std::size_t i = 0; i < of.all.size(); ++i) {
      const Piece& piece = of.all[i];
      // A line that grows wider is as it is.
      if (fates[i] != Fate::Alone || piece.kind != PieceKind::Line || piece.size[0] != piece.size[1]) continue;
      for (int end = 0; end < 2; ++end) {
        const Place at = end_of(static_cast<int>(i), end);
        ends_.push_back({key(piece.look, at.x, at.y), static_cast<int>(i), end});
      }
    }
    std::sort(ends_.begin(), ends_.end(), [](const End& a, const End& b) { return a.key < b.key; });
  }

  std::size_t size() const { return ends_.size(); }
  const Piece& piece(int i) const { return of_.all[static_cast<std::size_t>(i)]; }
  Place end_of(int i, int end) const {
    const Point3& p = of_.points_of(piece(i))[end];
    return {double{p.x} + shift_.x, double{p.y} + shift_.y, p.z};
  }
  void join(const std::vector<int>& pieces) {
    for (const int i : pieces) fates_[static_cast<std::size_t>(i)] = Fate::Same;
  }
  /// Calls f(piece, its end) for every end.
  void for_each_end(const auto& f) const {
    for (const End& end : ends_)
      if (is_loose(end.piece)) f(end.piece, end.end);
  }
  /// The first line like another with an end near a place whose other end `fits` takes; -1 when there is none.
  int find(const Piece& like, const Place& at, const auto& fits) const {
    const double half = 0.5 / per_cell_;
    for (const double dx : {-half, half})
      for (const double dy : {-half, half}) {
        const std::uint64_t wanted = key(like.look, at.x + dx, at.y + dy);
        auto found = std::lower_bound(ends_.begin(), ends_.end(), wanted,
                                      [](const End& end, std::uint64_t k) { return end.key < k; });
        for (int searched = 0; found != ends_.end() && found->key == wanted && searched < kLongestSearch;
             ++found, ++searched) {
          const Piece& other = piece(found->piece);
          if (!is_loose(found->piece) || other.look != like.look) continue;
          if (std::fabs(double{other.size[0]} - like.size[0]) > tolerance_) continue;
          if (distance(end_of(found->piece, found->end), at) > 1.5 * tolerance_) continue;
          if (fits(end_of(found->piece, 1 - found->end))) return found->piece;
        }
      }
    return -1;
  }

 private:
  static constexpr int kLongestSearch = 64;
  struct End {
    std::uint64_t key;
    int piece;
    int end;
  };
  bool is_loose(int i) const { return fates_[static_cast<std::size_t>(i)] == Fate::Alone; }
  std::uint64_t key(std::uint32_t look, double x, double y) const {
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15U;
    constexpr double kMost = 4e18;
    std::uint64_t hash = look;
    for (const double v : {x, y}) {
      const double cell = std::floor(v * per_cell_ + 0.5);
      hash = (hash ^ static_cast<std::uint64_t>(cell > -kMost && cell < kMost ? static_cast<std::int64_t>(cell) : 0)) *
             kOdd;
      hash ^= hash >> 29;
    }
    return hash;
  }

  const Pieces& of_;
  std::vector<Fate>& fates_;
  CFPoint shift_;
  double per_cell_;
  double tolerance_;
  std::vector<End> ends_;
};

/// Goes along what is left over of both drawings from a place where lines of both begin, until lines of both end.
class Walk {
 public:
  Walk(LooseLines& olds, LooseLines& news, double tolerance)
      : sides_{&olds, &news}, near_(1.5 * tolerance), steps_left_(64 * (olds.size() + news.size())) {}

  /// Whether lines of both that show the same begin with the end of an old one; then they are joined.
  bool from(int old, int end) {
    start_ = sides_[0]->end_of(old, end);
    const Piece& like = sides_[0]->piece(old);
    taken_[0] = {old};
    taken_[1].clear();
    reached_[0] = sides_[0]->end_of(old, 1 - end);
    reached_[1] = start_;
    while (taken_[1].empty() || distance(reached_[0], reached_[1]) > near_) {
      const int behind = distance(start_, reached_[1]) < distance(start_, reached_[0]) ? 1 : 0;
      if (!go_on(behind, like)) return false;
    }
    for (int side = 0; side < 2; ++side) sides_[side]->join(taken_[side]);
    return true;
  }
  const std::vector<int>& taken(int side) const { return taken_[side]; }

 private:
  bool go_on(int side, const Piece& like) {
    if (steps_left_ == 0) return false;
    --steps_left_;
    const Place from = reached_[side], other = reached_[1 - side];
    const int next = sides_[side]->find(like, from, [&](const Place& to) {
      const bool farther = distance(start_, to) > distance(start_, from) + near_;
      const bool beyond = distance(start_, to) > distance(start_, other);
      if (!farther || !(beyond ? lies_between(to, other) && lies_between(to, from) : lies_between(other, to)))
        return false;
      reached_[side] = to;
      return true;
    });
    if (next < 0) return false;
    taken_[side].push_back(next);
    return true;
  }
  /// Whether a place lies on the way from the start to a farther one.
  bool lies_between(const Place& far, const Place& at) const {
    const double length = distance(start_, far);
    const double dx = (far.x - start_.x) / length, dy = (far.y - start_.y) / length, dz = (far.z - start_.z) / length;
    const double along = (at.x - start_.x) * dx + (at.y - start_.y) * dy + (at.z - start_.z) * dz;
    const Place foot{start_.x + along * dx, start_.y + along * dy, start_.z + along * dz};
    return along > -near_ && distance(foot, at) <= near_;
  }

  LooseLines* sides_[2];
  double near_;
  std::size_t steps_left_;  // many lines along one another end, too
  Place start_{};
  Place reached_[2]{};
  std::vector<int> taken_[2];
};

}  // namespace

void match_broken(const Pieces& before, const Pieces& after, Matches& matches, double tolerance) {
  LooseLines olds(before, matches.before, matches.shift, tolerance);
  LooseLines news(after, matches.after, {0, 0}, tolerance);
  if (olds.size() == 0 || news.size() == 0) return;
  Walk walk(olds, news, tolerance);
  olds.for_each_end([&](int piece, int end) {
    if (!walk.from(piece, end)) return;
    for (const int n : walk.taken(1)) matches.mate[static_cast<std::size_t>(n)] = piece;
  });
}

}  // namespace qv::detail
