#include "qvtools/plot/internal/pixel_marks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

#include "qvtools/plot/internal/path_walk.h"

namespace qv::detail {
namespace {

// How far the chords of an arc may lie off it, in pixels.
constexpr double kFlatness = 0.1;

// Beyond this ratio of a mitre to the width, the corner is cut; so have PDF and SVG it.
constexpr double kMitreLimit = 10;

constexpr double kFarthest = 1e7;

COLORREF color_of(Ink ink) {
  return rgb(ink.red, ink.green, ink.blue);
}

double to_pixel(double v) {
  return std::clamp(v, -kFarthest, kFarthest);
}

}  // namespace

/// Draws on a device, exactly placed: a pixel belongs to a shape when its coordinates do, left and top edges in.
class PixelMarks::Brush {
 public:
  struct Place {
    double x;
    double y;
    Place operator+(Place p) const { return {x + p.x, y + p.y}; }
    Place operator-(Place p) const { return {x - p.x, y - p.y}; }
    Place operator*(double f) const { return {x * f, y * f}; }
  };

  Brush(CDC& dc, CSize size, int left, int top)
      : dc_(dc), size_(size), left_(left), top_(top), shapes_(dc.IsPrinting() || dc.IsMetafile()) {
    before_ = dc.SelectObject(&pen_);
  }
  ~Brush() { dc_.SelectObject(before_); }
  Brush(const Brush&) = delete;
  Brush& operator=(const Brush&) = delete;

  /// Whether the device takes wide pens and polygons, and not dots one by one: a page would be a flood of them.
  bool takes_shapes() const { return shapes_; }

  void choose(COLORREF color) {
    pen_.width = 1;
    pen_.color = brush_.color = color;
    dc_.SelectObject(&pen_);
  }
  Place at(Point p) const { return {double{p.x} - left_, double{p.y} - top_}; }

  /// One pixel wide, both ends in.
  void line(Place a, Place b) {
    const CPoint from = nearest(a), to = nearest(b);
    dc_.MoveTo(from.x, from.y);
    dc_.LineTo(to.x, to.y);
    dc_.SetPixel(to.x, to.y, pen_.color);
  }
  /// With the device's own wide pen, whose ends and joins are round; false where all points are one.
  bool polyline(const Point* p, std::size_t count, double width) {
    pen_.width = static_cast<int>(width);
    dc_.SelectObject(&pen_);
    CPoint last = nearest(at(p[0]));
    bool drawn = false;
    dc_.MoveTo(last.x, last.y);
    for (std::size_t i = 1; i < count; ++i) {
      const CPoint next = nearest(at(p[i]));
      if (next == last) continue;
      dc_.LineTo(next.x, next.y);
      last = next;
      drawn = true;
    }
    pen_.width = 1;
    dc_.SelectObject(&pen_);
    return drawn;
  }
  void disc(Place center, double radius) {
    for (Rows y(center.y - radius, center.y + radius, size_.cy); y.more(); ++y.now) {
      const double rise = y.now - center.y, reach = std::sqrt(std::max(radius * radius - rise * rise, 0.0));
      span(y.now, center.x - reach, center.x + reach);
    }
  }
  template <std::size_t n>
  void convex(const std::array<Place, n>& p) {
    if (shapes_) {
      corners_.clear();
      for (const Place corner : p) corners_.push_back(nearest(corner));
      return fill_corners();
    }
    const auto [low, high] = std::minmax_element(p.begin(), p.end(), [](Place a, Place b) { return a.y < b.y; });
    for (Rows y(low->y, high->y, size_.cy); y.more(); ++y.now) {
      double left = kFarthest, right = -kFarthest;
      for (std::size_t i = 0, j = n - 1; i < n; j = i++) {
        if ((p[i].y <= y.now) == (p[j].y <= y.now)) continue;
        const double x = p[j].x + (y.now - p[j].y) * (p[i].x - p[j].x) / (p[i].y - p[j].y);
        left = std::min(left, x);
        right = std::max(right, x);
      }
      span(y.now, left, right);
    }
  }
  void polygon(const Point* p, std::size_t count) {
    corners_.clear();
    for (std::size_t i = 0; i < count; ++i) corners_.push_back(nearest(at(p[i])));
    fill_corners();
  }

