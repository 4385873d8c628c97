#include "qvtools/plot/picture.h"

#include <algorithm>
#include <cmath>

#include "qvtools/plot/internal/device_canvas.h"
#include "qvtools/plot/internal/fit.h"
#include "qvtools/plot/internal/marks.h"
#include "qvtools/plot/internal/png_file.h"

namespace qv {

namespace {

using namespace detail;

constexpr int kLargest = 32767;

DrawingRect with_margin(const DrawingRect& r, double share) {
  const double margin = share * std::max(r.width(), r.height());
  return {r.left - margin, r.bottom - margin, r.right + margin, r.top + margin};
}

DrawingRect rect_of(const CFRect& r) {
  return {r.x1, r.y1, r.x2, r.y2};
}

/// Wide and high enough to be fitted.
DrawingRect never_empty(DrawingRect r) {
  if (!(std::fabs(r.left) < 1e30 && std::fabs(r.bottom) < 1e30 && r.width() < 1e30 && r.height() < 1e30)) r = {};
  const double least = std::max(1e-3, 1e-6 * std::max(std::fabs(r.right), std::fabs(r.top)));
  if (!(r.width() >= least)) r = {r.left - least / 2, r.bottom, r.right + least / 2, r.top};
  if (!(r.height() >= least)) r = {r.left, r.bottom - least / 2, r.right, r.top + least / 2};
  return r;
}

/// What is shown of a drawing.
DrawingRect shown_rect(DXF& document, const PictureOptions& options) {
  constexpr double kMargin = 0.02;
  if (options.window) return never_empty(*options.window);
  if (options.view)
    return with_margin(never_empty(rect_of(document.GetFRect3D(static_cast<float>(options.view->a),
                                                               static_cast<float>(options.view->b)))),
                       kMargin);
  Looks looks(document, options.notes, {});
  return with_margin(never_empty(drawn_extent(document, looks).rect), kMargin);
}

bool is_size(CSize size) {
  return size.cx >= 1 && size.cy >= 1 && size.cx <= kLargest && size.cy <= kLargest;
}

bool is_dark(COLORREF c) {
  return (c & 255) + (c >> 8 & 255) + (c >> 16 & 255) < 3 * 128;
}

/// Draws a rectangle of the drawing in the middle of a device.
bool draw_rect(DXF& document, CDC& dc, const DrawingRect& rect, CSize size, const PictureOptions& options) {
  Placement placement;
  placement.scale = std::min(size.cx / rect.width(), size.cy / rect.height());
  placement.x = rect.left;
  placement.y = rect.bottom;
  placement.at = {(size.cx - rect.width() * placement.scale) / 2, (size.cy - rect.height() * placement.scale) / 2};
  placement.window = {0, 0, static_cast<double>(size.cx), static_cast<double>(size.cy)};
  std::optional<Projection> view;
  if (options.view) placement.view = &view.emplace(options.view->a, options.view->b);
  LookOptions looks;
  looks.colors = PlotColors::Color;
  looks.scale = placement.scale;
  looks.width = std::max(options.lineWidth, 1.0);
  looks.appearance = options.appearance;
  looks.dark = is_dark(options.background);
  DeviceCanvas canvas(dc, size, size.cy, 1);  // its millimetre is a pixel
  canvas.begin_page({static_cast<double>(size.cx), static_cast<double>(size.cy), "", ""});
  Marks(document, options.notes, looks, canvas).draw(placement);
  return canvas.finish();
}

}  // namespace

std::unique_ptr<BitmapContext> MakePicture(DXF& document, const PictureOptions& options) {
  std::unique_ptr<BitmapContext> bitmap;
  CSize size = options.size;
  if (!is_size(size)) return nullptr;
  const bool drawn = unless_out_of_memory(
      [&] {
        const DrawingRect rect = shown_rect(document, options);
        if (options.fitHeight) {
          const double height = std::ceil(size.cx * rect.height() / rect.width());
          size.cy = std::clamp(static_cast<int>(std::min<double>(height, kLargest)), std::max(size.cx / 8, 1),
                               std::min(size.cx * 4, kLargest));
        }
        bitmap = std::make_unique<BitmapContext>(size.cx, size.cy, options.background);
        return bitmap->Width() > 0 && draw_rect(document, *bitmap, rect, size, options);
      },
      false);
  if (!drawn) bitmap.reset();
  return bitmap;
}

bool DrawPicture(DXF& document, CDC& dc, const PictureOptions& options) {
  if (!is_size(options.size)) return false;
  return unless_out_of_memory(
      [&] { return draw_rect(document, dc, shown_rect(document, options), options.size, options); }, false);
}

bool SavePng(const BitmapContext& bitmap, const std::string& path, double dpi) {
  return unless_out_of_memory(
      [&] {
        PngFile file(path);
        if (!file.is_open() || bitmap.Width() == 0) return false;
        file.begin(bitmap.Width(), bitmap.Height(), dpi, PngFile::Pixels::Color, {});
        std::vector<std::uint32_t> row(static_cast<std::size_t>(bitmap.Width()));
        for (int y = 0; y < bitmap.Height(); ++y) {
          const std::uint32_t* const from = bitmap.Pixels() + static_cast<std::ptrdiff_t>(y) * bitmap.Width();
          std::transform(from, from + bitmap.Width(), row.begin(), [](std::uint32_t p) { return p & 0xFFFFFF; });
          file.row(row.data());
        }
        return file.finish();
      },
      false);
}

}  // namespace qv
