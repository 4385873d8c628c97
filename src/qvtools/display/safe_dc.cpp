#include "qvtools/display/safe_dc.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "qvtools/geometry/numerics/numeric.h"
#include "qvtools/platform/host.h"
#include "qvtools/text/numbers.h"

namespace {

constexpr double kTwoPi = 6.2831855;
constexpr int kMetafileChords = 20000;
constexpr int kFewChords = 64;  // visiting all of them is cheaper than asking which

int round_device(double v) {
  return qv::TruncInt(2 * v + 1) / 2;
}

struct End {
  std::int64_t x;
  std::int64_t y;
};

// Moves the coordinate `along` of an end to `limit`, and the other one by the slope.
void shift(std::int64_t& along, std::int64_t& across, std::int64_t limit, float slope) {
  across += static_cast<std::int64_t>(static_cast<double>(limit - along) * slope);
  along = limit;
}

// One pass of the clip: brings the ends of the segment between low and high along one coordinate.
void clip_pass(std::int64_t End::*along, std::int64_t End::*across, End& a, End& b, int low, int high) {
  if (a.*along == b.*along) return;
  const float slope =
      static_cast<float>(static_cast<double>(b.*across - a.*across) / static_cast<double>(b.*along - a.*along));
  End& lower = a.*along < b.*along ? a : b;
  End& upper = a.*along < b.*along ? b : a;
  if (lower.*along < low) shift(lower.*along, lower.*across, low, slope);
  if (upper.*along > high) shift(upper.*along, upper.*across, high, slope);
}

// The angles of a DrawArc.
struct ArcAngles {
  double first = 0;  // of point 0
  double step = 0;   // signed
  double last = 0;   // of the last point
  int chords = 0;

  bool operator==(const ArcAngles&) const = default;
  double angle(int i) const { return i == chords ? last : first + i * step; }
};

// Its points: chord i runs from point(i) to point(i + 1), and point(chords) closes the sweep.
struct ArcPath : ArcAngles {
  double cx, cy, r;

  CPoint point(int i) const { return point(std::cos(angle(i)), std::sin(angle(i))); }
  CPoint point(double cosine, double sine) const {
    return {round_device(cx + r * cosine), round_device(cy + r * sine)};
  }
};

// The directions of an arc of few chords. Bubbles, dots and door swings repeat them all over a drawing.
struct Directions {
  static constexpr int kMostChords = 16;
  ArcAngles angles;  // without chords while it is empty
  double cosine[kMostChords + 1];
  double sine[kMostChords + 1];

  void fill(const ArcAngles& arc) {
    angles = arc;
    for (int i = 0; i <= arc.chords; ++i) {
      cosine[i] = std::cos(arc.angle(i));
      sine[i] = std::sin(arc.angle(i));
    }
  }
};

// Those of an arc, kept from before or worked out anew.
const Directions& directions(const ArcAngles& arc) {
  constexpr std::size_t kKept = 32;
  thread_local Directions kept[kKept];
  const auto mixed = std::bit_cast<std::uint64_t>(arc.first) * 0x9E3779B97F4A7C15u +
                     std::bit_cast<std::uint64_t>(arc.step) * 0xC2B2AE3D27D4EB4Fu;
  Directions& entry = kept[mixed >> 59];
  if (entry.angles != arc) entry.fill(arc);
  return entry;
}

// The places, as turns from the arc's first point in its own sense, where the circle crosses the sides of a box: the
// circle is wholly inside or wholly outside of the box between two neighbours.
struct Crossings {
  double at[10];
  int count = 0;

  Crossings(const ArcPath& arc, const double (&box)[4]) {
    at[count++] = 0;
    at[count++] = kExactTurn;
    for (int side = 0; side < 4; ++side) {
      const bool vertical = side < 2;
      const double c = (box[side] - (vertical ? arc.cx : arc.cy)) / arc.r;
      if (!(std::fabs(c) <= 1)) continue;
      const double angle = vertical ? std::acos(c) : std::asin(c);
      add(arc, angle);
      add(arc, vertical ? -angle : kExactTurn / 2 - angle);
    }
    std::sort(at, at + count);
  }

  static constexpr double kExactTurn = 6.283185307179586;

 private:
  void add(const ArcPath& arc, double angle) {
    const double turned = std::fmod(arc.step < 0 ? arc.first - angle : angle - arc.first, kExactTurn);
    at[count++] = turned < 0 ? turned + kExactTurn : turned;
  }
};

// Calls visit(from, to) for the ranges of the first n chords, in order and without overlap, that can touch the limits.
void visible_chords(const ArcPath& arc, int n, const CRect& limits, auto visit) {
  const double step = std::fabs(arc.step);
  // A chord lies within its rise of the arc, and rounding moves its ends by at most one each way.
  const double margin = arc.r * (1 - std::cos(std::min(step / 2, 1.6))) + 2;
  const double box[4] = {limits.left - margin, limits.right + margin, limits.top - margin, limits.bottom + margin};
  const Crossings crossings(arc, box);
  int next = 0;
  for (double turn = 0; turn < step * n; turn += Crossings::kExactTurn) {
    for (int i = 0; i + 1 < crossings.count; ++i) {
      const double middle = arc.first + std::copysign((crossings.at[i] + crossings.at[i + 1]) / 2, arc.step);
      const double x = arc.cx + arc.r * std::cos(middle), y = arc.cy + arc.r * std::sin(middle);
      if (x < box[0] || x > box[1] || y < box[2] || y > box[3]) continue;
      const int from = std::max(next, qv::TruncInt((turn + crossings.at[i]) / step - 1));
      const int to = std::min(n, qv::TruncInt(std::min(1e9, (turn + crossings.at[i + 1]) / step) + 2));
      if (from >= to) continue;
      visit(from, to);
      next = to;
    }
  }
}

}  // namespace

