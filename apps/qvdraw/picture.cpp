#include "picture.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "arguments.h"
#include "common/display_form.h"
#include "common/picture_file.h"
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
    coor = qvapps::fitted(r, size);
  }
};

}  // namespace

void save_drawn(const std::string& path, CSize size, COLORREF background, const std::function<void(CDC&)>& draw) {
  if (qvapps::picture_kind(path) == qvapps::PictureKind::Unknown)
    throw UsageError(path + ": a picture ends in " + qvapps::picture_endings());
  if (!qvapps::save_drawn(path, size, background, draw)) throw std::runtime_error(path + ": cannot be written");
}

void save_picture(DXF& dxf, const std::string& path, const PictureOptions& options) {
  const Progress progress("drawing " + path);
  PictureOptions sized = options;
  sized.size = qvapps::drawn_size(qvapps::picture_kind(path), options.size);
  Fit fit(shown_rect(dxf, sized), sized);
  save_drawn(path, fit.size, options.white ? 0xFFFFFF : 0x000000, [&](CDC& dc) {
    if (options.projected)
      dxf.Draw3D(&dc, &fit.coor, options.viewA, options.viewB);
    else
      dxf.Draw(&dc, &fit.coor);
  });
}

}  // namespace qvdraw
