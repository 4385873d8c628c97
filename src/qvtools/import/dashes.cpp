// Line types that the document's table has no room for: what has one is put out as its dashes.

#include "qvtools/import/internal/curves.h"
#include "qvtools/import/internal/output.h"

namespace qv::importing {

namespace {

/// A line of straight pieces, walked from its start to its end.
class Way {
 public:
  Way(std::span<const Vertex> vertices, bool closed, double tolerance) : points_{vertices[0]} {
    for (std::size_t i = 0; i + (closed ? 0 : 1) < vertices.size(); ++i) {
      const Vertex& v = vertices[i];
      std::vector<Vec> piece;
      flatten_bulge(v.at, vertices[(i + 1) % vertices.size()].at, v.bulge, tolerance, piece);
      for (const Vec& p : piece) points_.push_back({p, v.startWidth, v.endWidth});
    }
    points_[0].bulge = 0;
    for (std::size_t i = 1; i < points_.size(); ++i)
      reached_.push_back(reached_.back() + length(points_[i].at - points_[i - 1].at));
  }

  double size() const { return reached_.back(); }

  /// The stretch between two distances from the start, neither before what was asked for last.
  std::vector<Vertex> stretch(double from, double to) {
    std::vector<Vertex> stretch{at(from)};
    for (; at_ + 1 < points_.size() && reached_[at_] < to; ++at_) stretch.push_back(points_[at_]);
    stretch.push_back(at(to));
    return stretch;
  }

 private:
  /// `at_` is the end of the piece there.
  Vertex at(double distance) {
    while (at_ + 1 < points_.size() && reached_[at_] <= distance) ++at_;
    const double piece = reached_[at_] - reached_[at_ - 1];
    const double share = piece > 0 ? std::min(1.0, (distance - reached_[at_ - 1]) / piece) : 0;
    Vertex vertex = points_[at_];
    vertex.at = points_[at_ - 1].at + (vertex.at - points_[at_ - 1].at) * share;
    return vertex;
  }

  std::vector<Vertex> points_;
  std::vector<double> reached_{0};
  std::size_t at_ = 1;
};

}  // namespace

bool Output::put_dashes(std::span<const Vertex> vertices, bool closed) {
  constexpr double kMostDashes = 20000;
  if (vertices.size() < 2) return true;
  Way way(vertices, closed, tolerance);
  const int type = look.lineType;
  const ACAD_LTYPE pattern = tables_.line_type_record(type);
  const auto elements = static_cast<double>(pattern.m_nElements);
  const double most = (way.size() / static_cast<double>(pattern.m_fLength) + 1) * elements;
  if (!std::isfinite(way.size())) return false;
  look.lineType = 0;
  bool good = true;
  const auto put_stretch = [&](double from, double to) {
    const std::vector<Vertex> dash = way.stretch(from, to);
    const bool plain = dash.size() == 2 && !(dash[0].startWidth > 0 || dash[0].endWidth > 0);
    good = (plain ? line(dash[0].at, dash[1].at) : polyline(dash, 0)) && good;
  };
  if (most > kMostDashes) {
    report_.loss("a line of too many dashes is drawn solid", report_.place);
    put_stretch(0, way.size());
  }
  double from = 0;
  for (int i = 0; i < most && most <= kMostDashes && from < way.size(); ++i) {
    const auto element = static_cast<double>(pattern.m_fElement[i % pattern.m_nElements]);
    const double to = std::min(way.size(), from + std::fabs(element));
    if (element == 0)
      good = point(way.stretch(from, from)[0].at) && good;
    else if (element > 0)
      put_stretch(from, to);
    from += std::fabs(element);
  }
  look.lineType = type;
  return good;
}

}  // namespace qv::importing
