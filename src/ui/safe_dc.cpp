#include "ui/safe_dc.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "geometry/numeric.h"
#include "platform/host.h"
#include "platform/numbers.h"

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

/// A device value: truncation of 2v + 1, halved, as everywhere.
int device(double v) {
  return qv::TruncInt(2 * v + 1) / 2;
}

}  // namespace

CSafeDC::CSafeDC(CDC* dc) : dc_(dc) {
  const CSize screen = qv::CurrentHost().ScreenSize();
  right_ = screen.cx;
  bottom_ = screen.cy;
}

int CSafeDC::change_limits() {
  printing_ = dc_->IsPrinting() ? 1 : 0;
  const CSize size = printing_ ? dc_->GetResolution() : qv::CurrentHost().ScreenSize();
  right_ = size.cx;
  bottom_ = size.cy;
  return 1;
}

namespace {

/// Moves an end (u, v) of a segment to u = limit along its slope dv/du.
void move_to(std::int64_t limit, double slope, std::int64_t& u, std::int64_t& v) {
  v += static_cast<std::int64_t>(static_cast<double>(limit - u) * slope);
  u = limit;
}

/// Moves the ends of a segment that lie beyond the limits in u.
void clip(std::int64_t low, std::int64_t high, std::int64_t& u1, std::int64_t& v1, std::int64_t& u2, std::int64_t& v2) {
  const auto slope = static_cast<float>(static_cast<double>(v2 - v1) / static_cast<double>(u2 - u1));
  const auto move_end = [&](std::int64_t& u, std::int64_t& v) {
    if (u < low) move_to(low, slope, u, v);
    if (u > high) move_to(high, slope, u, v);
  };
  move_end(u1, v1);
  move_end(u2, v2);
}

}  // namespace

int CSafeDC::CutLine(int& x1, int& y1, int& x2, int& y2) {
  SetLimit();
  if (dc_ && dc_->IsMetafile()) return 1;
  if (misses(x1, y1, x2, y2)) return 0;
  if (is_inside(x1, y1) && is_inside(x2, y2)) return 1;
  std::int64_t a[2] = {x1, y1};
  std::int64_t b[2] = {x2, y2};
  if (a[0] != b[0]) clip(left_, right_, a[0], a[1], b[0], b[1]);
  const bool above = a[1] < top_ && b[1] < top_;
  const bool below = a[1] > bottom_ && b[1] > bottom_;
  if (above || below) return 0;
  if (a[1] != b[1]) clip(top_, bottom_, a[1], a[0], b[1], b[0]);
  x1 = qv::TruncInt(static_cast<double>(a[0]));
  y1 = qv::TruncInt(static_cast<double>(a[1]));
  x2 = qv::TruncInt(static_cast<double>(b[0]));
  y2 = qv::TruncInt(static_cast<double>(b[1]));
  return 1;
}

int CSafeDC::LineTo(int x, int y) {
  int x1 = x_;
  int y1 = y_;
  int x2 = x;
  int y2 = y;
  x_ = x;
  y_ = y;
  if (!dc_ || !CutLine(x1, y1, x2, y2)) return 0;
  dc_->MoveTo(x1, y1);
  dc_->LineTo(x2, y2);
  return 1;
}

COLORREF CSafeDC::SetPixel(int x, int y, COLORREF color) {
  SetLimit();
  if (dc_ && (is_inside(x, y) || dc_->IsMetafile())) dc_->SetPixel(x, y, color);
  return color;
}

int CSafeDC::Rectangle(int l, int t, int r, int b) {
  const CPoint corners[4] = {{l, t}, {l, b}, {r, b}, {r, t}};
  return Polygon(corners, 4);
}

int CSafeDC::Polygon(const CPoint* points, int n) {
  for (int i = 0; i < n; ++i) {
    MoveTo(points[i]);
    LineTo(points[i + 1 < n ? i + 1 : 0]);
  }
  return 1;
}

int CSafeDC::Arc(int l, int t, int r, int b, int xs, int ys, int xe, int ye) {
  SetLimit();
  if (!dc_ || (misses(l, t, r, b) && !dc_->IsMetafile())) return 0;
  const double cx = (static_cast<double>(l) + r) / 2;
  const double cy = (static_cast<double>(t) + b) / 2;
  const double radius = get_dist(static_cast<double>(xs), static_cast<double>(ys), cx, cy);
  const double start = get_line_angle(cx, -cy, xs, -static_cast<double>(ys));
  double end = get_line_angle(cx, -cy, xe, -static_cast<double>(ye));
  if (end < start) end += 6.2831855;
  DrawArc(device(cx), device(cy), device(radius), static_cast<float>(start), static_cast<float>(end - start), 1);
  return 1;
}

namespace {

/// The points of an arc: n + 1 of them, the last at the very end of the sweep.
class ArcPoints {
 public:
  ArcPoints(int cx, int cy, int r, float start, float sweep, bool flip, int n) : cx_(cx), cy_(cy), r_(r), n_(n) {
    step_ = static_cast<double>(sweep) / n;
    if (flip) step_ = -step_;
    // Quirk: a negative sweep turns the way of a positive one and only its last chord goes back; arcs are given
    // positive sweeps.
    if (sweep < 0) step_ = -step_;
    first_ = flip ? kTurn - start : start;
    last_ = flip ? first_ - sweep : first_ + sweep;
  }
  CPoint operator[](int i) const {
    const double angle = i < n_ ? first_ + i * step_ : last_;
    return {device(cx_ + r_ * std::cos(angle)), device(cy_ + r_ * std::sin(angle))};
  }
  double first() const { return first_; }
  double step() const { return step_; }

