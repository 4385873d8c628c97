// What converters put out: arcs, chains and texts wherever a frame takes them.

#include <algorithm>

#include "qvtools/import/internal/job.h"

namespace qv::importing {

namespace {
constexpr double kWholeTurn = 2 * kPi;
constexpr double kRoundOff = 1e-9;
}  // namespace

Outcome outcome(bool good, const Outcome& otherwise) {
  return good ? otherwise : left_out("coordinates that are no numbers");
}

Matrix frame_of(const Job& job, const Record& record) {
  const Tag* const x = record.find(210);
  if (!x) return job.place;
  const Vec direction{real_of(*x), record.real(220), record.real(230)};
  return job.place * extrusion_frame(direction);
}

bool put_arc(Job& job, const Matrix& frame, const Vec& center, double radius, double start, double sweep) {
  if (!(radius >= 0) || !std::isfinite(start) || !std::isfinite(sweep)) return false;
  const bool whole = std::fabs(sweep) >= kWholeTurn - kRoundOff;
  const PlanView view = plan_view(frame);
  if (!view.flat)
    return put_ellipse(job, frame(center), frame.direction({radius, 0, 0}), frame.direction({0, radius, 0}), start,
                       whole ? kWholeTurn : sweep);
  if (whole) return job.out.circle(frame(center), radius * view.scale);
  // Seen from behind an arc runs from its end to its start.
  const double from = view.mirrored ? view.turn - start - sweep : view.turn + start;
  double degree = std::fmod(degrees(from), 360);
  if (degree < 0) degree += 360;
  return job.out.arc(frame(center), radius * view.scale, degree,
                     degree + degrees(sweep) > 360 ? degree + degrees(sweep) - 360 : degree + degrees(sweep));
}

bool put_ellipse(Job& job, const Vec& center, const Vec& major, const Vec& minor, double start, double sweep) {
  Matrix frame{major, minor, cross(major, minor), center};
  if (!is_finite(major) || !is_finite(minor) || !is_finite(center)) return false;
  if (plan_view(frame).flat) return put_arc(job, frame, {}, 1, start, sweep);
  const bool whole = sweep >= kWholeTurn - 1e-6;
  std::vector<Vec> points;
  flatten_ellipse(center, major, minor, start, whole ? kWholeTurn : sweep, job.options.tolerance, points);
  if (whole) points.pop_back();
  return put_chain(job, std::move(points), whole);
}

bool put_chain(Job& job, std::vector<Vec> points, bool closed) {
  constexpr int kInSpace = 8;
  if (points.size() == 2 && !closed) return job.out.line(points[0], points[1]);
  const bool level = std::ranges::all_of(points, [&](const Vec& p) { return std::fabs(p.z - points[0].z) <= 1e-9; });
  return job.out.polyline(vertices_of(points), (closed ? 1 : 0) | (level ? 0 : kInSpace));
}

namespace {

/// A point of a wide line that has been made straight, with its width before and behind it.
struct WidePoint {
  Vec at;
  double before = 0;
  double behind = 0;
};

std::vector<WidePoint> wide_points(std::span<const Vertex> vertices, bool closed, double tolerance) {
  std::vector<WidePoint> points{{vertices[0].at}};
  for (std::size_t i = 0; i + (closed ? 0 : 1) < vertices.size(); ++i) {
    const Vertex& v = vertices[i];
    std::vector<Vec> piece;
    flatten_bulge(points.back().at, vertices[(i + 1) % vertices.size()].at, v.bulge, tolerance, piece);
    for (std::size_t j = 0; j < piece.size(); ++j) {
      const auto width = [&](std::size_t part) {
        return v.startWidth +
               (v.endWidth - v.startWidth) * static_cast<double>(part) / static_cast<double>(piece.size());
      };
      points.back().behind = width(j);
      points.push_back({piece[j], width(j + 1)});
    }
  }
  return points;
}

/// The bands of a wide line, mitred at its corners.
bool put_bands(Job& job, const Matrix& frame, std::span<const Vertex> vertices, bool closed) {
  const std::vector<WidePoint> points = wide_points(vertices, closed, job.options.tolerance);
  const std::size_t edges = points.size() - 1;
  const auto normal = [&](std::size_t edge) {
    const Vec d = unit(points[edge + 1].at - points[edge].at, {1, 0, 0});
    return Vec{-d.y, d.x, 0};
  };
  // Of two edges that meet; one that turns back has square ends. A mitre reaches out by ten half widths at most, as on
  // plots: 1 / cos of half the turn, whose square is (1 + cos) / 2.
  const auto mitre = [&](std::size_t edge, std::size_t other) {
    constexpr double kSharp = 2.0 / (10 * 10);
    const Vec a = normal(edge);
    const Vec b = normal(other);
    return 1 + dot(a, b) < kSharp ? a : (a + b) * (1 / (1 + dot(a, b)));
  };
  bool good = true;
  for (std::size_t i = 0; i < edges; ++i) {
    const Vec start = i > 0 ? mitre(i, i - 1) : closed ? mitre(i, edges - 1) : normal(i);
    const Vec end = i + 1 < edges ? mitre(i, i + 1) : closed ? mitre(i, 0) : normal(i);
    const Vec a = start * (points[i].behind / 2);
    const Vec b = end * (points[i + 1].before / 2);
    const Vec corners[4] = {frame(points[i].at + a), frame(points[i].at - a), frame(points[i + 1].at + b),
                            frame(points[i + 1].at - b)};
    good = job.out.solid(corners) && good;
  }
  return good;
}

}  // namespace

bool put_polyline(Job& job, const Matrix& frame, std::span<const Vertex> vertices, bool closed) {
  const PlanView view = plan_view(frame);
  if (vertices.size() < 2) return true;
  std::vector<Vertex> placed;
  placed.reserve(vertices.size());
  if (view.flat) {
    for (const Vertex& v : vertices)
      placed.push_back(
          {frame(v.at), v.startWidth * view.scale, v.endWidth * view.scale, view.mirrored ? -v.bulge : v.bulge});
    return job.out.polyline(placed, closed ? 1 : 0);
  }
  std::vector<Vec> points{vertices[0].at};
  for (std::size_t i = 0; i + (closed ? 0 : 1) < vertices.size(); ++i)
    flatten_bulge(points.back(), vertices[(i + 1) % vertices.size()].at, vertices[i].bulge, job.options.tolerance,
                  points);
  if (closed) points.pop_back();
  for (Vec& p : points) p = frame(p);
  const bool wide = std::ranges::any_of(vertices, [](const Vertex& v) { return v.startWidth > 0 || v.endWidth > 0; });
  return wide ? put_bands(job, frame, vertices, closed) : put_chain(job, std::move(points), closed);
}

namespace {

/// A text's box before it is turned: from its left end on the base line.
struct Box {
  double width;
  double height;
};

/// Where the left end of the base line lies from the anchor, in the text's own axes.
Vec anchor_offset(const Lettering& text, const Box& box) {
  constexpr double kAcross[] = {0, 0.5, 1, 0, 0.5, 0};
  const int across = std::clamp(text.horizontal, 0, 5);
  double up = 0;
  if (across == 4)
    up = -box.height / 2;
  else if (across < 3)
    up = text.vertical == 3   ? -box.height
         : text.vertical == 2 ? -box.height / 2
         : text.vertical == 1 ? box.height * kDescender
                              : 0;
  return {-box.width * kAcross[across], up, 0};
}

/// The whole text for the notes, where the records' bytes do not hold it.
std::string noted_text(const std::vector<Run>& runs, const std::string& bytes, bool foreign) {
  std::string text;
  if (!foreign && bytes.size() < kContentsSize) return text;
  for (const Run& run : runs)
    for (const char32_t c : run.text) append_utf8(unicode_sign(c), text);
  return text;
}

bool has_strokes(const Run& run) {
  return run.under || run.over || run.strike;
}

/// Puts the strokes of a run along its stretch of the base line.
bool put_strokes(Job& job, const Run& run, const Vec& from, const Vec& to, const Vec& up, double height) {
  const auto stroke = [&](bool on, double level) {
    return !on || job.out.line(from + up * (height * level), to + up * (height * level));
  };
  return stroke(run.under, -0.2) && stroke(run.over, 1.2) && stroke(run.strike, 0.4);
}

}  // namespace

bool put_text(Job& job, const Matrix& frame, const Lettering& text) {
  std::vector<Run> runs;
  std::string bytes(text.plain);
  if (bytes.empty())
    runs = text.codes ? parse_line(text.text) : std::vector<Run>{{text.text, text.under, text.over, text.strike}};
  const bool wideSigns = job.file.decoder.page == CodePage::Gbk;
  std::vector<FontText> letters;
  letters.reserve(runs.size());
  bool chinese = false;
  bool foreign = false;
  for (const Run& run : runs) {
    letters.push_back(font_text(run.text, wideSigns));
    bytes += letters.back().bytes;
    chinese = chinese || letters.back().chinese;
    foreign = foreign || letters.back().foreign > 0 || letters.back().simplified > 0;
    if (letters.back().simplified)
      job.report.loss("a letter is shown in its simplified form", job.report.place, letters.back().simplified);
    if (letters.back().foreign)
      job.report.loss("a character that the fonts lack", job.report.place, letters.back().foreign);
  }
  if (bytes.empty()) return true;

  // The text's axes in its frame: fitted ones lie between their points.
  double turn = text.turn;
  double height = text.height;
  double width = text.width;
  Vec at = text.at;
  const bool fitted = text.horizontal == 3 || text.horizontal == 5;
  if (fitted && length(text.second - text.at) > 0) {
    const double room = length(text.second - text.at);
    turn = std::atan2(text.second.y - text.at.y, text.second.x - text.at.x);
    const double natural = text_width(bytes, height, width);
    const double k = natural > 0 ? room / natural : 1;
    if (text.horizontal == 3)
      height *= k;
    else
      width *= k;
  }
  // Backward and upside down are mirrored about the anchor; what is fitted stays between its points.
  const bool backward = (text.generation & 2) != 0;
  const bool upsideDown = (text.generation & 4) != 0;
  if (fitted && backward) at = text.second;
  const Matrix own = frame * translation(at) * turning(turn) * scaling(backward ? -1 : 1, upsideDown ? -1 : 1, 1);
  const double slant = std::tan(radians(std::clamp(text.oblique, -85.0, 85.0)));
  const Vec along = own.x;
  const Vec up = own.y + own.x * slant;
  const double stretch = std::hypot(along.x, along.y);
  const double area = along.x * up.y - along.y * up.x;
  if (!(stretch > 0) || !std::isfinite(stretch)) return is_finite(own.origin) && stretch == 0;

  TextLine line;
  line.unicode = noted_text(runs, bytes, foreign);
  const double tall = std::fabs(area) / stretch;
  line.height = height * tall;
  line.width = tall > 0 ? width * stretch / tall : width;
  if (!(line.height > 0)) return std::isfinite(line.height);
  Vec direction = Vec{along.x, along.y, 0} * (1 / stretch);
  const Vec normal = Vec{-direction.y, direction.x, 0} * (area < 0 ? -1 : 1);
  // What stands at its left end on the base line as it is needs no measure.
  const bool measured =
      text.horizontal != 0 || area < 0 || backward || runs.size() > 1 || std::ranges::any_of(runs, has_strokes);
  const Box box{measured ? text_width(bytes, line.height, line.width) : 0, line.height};
  const Vec left = anchor_offset(text, box);
  line.at = own.origin + direction * left.x + normal * left.y;
  if (area < 0) {
    // Kept readable: it fills the same box, begun from another corner.
    job.report.loss("a mirrored text is shown readable", job.report.place);
    if (direction.x < 0) {
      line.at = line.at + direction * box.width;
      direction = direction * -1;
    } else {
      line.at = line.at + normal * box.height;
    }
  }
  line.turn = degrees(std::atan2(direction.y, direction.x));
  const Vec upward{-direction.y, direction.x, 0};
  const double oblique = degrees(std::atan2(up.x * direction.x + up.y * direction.y, tall));
  line.style = {text.style, chinese, std::fabs(oblique) < 0.01 ? 0 : std::round(oblique * 100) / 100, 0};
  if (line.style.oblique != 0) job.report.loss("a slanted text is shown upright", job.report.place);
  if (area > 0 && !backward && !fitted && text.horizontal > 0 && text.horizontal < 3) {
    line.justify = text.horizontal;
    line.align = own.origin + normal * left.y;
  }
  line.bytes = std::move(bytes);
  bool good = job.out.text(line);
  Vec from = line.at;
  for (std::size_t i = 0; i < runs.size() && good && measured; ++i) {
    const Vec to = from + direction * text_width(letters[i].bytes, line.height, line.width);
    good = put_strokes(job, runs[i], from, to, upward, line.height);
    from = to;
  }
  return good;
}

}  // namespace qv::importing
