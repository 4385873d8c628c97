#pragma once

/// Pictures as files: PNG from a bitmap, SVG and PDF drawn through a context. Paths are in the system's encoding. Each
/// returns false when the file could not be written; an existing file is replaced only by a complete one.

#include <functional>
#include <string>

#include "qvtools/platform/bitmap/bitmap_dc.h"

namespace qv {

/// A PNG of the bitmap.
bool save_png_with_qt(const BitmapContext& bitmap, const std::string& path);
/// `draw` draws on a picture of the given size in pixels.
bool save_svg(const std::string& path, CSize size, const std::function<void(CDC&)>& draw);
/// `draw` draws on a page of the given size in dots, `dotsPerInch` of them an inch; it is a printing context.
bool save_pdf(const std::string& path, CSize size, int dotsPerInch, const std::function<void(CDC&)>& draw);

}  // namespace qv
