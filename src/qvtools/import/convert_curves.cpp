// Ellipses, splines and lines without end.

#include <algorithm>

#include "qvtools/import/internal/converters.h"

namespace qv::importing {

Outcome convert_ellipse(Job& job, const Record& record) {
  const Vec major = record.point(11, {1, 0, 0});
  const Vec normal = unit(record.has(210) ? record.point(210) : Vec{0, 0, 1}, {0, 0, 1});
  const Vec minor = cross(normal, major) * record.real(40, 1);
  const double start = record.real(41);
  double sweep = record.real(42, 2 * kPi) - start;
  if (!std::isfinite(sweep)) return outcome(false, kTaken);
  sweep = std::fmod(sweep, 2 * kPi);
  if (sweep <= 1e-9) sweep += 2 * kPi;
  const Matrix& m = job.place;
  const bool good = put_ellipse(job, m(record.point(10)), m.direction(major), m.direction(minor), start, sweep);
  return outcome(good, converted("POLYLINE, CIRCLE or ARC"));
}

Outcome convert_spline(Job& job, const Record& record) {
  constexpr int kClosed = 1 | 2;
  // A helix is the same, its axis behind it.
  const auto axis =
      std::ranges::find_if(record.tags, [](const Tag& tag) { return tag.code == 100 && word_of(tag) == "AcDbHelix"; });
  Record curve;
  curve.tags.assign(record.tags.begin(), axis);
  Spline spline;
  const auto add = [&](std::vector<Vec>& points, const Tag& tag, int code) {
    if (tag.code == code) points.push_back({real_of(tag), 0, 0});
    if (points.empty()) return;
    if (tag.code == code + 10) points.back().y = real_of(tag);
    if (tag.code == code + 20) points.back().z = real_of(tag);
  };
  for (const Tag& tag : curve.tags) {
    if (tag.code == 70) spline.closed = (integer_of(tag) & kClosed) != 0;
    if (tag.code == 71) spline.degree = integer_of(tag);
    if (tag.code == 40) spline.knots.push_back(real_of(tag));
    if (tag.code == 41) spline.weights.push_back(real_of(tag));
    add(spline.control, tag, 10);
    add(spline.fit, tag, 11);
  }
  spline.startTangent = curve.point(12);
  spline.endTangent = curve.point(13);
  std::vector<Vec> points;
  if (!flatten_spline(std::move(spline), job.options.tolerance, points))
    return left_out("a spline of too few points or too high a degree");
  for (Vec& p : points) p = job.place(p);
  return outcome(put_chain(job, std::move(points), false), converted("POLYLINE"));
}

Outcome convert_ray(Job& job, const Record& record) {
  const Vec direction = job.place.direction(record.point(11));
  const Vec from = job.place(record.point(10));
  if (!is_finite(from) || !is_finite(direction) || length(direction) == 0) return left_out("without a direction");
  job.endless.push_back({from, direction, record.name == "XLINE", job.out.look});
  return converted("LINE, cut at the drawing's extent");
}

}  // namespace qv::importing
