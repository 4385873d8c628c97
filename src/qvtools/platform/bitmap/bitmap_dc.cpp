#include "qvtools/platform/bitmap/bitmap_dc.h"

#include <algorithm>
#include <cmath>

#include "qvtools/platform/bitmap/internal/polygon_scan.h"
#include "qvtools/platform/internal/pen_pattern.h"
#include "qvtools/system/internal/pages.h"

namespace qv {
namespace {

constexpr COLORREF kGapColor = 0xFFFFFF;

constexpr std::uint32_t pixel_of(COLORREF color) {
  const auto c = static_cast<std::uint32_t>(color);
  return 0xFF000000u | (c & 0xFF) << 16 | (c & 0xFF00) | (c >> 16 & 0xFF);
}

// A line as steps along its longer (major) and shorter (minor) difference. Pixel k lies k steps along the major and
// (k * minor + half) / major steps along the minor: nearest, ties to the smaller coordinate. With differences of 32
// bits, these products fit 64 bits unsigned.
struct Steps {
  std::uint64_t major;
  std::uint64_t minor;
  std::uint64_t half;
  std::uint64_t from = 0;  // the pixels that lie in the bitmap
  std::uint64_t to;
  bool x_major;
  bool x_back;
  bool y_back;

  Steps(CPoint a, CPoint b) {
    const std::int64_t dx = std::int64_t{b.x} - a.x, dy = std::int64_t{b.y} - a.y;
    x_back = dx < 0;
    y_back = dy < 0;
    const auto ax = static_cast<std::uint64_t>(x_back ? -dx : dx), ay = static_cast<std::uint64_t>(y_back ? -dy : dy);
    x_major = ax >= ay;
    major = x_major ? ax : ay;
    minor = x_major ? ay : ax;
    const bool back = x_major ? y_back : x_back;
    half = (major - (back || major == 0 ? 0 : 1)) / 2;
    to = major;
  }

  // Where pixel `from` lies in the rows of a bitmap.
  std::ptrdiff_t first_pixel(CPoint start, int stride) const {
    if (from == 0) return static_cast<std::ptrdiff_t>(start.y) * stride + start.x;
    const auto k = static_cast<std::int64_t>(from), q = static_cast<std::int64_t>((from * minor + half) / major);
    const std::int64_t x = x_major ? k : q, y = x_major ? q : k;
    return static_cast<std::ptrdiff_t>((start.y + (y_back ? -y : y)) * stride + start.x + (x_back ? -x : x));
  }

  // Cuts to the pixels that lie in the bitmap; false when none is left.
  bool cut(CPoint start, int width, int height) {
    return cut_major(x_major ? start.x : start.y, x_major ? x_back : y_back, x_major ? width : height) &&
           cut_minor(x_major ? start.y : start.x, x_major ? y_back : x_back, x_major ? height : width) && from < to;
  }

 private:
  // The least and the greatest number of steps that lie inside; false when none does.
  static bool reach(std::int64_t start, bool back, int size, std::uint64_t& low, std::uint64_t& high) {
    const std::int64_t first = back ? start - (size - 1) : -start;
    const std::int64_t last = back ? start : size - 1 - start;
    if (last < 0) return false;
    low = static_cast<std::uint64_t>(std::max<std::int64_t>(first, 0));
    high = static_cast<std::uint64_t>(last);
    return true;
  }
  bool cut_major(std::int64_t start, bool back, int size) {
    std::uint64_t low, high;
    if (!reach(start, back, size, low, high)) return false;
    from = std::max(from, low);
    to = std::min(to, high + 1);
    return from < to;
  }
  bool cut_minor(std::int64_t start, bool back, int size) {
    std::uint64_t low, high;
    if (!reach(start, back, size, low, high) || low > minor) return false;
    if (low > 0) from = std::max(from, (low * major - half + minor - 1) / minor);
    if (high < minor) to = std::min(to, ((high + 1) * major - half - 1) / minor + 1);
    return true;
  }
};

// Steps through n pixels from `at`. Paint is called with each pixel and its number.
inline void step_line(std::uint32_t* at, const Steps& steps, int stride, auto paint) {
  const std::ptrdiff_t dx = steps.x_back ? -1 : 1, dy = steps.y_back ? -stride : stride;
  const std::ptrdiff_t along = steps.x_major ? dx : dy, across = steps.x_major ? dy : dx;
  const auto major = static_cast<std::int64_t>(steps.major), minor = static_cast<std::int64_t>(steps.minor);
  const std::uint64_t rest = steps.from == 0 ? steps.half : (steps.from * steps.minor + steps.half) % steps.major;
  std::int64_t error = static_cast<std::int64_t>(rest) - major;
  for (std::uint64_t n = steps.to - steps.from; n > 0; --n) {
    paint(*at);
    error += minor;
    const std::int64_t stay = error >> 63;
    at += along + (across & ~stay);
    error -= major & ~stay;
  }
}

// A line from `at` that lies wholly in the bitmap: the same steps in 32 bits. Which way it runs is as good as random,
// so everything but the loop is free of branches.
inline void step_inside(std::uint32_t* at, int stride, int dx, int dy, auto paint) {
  const int x_back = dx >> 31, y_back = dy >> 31;
  const int ax = (dx ^ x_back) - x_back, ay = (dy ^ y_back) - y_back;
  const int step_x = x_back | 1, step_y = (stride ^ y_back) - y_back;
  const int steep = (ax - ay) >> 31;
  const int turned = (step_x ^ step_y) & steep;
  const std::ptrdiff_t along = step_x ^ turned, across = step_y ^ turned;
  const int swapped = (ax ^ ay) & steep;
  const int major = ax ^ swapped, up = 2 * (ay ^ swapped), down = 2 * major;
  // Half way, a step that would leave the smaller coordinate is not taken.
  int error = up - major - 1 - (y_back ^ ((x_back ^ y_back) & steep));
  for (int n = major; n > 0; --n) {
    paint(*at);
    const int stay = error >> 31;
    at += along + (across & ~static_cast<std::ptrdiff_t>(stay));
    error += up - (down & ~stay);
  }
}

}  // namespace

BitmapContext::BitmapContext(int width, int height, COLORREF background)
    : width_(std::clamp(width, 1, 32767)), height_(std::clamp(height, 1, 32767)) {
  try {
    const std::size_t count = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    pixels_.reserve(count);
    // A steep line's pixels lie in a page each, were they small.
    detail::wish_large_pages(pixels_.data(), count * sizeof(std::uint32_t));
    pixels_.assign(count, pixel_of(background));
  } catch (const std::bad_alloc&) {
    width_ = height_ = 0;
  }
  BitmapContext::PenChanged();
}

BitmapContext::~BitmapContext() = default;

void BitmapContext::Clear(COLORREF color) {
  std::fill(pixels_.begin(), pixels_.end(), pixel_of(color));
}

namespace {

/// For the pixels from `first` on, which of another's `count` pixels each takes.
struct TakenPixels {
  int first = 0;
  std::vector<int> taken;

