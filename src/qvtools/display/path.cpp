#include "qvtools/display/internal/path.h"

#include <algorithm>
#include <array>
#include <numbers>

namespace qv::detail {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

double angle_of(PathPoint p, PathPoint center) {
  return std::atan2(p.y - center.y, p.x - center.x);
}

void extend(PathRect& rect, PathPoint p) {
  rect = {std::min(rect.left, p.x), std::min(rect.bottom, p.y), std::max(rect.right, p.x), std::max(rect.top, p.y)};
}

/// Whether the angle `from` + `sweep` * t passes `angle` (modulo whole turns) for a t of 0 to 1, and where.
bool passes(double from, double sweep, double angle, double& share) {
  double ahead = std::fmod(sweep > 0 ? angle - from : from - angle, kTurn);
  if (ahead < 0) ahead += kTurn;
  share = ahead / std::fabs(sweep);
  return share <= 1;
}

/// A piece of a path with where it begins.
struct Stretch {
  PathPoint from;
  const Path::Piece& piece;

  bool is_arc() const { return piece.kind == Path::Kind::Arc; }
  double length() const {
    return is_arc() ? std::fabs(piece.sweep) * distance(from, piece.center) : distance(from, piece.to);
  }
  /// The point at a share of the length.
  PathPoint at(double t) const {
    if (t <= 0) return from;
    if (t >= 1) return piece.to;
    if (is_arc()) return turned(from, piece.center, piece.sweep * t);
    return {from.x + (piece.to.x - from.x) * t, from.y + (piece.to.y - from.y) * t};
  }
  /// Appends the part between two shares. The path is at the first.
  void append(double t0, double t1, Path& out) const {
    if (is_arc())
      out.arc_to(at(t1), piece.center, piece.sweep * (t1 - t0));
    else
      out.line_to(at(t1));
  }
};

template <class F>
void for_each_stretch(const Path& path, const F& f) {
  PathPoint from;
  for (const Path::Piece& piece : path.pieces()) {
    if (piece.kind != Path::Kind::Move) f(Stretch{from, piece});
    from = piece.to;
  }
}

PathRect bounds(const Stretch& s) {
  PathRect rect{s.from.x, s.from.y, s.from.x, s.from.y};
  extend(rect, s.piece.to);
  if (!s.is_arc()) return rect;
  const double from = angle_of(s.from, s.piece.center);
  const double radius = distance(s.from, s.piece.center);
  for (int i = 0; i < 4; ++i) {
    const double angle = i * kTurn / 4;
    double share;
    if (passes(from, s.piece.sweep, angle, share))
      extend(rect, {s.piece.center.x + radius * std::cos(angle), s.piece.center.y + radius * std::sin(angle)});
  }
  return rect;
}

/// The shares at which a stretch crosses the sides of a rectangle (their lines), with 0 and 1, in order.
class Crossings {
 public:
  Crossings(const Stretch& s, const PathRect& rect) {
    add(0);
    add(1);
    const std::array<double, 2> xs = {rect.left, rect.right};
    const std::array<double, 2> ys = {rect.bottom, rect.top};
    for (const double x : xs) cross(s, x, &PathPoint::x);
    for (const double y : ys) cross(s, y, &PathPoint::y);
  }
  const double* begin() const { return shares_.data(); }
  const double* end() const { return shares_.data() + n_; }

 private:
  void add(double share) {
    if (!(share >= 0 && share <= 1)) return;
    std::size_t at = n_++;
    for (; at > 0 && shares_[at - 1] > share; --at) shares_[at] = shares_[at - 1];
    shares_[at] = share;
  }
  void cross(const Stretch& s, double level, double PathPoint::*axis) {
    if (!s.is_arc()) {
      const double run = s.piece.to.*axis - s.from.*axis;
      if (run != 0) add((level - s.from.*axis) / run);
      return;
    }
    const PathPoint c = s.piece.center;
    const double radius = distance(s.from, c);
    const double cosine = (level - c.*axis) / radius;
    if (!(std::fabs(cosine) <= 1)) return;
    const double across = axis == &PathPoint::y ? kTurn / 4 : 0;
    const double off = std::acos(cosine);
    const double from = angle_of(s.from, c);
    for (const double angle : {across + off, across - off}) {
      double share;
      if (passes(from, s.piece.sweep, angle, share)) add(share);
    }
  }

