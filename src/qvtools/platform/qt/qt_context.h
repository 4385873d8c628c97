#pragma once

/// A device context on a QPainter: images, SVG, PDF and other printers, recorded pictures.
///
/// Nothing is smoothed. On an image lines and fills set the pixels that `BitmapContext` sets, but for the border of a
/// wide pen and, on long lines, a pixel almost half way between two. On a vector device, which has no pixels, a line
/// runs to its end, and lines that join are handed on as one path, so that corners close and files stay small. A line
/// of no length draws nothing on either. Raster operations other than R2_COPYPEN need a device that has them (images
/// do); elsewhere they draw as R2_COPYPEN.

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include "qvtools/platform/device.h"

namespace qv {

/// A device context on a painter.
class QtContext : public CDC {
 public:
  /// What the painter draws on: pixels, or something that records lines; a page of a printer; a picture to be played
  /// again.
  enum class Target { Image, Vector, Printer, Metafile };

  /// The painter must be active and outlive the context; `resolution` is the width and height of its device.
  QtContext(QPainter& painter, Target target, CSize resolution);
  /// Hands on what is left.
  ~QtContext() override;

  void MoveTo(int x, int y) override;
  void LineTo(int x, int y) override;
  void SetPixel(int x, int y, COLORREF color) override;
  void FillRgn(const CRgn& region, const CBrush& brush) override;
  CSize GetResolution() const override { return resolution_; }
  bool IsPrinting() const override { return target_ == Target::Printer; }
  bool IsMetafile() const override { return target_ == Target::Metafile; }

 private:
  void PenChanged() override;
  void draw_on_pixels(CPoint from, CPoint to);
  /// Draws the lines that have been collected with the pen that they were drawn with.
  void flush();

  QPainter& painter_;
  Target target_;
  CSize resolution_;
  CPoint position_;
  QPen pen_;
  double phase_ = 0;  // how far the lines on an image have come in the pen's pattern
  CPoint pathEnd_;
  QPainterPath path_;
  bool hasRasterOps_;
};

}  // namespace qv