 private:
  void fill_corners() {
    CRgn region;
    region.CreatePolygonRgn(corners_.data(), static_cast<int>(corners_.size()), FillRule::Winding);
    dc_.FillRgn(region, brush_);
  }
  // The rows from `low`, which is in, to `high`, which is out, that lie in the bitmap.
  struct Rows {
    Rows(double low, double high, int rows) : now(std::ceil(std::max(low, 0.0))), end(std::min<double>(high, rows)) {}
    bool more() const { return now < end; }
    double now;
    double end;
  };
  static CPoint nearest(Place p) {
    return {static_cast<int>(std::floor(p.x + 0.5)), static_cast<int>(std::floor(p.y + 0.5))};
  }
  void span(double y, double left, double right) {
    const double first = std::ceil(std::max(left, 0.0));
    const double end = std::ceil(std::min<double>(right, size_.cx));
    if (first >= end) return;
    dc_.MoveTo(static_cast<int>(first), static_cast<int>(y));
    dc_.LineTo(static_cast<int>(end), static_cast<int>(y));
  }

  CDC& dc_;
  CSize size_;
  double left_;
  double top_;
  bool shapes_;
  CPen pen_;
  CBrush brush_;
  const CPen* before_;
  std::vector<CPoint> corners_;
};

void PixelMarks::add_point(PathPoint p) {
  // Pixel i lies in the middle of the square from i to i + 1.
  points_.push_back(
      {static_cast<float>(to_pixel(p.x * scale_ - 0.5)), static_cast<float>(to_pixel((height_ - p.y) * scale_ - 0.5))});
}

void PixelMarks::end_mark(Mark mark) {
  mark.count = static_cast<std::uint32_t>(points_.size() - mark.first);
  mark.left = mark.top = static_cast<float>(2 * kFarthest);
  mark.right = mark.bottom = -mark.left;
  for (std::size_t i = mark.first; i < points_.size(); ++i) {
    mark.left = std::min(mark.left, points_[i].x);
    mark.top = std::min(mark.top, points_[i].y);
    mark.right = std::max(mark.right, points_[i].x);
    mark.bottom = std::max(mark.bottom, points_[i].y);
  }
  const bool mitred = mark.joins == Stroke::Joins::Mitred;
  const auto around = static_cast<float>(mark.width * (mitred ? kMitreLimit / 2 : 0.5) + 1);
  mark.left -= around;
  mark.top -= around;
  mark.right += around;
  mark.bottom += around;
  marks_.push_back(mark);
}

void PixelMarks::stroke(const Path& path, const Stroke& stroke) {
  double width = std::min(stroke.width * scale_, kFarthest);
  width = whole_widths_ ? std::max(1.0, std::round(width)) : std::max(2.0, width);
  straight_.clear();
  flatten(path, kFlatness / scale_, straight_);
  const auto& pieces = straight_.pieces();
  for (std::size_t i = 0; i < pieces.size();) {
    Mark mark{points_.size(),
              0,
              color_of(stroke.ink),
              static_cast<float>(width),
              stroke.ends,
              stroke.joins,
              false,
              0,
              0,
              0,
              0};
    const std::size_t first = i;
    add_point(pieces[i].to);
    for (++i; i < pieces.size() && pieces[i].kind != Path::Kind::Move; ++i) {
      add_point(pieces[i].to);
    }
    mark.closed = i - first > 1 && on_grid(pieces[first].to) == on_grid(pieces[i - 1].to);
    end_mark(mark);
  }
}

// Figures are joined to one polygon by a way from the first point and back, which encloses nothing.
void PixelMarks::fill(const Path& path, Ink ink) {
  const Mark mark{points_.size(), 0, color_of(ink), 0, {}, {}, true, 0, 0, 0, 0};
  straight_.clear();
  flatten(path, kFlatness / scale_, straight_);
  const auto& pieces = straight_.pieces();
  const PathPoint anchor = pieces[0].to;
  for (std::size_t i = 0; i < pieces.size();) {
    const PathPoint first = pieces[i].to;
    add_point(first);
    for (++i; i < pieces.size() && pieces[i].kind != Path::Kind::Move; ++i) {
      add_point(pieces[i].to);
    }
    add_point(first);
    add_point(anchor);
  }
  end_mark(mark);
}

std::vector<std::uint32_t> PixelMarks::colors(std::size_t most) const {
  std::set<std::uint32_t> found;
  for (const Mark& mark : marks_) {
    const auto c = static_cast<std::uint32_t>(mark.color);
    found.insert((c & 0xFF) << 16 | (c & 0xFF00) | (c >> 16 & 0xFF));
    if (found.size() == most) break;
  }
  return {found.begin(), found.end()};
}

void PixelMarks::draw_stroke(Brush& brush, const Mark& mark) const {
  using Place = Brush::Place;
  const Point* const p = points_.data() + mark.first;
  const double radius = double{mark.width} / 2;
  const bool round_ends = mark.ends == Stroke::Ends::Round;
  if (mark.width == 1) {
    if (mark.count == 1 && round_ends) brush.line(brush.at(p[0]), brush.at(p[0]));
    for (std::uint32_t i = 1; i < mark.count; ++i) brush.line(brush.at(p[i - 1]), brush.at(p[i]));
    return;
  }
  const bool round = round_ends && mark.joins == Stroke::Joins::Round;
  if (round && brush.takes_shapes() && brush.polyline(p, mark.count, double{mark.width})) return;
  // Half the width across a direction of one pixel's length.
  const auto across = [radius](Place d) { return Place{-d.y * radius, d.x * radius}; };
  const auto join = [&](Place corner, Place from, Place to) {
    const double turn = from.x * to.y - from.y * to.x, along = from.x * to.x + from.y * to.y;
    // A slight turn, as in arcs, is mitred in any case: that is the same, and stays within a butt end close by.
    constexpr double kSlight = 0.97;
    if (mark.joins == Stroke::Joins::Round && along < kSlight) return brush.disc(corner, radius);
    const double side = turn > 0 ? -1 : 1;
    const Place a = corner + across(from) * side, b = corner + across(to) * side;
    // The mitre reaches out by 1 / sin of half the angle between both pieces, whose square is (1 + along) / 2.
    const bool pointed = 1 + along > 2 / (kMitreLimit * kMitreLimit);
    const Place middle = (across(from) + across(to)) * (side / (pointed ? 1 + along : 1));
    const Place tip = pointed ? corner + middle : b;
    brush.convex(std::array{corner, a, tip, b});
  };
  Place first_direction{0, 0}, direction{0, 0};
  for (std::uint32_t i = 1; i < mark.count; ++i) {
    const Place a = brush.at(p[i - 1]), b = brush.at(p[i]), d = b - a;
    const double length = std::hypot(d.x, d.y);
    if (length == 0) continue;
    const Place next = d * (1 / length), side = across(next);
    brush.convex(std::array{a + side, b + side, b - side, a - side});
    if (direction.x != 0 || direction.y != 0) {
      join(a, direction, next);
    } else {
      first_direction = next;
    }
    direction = next;
  }
  const bool dot = direction.x == 0 && direction.y == 0;
  if (mark.closed && !dot) return join(brush.at(p[0]), direction, first_direction);
  if (!round_ends) return;
  brush.disc(brush.at(p[0]), radius);
  if (!dot) brush.disc(brush.at(p[mark.count - 1]), radius);
}

void PixelMarks::draw_fill(Brush& brush, const Mark& mark) const {
  const Point* const p = points_.data() + mark.first;
  brush.polygon(p, mark.count);
  // What is narrower than a pixel may hit none.
  constexpr float kAround = 2;
  constexpr float kNarrow = 1.5F;
  if (mark.right - mark.left - kAround > kNarrow && mark.bottom - mark.top - kAround > kNarrow) return;
  for (std::uint32_t i = 1; i < mark.count; ++i) brush.line(brush.at(p[i - 1]), brush.at(p[i]));
}

bool PixelMarks::draw(CDC& dc, CSize size, int left, int top) const {
  Brush brush(dc, size, left, top);
  const auto l = static_cast<float>(left), t = static_cast<float>(top);
  const auto r = static_cast<float>(left + size.cx), b = static_cast<float>(top + size.cy);
  bool drawn = false;
  for (const Mark& mark : marks_) {
    if (mark.bottom < t || mark.top > b || mark.right < l || mark.left > r) continue;
    drawn = true;
    brush.choose(mark.color);
    if (mark.width == 0) {
      draw_fill(brush, mark);
    } else {
      draw_stroke(brush, mark);
    }
  }
  return drawn;
}

}  // namespace qv::detail
