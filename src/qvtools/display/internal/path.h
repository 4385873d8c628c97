#pragma once

/// Figures in a plane with y upward, in double: on paper, or in a drawing's own units.

#include <cmath>
#include <vector>

#include "qvtools/display/appearance.h"

namespace qv::detail {

struct PathPoint {
  double x = 0;
  double y = 0;
  bool operator==(const PathPoint&) const = default;
};

inline double distance(PathPoint a, PathPoint b) {
  return std::hypot(b.x - a.x, b.y - a.y);
}
/// `p` turned about a centre by an angle in radians.
inline PathPoint turned(PathPoint p, PathPoint center, double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  const double x = p.x - center.x;
  const double y = p.y - center.y;
  return {center.x + x * c - y * s, center.y + x * s + y * c};
}

struct PathRect {
  double left = 0;
  double bottom = 0;
  double right = 0;
  double top = 0;

  bool contains(PathPoint p) const { return p.x >= left && p.x <= right && p.y >= bottom && p.y <= top; }
  bool contains(const PathRect& r) const {
    return r.left >= left && r.right <= right && r.bottom >= bottom && r.top <= top;
  }
  bool misses(const PathRect& r) const { return r.right < left || r.left > right || r.top < bottom || r.bottom > top; }
  double width() const { return right - left; }
  double height() const { return top - bottom; }
};

/// Figures of straight pieces and arcs, one behind the other. A figure that ends where it began is closed.
class Path {
 public:
  enum class Kind : char { Move, Line, Arc };
  struct Piece {
    Kind kind;
    PathPoint to;      ///< where the piece ends
    PathPoint center;  ///< of an arc
    double sweep;      ///< of an arc, in radians, counter-clockwise positive, at most a whole turn
  };

  void clear() { pieces_.clear(); }
  bool empty() const { return pieces_.empty(); }
  void move_to(PathPoint p) { pieces_.push_back({Kind::Move, p, {}, 0}); }
  void line_to(PathPoint p) { pieces_.push_back({Kind::Line, p, {}, 0}); }
  /// From the present point about a centre to `p`.
  void arc_to(PathPoint p, PathPoint center, double sweep) { pieces_.push_back({Kind::Arc, p, center, sweep}); }
  const std::vector<Piece>& pieces() const { return pieces_; }
  PathPoint end() const { return pieces_.back().to; }

 private:
  std::vector<Piece> pieces_;
};

/// The box of all pieces, arcs with their quadrants; of an empty path that of the origin.
QV_API PathRect bounds(const Path& path);

/// Appends what of the path lies in the rectangle.
QV_API void clip(const Path& path, const PathRect& rect, Path& out);

/// Appends the polygon of a path of straight pieces, cut to the rectangle.
QV_API void clip_polygon(const Path& polygon, const PathRect& rect, Path& out);

/// Appends the path with arcs as chords that lie off them by no more than the tolerance.
QV_API void flatten(const Path& path, double tolerance, Path& out);

/// Appends the dashes of the path that may lie in the rectangle `seen`. They run through its corners; dots are pieces
/// of the length `dot`. As CAD programs draw them, a figure begins and ends with a dash where the pattern begins with
/// one: the first and last take up what is left over by whole patterns. A figure that is too short for a pattern, and
/// one of more than a million of them in sight, is drawn solid.
QV_API void dash(const Path& path, const DashPattern& pattern, double dot, const PathRect& seen, Path& out);

}  // namespace qv::detail
