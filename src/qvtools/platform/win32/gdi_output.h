#pragma once

/// Pictures through GDI: a bitmap that GDI draws on, a bitmap shown on a device, PNG and enhanced metafiles as files,
/// and printed pages. Paths are in the system's code page. What writes returns false when it could not; an existing
/// file is replaced only by a complete one.

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>

#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/platform/win32/gdi_context.h"

namespace qv {

/// A 32-bit bitmap in memory that GDI draws on.
class GdiBitmap {
 public:
  /// Filled with the background colour. Sizes are at least 1; `Handle` is null when memory runs out.
  GdiBitmap(int width, int height, COLORREF background);
  ~GdiBitmap();
  GdiBitmap(const GdiBitmap&) = delete;
  GdiBitmap& operator=(const GdiBitmap&) = delete;

  /// Its context, and its size in pixels.
  HDC Handle() const { return dc_; }
  int Width() const { return width_; }
  int Height() const { return height_; }
  /// The pixels row by row from the top, 0x00RRGGBB, with everything drawn that was handed to GDI.
  const std::uint32_t* Pixels() const;
  /// The colour of a pixel, which must be within the bitmap.
  COLORREF GetPixel(int x, int y) const;

 private:
  int width_;
  int height_;
  HDC dc_ = nullptr;
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ before_ = nullptr;
  void* bits_ = nullptr;
};

/// Shows the bitmap on a device, its upper left corner at (x, y).
bool show_bitmap(HDC dc, int x, int y, const BitmapContext& bitmap);

/// A PNG of the bitmap. False when it cannot be written.
bool save_png_with_gdi(const BitmapContext& bitmap, const std::string& path);
/// `draw` draws on a picture of the given size in pixels of the screen; it is a metafile context.
bool save_emf(const std::string& path, CSize size, const std::function<void(CDC&)>& draw);

/// Prints pages, 0 to `pages` - 1. `draw` gets a printing context, whose resolution is the page's printable part;
/// `before`, where there is one, may reset the printer before each page. The title is GBK.
bool print_pages(HDC printer, const char* title, int pages, const std::function<void(int page, CDC&)>& draw,
                 const std::function<void(int page)>& before = nullptr);

}  // namespace qv
