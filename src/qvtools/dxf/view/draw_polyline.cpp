#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

#include "qvtools/dxf/view/internal/draw.h"
#include "qvtools/text/numbers.h"

namespace qv::detail {

namespace {

/// A direction of unit length.
struct Direction {
  double x;
  double y;
};

/// Collects the two sides of a band of wide segments on the device. Its outline is one side forward and the other one
/// back: the winding rule then fills the union of segments and joints, and no rounding parts them.
class Band {
 public:
  explicit Band(const CFCoor& coor) : coor_(coor) {}

  void add(const Segment& segment) {
    if (segment.is_straight())
      add_straight(segment);
    else
      add_arc(segment);
  }
  /// The joint where `before` ends and `after` begins: on the outer side of the turn up to where the edges meet (a
  /// sharp turn is cut off straight), on the inner side through the vertex.
  void join(const Segment& before, const Segment& after);
  /// For a band that closes on itself: its sides end where they began.
  void close() {
    left_.push_back(left_.front());
    right_.push_back(right_.front());
  }
  const std::vector<CPoint>& outline() {
    left_.insert(left_.end(), right_.rbegin(), right_.rend());
    return left_;
  }

 private:
  void add_straight(const Segment& s);
  void add_arc(const Segment& s);
  CPoint device(double x, double y) const {
    return coor_.FPtoDP(CFPoint(static_cast<float>(x), static_cast<float>(y)));
  }

  const CFCoor& coor_;
  std::vector<CPoint> left_;
  std::vector<CPoint> right_;
};

void Band::add_straight(const Segment& s) {
  const double dx = static_cast<double>(s.to.x) - s.from.x;
  const double dy = static_cast<double>(s.to.y) - s.from.y;
  const double length = std::hypot(dx, dy);
  const auto beside = [&](const CFPoint& p, double width) {
    const double k = width / 2 / length;
    return device(p.x - dy * k, p.y + dx * k);
  };
  left_.push_back(beside(s.from, s.startWidth));
  left_.push_back(beside(s.to, s.endWidth));
  right_.push_back(beside(s.from, -s.startWidth));
  right_.push_back(beside(s.to, -s.endWidth));
}

/// The sector of a ring, its width running from the start's to the end's.
void Band::add_arc(const Segment& s) {
  constexpr int kMaxSteps = 1024;
  const CFShape arc = s.shape();
  const double radius = arc.GetRadius();
  const double sweep = arc.GetB();
  const double pixels = std::fabs(sweep) * (radius + std::max(s.startWidth, s.endWidth) / 2) * coor_.GetScale();
  // Chords of about four pixels, as arcs have them.
  const int steps = std::clamp(TruncInt(pixels / 4), 8, kMaxSteps);
  for (int i = 0; i <= steps; ++i) {
    const double t = static_cast<double>(i) / steps;
    const double angle = arc.GetStartAngle() + sweep * t;
    const double half = (s.startWidth + (static_cast<double>(s.endWidth) - s.startWidth) * t) / 2;
    const auto at = [&](double r) { return device(arc.x + r * std::cos(angle), arc.y + r * std::sin(angle)); };
    const CPoint outer = at(radius + half);
    const CPoint inner = at(std::max(radius - half, 0.0));
    left_.push_back(sweep < 0 ? outer : inner);
    right_.push_back(sweep < 0 ? inner : outer);
  }
}

/// The direction in which a segment leaves its start, or reaches its end.
Direction direction_at(const Segment& s, bool end) {
  if (s.is_straight()) {
    const double dx = static_cast<double>(s.to.x) - s.from.x;
    const double dy = static_cast<double>(s.to.y) - s.from.y;
    const double length = std::hypot(dx, dy);
    return {dx / length, dy / length};
  }
  const CFShape arc = s.shape();
  const double angle = end ? arc.GetEndAngle() : arc.GetStartAngle();
  const double sense = arc.GetB() < 0 ? -1 : 1;
  return {-sense * std::sin(angle), sense * std::cos(angle)};
}

void Band::join(const Segment& before, const Segment& after) {
  constexpr double kSharp = 0.1;
  constexpr double kSmooth = 1e-6;
  const Direction u = direction_at(before, true);
  const Direction v = direction_at(after, false);
  const double turn = u.x * v.y - u.y * v.x;
  const double along = 1 + u.x * v.x + u.y * v.y;
  if (std::fabs(turn) < kSmooth && along > 1) return;
  const bool to_left = turn > 0;
  const double half = (to_left ? -0.5 : 0.5) * std::min(before.endWidth, after.startWidth);
  const auto beside = [&](double nx, double ny) { return device(after.from.x + half * nx, after.from.y + half * ny); };
  std::vector<CPoint>& outer = to_left ? right_ : left_;
  outer.push_back(beside(-u.y, u.x));
  if (along >= kSharp) outer.push_back(beside(-(u.y + v.y) / along, (u.x + v.x) / along));
  outer.push_back(beside(-v.y, v.x));
  (to_left ? left_ : right_).push_back(coor_.FPtoDP(after.from));
}

/// Cuts a polygon to one side of a line across x or y: what lies beyond `limit` is laid on it, which leaves the winding
/// of everything else as it was.
std::vector<CPoint> cut(const std::vector<CPoint>& polygon, int CPoint::*along, int CPoint::*across, int limit,
                        bool keepBelow) {
  std::vector<CPoint> kept;
  const auto inside = [&](const CPoint& p) { return keepBelow ? p.*along <= limit : p.*along >= limit; };
  const auto crossing = [&](const CPoint& a, const CPoint& b) {
    const double share = (static_cast<double>(limit) - a.*along) / (static_cast<double>(b.*along) - a.*along);
    CPoint p;
    p.*along = limit;
    p.*across = TruncInt(std::floor(a.*across + share * (static_cast<double>(b.*across) - a.*across) + 0.5));
    return p;
  };
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const CPoint& a = polygon[i];
    const CPoint& b = polygon[(i + 1) % polygon.size()];
    if (inside(a)) kept.push_back(a);
    if (inside(a) != inside(b)) kept.push_back(crossing(a, b));
  }
  return kept;
}

std::vector<CPoint> cut_to_limits(const CPoint* points, int n, CRect limits) {
  constexpr int kMargin = 64;  // so that no cut shows on the limits
  limits.right = std::min(limits.right, CSafeDC::kFillReach - kMargin);
  limits.bottom = std::min(limits.bottom, CSafeDC::kFillReach - kMargin);
  std::vector<CPoint> polygon(points, points + n);
  polygon = cut(polygon, &CPoint::x, &CPoint::y, limits.left - kMargin, false);
  polygon = cut(polygon, &CPoint::x, &CPoint::y, limits.right + kMargin, true);
  polygon = cut(polygon, &CPoint::y, &CPoint::x, limits.top - kMargin, false);
  return cut(polygon, &CPoint::y, &CPoint::x, limits.bottom + kMargin, true);
}

void fill_region(const CPoint* points, int n, COLORREF color, DrawingContext& to) {
  CRgn region;
  if (!region.CreatePolygonRgn(points, n, FillRule::Winding)) {
    if (n >= 3) throw std::bad_alloc();  // the whole drawing is given up, see its entry
    return;
  }
  const CBrush brush{color};
  to.safe().FillRgn(&region, &brush);
}

/// Draws a polyline's segments: those that are wide, with their joints, as outlines, the others as lines and arcs.
void draw_segments(const std::vector<Segment>& segments, bool closed, COLORREF color, DrawingContext& to) {
  const auto wide = [&](const Segment& s) { return is_wide(std::max(s.startWidth, s.endWidth), to); };
  const std::size_t n = segments.size();
  // A closed polyline begins behind a thin segment, if there is one, so that no run of wide ones is parted.
  std::size_t start = 0;
  if (closed)
    start = static_cast<std::size_t>(std::find_if_not(segments.begin(), segments.end(), wide) - segments.begin());
  const bool ring = closed && start == n;
  std::vector<Segment> run;
  const auto fill_run = [&] {
    if (!run.empty()) fill_wide(run.data(), static_cast<int>(run.size()), ring, color, to);
    run.clear();
  };
  for (std::size_t i = 0; i < n; ++i) {
    const Segment& segment = segments[(start + i) % n];
    if (wide(segment)) {
      run.push_back(segment);
    } else {
      fill_run();
      draw_shape(segment.shape(), segment.from, segment.to, to);
    }
  }
  fill_run();
}

}  // namespace

