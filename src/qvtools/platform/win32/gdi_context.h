#pragma once

/// A device context on a GDI one: a window, a bitmap in memory, a printer, an enhanced metafile.
///
/// GDI draws as `BitmapContext` does, but for the pixel that it sets where a line passes half way between two, and the
/// border of a wide pen. Styled lines that join are handed on together, when the pen, the place or the kind of drawing
/// changes: `Flush` hands them on before anything else is done with the handle. Coordinates are GDI's, some 27 bits.

#include <windows.h>

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "qvtools/platform/device.h"

namespace qv {

/// A device context on a GDI handle.
class GdiContext : public CDC {
 public:
  /// The handle stays the caller's, must outlive the context, and gets back its state at its end.
  explicit GdiContext(HDC dc);
  ~GdiContext() override;

  void MoveTo(int x, int y) override { position_ = {x, y}; }
  void LineTo(int x, int y) override;
  void SetPixel(int x, int y, COLORREF color) override;
  void FillRgn(const CRgn& region, const CBrush& brush) override;
  /// The bitmap's size in memory, else the size of the screen, the page or the metafile's screen.
  CSize GetResolution() const override;
  bool IsPrinting() const override;
  bool IsMetafile() const override;

  /// Hands on what has been collected.
  void Flush();
  /// The handle; flush before drawing on it.
  HDC Handle() const { return dc_; }

 private:
  void PenChanged() override;
  HGDIOBJ pen_object();
  HGDIOBJ brush_object(COLORREF color);

  HDC dc_;
  int saved_;
  CPoint position_;
  CPoint drawn_to_;  // GDI's own position
  std::vector<POINT> joined_;
  std::vector<POINT> corners_;
  /// Pens and brushes, made once: by style, width and colour, and by colour.
  std::unordered_map<std::uint64_t, HGDIOBJ> pens_;
  std::unordered_map<std::uint64_t, HGDIOBJ> brushes_;
};

}  // namespace qv
