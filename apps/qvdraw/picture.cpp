#include "picture.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "commands.h"
#include "common/display_form.h"
#include "common/picture_file.h"
#include "progress.h"
#include "qvtools/plot/picture.h"

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

namespace {

void save_png(DXF& dxf, const std::string& path, const PictureOptions& options) {
  qv::PictureOptions picture;
  picture.size = options.size;
  picture.fitHeight = !options.fixedSize;
  if (options.window) {
    const CFRect& r = *options.window;
    picture.window = qv::DrawingRect{r.x1, r.y1, r.x2, r.y2};
  }
  if (options.projected) picture.view = {options.viewA, options.viewB};
  picture.background = options.white ? 0xFFFFFF : 0x000000;
  picture.notes = options.notes;
  const std::unique_ptr<qv::BitmapContext> bitmap = qv::MakePicture(dxf, picture);
  if (!bitmap) throw std::runtime_error("not enough memory");
  if (!qv::SavePng(*bitmap, path)) throw std::runtime_error(path + ": cannot be written");
}

}  // namespace

void save_picture(DXF& dxf, const std::string& path, const PictureOptions& options) {
  const Progress progress("drawing " + path);
  if (qvapps::picture_kind(path) == qvapps::PictureKind::Png) return save_png(dxf, path, options);
  qvapps::place_blocks(dxf);
  qvapps::drop_hidden(dxf);
  qvapps::resolve_for_display(dxf, options.white);
  PictureOptions sized = options;
  sized.size = qvapps::drawn_size(qvapps::picture_kind(path), options.size);
  Fit fit(shown_rect(dxf, sized), sized);
  save_drawn(path, fit.size, options.white ? 0xFFFFFF : 0x000000, [&](CDC& dc) {
    const qv::LinePatterns patterns = qv::PatternsOf(dxf);
    if (options.projected)
      dxf.Draw3D(&dc, &fit.coor, options.viewA, options.viewB, qvapps::appearance(patterns));
    else
      dxf.Draw(&dc, &fit.coor, qvapps::appearance(patterns));
  });
}

void save_contour(CChang& field, const std::string& path, CSize size) {
  constexpr int kMargin = 24;
  constexpr int kLegend = 130;  // the bar and the numbers beside it
  constexpr double kMillimetres = 1000;
  double left = 0, right = 1, bottom = 0, top = 1;
  bool first = true;
  for (const CChangNode& node : field.m_Nodes) {
    if (!std::isfinite(node.x) || !std::isfinite(node.y)) continue;
    left = first ? node.x : std::min<double>(left, node.x);
    right = first ? node.x : std::max<double>(right, node.x);
    bottom = first ? node.y : std::min<double>(bottom, node.y);
    top = first ? node.y : std::max<double>(top, node.y);
    first = false;
  }
  const double width = std::max(size.cx - kLegend - kMargin, 1), height = std::max(size.cy - 2 * kMargin, 1);
  const double scale =
      std::min(width / std::max(right - left, 1e-3), height / std::max(top - bottom, 1e-3)) / kMillimetres;
  const double x = (left + right) / 2 * kMillimetres - (kLegend + width / 2) / scale;
  const double y = (top + bottom) / 2 * kMillimetres + size.cy / 2.0 / scale;
  CFCoor coor(CFPoint(static_cast<float>(x), static_cast<float>(y)), static_cast<float>(scale), 1);
  CRect window(0, 0, size.cx, size.cy);
  save_drawn(path, size, 0x000000, [&](CDC& dc) { field.Draw_CaiSeTu(&dc, &window, &coor); });
}

}  // namespace qvdraw