void fill(const CPoint* points, int n, COLORREF color, DrawingContext& to) {
  const auto within = [](const CPoint& p) {
    return p.x >= -CSafeDC::kFillReach && p.x <= CSafeDC::kFillReach && p.y >= -CSafeDC::kFillReach &&
           p.y <= CSafeDC::kFillReach;
  };
  if (to.dc()->IsMetafile() || std::all_of(points, points + n, within)) return fill_region(points, n, color, to);
  const std::vector<CPoint> visible = cut_to_limits(points, n, to.safe().Limits());
  fill_region(visible.data(), static_cast<int>(visible.size()), color, to);
}

void fill_wide(const Segment* segments, int n, bool closed, COLORREF color, DrawingContext& to) {
  Band band(to.coor());
  for (int i = 0; i < n; ++i) {
    if (i > 0) band.join(segments[i - 1], segments[i]);
    band.add(segments[i]);
  }
  if (closed && n > 1) {
    band.join(segments[n - 1], segments[0]);
    band.close();
  }
  const std::vector<CPoint>& outline = band.outline();
  fill(outline.data(), static_cast<int>(outline.size()), color, to);
}

namespace {

/// The segments of a polyline as one figure.
void append_segments(const ACAD_POLYLINE& r, const Plane& plane, Path& path) {
  for_each_segment(r, plane, [&](const Segment& s) {
    if (path.empty()) path.move_to({s.from.x, s.from.y});
    if (s.is_point()) return;
    if (s.is_straight()) return path.line_to({s.to.x, s.to.y});
    const CFShape arc = s.shape();
    path.arc_to({s.to.x, s.to.y}, {arc.x, arc.y}, arc.GetB());
  });
}

}  // namespace

void draw(const ACAD_POLYLINE& r, const Plane& plane, DrawingContext& to) {
  to.select(pen_style(r.m_szLType, to), r.m_nColor);
  bool wide = false;
  for_each_segment(r, plane, [&](const Segment& s) { wide = wide || is_wide(std::max(s.startWidth, s.endWidth), to); });
  if (!wide && to.has_patterns() && to.pattern(r.m_szLType)) {
    Path path;
    append_segments(r, plane, path);
    draw_dashes(path, r.m_szLType, to);
    return;
  }
  if (!wide) {
    for_each_segment(r, plane, [&](const Segment& s) { draw_shape(s.shape(), s.from, s.to, to); });
    return;
  }
  std::vector<Segment> segments;
  for_each_segment(r, plane, [&](const Segment& s) {
    if (!s.is_point()) segments.push_back(s);
  });
  draw_segments(segments, (r.m_nFlags & 1) != 0, to.ink(r.m_nColor), to);
}

}  // namespace qv::detail
