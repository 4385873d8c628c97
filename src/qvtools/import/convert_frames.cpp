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
  constexpr int kClosed = 2;
  struct Corner {
    Vec at;
    Vec miter;
    std::vector<double> offsets;  // of each element along the miter
  };
  std::vector<Corner> corners;
  bool first = false;  // the next group 41 is an element's offset; what follows parts it
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
        first = integer_of(tag) > 0;
        if (!first) corner.offsets.push_back(0);
        break;
      case 41:
        if (first) corner.offsets.push_back(v);
        first = false;
        break;
      default:
        break;
    }
  }
  if (corners.size() < 2) return left_out("no vertices");
  const int style = job.file.mlineStyleNames.find(record.word(2), job.file.decoder);
  const Look look = job.out.look;
  bool good = true;
  std::size_t elements = corners[0].offsets.size();
  for (const Corner& corner : corners) elements = std::min(elements, corner.offsets.size());
  for (std::size_t i = 0; i < elements; ++i) {
    job.out.look = look;
    if (style >= 0) {
      const std::vector<int>& colors = job.file.mlineStyles[static_cast<std::size_t>(style)].colors;
      if (i < colors.size() && colors[i] > 0 && colors[i] < 256) job.out.look.color = colors[i];
    }
    std::vector<Vec> points;
    for (const Corner& corner : corners) points.push_back(job.place(corner.at + corner.miter * corner.offsets[i]));
    good = put_chain(job, std::move(points), (record.integer(71) & kClosed) != 0) && good;
  }
  return outcome(good, converted("POLYLINE"));
}

Outcome convert_proxy(Job&, const Record&) {
  return left_out("an object of another program");
}

}  // namespace qv::importing
