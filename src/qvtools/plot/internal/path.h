#pragma once

/// Figures on paper. Lengths are millimetres, from the lower left corner of the page, in double.

#include <cmath>
#include <vector>

namespace qv::detail {

struct PaperPoint {
  double x = 0;
  double y = 0;
};

/// Open or closed figures of straight pieces and arcs.
class Path {
 public:
  enum class Kind : char { Move, Line, Arc };
  struct Piece {
    Kind kind;
    PaperPoint to;      ///< where the piece ends
    PaperPoint center;  ///< of an arc
    double sweep;       ///< of an arc, in radians, counter-clockwise positive, at most a whole turn
  };

  void clear() { pieces_.clear(); }
  bool empty() const { return pieces_.empty(); }
  void move_to(PaperPoint p) { pieces_.push_back({Kind::Move, p, {}, 0}); }
  void line_to(PaperPoint p) { pieces_.push_back({Kind::Line, p, {}, 0}); }
  /// From the present point about a centre to `p`.
  void arc_to(PaperPoint p, PaperPoint center, double sweep) { pieces_.push_back({Kind::Arc, p, center, sweep}); }
  const std::vector<Piece>& pieces() const { return pieces_; }
  PaperPoint end() const { return pieces_.back().to; }

 private:
  std::vector<Piece> pieces_;
};

}  // namespace qv::detail
