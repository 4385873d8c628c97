#include "qvtools/widgets/viewer/measuring.h"

#include <cmath>
#include <numbers>

namespace qv::viewer {

namespace {

using qv::PlanePoint;

double distance(const PlanePoint& a, const PlanePoint& b) {
  return std::hypot(b.x - a.x, b.y - a.y);
}

/// How many points a kind takes; 0 for as many as the user gives.
std::size_t points_of(MeasureKind kind) {
  switch (kind) {
    case MeasureKind::Angle:
      return 3;
    case MeasureKind::Coordinates:
      return 1;
    default:
      return 0;
  }
}

double direction(const PlanePoint& a, const PlanePoint& b) {
  const double degrees = std::atan2(b.y - a.y, b.x - a.x) * 180 / std::numbers::pi;
  return degrees < 0 ? degrees + 360 : degrees;
}

}  // namespace

std::string shown_number(double value) {
  char text[64];
  qv::format_text(text, sizeof text, "%.3f", value);
  std::string shown = text;
  shown.erase(shown.find_last_not_of('0') + 1);
  if (shown.ends_with('.')) shown.pop_back();
  return shown == "-0" ? "0" : shown;
}

double Measured::leg(std::size_t i) const {
  return distance(points[i], points[(i + 1) % points.size()]);
}

double Measured::sum() const {
  if (kind == MeasureKind::ObjectArea) return length;
  double all = 0;
  const std::size_t legs = points.size() - (kind == MeasureKind::Area ? 0 : 1);
  for (std::size_t i = 0; !points.empty() && i < legs; ++i) all += leg(i);
  return all;
}

double Measured::enclosed() const {
  if (kind == MeasureKind::ObjectArea) return area;
  double twice = 0;
  for (std::size_t i = 1; i + 1 < points.size(); ++i)
    twice += (points[i].x - points[0].x) * (points[i + 1].y - points[0].y) -
             (points[i + 1].x - points[0].x) * (points[i].y - points[0].y);
  return std::fabs(twice) / 2;
}

double Measured::degrees() const {
  if (points.size() < 3) return 0;
  double between = std::fabs(direction(points[0], points[1]) - direction(points[0], points[2]));
  return between > 180 ? 360 - between : between;
}

std::string Measured::words(Language language) const {
  const auto say = [&](Text text, double a, double b = 0, double c = 0, double d = 0) {
    const std::string numbers[] = {shown_number(a), shown_number(b), shown_number(c), shown_number(d)};
    return filled(text, language, {numbers[0], numbers[1], numbers[2], numbers[3]});
  };
  switch (kind) {
    case MeasureKind::Distance: {
      if (points.size() < 2) return {};
      const PlanePoint& a = points[points.size() - 2];
      const PlanePoint& b = points.back();
      std::string said = say(Text::DistanceIs, distance(a, b), b.x - a.x, b.y - a.y, direction(a, b));
      if (points.size() > 2) said += say(Text::SumIs, sum(), static_cast<double>(points.size() - 1));
      return said;
    }
    case MeasureKind::Angle:
      return points.size() < 3 ? std::string() : say(Text::AngleIs, degrees(), 180 - degrees(), 360 - degrees());
    case MeasureKind::Radius: {
      const double r = points.size() < 2 ? 0 : leg(0);
      return say(Text::RadiusIs, r, 2 * r, 2 * std::numbers::pi * r, std::numbers::pi * r * r);
    }
    case MeasureKind::Area:
    case MeasureKind::ObjectArea:
      return say(Text::AreaIs, enclosed(), sum());
    case MeasureKind::Coordinates:
      return points.empty() ? std::string() : say(Text::PointIs, points[0].x, points[0].y);
  }
  return {};
}

void Measuring::begin(MeasureKind kind) {
  finish();
  present_ = {};
  present_.kind = kind;
}

void Measuring::done() {
  results_.push_back(present_);
  const MeasureKind kind = present_.kind;
  present_ = {};
  present_.kind = kind;
}

void Measuring::add(const PlanePoint& point) {
  present_.points.push_back(point);
  if (present_.points.size() == points_of(present_.kind)) done();
}

void Measuring::add_circle(const PlanePoint& center, double radius) {
  present_.points = {center, {center.x + radius, center.y}};
  done();
}

void Measuring::add_object(const PlanePoint& at, const qv::EntityMeasures& measures) {
  present_.points = {at};
  present_.length = measures.length;
  present_.area = measures.area;
  done();
}

bool Measuring::finish() {
  const std::size_t given = present_.points.size();
  if (given == 0) return false;
  const bool chain = present_.kind == MeasureKind::Distance && given >= 2;
  const bool outline = present_.kind == MeasureKind::Area && given >= 3;
  if (chain || outline)
    done();
  else
    present_.points.clear();
  return true;
}

bool Measuring::back() {
  if (present_.points.empty()) return false;
  present_.points.pop_back();
  return true;
}

void Measuring::clear() {
  results_.clear();
  present_.points.clear();
}

Measured Measuring::with(const PlanePoint& pointer) const {
  Measured seen = present_;
  if (!seen.points.empty()) seen.points.push_back(pointer);
  return seen;
}

std::string Measuring::words(Language language) const {
  std::string all;
  for (const Measured& measured : results_) all += measured.words(language) + '\n';
  return all;
}

namespace {

/// Draws in a window, cut to it.
class OnWindow {
 public:
  OnWindow(CDC& dc, const CFCoor& view) : safe_(&dc), view_(view) {}
  CPoint operator()(const PlanePoint& p) const {
    return view_.FPtoDP(CFPoint(static_cast<float>(p.x), static_cast<float>(p.y)));
  }
  void line(const PlanePoint& a, const PlanePoint& b) {
    safe_.MoveTo((*this)(a));
    safe_.LineTo((*this)(b));
  }
  void cross(const PlanePoint& p) {
    constexpr int kArm = 5;
    const CPoint at = (*this)(p);
    safe_.MoveTo(at.x - kArm, at.y);
    safe_.LineTo(at.x + kArm + 1, at.y);
    safe_.MoveTo(at.x, at.y - kArm);
    safe_.LineTo(at.x, at.y + kArm + 1);
  }
  void arc(const PlanePoint& center, double radius, double from, double sweep) {
    constexpr int kSides = 48;
    for (int i = 0; i < kSides; ++i) {
      const auto at = [&](int k) {
        const double angle = from + sweep * k / kSides;
        return PlanePoint{center.x + radius * std::cos(angle), center.y + radius * std::sin(angle)};
      };
      line(at(i), at(i + 1));
    }
  }