CSafeDC::CSafeDC() : CSafeDC(nullptr) {}

CSafeDC::CSafeDC(CDC* dc) : dc_(dc) {
  const CSize screen = qv::CurrentHost().ScreenSize();
  right_ = screen.cx;
  bottom_ = screen.cy;
}

int CSafeDC::change_limits() {
  printing_ = !printing_;
  const CSize size = printing_ ? dc_->GetResolution() : qv::CurrentHost().ScreenSize();
  right_ = size.cx;
  bottom_ = size.cy;
  return 1;
}

int CSafeDC::CutLine(int& x1, int& y1, int& x2, int& y2) {
  SetLimit();
  if (records()) return 1;
  if (misses(x1, y1, x2, y2)) return 0;
  End a{x1, y1}, b{x2, y2};
  clip_pass(&End::x, &End::y, a, b, left_, right_);
  const bool outside = (a.y < top_ && b.y < top_) || (a.y > bottom_ && b.y > bottom_);
  // Quirk: the pass over x is not repeated after the one over y, so an end may stay a pixel outside; pictures of before
  // have these pixels.
  if (!outside) clip_pass(&End::y, &End::x, a, b, top_, bottom_);
  const auto narrow = [](std::int64_t v) { return static_cast<int>(std::clamp<std::int64_t>(v, INT_MIN, INT_MAX)); };
  x1 = narrow(a.x);
  y1 = narrow(a.y);
  x2 = narrow(b.x);
  y2 = narrow(b.y);
  return !outside;
}

int CSafeDC::cut_and_draw(CPoint from, int x, int y) {
  if (!CutLine(from.x, from.y, x, y)) return 0;
  dc_->MoveTo(from.x, from.y);
  dc_->LineTo(x, y);
  return 1;
}

COLORREF CSafeDC::SetPixel(int x, int y, COLORREF color) {
  SetLimit();
  const bool visible = x >= left_ && x <= right_ && y >= top_ && y <= bottom_;
  if (dc_ && (visible || dc_->IsMetafile())) dc_->SetPixel(x, y, color);
  return color;
}

int CSafeDC::Rectangle(int l, int t, int r, int b) {
  const CPoint corners[] = {{l, t}, {l, b}, {r, b}, {r, t}};
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
  if (!dc_ || (misses(l, t, r, b) && !records())) return 0;
  const float cx = static_cast<float>((static_cast<double>(l) + r) / 2);
  const float cy = static_cast<float>((static_cast<double>(t) + b) / 2);
  const double radius = get_dist(double{cx}, double{cy}, double(xs), double(ys));
  const float from = static_cast<float>(get_line_angle(cx, -cy, xs, -double(ys)));
  double to = static_cast<float>(get_line_angle(cx, -cy, xe, -double(ye)));
  if (to < from) to += kTwoPi;
  DrawArc(round_device(cx), round_device(cy), round_device(radius), from, static_cast<float>(to - from), 1);
  return 1;
}

void CSafeDC::DrawArc(int cx, int cy, int r, float start, float sweep, int flip) {
  if (!dc_ || r < 1 || !std::isfinite(start) || !std::isfinite(sweep)) return;
  SetLimit();
  const bool metafile = records();
  const double turn = std::fabs(sweep) > 2 * kTwoPi ? std::copysign(kTwoPi, sweep) : sweep;
  const int chords = std::max(5, round_device(std::fabs(turn * r / 4)));
  const int n = metafile ? std::min(chords, kMetafileChords) : chords;
  const double first = flip ? kTwoPi - start : start;
  // Quirk: the step loses the sweep's sign and the last point keeps it, so that a negative sweep runs the wrong way and
  // closes by a long chord; callers that know it draw a clockwise arc from its other end.
  const double step = (flip ? -1 : 1) * std::fabs(turn) / n;
  const ArcPath arc{{first, step, flip ? first - turn : first + turn, n}, double(cx), double(cy), double(r)};
  const auto draw = [&](int from, int to) {
    MoveTo(arc.point(from));
    for (int i = from + 1; i <= to; ++i) LineTo(arc.point(i));
  };
  if (n <= Directions::kMostChords) {
    const Directions& to = directions(arc);
    MoveTo(arc.point(to.cosine[0], to.sine[0]));
    for (int i = 1; i <= n; ++i) LineTo(arc.point(to.cosine[i], to.sine[i]));
  } else if (metafile || n <= kFewChords) {
    draw(0, n);
  } else {
    const int along = turn < 0 ? n - 1 : n;
    visible_chords(arc, along, {left_, top_, right_, bottom_}, draw);
    draw(along, n);
  }
}

int CSafeDC::FillRgn(const CRgn* region, const CBrush* brush) {
  SetLimit();
  if (!dc_ || !region || !brush) return 0;
  if (!dc_->IsMetafile()) {
    const CRect box = region->GetRgnBox();
    if (box.left < -kFillReach || box.top < -kFillReach || box.right > kFillReach || box.bottom > kFillReach) return 0;
    if (!region->RectInRegion(CRect(left_, top_, right_, bottom_))) return 0;
  }
  dc_->FillRgn(*region, *brush);
  return 1;
}
