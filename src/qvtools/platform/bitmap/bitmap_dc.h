#pragma once

/// A device context on a 32-bit bitmap in memory, with GDI's pixel rules: the same picture on every system.
///
/// Lines: one pixel wide, stepped along the longer difference; where the line passes half way between two pixels, the
/// one with the smaller coordinate (upper, left) is set, so that both directions of a line set the same pixels. The
/// last pixel is left out. Pens wider than a pixel are solid strokes with round ends. Any coordinates are safe: a line
/// that leaves the bitmap sets the pixels that the whole line sets there, at a cost bounded by the bitmap.
///
/// Styles, in pixels drawn and left out: dash 18 6; dot 3 3; dash-dot 9 6 3 6; dash-dot-dot 9 3 3 3 3 3. The pattern
/// begins anew with a pen and at a move to another place, and goes on along joined lines. An opaque background draws
/// the gaps white.
///
/// Fills: a pixel belongs to a polygon when the point at its coordinates does: left and top edges in, right and bottom
/// edges out. The raster operation applies to lines and fills, not to SetPixel.

#include <cstdint>
#include <vector>

#include "qvtools/platform/device.h"

namespace qv {

/// A picture in memory that is drawn on.
class QV_API BitmapContext : public CDC {
 public:
  /// A bitmap of the given size (at least 1 by 1, at most 32767 each way), filled with the background colour. When
  /// memory runs out it is 0 by 0, and nothing is drawn.
  BitmapContext(int width, int height, COLORREF background);
  ~BitmapContext() override;

  void MoveTo(int x, int y) override;
  void LineTo(int x, int y) override;
  void SetPixel(int x, int y, COLORREF color) override;
  void FillRgn(const CRgn& region, const CBrush& brush) override;
  CSize GetResolution() const override { return {width_, height_}; }

  /// Fills the bitmap with one colour.
  void Clear(COLORREF color);
  /// Copies another bitmap onto this one, `scale` times as large (above 0), its upper left pixel to (left, top): each
  /// pixel that it covers takes the nearest of its pixels, the others stay.
  void CopyScaled(const BitmapContext& from, double left, double top, double scale);
  int Width() const { return width_; }
  int Height() const { return height_; }
  /// The pixels row by row from the top: 0xFFRRGGBB.
  const std::uint32_t* Pixels() const { return pixels_.data(); }
  /// The colour of a pixel inside the bitmap.
  COLORREF GetPixel(int x, int y) const;

 private:
  void PenChanged() override;
  void draw_line(CPoint from, CPoint to);
  void draw_wide(CPoint from, CPoint to);
  /// A pixel v becomes (v & keep) ^ change, in the pen's colour and in the background's.
  struct Ink {
    std::uint32_t keep = 0;
    std::uint32_t change = 0;
  };
  Ink ink(COLORREF color) const;
  void fill_span(int y, std::int64_t left, std::int64_t right, Ink ink);

  int width_;
  int height_;
  std::vector<std::uint32_t> pixels_;
  int x_ = 0;  // the current position
  int y_ = 0;
  Ink pen_ink_;
  Ink gap_ink_;
  bool plain_ = true;  // the pen is solid, one pixel wide and covers
  std::uint32_t phase_ = 0;
};

}  // namespace qv
