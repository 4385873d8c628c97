#include "qvtools/dxf/view/catch.h"

#include <algorithm>
#include <cmath>

#include "qvtools/dxf/view/internal/figure.h"
#include "qvtools/dxf/view/prepared_drawing.h"
#include "qvtools/services/internal/out_of_memory.h"

namespace qv {

namespace {

using detail::distance;
using detail::Figure;
using detail::Plane;

/// Crossings of two figures. Those that miss each other, or their tangency, by less than the tolerance meet.
class Crossings {
 public:
  Crossings(const Figure& f, const Figure& g, double tolerance) : f_(f), g_(g), tolerance_(tolerance) {
    if (!f.is_arc() && !g.is_arc())
      lines();
    else if (f.is_arc() && g.is_arc())
      arcs();
    else
      f.is_arc() ? line_and_arc(g, f) : line_and_arc(f, g);
  }
  const PlanePoint* begin() const { return points_; }
  const PlanePoint* end() const { return points_ + count_; }

 private:
  bool add(const PlanePoint& p) {
    if (!f_.holds(p, tolerance_) || !g_.holds(p, tolerance_)) return false;
    points_[count_++] = p;
    return true;
  }
  void lines() {
    const double dx = f_.b.x - f_.a.x, dy = f_.b.y - f_.a.y;
    const double ex = g_.b.x - g_.a.x, ey = g_.b.y - g_.a.y;
    const double cross = dx * ey - dy * ex;
    constexpr double kParallel = 1e-9;
    if (std::fabs(cross) <= kParallel * std::hypot(dx, dy) * std::hypot(ex, ey)) return;
    const double t = ((g_.a.x - f_.a.x) * ey - (g_.a.y - f_.a.y) * ex) / cross;
    add({f_.a.x + t * dx, f_.a.y + t * dy});
  }
  void line_and_arc(const Figure& line, const Figure& arc) {
    const double dx = line.b.x - line.a.x, dy = line.b.y - line.a.y;
    const double length = std::hypot(dx, dy);
    if (length == 0) return;
    const double t = ((arc.center.x - line.a.x) * dx + (arc.center.y - line.a.y) * dy) / length;
    const PlanePoint foot{line.a.x + t * dx / length, line.a.y + t * dy / length};
    around(foot, distance(foot, arc.center), arc.radius, {dx / length, dy / length});
  }
  void arcs() {
    const double dx = g_.center.x - f_.center.x, dy = g_.center.y - f_.center.y;
    const double d = std::hypot(dx, dy);
    if (d <= 1e-9 * (f_.radius + g_.radius)) return;
    const bool outside = std::fabs(d - f_.radius - g_.radius) <= tolerance_;
    const bool inside = std::fabs(d - std::fabs(f_.radius - g_.radius)) <= tolerance_;
    double along = (d * d + f_.radius * f_.radius - g_.radius * g_.radius) / (2 * d);
    if (outside || inside) along = std::copysign(f_.radius, along);
    const PlanePoint foot{f_.center.x + along * dx / d, f_.center.y + along * dy / d};
    around(foot, std::fabs(along), f_.radius, {-dy / d, dx / d});
  }
  /// The points of a circle on a line through a foot, the foot nearest to its centre.
  void around(const PlanePoint& foot, double away, double radius, const PlanePoint& direction) {
    // Touching ends lie beside the foot by far more than the tolerance: they are what the exact crossings give.
    if (std::fabs(away - radius) <= tolerance_ && add(foot)) return;
    if (away > radius) return;
    const double h = std::sqrt(radius * radius - away * away);
    add({foot.x + h * direction.x, foot.y + h * direction.y});
    add({foot.x - h * direction.x, foot.y - h * direction.y});
  }

  const Figure& f_;
  const Figure& g_;
  double tolerance_;
  PlanePoint points_[2];
  int count_ = 0;
};

/// Gathers what the pointer can catch.
class Catcher {
 public:
  explicit Catcher(const CatchQuery& query) : query_(query) {}