 private:
  double cx_;
  double cy_;
  double r_;
  int n_;
  double step_ = 0;
  double first_ = 0;
  double last_ = 0;
};

/// Chords first to last, the last left out.
struct ChordRange {
  int first;
  int last;
};

/// The chords of a large circle that can touch a rectangle: where the circle runs inside it. `count` receives how many
/// ranges.
class VisibleChords {
 public:
  VisibleChords(double cx, double cy, double r, const ArcPoints& points, int n, const CRect& limits) {
    constexpr double kMargin = 16;  // more than a chord and its rounding
    const double l = limits.left - kMargin - cx;
    const double t = limits.top - kMargin - cy;
    const double right = limits.right + kMargin - cx;
    const double b = limits.bottom + kMargin - cy;
    for (const double x : {l, right}) cross(x / r, 0);
    for (const double y : {t, b}) cross(y / r, std::numbers::pi / 2);
    angles_[count_++] = 0;
    std::sort(angles_.begin(), angles_.begin() + count_);
    for (int i = 0; i < count_; ++i) {
      const double from = angles_[static_cast<std::size_t>(i)];
      const double to = i + 1 < count_ ? angles_[static_cast<std::size_t>(i) + 1] : kTurn;
      const double middle = (from + to) / 2;
      const double x = r * std::cos(middle);
      const double y = r * std::sin(middle);
      if (x >= l && x <= right && y >= t && y <= b) add(from, to, points, n);
    }
    merge();
  }
  const ChordRange* begin() const { return ranges_.data(); }
  const ChordRange* end() const { return ranges_.data() + rangeCount_; }

 private:
  /// The two directions in which the circle crosses a line at `distance` radii from its centre, whose normal has the
  /// direction.
  void cross(double distance, double normal) {
    if (std::fabs(distance) > 1) return;
    const double a = std::acos(distance);
    for (double angle : {normal + a, normal - a}) {
      if (angle < 0) angle += kTurn;
      angles_[count_++] = std::min(angle, kTurn);
    }
  }
  /// Adds the chords within a range of directions, once for each turn of the sweep that comes by.
  void add(double from, double to, const ArcPoints& points, int n) {
    const double step = points.step();
    for (int turn = -3; turn <= 3; ++turn) {
      const double a = (from + turn * kTurn - points.first()) / step;
      const double b = (to + turn * kTurn - points.first()) / step;
      const double low = std::floor(std::min(a, b)) - 2;
      const double high = std::ceil(std::max(a, b)) + 2;
      if (high < 0 || low >= n || rangeCount_ == ranges_.size()) continue;
      ranges_[rangeCount_++] = {static_cast<int>(std::max(low, 0.0)), static_cast<int>(std::min<double>(high, n))};
    }
  }
  void merge() {
    std::sort(ranges_.begin(), ranges_.begin() + static_cast<std::ptrdiff_t>(rangeCount_),
              [](const ChordRange& a, const ChordRange& b) { return a.first < b.first; });
    std::size_t kept = 0;
    for (std::size_t i = 0; i < rangeCount_; ++i) {
      if (kept > 0 && ranges_[i].first <= ranges_[kept - 1].last)
        ranges_[kept - 1].last = std::max(ranges_[kept - 1].last, ranges_[i].last);
      else
        ranges_[kept++] = ranges_[i];
    }
    rangeCount_ = kept;
  }

  std::array<double, 9> angles_{};
  int count_ = 0;
  std::array<ChordRange, 64> ranges_{};
  std::size_t rangeCount_ = 0;
};

}  // namespace

void CSafeDC::DrawArc(int cx, int cy, int r, float start, float sweep, int flip) {
  constexpr int kFewChords = 256;
  constexpr int kMostOfMetafile = 65536;
  SetLimit();
  if (!dc_ || r < 1 || !std::isfinite(start) || !std::isfinite(sweep)) return;
  const bool metafile = dc_->IsMetafile();
  int n = std::max(device(std::fabs(static_cast<double>(sweep) * r / 4)), 5);
  if (metafile) n = std::min(n, kMostOfMetafile);
  const ArcPoints points(cx, cy, r, start, sweep, flip != 0, n);
  const auto draw = [&](const ChordRange& range) {
    MoveTo(points[range.first]);
    for (int i = range.first; i < range.last; ++i) LineTo(points[i + 1]);
  };
  if (metafile || n <= kFewChords) return draw({0, n});
  for (const ChordRange& range : VisibleChords(cx, cy, r, points, n, {left_, top_, right_, bottom_})) draw(range);
}

int CSafeDC::FillRgn(const CRgn* region, const CBrush* brush) {
  constexpr int kFar = 30000;
  SetLimit();
  if (!dc_) return 0;
  if (!dc_->IsMetafile()) {
    const CRect box = region->GetRgnBox();
    if (box.left < -kFar || box.top < -kFar || box.right > kFar || box.bottom > kFar) return 0;
    if (!region->RectInRegion(CRect(left_, top_, right_, bottom_))) return 0;
  }
  dc_->FillRgn(*region, *brush);
  return 1;
}
