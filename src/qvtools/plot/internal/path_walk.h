#pragma once

/// From paths to the figures of a file: rounded to hundredths of a millimetre, strokes of one pen joined.

#include <cstdint>
#include <numbers>

#include "qvtools/plot/internal/canvas.h"
#include "qvtools/plot/internal/text_writer.h"

namespace qv::detail {

/// A point on the grid of hundredths of a millimetre.
struct GridPoint {
  int x = 0;
  int y = 0;
  bool operator==(const GridPoint&) const = default;
};

inline GridPoint on_grid(PathPoint p) {
  return {hundredths(p.x), hundredths(p.y)};
}

/// The pieces of the same sweep that an arc is written in.
class ArcPieces {
 public:
  ArcPieces(PathPoint from, const Path::Piece& arc, double widest) : from_(from), arc_(arc) {
    const double sweep = std::clamp(arc.sweep, -2 * std::numbers::pi, 2 * std::numbers::pi);
    // A whole number of the widest is not exceeded by rounding.
    count_ = std::max(1, static_cast<int>(std::ceil(std::fabs(sweep) / widest - 1e-9)));
    step_ = sweep / count_;
  }
  int count() const { return count_; }
  double step() const { return step_; }
  /// Where piece i begins, 0 to count; the last one ends exactly where the arc does.
  PathPoint point(int i) const { return i == count_ ? arc_.to : turned(from_, arc_.center, step_ * i); }
  /// The point beside p along the arc's tangent, `reach` radii on.
  PathPoint along(PathPoint p, double reach) const {
    return {p.x - (p.y - arc_.center.y) * reach, p.y + (p.x - arc_.center.x) * reach};
  }

 private:
  PathPoint from_;
  const Path::Piece& arc_;
  int count_;
  double step_;
};

/// Walks a path and tells `out`, which has move(GridPoint), line(GridPoint), arc(PathPoint from, const Path::Piece&)
/// and close(). Pieces of no length are left out, but a figure that is a point stays a dot.
template <class Out>
class PathWalk {
 public:
  explicit PathWalk(Out& out) : out_(out) {}

  /// The next figure starts anew, wherever the last one ended.
  void restart() { open_ = false; }
  /// How many pieces were told.
  std::int64_t told() const { return told_; }

  /// Every figure is closed.
  void fill(const Path& path) { walk<true>(path, false); }
  /// A figure that ends where it begins is closed. One that begins where the last one ended goes on with it, when
  /// `joined`.
  void stroke(const Path& path, bool joined) { walk<false>(path, joined); }

 private:
  template <bool filled>
  void walk(const Path& path, bool joined) {
    const auto& pieces = path.pieces();
    PathPoint from;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      const Path::Piece& piece = pieces[i];
      const bool last = i + 1 == pieces.size() || pieces[i + 1].kind == Path::Kind::Move;
      if (i == 0 || piece.kind == Path::Kind::Move) {
        begin(on_grid(piece.to), joined);
        if (!filled && last) dot();
      } else if (piece.kind == Path::Kind::Line) {
        line(on_grid(piece.to), last, filled);
      } else {
        start();
        out_.arc(from, piece);
        ++told_;
        now_ = on_grid(piece.to);
        if (last && (filled || now_ == first_)) close();
      }
      from = piece.to;
    }
  }
  void begin(GridPoint p, bool joined) {
    if (joined && open_ && p == now_) return;
    open_ = false;
    first_ = now_ = p;
  }
  void start() {
    if (open_) return;
    out_.move(first_);
    open_ = true;
    ++told_;
  }
  void line(GridPoint p, bool last, bool filled) {
    if (p == now_) {
      if (last && open_ && filled) close();
      if (last && !open_ && !filled) dot();
      return;
    }
    start();
    if (last && p == first_) return close();
    out_.line(p);
    ++told_;
    now_ = p;
    if (last && filled) close();
  }
  void dot() {
    if (open_) return;  // it lies on the end of the figure before
    start();
    out_.line(first_);
    ++told_;
  }
  void close() {
    out_.close();
    open_ = false;
    now_ = first_;
  }

  Out& out_;
  GridPoint first_;
  GridPoint now_;
  bool open_ = false;  // the figure that ends at `now_` has been told
  std::int64_t told_ = 0;
};

}  // namespace qv::detail
