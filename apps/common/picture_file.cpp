#include "common/picture_file.h"

#include <algorithm>

namespace qvapps {

namespace {

const PictureFormat* format_of(const std::string& path) {
  for (const PictureFormat& format : picture_formats())
    if (has_ending(path, format.ending)) return &format;
  return nullptr;
}

}  // namespace

bool has_ending(const std::string& path, std::string_view ending) {
  const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
  return path.size() >= ending.size() &&
         std::equal(ending.rbegin(), ending.rend(), path.rbegin(), [&](char a, char b) { return a == lower(b); });
}

PictureKind picture_kind(const std::string& path) {
  const PictureFormat* const format = format_of(path);
  return format ? format->kind : PictureKind::Unknown;
}

std::string picture_endings() {
  const std::span<const PictureFormat> formats = picture_formats();
  std::string text = formats[0].ending;
  for (std::size_t i = 1; i < formats.size(); ++i)
    text += (i + 1 < formats.size() ? ", " : " or ") + std::string(formats[i].ending);
  return text;
}

CSize drawn_size(PictureKind kind, CSize pixels) {
  return kind == PictureKind::Pdf ? CSize(2 * pixels.cx, 2 * pixels.cy) : pixels;
}

bool save_drawn(const std::string& path, CSize size, COLORREF background, const Draw& draw) {
  const PictureScreen screen(size);
  const PictureFormat* const format = format_of(path);
  return format && format->save(path, size, background, draw);
}

void fill_background(CDC& dc, CSize size, COLORREF background) {
  const CPoint corners[4] = {{0, 0}, {size.cx, 0}, {size.cx, size.cy}, {0, size.cy}};
  CRgn page;
  page.CreatePolygonRgn(corners, 4, qv::FillRule::Winding);
  dc.FillRgn(page, CBrush{background});
}

}  // namespace qvapps