 private:
  CSafeDC safe_;
  const CFCoor& view_;
};

PlanePoint between(const PlanePoint& a, const PlanePoint& b) {
  return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

}  // namespace

void draw_measured(CDC& dc, const CFCoor& view, const Measured& m, std::vector<OverlayLabel>& labels) {
  OnWindow on(dc, view);
  const std::size_t n = m.points.size();
  if (n == 0) return;
  for (const PlanePoint& p : m.points) on.cross(p);
  const auto write = [&](const PlanePoint& at, const std::string& text) { labels.push_back({on(at), text}); };
  switch (m.kind) {
    case MeasureKind::Distance:
    case MeasureKind::Area:
      for (std::size_t i = 0; i + 1 < n; ++i) {
        on.line(m.points[i], m.points[i + 1]);
        if (m.kind == MeasureKind::Distance) write(between(m.points[i], m.points[i + 1]), shown_number(m.leg(i)));
      }
      if (m.kind == MeasureKind::Distance && n > 2) write(m.points.back(), "Σ " + shown_number(m.sum()));
      if (m.kind == MeasureKind::Area && n > 2) {
        on.line(m.points.back(), m.points.front());
        PlanePoint middle;
        for (const PlanePoint& p : m.points)
          middle.x += p.x / static_cast<double>(n), middle.y += p.y / static_cast<double>(n);
        write(middle, shown_number(m.enclosed()));
      }
      break;
    case MeasureKind::Angle: {
      for (std::size_t i = 1; i < n; ++i) on.line(m.points[0], m.points[i]);
      if (n < 3) break;
      const double radius = std::min(m.leg(0), distance(m.points[0], m.points[2])) / 2;
      const double from = direction(m.points[0], m.points[1]) * std::numbers::pi / 180;
      double sweep = direction(m.points[0], m.points[2]) * std::numbers::pi / 180 - from;
      if (sweep > std::numbers::pi) sweep -= 2 * std::numbers::pi;
      if (sweep < -std::numbers::pi) sweep += 2 * std::numbers::pi;
      on.arc(m.points[0], radius, from, sweep);
      const double half = from + sweep / 2;
      write({m.points[0].x + radius * std::cos(half), m.points[0].y + radius * std::sin(half)},
            shown_number(m.degrees()) + "°");
      break;
    }
    case MeasureKind::Radius:
      if (n < 2) break;
      on.line(m.points[0], m.points[1]);
      on.arc(m.points[0], m.leg(0), 0, 2 * std::numbers::pi);
      write(between(m.points[0], m.points[1]), "R " + shown_number(m.leg(0)));
      break;
    case MeasureKind::ObjectArea:
      write(m.points[0], shown_number(m.area));
      break;
    case MeasureKind::Coordinates:
      write(m.points[0], shown_number(m.points[0].x) + ", " + shown_number(m.points[0].y));
      break;
  }
}

}  // namespace qv::viewer
