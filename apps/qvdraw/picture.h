#pragma once

#include <functional>
#include <optional>
#include <string>

#include "qvtools.h"

namespace qvdraw {

/// How a drawing is shown.
struct PictureOptions {
  CSize size{1600, 1000};        ///< pixels; a PDF page keeps its proportions
  bool fixedSize = false;        ///< take the size as it is, else its width with the drawing's proportions
  std::optional<CFRect> window;  ///< what to show; everything when absent
  bool projected = false;        ///< show projected, for two view angles in radians
  float viewA = 0;
  float viewB = 0;
  bool white = true;                        ///< white background, else black
  const qv::DrawingNotes* notes = nullptr;  ///< what the drawing's import noted
};

/// Writes a picture of the drawing, which is changed into what is shown for some formats; the ending of the path (.png,
/// .svg, .pdf) says of what kind. Throws `std::runtime_error` when it cannot be written, `UsageError` for another
/// ending.
void save_picture(DXF& dxf, const std::string& path, const PictureOptions& options);

/// Writes what `draw` draws on a picture of a size and background, a PDF page being a printer's; the ending of the path
/// says of what kind. Throws as `save_picture` does.
void save_drawn(const std::string& path, CSize size, COLORREF background, const std::function<void(CDC&)>& draw);

/// Writes a picture of the value that the field shows, of the given size, with its legend.
void save_contour(CChang& field, const std::string& path, CSize size);

}  // namespace qvdraw