  /// A record of one of the nine kinds, as the plane shows it; `entity` is itself or the insert that shows it.
  void add(const auto& record, const Plane& plane, ACAD_ENTITY& entity) {
    if constexpr (requires { record.m_Point; }) offer(detail::exact(plane(record.m_Point)), CatchKind::Node, entity);
    if constexpr (requires { record.m_Insert; })
      offer(detail::exact(plane(record.m_Insert)), CatchKind::Insertion, entity);
    detail::for_each_figure(record, plane, [&](const Figure& figure) { add_figure(figure, entity); });
  }

  std::vector<CaughtPoint> result() {
    add_crossings();
    std::sort(found_.begin(), found_.end(), [](const Candidate& a, const Candidate& b) {
      if (a.rank != b.rank) return a.rank < b.rank;
      return a.away != b.away ? a.away < b.away : a.point.kind < b.point.kind;
    });
    std::vector<CaughtPoint> points;
    for (std::size_t i = 0; i < found_.size() && points.size() < kMostCaught; ++i) add_unlike(points, found_[i].point);
    return points;
  }

 private:
  static constexpr std::size_t kMostCaught = 64;  // to go through one by one
  /// Points within reach first, then those that a curve under the pointer has elsewhere, then any point of it.
  enum class Rank : std::uint8_t { Reached, OfCurve, OnCurve };
  struct Candidate {
    Rank rank;
    double away;
    CaughtPoint point;
  };
  struct Hovered {
    Figure figure;
    double away;
    ACAD_ENTITY* entity;
  };

  bool wants(CatchKind kind) const { return (query_.kinds & CatchBit(kind)) != 0; }

  void offer(const PlanePoint& p, CatchKind kind, ACAD_ENTITY& entity, double radius = 0, bool hovered = false) {
    if (!wants(kind)) return;
    const double away = distance(p, query_.at);
    const bool reached = away <= query_.reach;
    if (!reached && !hovered) return;
    const Rank rank = kind == CatchKind::Nearest ? Rank::OnCurve : reached ? Rank::Reached : Rank::OfCurve;
    found_.push_back({rank, away, {p, kind, radius, &entity}});
  }

  void add_figure(const Figure& f, ACAD_ENTITY& entity) {
    const PlanePoint nearest = f.nearest(query_.at);
    const double away = distance(nearest, query_.at);
    const bool hovered = away <= query_.reach;
    if (f.is_arc()) {
      offer(f.center, CatchKind::Center, entity, f.radius, hovered);
      for (int quarter = 0; quarter < 4; ++quarter)
        if (const double angle = quarter * std::numbers::pi / 2; f.holds_angle(angle, 1e-9))
          offer(f.at_angle(angle), CatchKind::Quadrant, entity);
    }
    if (!hovered) return;
    if (!f.is_circle()) {
      offer(f.a, CatchKind::End, entity);
      offer(f.b, CatchKind::End, entity);
      offer(f.middle(), CatchKind::Middle, entity);
    }
    if (query_.from) add_seen_from(f, *query_.from, entity);
    offer(nearest, CatchKind::Nearest, entity, 0, true);
    if (wants(CatchKind::Intersection)) hovered_.push_back({f, away, &entity});
  }

