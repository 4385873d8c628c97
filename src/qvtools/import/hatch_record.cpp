// The groups of a hatch: its loops of edges and the lines of its pattern.

#include <algorithm>

#include "qvtools/import/internal/curves.h"
#include "qvtools/import/internal/hatch.h"

namespace qv::importing {

namespace {

enum LoopFlag { External = 1, Polyline = 2, TextBox = 8, Outermost = 16 };

struct Loop {
  int flags = 0;
  std::vector<Vec> points;
};

class HatchReader {
 public:
  HatchReader(const Record& record, double tolerance) : tags_(record.tags), tolerance_(tolerance) {}

  std::vector<Loop> loops() {
    while (!done() && tag().code != 91) ++at_;
    ++at_;
    std::vector<Loop> loops;
    while (!done() && tag().code == 92) loops.push_back(loop());
    return loops;
  }

  std::vector<PatternLine> pattern() {
    constexpr std::size_t kMostDashes = 64;
    std::vector<PatternLine> lines;
    for (; !done(); ++at_) {
      const double v = real_of(tag());
      const int code = tag().code;
      if (code == 53) {
        lines.emplace_back().angle = radians(v);
      } else if (lines.empty()) {
        continue;
      } else if (code == 43 || code == 44) {
        (code == 43 ? lines.back().base.x : lines.back().base.y) = v;
      } else if (code == 45 || code == 46) {
        (code == 45 ? lines.back().offset.x : lines.back().offset.y) = v;
      } else if (code == 49 && lines.back().dashes.size() < kMostDashes) {
        lines.back().dashes.push_back(v);
      }
    }
    return lines;
  }

 private:
  bool done() const { return at_ >= tags_.size(); }
  const Tag& tag() const { return tags_[at_]; }

  Loop loop() {
    Loop loop;
    loop.flags = integer_of(tag());
    ++at_;
    if ((loop.flags & Polyline) != 0)
      read_polyline(loop.points);
    else
      read_edges(loop.points);
    // Handles of what it was made from.
    while (!done() && (tag().code == 97 || tag().code == 330)) ++at_;
    if (!std::ranges::all_of(loop.points, [](const Vec& p) { return is_finite(p); })) loop.points.clear();
    return loop;
  }

  void read_polyline(std::vector<Vec>& points) {
    std::vector<Vertex> vertices;
    for (; !done(); ++at_) {
      const int code = tag().code;
      if (code == 10) {
        vertices.push_back({{real_of(tag()), 0, 0}});
      } else if (code == 20 || code == 42) {
        if (!vertices.empty()) (code == 20 ? vertices.back().at.y : vertices.back().bulge) = real_of(tag());
      } else if (code != 72 && code != 73 && code != 93) {
        break;
      }
    }
    if (vertices.empty()) return;
    points.push_back(vertices[0].at);
    for (std::size_t i = 0; i < vertices.size(); ++i)
      flatten_bulge(points.back(), vertices[(i + 1) % vertices.size()].at, vertices[i].bulge, tolerance_, points);
    points.pop_back();
  }

  static bool is_of_edge(int code) {
    constexpr int kCodes[] = {10, 20, 11, 21, 12, 22, 13, 23, 40, 42, 50, 51, 73, 74, 94, 95, 96};
    return std::ranges::find(kCodes, code) != std::end(kCodes);
  }

  void read_edges(std::vector<Vec>& points) {
    if (!done() && tag().code == 93) ++at_;
    while (!done() && tag().code == 72) {
      const int type = integer_of(tag());
      const std::size_t from = ++at_;
      // A spline may have a count of fit points, which reads as that of handles does.
      while (!done() && (is_of_edge(tag().code) || (type == 4 && tag().code == 97 && at_ + 1 < tags_.size() &&
                                                    (tags_[at_ + 1].code == 11 || tags_[at_ + 1].code == 97))))
        ++at_;
      Record edge;
      edge.tags.assign(tags_.begin() + static_cast<std::ptrdiff_t>(from),
                       tags_.begin() + static_cast<std::ptrdiff_t>(at_));
      add_edge(type, edge, points);
    }
  }

  void add_edge(int type, const Record& edge, std::vector<Vec>& points) {
    std::vector<Vec> piece;
    const auto point = [&](int code) { return Vec{edge.real(code), edge.real(code + 10), 0}; };
    if (type == 1)
      piece = {point(10), point(11)};
    else if (type == 2 || type == 3)
      add_arc(type == 3, edge, piece);
    else if (type == 4)
      add_spline(edge, piece);
    // Some write an edge the other way round.
    if (!points.empty() && piece.size() > 1 &&
        length(piece.front() - points.back()) > length(piece.back() - points.back()))
      std::ranges::reverse(piece);
    points.insert(points.end(), piece.begin(), piece.end());
  }

