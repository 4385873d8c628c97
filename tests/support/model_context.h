#pragma once

/// A slow and simple model of what a pixel device must draw, pixel by pixel from the definitions.

#include <algorithm>
#include <array>
#include <random>
#include <utility>
#include <vector>

#include "qvtools/platform/device.h"

namespace qvtest {

__extension__ typedef __int128 Wide;

class ModelContext : public CDC {
 public:
  ModelContext(int width, int height, COLORREF background)
      : size_(width, height), pixels_(static_cast<std::size_t>(width * height), background) {}

  void MoveTo(int x, int y) override {
    if (CPoint(x, y) == position_) return;
    position_ = {x, y};
    drawn_ = 0;
  }

  void LineTo(int x, int y) override {
    const CPoint a = std::exchange(position_, CPoint(x, y));
    const long long dx = static_cast<long long>(x) - a.x, dy = static_cast<long long>(y) - a.y;
    const long long ax = dx < 0 ? -dx : dx, ay = dy < 0 ? -dy : dy, n = std::max(ax, ay), minor = std::min(ax, ay);
    const long long start = ax >= ay ? a.x : a.y, sign = (ax >= ay ? dx : dy) < 0 ? -1 : 1;
    const bool back = (ax >= ay ? dy : dx) < 0;
    // Only the steps whose longer coordinate lies in the picture.
    const long long limit = std::max(size_.cx, size_.cy);
    const long long low = sign > 0 ? -start : start - limit, high = sign > 0 ? limit - start : start;
    for (long long k = std::max(0LL, low); k < n && k <= high; ++k) {
      const Wide product = static_cast<Wide>(k) * minor;
      const Wide rest = product % n;
      const auto whole = static_cast<long long>(product / n);
      // Half way, the smaller coordinate wins.
      const long long steps = 2 * rest > n || (2 * rest == n && back) ? whole + 1 : whole;
      const long long u = start + sign * k, v = (ax >= ay ? a.y : a.x) + (back ? -steps : steps);
      stroke(ax >= ay ? u : v, ax >= ay ? v : u, drawn_ + k);
    }
    drawn_ += n;
  }

  void SetPixel(int x, int y, COLORREF color) override {
    if (x >= 0 && x < size_.cx && y >= 0 && y < size_.cy) at(x, y) = color;
  }

  void FillRgn(const CRgn& region, const CBrush& brush) override {
    for (int y = 0; y < size_.cy; ++y)
      for (int x = 0; x < size_.cx; ++x)
        if (covers(region, x, y)) mix(x, y, brush.color);
  }

  CSize GetResolution() const override { return size_; }
  COLORREF GetPixel(int x, int y) const { return pixels_[static_cast<std::size_t>(y * size_.cx + x)]; }

 private:
  void PenChanged() override { drawn_ = 0; }
  COLORREF& at(long long x, long long y) { return pixels_[static_cast<std::size_t>(y * size_.cx + x)]; }

  void mix(long long x, long long y, COLORREF color) {
    if (x < 0 || x >= size_.cx || y < 0 || y >= size_.cy) return;
    COLORREF& p = at(x, y);
    p = Rop2() == qv::RasterOp::CopyPen ? color : p ^ (Rop2() == qv::RasterOp::Not ? 0xFFFFFF : color);
  }

  void stroke(long long x, long long y, long long place) {
    static const std::array<const char*, 5> kPatterns = {"#", "##################......", "###...",
                                                         "#########......###......", "#########...###...###..."};
    if (Pen().style == qv::PenStyle::Null) return;
    const std::string_view pattern = kPatterns[static_cast<std::size_t>(Pen().style)];
    if (pattern[static_cast<std::size_t>(place) % pattern.size()] == '#')
      mix(x, y, Pen().color);
    else if (BkMode() == qv::BackgroundMode::Opaque)
      mix(x, y, 0xFFFFFF);
  }

  static bool covers(const CRgn& region, int x, int y) {
    int winding = 0;
    for (int i = 0; i < region.Count(); ++i) {
      CPoint a = region.Points()[i], b = region.Points()[(i + 1) % region.Count()];
      if ((a.y <= y) == (b.y <= y)) continue;
      const int turn = a.y < b.y ? 1 : -1;
      if (turn < 0) std::swap(a, b);
      const Wide dx = static_cast<Wide>(b.x) - a.x, dy = static_cast<Wide>(b.y) - a.y;
      if ((static_cast<Wide>(x) - a.x) * dy >= (static_cast<Wide>(y) - a.y) * dx) winding += turn;
    }
    return region.Rule() == qv::FillRule::Winding ? winding != 0 : winding % 2 != 0;
  }

  CSize size_;
  std::vector<COLORREF> pixels_;
  CPoint position_;
  long long drawn_ = 0;
};

/// A coordinate: usually in or about the picture, sometimes anywhere.
inline int any_coordinate(std::mt19937& random, int size) {
  switch (random() % 8) {
    case 0:
      return static_cast<int>(random());
    case 1:
      return random() % 2 ? INT_MAX : INT_MIN;
    case 2:
    case 3:
      return static_cast<int>(random() % 20001) - 10000;
    default:
      return static_cast<int>(random() % static_cast<unsigned>(size + 40)) - 20;
  }
}

}  // namespace qvtest
