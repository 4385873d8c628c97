#pragma once

/// Pictures of drawings in one call (to be linked with the component `plot`): layer colours and line types resolved,
/// hidden layers left out, white shown as black on a light background, the palette of 256 colours, true dashes, letters
/// for what the fonts lack.

#include <memory>
#include <optional>
#include <string>

#include "qvtools/import/import.h"
#include "qvtools/platform/bitmap/bitmap_dc.h"
#include "qvtools/plot/sheets.h"

namespace qv {

/// What is asked of a picture.
struct PictureOptions {
  /// In pixels, 1 to 32767 each way.
  CSize size{1600, 1000};
  /// The height becomes what the drawing's proportions ask for, an eighth to four times the width.
  bool fitHeight = true;
  /// What is shown, in drawing units (of the plane of the view); everything, with a small margin, when absent.
  std::optional<DrawingRect> window = {};
  /// Projected for two view angles in radians; in plan when absent.
  struct View {
    double a = 0;
    double b = 0;
  };
  std::optional<View> view = {};  ///< from where it is seen
  /// The colour behind the drawing; white at first.
  COLORREF background = 0xFFFFFF;
  /// Colours, dashes, and from how many pixels on a pattern is drawn.
  Appearance appearance = {};
  /// The width of lines in pixels, at least 1; wide polylines keep their own.
  double lineWidth = 1;
  /// What the drawing's import noted; null for none.
  const DrawingNotes* notes = nullptr;
};

/// A picture of a document, in memory; the document is not changed. Null when memory runs out or the size is none.
std::unique_ptr<BitmapContext> MakePicture(DXF& document, const PictureOptions& options = {});

/// Draws the same on a device context, from its upper left pixel on, without the background. The size is that of the
/// options as it is. False when memory runs out or the size is none.
bool DrawPicture(DXF& document, CDC& dc, const PictureOptions& options = {});

/// Writes a bitmap as PNG, with its resolution. False when it cannot be written; an old file stays then.
bool SavePng(const BitmapContext& bitmap, const std::string& path, double dpi = 96);

}  // namespace qv