  /// Clockwise ones hold 360 less their angles.
  void add_arc(bool ellipse, const Record& edge, std::vector<Vec>& piece) const {
    const bool counterClockwise = edge.integer(73, 1) != 0;
    double sweep = std::fmod(edge.real(51) - edge.real(50), 360);
    if (!std::isfinite(sweep)) return;
    if (sweep <= 1e-9) sweep += 360;
    Vec major{edge.real(40), 0, 0};
    double ratio = 1;
    if (ellipse) {
      major = {edge.real(11), edge.real(21), 0};
      ratio = edge.real(40);
    }
    const Vec minor = Vec{-major.y, major.x, 0} * ratio;
    // The angle is seen from the centre; the curve's own parameter is another unless it is round.
    const auto parameter = [&](double degree) {
      if (!ellipse || ratio == 0) return radians(degree);
      const double a = radians(degree);
      const double turns = std::floor((a + kPi) / (2 * kPi)) * 2 * kPi;
      return std::atan2(std::sin(a) / std::fabs(ratio), std::cos(a)) + turns;
    };
    const double start = parameter(edge.real(50));
    const double end = sweep >= 360 - 1e-9 ? start + 2 * kPi : parameter(edge.real(50) + sweep);
    const double sign = counterClockwise ? 1 : -1;
    flatten_ellipse({edge.real(10), edge.real(20), 0}, major, minor, sign * start, sign * (end - start), tolerance_,
                    piece);
  }

  void add_spline(const Record& edge, std::vector<Vec>& piece) const {
    Spline spline;
    spline.degree = edge.integer(94, 3);
    for (const Tag& t : edge.tags) {
      const double v = real_of(t);
      if (t.code == 40) spline.knots.push_back(v);
      if (t.code == 42) spline.weights.push_back(v);
      if (t.code == 10) spline.control.push_back({v, 0, 0});
      if (t.code == 20 && !spline.control.empty()) spline.control.back().y = v;
      if (t.code == 11) spline.fit.push_back({v, 0, 0});
      if (t.code == 21 && !spline.fit.empty()) spline.fit.back().y = v;
    }
    spline.startTangent = {edge.real(12), edge.real(22), 0};
    spline.endTangent = {edge.real(13), edge.real(23), 0};
    flatten_spline(std::move(spline), tolerance_, piece);
  }

  const std::vector<Tag>& tags_;
  double tolerance_;
  std::size_t at_ = 0;
};

/// The loops that bound what is filled, by the style of group 75: all, the outermost two, or the outermost alone.
Loops chosen(std::vector<Loop> loops, int style) {
  const auto count = [&](int flags) {
    return std::ranges::count_if(loops, [&](const Loop& l) { return (l.flags & flags) != 0; });
  };
  const int wanted = style == 1 ? External | Outermost : style == 2 ? External : 0;
  const bool choose = wanted != 0 && count(wanted) > 0;
  Loops out;
  for (Loop& loop : loops) {
    if (loop.points.size() < 3 || (loop.flags & TextBox) != 0) continue;
    if (!choose || (loop.flags & wanted) != 0) out.push_back(std::move(loop.points));
  }
  return out;
}

}  // namespace

Hatch hatch_of(const Record& record, double tolerance) {
  Hatch hatch;
  const bool polygon = record.name == "MPOLYGON";
  hatch.solid = record.integer(polygon ? 71 : 70) != 0;
  if (polygon && hatch.solid) hatch.fillColor = record.integer(63);
  hatch.elevation = record.real(30);
  HatchReader reader(record, tolerance);
  hatch.loops = chosen(reader.loops(), record.integer(75));
  if (!hatch.solid) hatch.pattern = reader.pattern();
  if (record.integer(450) == 0) return hatch;
  hatch.solid = true;
  bool gradient = false;
  for (const Tag& tag : record.tags) {
    gradient = gradient || tag.code == 450;
    if (gradient && tag.code == 63 && hatch.gradientColor == 0) hatch.gradientColor = integer_of(tag);
    if (gradient && tag.code == 421 && hatch.gradientTrueColor < 0)
      hatch.gradientTrueColor = integer_of(tag) & 0xFFFFFF;
  }
  return hatch;
}

}  // namespace qv::importing
