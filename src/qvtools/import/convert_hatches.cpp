#include "qvtools/import/internal/converters.h"
#include "qvtools/import/internal/hatch.h"

namespace qv::importing {

namespace {

bool put_borders(Job& job, const Matrix& frame, const Loops& loops) {
  bool good = true;
  for (const std::vector<Vec>& loop : loops) good = put_polyline(job, frame, vertices_of(loop), true) && good;
  return good;
}

Outcome put_fill(Job& job, const Matrix& frame, const Hatch& hatch) {
  bool good = true;
  const bool done = for_each_trapezoid(hatch.loops, [&](const Vec(&corners)[4]) {
    const Vec placed[4] = {frame(corners[0]), frame(corners[1]), frame(corners[2]), frame(corners[3])};
    good = job.out.solid(placed) && good;
  });
  return done ? outcome(good, converted("SOLID")) : left_out("an area of too many edges");
}

Outcome put_pattern(Job& job, const Matrix& frame, const Hatch& hatch) {
  const long before = job.out.made;
  bool good = true;
  for (const PatternLine& line : hatch.pattern) {
    const double left = job.options.mostOfHatch - static_cast<double>(job.out.made - before);
    const bool fits = for_each_dash(hatch.loops, line, left, [&](const Vec& from, const Vec& to) {
      good = (from == to ? job.out.point(frame(from)) : job.out.line(frame(from), frame(to))) && good;
    });
    if (fits) continue;
    put_borders(job, frame, hatch.loops);
    return left_out("a pattern of too many dashes: its border is shown");
  }
  return outcome(good, converted("LINE"));
}

}  // namespace

Outcome convert_hatch(Job& job, const Record& record) {
  Hatch hatch = hatch_of(record, job.options.tolerance);
  if (hatch.loops.empty()) return left_out("no border");
  const Matrix frame = frame_of(job, record) * translation({0, 0, hatch.elevation});
  if (record.name == "MPOLYGON") put_borders(job, frame, hatch.loops);
  if (hatch.gradientTrueColor >= 0)
    job.out.look.set_true_color(hatch.gradientTrueColor);
  else if (const int own = hatch.gradientColor ? hatch.gradientColor : hatch.fillColor; own > 0 && own < 256)
    job.out.look.set_color(own);
  if (record.integer(450) != 0) job.report.loss("a gradient became its first colour", record.place);
  if (hatch.solid) return put_fill(job, frame, hatch);
  // A pattern without lines of its own is seen by its border.
  if (hatch.pattern.empty()) return outcome(put_borders(job, frame, hatch.loops), converted("POLYLINE"));
  job.out.look.lineType = 0;
  return put_pattern(job, frame, hatch);
}

}  // namespace qv::importing
