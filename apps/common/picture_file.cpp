#include "common/picture_file.h"

#include "platform/qt/qt_output.h"

namespace qvapps {

PictureKind picture_kind(const std::string& path) {
  if (path.ends_with(".png")) return PictureKind::Png;
  if (path.ends_with(".svg")) return PictureKind::Svg;
  return path.ends_with(".pdf") ? PictureKind::Pdf : PictureKind::Unknown;
}

CSize drawn_size(PictureKind kind, CSize pixels) {
  return kind == PictureKind::Pdf ? CSize(2 * pixels.cx, 2 * pixels.cy) : pixels;
}

bool save_drawn(const std::string& path, CSize size, COLORREF background, const std::function<void(CDC&)>& draw) {
  constexpr int kPdfDotsPerInch = 300;
  const PictureScreen screen(size);
  const auto draw_on_background = [&](CDC& dc) {
    const CPoint corners[4] = {{0, 0}, {size.cx, 0}, {size.cx, size.cy}, {0, size.cy}};
    CRgn page;
    page.CreatePolygonRgn(corners, 4, qv::FillRule::Winding);
    dc.FillRgn(page, CBrush{background});
    draw(dc);
  };
  switch (picture_kind(path)) {
    case PictureKind::Pdf:
      return qv::save_pdf(path, size, kPdfDotsPerInch, draw);
    case PictureKind::Svg:
      return qv::save_svg(path, size, draw_on_background);
    case PictureKind::Png: {
      qv::BitmapContext bitmap(size.cx, size.cy, background);
      draw(bitmap);
      return qv::save_png(bitmap, path);
    }
    case PictureKind::Unknown:
      break;
  }
  return false;
}

}  // namespace qvapps
