#pragma once

/// A device context on a 32-bit bitmap in memory, with GDI's pixel rules: the same picture on every system.

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
  void PenChanged() override;
  int width_;
  int height_;
  std::vector<std::uint32_t> pixels_;
  CPoint position_;
};

}  // namespace qv