  std::array<double, 10> shares_{};
  std::size_t n_ = 0;
};

/// Cuts a polygon to one side of a level.
std::vector<PathPoint> cut(const std::vector<PathPoint>& polygon, double PathPoint::*axis, double level, bool below) {
  std::vector<PathPoint> kept;
  const auto inside = [&](PathPoint p) { return below ? p.*axis <= level : p.*axis >= level; };
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const PathPoint a = polygon[i];
    const PathPoint b = polygon[(i + 1) % polygon.size()];
    if (inside(a)) kept.push_back(a);
    if (inside(a) == inside(b)) continue;
    const double t = (level - a.*axis) / (b.*axis - a.*axis);
    PathPoint p{a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
    p.*axis = level;
    kept.push_back(p);
  }
  return kept;
}

/// Draws a figure's stretches up to lengths along it.
class Walker {
 public:
  Walker(const std::vector<Stretch>& figure, Path& out) : figure_(figure), out_(out), left_(length_of(0)) {}

  /// Goes on by a length, drawn or not, to the figure's end at most.
  void advance(double length, bool drawn) {
    if (at_ >= figure_.size()) return;
    if (drawn) out_.move_to(here());
    while (at_ < figure_.size()) {
      const double whole = length_of(at_);
      const double step = std::min(length, left_);
      const double t0 = whole > 0 ? 1 - left_ / whole : 0;
      left_ -= step;
      length -= step;
      const bool done = left_ <= 0;
      if (drawn && step > 0) figure_[at_].append(t0, done ? 1 : 1 - left_ / whole, out_);
      if (!done) return;
      left_ = length_of(++at_);
      if (length <= 0) return;
    }
  }

 private:
  double length_of(std::size_t i) const { return i < figure_.size() ? figure_[i].length() : 0; }
  PathPoint here() const {
    const double whole = length_of(at_);
    return figure_[at_].at(whole > 0 ? 1 - left_ / whole : 0);
  }

  const std::vector<Stretch>& figure_;
  Path& out_;
  std::size_t at_ = 0;
  double left_;  // of the present stretch
};

/// The lengths along a figure between which it lies in a rectangle; from > until where it does not.
struct Sight {
  double from;
  double until;
};

Sight sight_of(const std::vector<Stretch>& figure, const PathRect& rect) {
  double before = 0;
  Sight sight{INFINITY, -INFINITY};
  for (const Stretch& s : figure) {
    const double length = s.length();
    const Crossings shares(s, rect);
    for (const double* t = shares.begin(); t + 1 != shares.end(); ++t) {
      if (!rect.contains(s.at((t[0] + t[1]) / 2))) continue;
      sight = {std::min(sight.from, before + t[0] * length), std::max(sight.until, before + t[1] * length)};
    }
    before += length;
  }
  return sight;
}

/// A figure's dashes.
void dash_figure(const std::vector<Stretch>& figure, const DashPattern& pattern, double dot, const PathRect& seen,
                 Path& out) {
  constexpr double kMostPatterns = 1e6;
  double length = 0;
  for (const Stretch& s : figure) length += s.length();
  const Sight sight = sight_of(figure, seen);
  if (sight.from > sight.until) return;
  Walker walker(figure, out);
  const double first = std::max(pattern.elements[0], 0.0);
  const double count = std::floor((length - first) / pattern.length);  // of whole patterns
  if (!(count >= 1) || sight.until - sight.from > kMostPatterns * pattern.length) return walker.advance(length, true);
  double early = 0;  // what a dot has taken of the gap behind it
  const auto go = [&](double element) {
    const double step = element > 0 ? element : element < 0 ? std::max(-element - early, 0.0) : dot;
    early = element == 0 ? dot : 0;
    walker.advance(step, element >= 0);
  };
  // Whole patterns lie between the middles of the first dash and the last; what is left over lengthens both. Without a
  // dash at the head, patterns begin where the figure does.
  const double end = first > 0 ? (length - count * pattern.length + first) / 2 : 0;
  walker.advance(end, end > 0 && sight.from <= end);
  double i = std::clamp(std::floor((sight.from - end) / pattern.length), 0.0, count - 1);
  if (i > 0) walker.advance(i * pattern.length - first, false);
  const std::size_t head = first > 0 ? 1 : 0;
  for (; i < count && end + i * pattern.length - first <= sight.until; ++i) {
    if (first > 0 && i > 0) go(first);
    for (std::size_t k = head; k < pattern.elements.size(); ++k) go(pattern.elements[k]);
  }
  if (i < count) return;
  if (first > 0) return walker.advance(end, true);
  for (const double element : pattern.elements) go(element);
}

}  // namespace

