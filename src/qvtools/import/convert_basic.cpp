// Points, lines, circles and arcs, solids and faces.

#include "qvtools/import/internal/converters.h"

namespace qv::importing {

namespace {

/// A wall of the given thickness over an edge, in the extrusion's direction.
bool put_wall(Job& job, const Vec& a, const Vec& b, const Vec& up) {
  const Vec corners[4] = {a, b, b + up, a + up};
  return job.out.face(corners);
}

Vec thickness_of(const Matrix& frame, const Record& record) {
  return frame.z * record.real(39);
}

Outcome told_of_thickness(Job& job, bool good, bool thick, Outcome otherwise) {
  if (good && thick) job.report.loss("a thickness was left out", job.report.place);
  return outcome(good, otherwise);
}

}  // namespace

Outcome convert_point(Job& job, const Record& record) {
  return outcome(job.out.point(job.place(record.point(10))), kTaken);
}

void convert_line(Job& job) {
  TagReader& in = job.file.in;
  const std::size_t begin = in.place();
  Common common;
  Vec from;
  Vec to;
  Vec extrusion;
  double thickness = 0;
  // By code, not by order: some write x1, x2, y1, y2.
  while (in.next()) {
    const Tag& tag = in.tag();
    if (tag.code == 0) {
      in.unread();
      break;
    }
    switch (tag.code) {
      case 10:
        from.x = real_of(tag);
        break;
      case 20:
        from.y = real_of(tag);
        break;
      case 30:
        from.z = real_of(tag);
        break;
      case 11:
        to.x = real_of(tag);
        break;
      case 21:
        to.y = real_of(tag);
        break;
      case 31:
        to.z = real_of(tag);
        break;
      case 39:
        thickness = real_of(tag);
        break;
      case 210:
        extrusion.x = real_of(tag);
        break;
      case 220:
        extrusion.y = real_of(tag);
        break;
      case 230:
        extrusion.z = real_of(tag);
        break;
      default:
        common.take(tag);
    }
  }
  if (!job.admits("LINE", common, begin)) return;
  from = job.place(from);
  to = job.place(to);
  bool good = job.out.line(from, to);
  if (good && thickness != 0) good = put_wall(job, from, to, (job.place * extrusion_frame(extrusion)).z * thickness);
  job.report.count("LINE", outcome(good, thickness != 0 ? converted("LINE and 3DFACE") : kTaken), begin);
}

Outcome convert_circle(Job& job, const Record& record) {
  const Matrix frame = frame_of(job, record);
  const bool round = plan_view(frame).flat;
  const bool good = put_arc(job, frame, record.point(10), std::fabs(record.real(40)), 0, 2 * kPi);
  return told_of_thickness(job, good, record.real(39) != 0, round ? kTaken : converted("POLYLINE"));
}

Outcome convert_arc(Job& job, const Record& record) {
  const double start = record.real(50);
  const double end = record.real(51);
  double sweep = std::fmod(end - start, 360);
  if (sweep <= 0) sweep += 360;
  const Matrix frame = frame_of(job, record);
  const bool whole = sweep >= 360 - 1e-9;
  const bool round = plan_view(frame).flat;
  const bool good = put_arc(job, frame, record.point(10), std::fabs(record.real(40)), radians(start), radians(sweep));
  return told_of_thickness(job, good, record.real(39) != 0,
                           !round  ? converted("POLYLINE")
                           : whole ? converted("CIRCLE")
                                   : kTaken);
}

namespace {

/// The corners of groups 10 to 13; the fourth is the third where it is left out.
void corners_of(const Record& record, const Matrix& frame, Vec (&corners)[4]) {
  for (int i = 0; i < 4; ++i) corners[i] = record.point(10 + i);
  if (!record.has(13)) corners[3] = corners[2];
  for (Vec& corner : corners) corner = frame(corner);
}

}  // namespace

Outcome convert_solid(Job& job, const Record& record) {
  Vec corners[4];
  const Matrix frame = frame_of(job, record);
  corners_of(record, frame, corners);
  if (!job.out.solid(corners)) return outcome(false, kTaken);
  const Vec up = thickness_of(frame, record);
  bool good = true;
  constexpr int kRound[] = {0, 1, 3, 2, 0};
  if (length(up) > 0)
    for (int i = 0; i < 4; ++i) good = put_wall(job, corners[kRound[i]], corners[kRound[i + 1]], up) && good;
  return outcome(good, record.name == "TRACE" ? converted("SOLID") : kTaken);
}

Outcome convert_face(Job& job, const Record& record) {
  Vec corners[4];
  corners_of(record, job.place, corners);
  const int hidden = record.integer(70) & 15;
  if (hidden == 0) return outcome(job.out.face(corners), kTaken);
  bool good = true;
  for (int i = 0; i < 4; ++i)
    if ((hidden >> i & 1) == 0) good = job.out.line(corners[i], corners[(i + 1) % 4]) && good;
  return outcome(good, converted("LINE"));
}

}  // namespace qv::importing
