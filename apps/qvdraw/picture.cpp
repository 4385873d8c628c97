#include "picture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>

#include "arguments.h"
#include "common/display_form.h"
#include "platform/qt/qt_output.h"
#include "progress.h"

namespace qvdraw {

namespace {

/// The world rectangle that is shown, never empty.
CFRect shown_rect(DXF& dxf, const PictureOptions& options) {
  if (options.window) return qvapps::never_empty(*options.window);
  return qvapps::with_margin(options.projected ? dxf.GetFRect3D(options.viewA, options.viewB) : dxf.GetFRect());
}

/// The size of the picture, and the transform that fits the rectangle into its middle.
struct Fit {
  CSize size;
  CFCoor coor;
  Fit(const CFRect& r, const PictureOptions& options) : size(options.size) {
    if (!options.fixedSize) {
      const double height = size.cx * static_cast<double>(r.Height()) / r.Width();
      // Rounded up: the same picture comes when this size is asked for.
      size.cy = std::clamp(static_cast<int>(std::ceil(height)), size.cx / 8, size.cx * 4);
    }
    const double scale = std::min(size.cx / static_cast<double>(r.Width()), size.cy / static_cast<double>(r.Height()));
    const double x = (static_cast<double>(r.x1) + r.x2) / 2 - size.cx / scale / 2;
    const double y = (static_cast<double>(r.y1) + r.y2) / 2 + size.cy / scale / 2;
    coor.Init(CFPoint(static_cast<float>(x), static_cast<float>(y)), static_cast<float>(scale), 1);
  }
};

/// The screen of the program is the picture that it draws.
class PictureHost : public qv::ConsoleHost {
 public:
  explicit PictureHost(CSize size) : ConsoleHost(size) { qv::SetHost(this); }
  ~PictureHost() override { qv::SetHost(nullptr); }
};

bool ends_with(const std::string& text, const char* ending) {
  const std::size_t n = std::strlen(ending);
  return text.size() >= n && text.compare(text.size() - n, n, ending) == 0;
}

}  // namespace

void save_drawn(const std::string& path, CSize size, COLORREF background, const std::function<void(CDC&)>& draw) {
  constexpr int kPdfDotsPerInch = 300;
  const PictureHost host(size);
  const auto draw_on_background = [&](CDC& dc) {
    const CPoint corners[4] = {{0, 0}, {size.cx, 0}, {size.cx, size.cy}, {0, size.cy}};
    CRgn page;
    page.CreatePolygonRgn(corners, 4, qv::FillRule::Winding);
    dc.FillRgn(page, CBrush{background});
    draw(dc);
  };
  bool saved = false;
  if (ends_with(path, ".pdf")) {
    saved = qv::save_pdf(path, size, kPdfDotsPerInch, draw);
  } else if (ends_with(path, ".svg")) {
    saved = qv::save_svg(path, size, draw_on_background);
  } else if (ends_with(path, ".png")) {
    qv::BitmapContext bitmap(size.cx, size.cy, background);
    draw(bitmap);
    saved = qv::save_png(bitmap, path);
  } else {
    throw UsageError(path + ": a picture ends in .png, .svg or .pdf");
  }
  if (!saved) throw std::runtime_error(path + ": cannot be written");
}

void save_picture(DXF& dxf, const std::string& path, const PictureOptions& options) {
  const Progress progress("drawing " + path);
  PictureOptions sized = options;
  // A page of twice the picture's dots: at 300 an inch, 1600 pixels become 27 cm.
  if (ends_with(path, ".pdf")) sized.size = CSize(2 * options.size.cx, 2 * options.size.cy);
  Fit fit(shown_rect(dxf, sized), sized);
  save_drawn(path, fit.size, options.white ? 0xFFFFFF : 0x000000, [&](CDC& dc) {
    if (options.projected)
      dxf.Draw3D(&dc, &fit.coor, options.viewA, options.viewB);
    else
      dxf.Draw(&dc, &fit.coor);
  });
}

}  // namespace qvdraw