PathRect bounds(const Path& path) {
  if (path.empty()) return {};
  const PathPoint first = path.pieces()[0].to;
  PathRect rect{first.x, first.y, first.x, first.y};
  for (const Path::Piece& piece : path.pieces()) extend(rect, piece.to);
  for_each_stretch(path, [&](const Stretch& s) {
    if (!s.is_arc()) return;
    const PathRect r = bounds(s);
    extend(rect, {r.left, r.bottom});
    extend(rect, {r.right, r.top});
  });
  return rect;
}

void clip(const Path& path, const PathRect& rect, Path& out) {
  bool going = false;  // whether the last stretch ended inside, at the path's end
  PathPoint from;
  for (const Path::Piece& piece : path.pieces()) {
    if (piece.kind == Path::Kind::Move) {
      from = piece.to;
      going = false;
      continue;
    }
    const Stretch s{from, piece};
    from = piece.to;
    const Crossings shares(s, rect);
    for (const double* t = shares.begin(); t + 1 != shares.end(); ++t) {
      if (!(t[1] > t[0])) continue;
      const bool inside = rect.contains(s.at((t[0] + t[1]) / 2));
      if (inside && !going) out.move_to(s.at(t[0]));
      if (inside) s.append(t[0], t[1], out);
      going = inside;
    }
  }
}

void clip_polygon(const Path& polygon, const PathRect& rect, Path& out) {
  std::vector<PathPoint> points;
  for (const Path::Piece& piece : polygon.pieces()) points.push_back(piece.to);
  points = cut(points, &PathPoint::x, rect.left, false);
  points = cut(points, &PathPoint::x, rect.right, true);
  points = cut(points, &PathPoint::y, rect.bottom, false);
  points = cut(points, &PathPoint::y, rect.top, true);
  for (std::size_t i = 0; i < points.size(); ++i) i == 0 ? out.move_to(points[i]) : out.line_to(points[i]);
}

void flatten(const Path& path, double tolerance, Path& out) {
  constexpr double kMostSteps = 4096;
  PathPoint from;
  for (const Path::Piece& piece : path.pieces()) {
    if (piece.kind == Path::Kind::Move) out.move_to(piece.to);
    if (piece.kind == Path::Kind::Line) out.line_to(piece.to);
    if (piece.kind == Path::Kind::Arc) {
      const double radius = std::max(distance(from, piece.center), tolerance);
      const double step = 2 * std::acos(std::max(1 - tolerance / radius, 0.0));
      const double steps = std::clamp(std::ceil(std::fabs(piece.sweep) / step), 1.0, kMostSteps);
      const Stretch s{from, piece};
      for (double i = 1; i <= steps; ++i) out.line_to(s.at(i / steps));
    }
    from = piece.to;
  }
}

void dash(const Path& path, const DashPattern& pattern, double dot, const PathRect& seen, Path& out) {
  std::vector<Stretch> figure;
  const auto end_figure = [&] {
    if (!figure.empty()) dash_figure(figure, pattern, dot, seen, out);
    figure.clear();
  };
  PathPoint from;
  for (const Path::Piece& piece : path.pieces()) {
    if (piece.kind == Path::Kind::Move)
      end_figure();
    else
      figure.push_back({from, piece});
    from = piece.to;
  }
  end_figure();
}

}  // namespace qv::detail