  void add_seen_from(const Figure& f, const PlanePoint& from, ACAD_ENTITY& entity) {
    const double far = tolerance(from);
    const auto put = [&](const PlanePoint& p, CatchKind kind) {
      if (f.holds(p, far) && distance(p, from) > far) offer(p, kind, entity, 0, true);
    };
    if (!f.is_arc()) {
      const double dx = f.b.x - f.a.x, dy = f.b.y - f.a.y;
      const double square = dx * dx + dy * dy;
      if (square == 0) return;
      const double t = ((from.x - f.a.x) * dx + (from.y - f.a.y) * dy) / square;
      return put({f.a.x + t * dx, f.a.y + t * dy}, CatchKind::Perpendicular);
    }
    const double angle = std::atan2(from.y - f.center.y, from.x - f.center.x);
    const double d = distance(from, f.center);
    if (d > far) {
      put(f.at_angle(angle), CatchKind::Perpendicular);
      put(f.at_angle(angle + std::numbers::pi), CatchKind::Perpendicular);
    }
    if (d <= f.radius) return;
    const double side = std::acos(f.radius / d);
    put(f.at_angle(angle + side), CatchKind::Tangent);
    put(f.at_angle(angle - side), CatchKind::Tangent);
  }

  /// Half the step of files, and what floats lose; never more than one sees.
  double tolerance(const PlanePoint& p) const {
    constexpr double kStep = 0.015;
    constexpr double kFloat = 4.0 / (1 << 23);
    const double loss = std::max(std::fabs(p.x), std::fabs(p.y)) * kFloat;
    return std::min(std::max(kStep, loss), query_.reach / 4);
  }

  void add_crossings() {
    constexpr std::size_t kMost = 50;  // the nearest ones: their pairs are what one can tell apart
    if (hovered_.size() > kMost) {
      std::nth_element(hovered_.begin(), hovered_.begin() + kMost, hovered_.end(),
                       [](const Hovered& a, const Hovered& b) { return a.away < b.away; });
      hovered_.resize(kMost);
    }
    const double near = tolerance(query_.at);
    for (std::size_t i = 0; i < hovered_.size(); ++i)
      for (std::size_t k = i + 1; k < hovered_.size(); ++k)
        for (const PlanePoint& p : Crossings(hovered_[i].figure, hovered_[k].figure, near))
          offer(p, CatchKind::Intersection, *hovered_[i].entity);
  }

  /// At one place the better kind, or the nearer, stays; a point that is merely on a curve is no rival of others.
  void add_unlike(std::vector<CaughtPoint>& points, const CaughtPoint& point) const {
    const double near = tolerance(point.at);
    for (CaughtPoint& other : points) {
      if (distance(other.at, point.at) > near) continue;
      if (point.kind < other.kind) other = point;
      return;
    }
    points.push_back(point);
  }

  const CatchQuery& query_;
  std::vector<Candidate> found_;
  std::vector<Hovered> hovered_;
};

}  // namespace

std::vector<CaughtPoint> PreparedDrawing::Catch(const CatchQuery& query) {
  return detail::unless_out_of_memory(
      [&] {
        Catcher catcher(query);
        const Plane plane = plan_ ? Plane() : Plane(a_, b_);
        const auto add = [&](ACAD_ENTITY& entity, const Plane& seen, ACAD_ENTITY& owner) {
          detail::visit_record(
              entity, [&](auto& record) { catcher.add(record, seen, owner); }, [](ACAD_ENTITY&) {});
        };
        // Floats are coarser than the reach where the view is far in.
        const auto bound = [](double v, float towards) { return std::nextafter(static_cast<float>(v), towards); };
        const Box window{
            bound(query.at.x - query.reach, -Box::kInfinity), bound(query.at.y - query.reach, -Box::kInfinity),
            bound(query.at.x + query.reach, Box::kInfinity), bound(query.at.y + query.reach, Box::kInfinity)};
        for (const Item* const item : items_in(window)) {
          add(*item->entity, plane, *item->entity);
          if (item->kind != Kind::Insert) continue;
          const ACAD_BLOCK& block = *blocks_[static_cast<std::size_t>(item->index)].block;
          const auto& insert = static_cast<const ACAD_INSERT&>(*item->entity);
          const Plane placed = plane.moved(detail::displacement(block, insert));
          detail::walk_block(block, [&](ACAD_ENTITY& part) { return add(part, placed, *item->entity), false; });
        }
        return catcher.result();
      },
      std::vector<CaughtPoint>());
}

}  // namespace qv
