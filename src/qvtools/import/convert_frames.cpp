// Pictures and objects of other programs by their frames, and multilines.

#include "qvtools/import/internal/converters.h"

namespace qv::importing {

Outcome convert_image_frame(Job& job, const Record& record) {
  const Vec across = record.point(11);
  const Vec up = record.point(12);
  const double wide = record.real(13, 1);
  const double high = record.real(23, 1);
  // Corners of the clipping border in pixels, whose rows run downward from the top; the first pixel's middle is 0.
  std::vector<Vec> border;
  for (const Tag& tag : record.tags) {
    if (tag.code == 14) border.push_back({real_of(tag), 0, 0});
    if (tag.code == 24 && !border.empty()) border.back().y = real_of(tag);
  }
  const bool clipped = record.integer(280, 1) != 0 || record.name == "WIPEOUT";
  std::vector<Vec> corners;
  if (clipped && record.integer(71, 1) == 1 && border.size() == 2)
    border = {border[0], {border[1].x, border[0].y, 0}, border[1], {border[0].x, border[1].y, 0}};
  if (!clipped || border.size() < 3)
    corners = {{0, 0, 0}, {wide, 0, 0}, {wide, high, 0}, {0, high, 0}};
  else
    for (const Vec& p : border) corners.push_back({p.x + 0.5, high - p.y - 0.5, 0});
  if (corners.size() > 1 && corners.front() == corners.back()) corners.pop_back();
  for (Vec& p : corners) p = job.place(record.point(10) + across * p.x + up * p.y);
  return outcome(put_chain(job, std::move(corners), true), converted("POLYLINE: its frame"));
}

Outcome convert_ole_frame(Job& job, const Record& record) {
  if (!record.has(10) || !record.has(11)) return left_out("an object of another program");
  const Vec a = record.point(10);
  const Vec b = record.point(11);
  std::vector<Vec> corners;
  for (const Vec& p : {a, Vec{b.x, a.y, a.z}, b, Vec{a.x, b.y, b.z}}) corners.push_back(job.place(p));
  return outcome(put_chain(job, std::move(corners), true), converted("POLYLINE: its frame"));
}

Outcome convert_mline(Job& job, const Record& record) {
  enum { kClosed = 2, kNoStartCap = 4, kNoEndCap = 8 };
  struct Corner {
    Vec at;
    Vec miter;
    std::vector<double> offsets;  // of each element along the miter
  };
  std::vector<Corner> corners;
  int part = 0;  // of an element's groups 41: its offset, where its line begins, and what parts it
  bool cut = false;
  for (const Tag& tag : record.tags) {
    const double v = real_of(tag);
    if (tag.code == 11) corners.emplace_back().at.x = v;
    if (corners.empty()) continue;
    Corner& corner = corners.back();
    switch (tag.code) {
      case 21:
        corner.at.y = v;
        break;
      case 31:
        corner.at.z = v;
        break;
      case 13:
        corner.miter.x = v;
        break;
      case 23:
        corner.miter.y = v;
        break;
      case 33:
        corner.miter.z = v;
        break;
      case 74:
        part = 0;
        if (integer_of(tag) <= 0) corner.offsets.push_back(0);
        break;
      case 41:
        if (part == 0) corner.offsets.push_back(v);
        cut = cut || part > 1 || (part == 1 && v != 0);
        ++part;
        break;
      default:
        break;
    }
  }
  if (corners.size() < 2) return left_out("no vertices");
  if (cut) job.report.loss("a multiline with gaps is shown without them", record.place);
  const int index = job.file.mlineStyleNames.find(record.word(2), job.file.decoder);
  const MLineStyle style = index < 0 ? MLineStyle() : job.file.mlineStyles[static_cast<std::size_t>(index)];
  const Look look = job.out.look;
  const int flags = record.integer(71);
  bool good = true;
  std::size_t elements = corners[0].offsets.size();
  for (const Corner& corner : corners) elements = std::min(elements, corner.offsets.size());
  const auto at = [&](const Corner& corner, std::size_t element) {
    return job.place(corner.at + corner.miter * corner.offsets[element]);
  };
  for (std::size_t i = 0; i < elements; ++i) {
    job.out.look = look;
    if (i < style.colors.size() && style.colors[i] > 0 && style.colors[i] < 256)
      job.out.look.set_color(style.colors[i]);
    std::vector<Vec> points;
    for (const Corner& corner : corners) points.push_back(at(corner, i));
    good = put_chain(job, std::move(points), (flags & kClosed) != 0) && good;
  }
  job.out.look = look;
  const auto across = [&](const Corner& corner) {
    std::size_t least = 0;
    std::size_t most = 0;
    for (std::size_t i = 1; i < elements; ++i) {
      if (corner.offsets[i] < corner.offsets[least]) least = i;
      if (corner.offsets[i] > corner.offsets[most]) most = i;
    }
    return least == most || job.out.line(at(corner, least), at(corner, most));
  };
  if (elements > 0 && (flags & kClosed) == 0) {
    if ((style.flags & MLineStyle::StartCap) != 0 && (flags & kNoStartCap) == 0) good = across(corners.front()) && good;
    if ((style.flags & MLineStyle::EndCap) != 0 && (flags & kNoEndCap) == 0) good = across(corners.back()) && good;
    if ((style.flags & MLineStyle::RoundCaps) != 0)
      job.report.loss("round ends of a multiline were left out", record.place);
  }
  if (elements > 0 && (style.flags & MLineStyle::Joints) != 0)
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) good = across(corners[i]) && good;
  if ((style.flags & MLineStyle::Filled) != 0) job.report.loss("the fill of a multiline was left out", record.place);
  return outcome(good, converted("POLYLINE"));
}

}  // namespace qv::importing
