#pragma once

/// A device context on a 32-bit bitmap in memory, with GDI's pixel rules: the same picture on every system.
///
/// Lines set the pixel nearest to the line in each column (or row, for steep lines), the one of the smaller coordinate
/// where two are equally near, and leave out the last pixel. Styles are dashes in pixels: Dash 18 on 6 off, Dot 3 3,
/// DashDot 9 6 3 6, DashDotDot 9 3 3 3 3 3; a pattern starts anew at every move and goes on through joined lines. Gaps
/// are white with an opaque background. Every pen is one pixel wide. Fills take the pixels whose upper left corner lies
/// in the region, its left and top borders included.

#include <cstdint>
#include <vector>

#include "platform/device.h"

namespace qv {

class QV_API BitmapContext : public CDC {
 public:
  /// A bitmap of the given size (at least 1 by 1, at most 32767 each way), filled with the background colour.
  BitmapContext(int width, int height, COLORREF background);
  ~BitmapContext() override;

  void MoveTo(int x, int y) override;
  void LineTo(int x, int y) override;
  void SetPixel(int x, int y, COLORREF color) override;
  void FillRgn(const CRgn& region, const CBrush& brush) override;
  CSize GetResolution() const override { return {width_, height_}; }

  /// Fills the bitmap with one colour.
  void Clear(COLORREF color);
  int Width() const { return width_; }
  int Height() const { return height_; }
  /// The pixels row by row from the top: 0xFFRRGGBB.
  const std::uint32_t* Pixels() const { return pixels_.data(); }
  /// The colour of a pixel inside the bitmap.
  COLORREF GetPixel(int x, int y) const;

 private:
  /// One side of a polygon between two rows, running down.
  struct Edge {
    int top;
    int bottom;
    double x;      // on the top row
    double slope;  // dx for each row
    int winding;
  };
  struct Crossing {
    double x;
    int winding;
  };

  void PenChanged() override;
  void fill_row(int y, FillRule rule, std::uint32_t color);

  int width_;
  int height_;
  std::vector<std::uint32_t> pixels_;
  CPoint position_;
  unsigned phase_ = 0;  // pixels drawn since the last move
  // What drawing with the present pen does to a pixel: keep its bits of `and_`, then flip those of `xor_`.
  std::uint32_t and_ = 0;
  std::uint32_t xor_ = 0;
  std::vector<Edge> edges_;  // scratch of fills
  std::vector<Edge> active_;
  std::vector<Crossing> crossings_;
};

}  // namespace qv