  TakenPixels(int size, int count, double start, double scale) {
    const auto of = [&](int i) { return std::floor((i - start) / scale + 0.5); };
    const auto covered = [&](int i) { return of(i) >= 0 && of(i) < count; };
    while (first < size && !covered(first)) ++first;
    for (int i = first; i < size && covered(i); ++i) taken.push_back(static_cast<int>(of(i)));
  }
};

}  // namespace

void BitmapContext::CopyScaled(const BitmapContext& from, double left, double top, double scale) {
  const TakenPixels columns(width_, from.width_, left, scale), rows(height_, from.height_, top, scale);
  const std::size_t n = columns.taken.size();
  if (n == 0) return;
  const bool whole = columns.taken.back() - columns.taken.front() == static_cast<int>(n) - 1;  // pixel by pixel
  std::uint32_t* to = pixels_.data() + static_cast<std::ptrdiff_t>(rows.first) * width_ + columns.first;
  for (std::size_t y = 0; y < rows.taken.size(); ++y, to += width_) {
    const std::uint32_t* const row = from.pixels_.data() + static_cast<std::ptrdiff_t>(rows.taken[y]) * from.width_;
    if (y > 0 && rows.taken[y] == rows.taken[y - 1])
      std::copy_n(to - width_, n, to);
    else if (whole)
      std::copy_n(row + columns.taken.front(), n, to);
    else
      for (std::size_t x = 0; x < n; ++x) to[x] = row[columns.taken[x]];
  }
}

COLORREF BitmapContext::GetPixel(int x, int y) const {
  const std::uint32_t v =
      pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
  return rgb(v >> 16 & 255, v >> 8 & 255, v & 255);
}

BitmapContext::Ink BitmapContext::ink(COLORREF color) const {
  switch (Rop2()) {
    case RasterOp::Not:
      return {~0u, 0x00FFFFFFu};
    case RasterOp::XorPen:
      return {~0u, pixel_of(color) & 0x00FFFFFFu};
    case RasterOp::CopyPen:
      break;
  }
  return {0, pixel_of(color)};
}

void BitmapContext::PenChanged() {
  pen_ink_ = ink(Pen().color);
  gap_ink_ = ink(kGapColor);
  plain_ = Pen().style == PenStyle::Solid && Pen().width <= 1 && pen_ink_.keep == 0;
  phase_ = 0;
}

void BitmapContext::MoveTo(int x, int y) {
  if (x == x_ && y == y_) return;
  x_ = x;
  y_ = y;
  phase_ = 0;
}

void BitmapContext::LineTo(int x, int y) {
  const int from_x = std::exchange(x_, x), from_y = std::exchange(y_, y);
  const auto w = static_cast<unsigned>(width_), h = static_cast<unsigned>(height_);
  const bool whole = (static_cast<unsigned>(from_x) < w) & (static_cast<unsigned>(from_y) < h) &
                     (static_cast<unsigned>(x) < w) & (static_cast<unsigned>(y) < h);
  if (whole & plain_) {
    std::uint32_t* const at = pixels_.data() + static_cast<std::ptrdiff_t>(from_y) * width_ + from_x;
    step_inside(at, width_, x - from_x, y - from_y, [c = pen_ink_.change](std::uint32_t& v) { v = c; });
  } else {
    draw_line({from_x, from_y}, {x, y});
  }
}

void BitmapContext::draw_line(CPoint start, CPoint end) {
  const CPen& pen = Pen();
  if (pen.style == PenStyle::Null) return;
  if (pen.width > 1) return draw_wide(start, end);
  Steps steps(start, end);
  const detail::PenPattern& pattern = detail::kPenPatterns[static_cast<int>(pen.style)];
  const std::uint32_t phase = phase_;
  if (pattern.count) phase_ = static_cast<std::uint32_t>((phase + steps.major) % pattern.period);
  if (!steps.cut(start, width_, height_)) return;
  std::uint32_t* at = pixels_.data() + steps.first_pixel(start, width_);
  const Ink ink = pen_ink_;
  if (pattern.count == 0) {
    step_line(at, steps, width_, [ink](std::uint32_t& v) { v = (v & ink.keep) ^ ink.change; });
    return;
  }
  // Where in the pattern the first visible pixel lies: its run, and how many pixels of it are left.
  auto left = static_cast<std::uint32_t>((phase + steps.from) % pattern.period);
  int run = 0;
  while (left >= pattern.runs[run]) left -= pattern.runs[run++];
  left = pattern.runs[run] - left;
  const Ink gap = BkMode() == BackgroundMode::Opaque ? gap_ink_ : Ink{~0u, 0};
  step_line(at, steps, width_, [&](std::uint32_t& v) {
    const Ink& now = run & 1 ? gap : ink;
    v = (v & now.keep) ^ now.change;
    if (--left == 0) {
      run = run + 1 < pattern.count ? run + 1 : 0;
      left = pattern.runs[run];
    }
  });
}

// A stroke is the points within half its width of the segment: convex, so each row is one span.
void BitmapContext::draw_wide(CPoint from, CPoint to) {
  if (from == to) return;
  const double r = Pen().width / 2.0;
  const double dx = double(to.x) - from.x, dy = double(to.y) - from.y, length = std::hypot(dx, dy);
  const double nx = -dy / length * r, ny = dx / length * r;
  const CPoint ends[2] = {from, to};
  const double corner_x[4] = {from.x + nx, to.x + nx, to.x - nx, from.x - nx};
  const double corner_y[4] = {from.y + ny, to.y + ny, to.y - ny, from.y - ny};
  const double top = std::max(0.0, std::ceil(std::min(from.y, to.y) - r));
  const double bottom = std::min(height_ - 1.0, std::floor(std::max(from.y, to.y) + r));
  for (double y = top; y <= bottom; ++y) {
    double left = width_, right = -1;
    const auto cover = [&](double a, double b) {
      left = std::min(left, a);
      right = std::max(right, b);
    };
    for (const CPoint& end : ends) {
      const double rise = y - end.y, reach = r * r - rise * rise;
      if (reach >= 0) cover(end.x - std::sqrt(reach), end.x + std::sqrt(reach));
    }
    for (int i = 0, j = 3; i < 4; j = i++) {
      if ((corner_y[i] <= y) == (corner_y[j] <= y)) continue;
      const double x = corner_x[j] + (y - corner_y[j]) * (corner_x[i] - corner_x[j]) / (corner_y[i] - corner_y[j]);
      cover(x, x);
    }
    const double first = std::max(0.0, std::ceil(left)), last = std::min(width_ - 1.0, std::floor(right));
    if (first <= last) {
      fill_span(static_cast<int>(y), static_cast<std::int64_t>(first), static_cast<std::int64_t>(last) + 1, pen_ink_);
    }
  }
}

void BitmapContext::SetPixel(int x, int y, COLORREF color) {
  if (static_cast<unsigned>(x) >= static_cast<unsigned>(width_)) return;
  if (static_cast<unsigned>(y) >= static_cast<unsigned>(height_)) return;
  pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)] =
      pixel_of(color);
}

void BitmapContext::fill_span(int y, std::int64_t left, std::int64_t right, Ink ink) {
  std::uint32_t* const row = pixels_.data() + static_cast<std::ptrdiff_t>(y) * width_;
  std::uint32_t* const from = row + std::max<std::int64_t>(left, 0);
  std::uint32_t* const to = row + std::min<std::int64_t>(right, width_);
  if (ink.keep == 0) {
    for (std::uint32_t* at = from; at < to; ++at) *at = ink.change;  // does not wait for what is there
  } else {
    for (std::uint32_t* at = from; at < to; ++at) *at ^= ink.change;
  }
}

void BitmapContext::FillRgn(const CRgn& region, const CBrush& brush) {
  const Ink fill = ink(brush.color);
  detail::scan_polygon(region, height_, [&](int y, std::int64_t left, std::int64_t right) {
    if (left < width_ && right > 0) fill_span(y, left, right, fill);
  });
}

}  // namespace qv
