#include "platform/bitmap/bitmap_dc.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace qv {

namespace {

constexpr std::uint32_t kOpaque = 0xFF000000;
constexpr std::uint32_t kColorBits = 0x00FFFFFF;

/// 0x00BBGGRR as 0xFFRRGGBB.
constexpr std::uint32_t pixel_of(COLORREF c) {
  return kOpaque | static_cast<std::uint32_t>((c & 0xFF) << 16 | (c & 0xFF00) | (c >> 16 & 0xFF));
}

/// Alternating runs of drawn and left-out pixels.
struct Pattern {
  unsigned runs[6];
  unsigned count;
  unsigned length;
};
constexpr Pattern kPatterns[] = {
    {{1}, 1, 1}, {{18, 6}, 2, 24}, {{3, 3}, 2, 6}, {{9, 6, 3, 6}, 4, 24}, {{9, 3, 3, 3, 3, 3}, 6, 24}};

bool is_on(const Pattern& pattern, unsigned phase) {
  unsigned at = phase % pattern.length;
  for (unsigned i = 0; i < pattern.count; ++i) {
    if (at < pattern.runs[i]) return i % 2 == 0;
    at -= pattern.runs[i];
  }
  return false;
}

/// The stepping of a line along its longer axis: step i (of `steps`, the last pixel not among them) stands i pixels
/// along the longer axis and, across it, `rise` times floor((2 i across + along - tie) / (2 along)).
struct Stepping {
  std::int64_t along;
  std::int64_t across;
  int rise;
  std::int64_t tie;

  std::int64_t offset(std::int64_t i) const { return rise * ((2 * i * across + along - tie) / (2 * along)); }
  /// The first step whose offset from `origin` is at least `bound` (rising) or at most `bound` (falling).
  std::int64_t first_reaching(std::int64_t origin, std::int64_t bound, std::int64_t steps) const {
    std::int64_t low = 0;
    std::int64_t high = steps;
    while (low < high) {
      const std::int64_t middle = (low + high) / 2;
      const std::int64_t at = origin + offset(middle);
      if (rise > 0 ? at >= bound : at <= bound)
        high = middle;
      else
        low = middle + 1;
    }
    return low;
  }
};

/// Steps from..to of a line are within the bitmap.
struct Visible {
  std::int64_t from;
  std::int64_t to;
};

/// The steps whose place u = origin + direction i lies in 0 to size - 1.
Visible clip_along(std::int64_t origin, int direction, std::int64_t steps, std::int64_t size) {
  if (direction > 0) return {std::max<std::int64_t>(0, -origin), std::min(steps, size - origin)};
  return {std::max<std::int64_t>(0, origin - (size - 1)), std::min(steps, origin + 1)};
}

Visible clip_across(const Stepping& line, std::int64_t origin, std::int64_t steps, std::int64_t size) {
  if (line.across == 0) return origin >= 0 && origin < size ? Visible{0, steps} : Visible{0, 0};
  if (line.rise > 0) return {line.first_reaching(origin, 0, steps), line.first_reaching(origin, size, steps)};
  return {line.first_reaching(origin, size - 1, steps), line.first_reaching(origin, -1, steps)};
}

/// Coordinates for which the stepping stays exact in 64 bits.
int tame(int v) {
  constexpr int kFar = 1 << 29;
  return std::clamp(v, -kFar, kFar);
}

}  // namespace

BitmapContext::BitmapContext(int width, int height, COLORREF background)
    : width_(std::clamp(width, 1, 32767)),
      height_(std::clamp(height, 1, 32767)),
      pixels_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), pixel_of(background)) {
  PenChanged();
}

BitmapContext::~BitmapContext() = default;

void BitmapContext::Clear(COLORREF color) {
  std::fill(pixels_.begin(), pixels_.end(), pixel_of(color));
}

COLORREF BitmapContext::GetPixel(int x, int y) const {
  const std::uint32_t p =
      pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
  return rgb(p >> 16 & 255, p >> 8 & 255, p & 255);
}

void BitmapContext::PenChanged() {
  const std::uint32_t pen = pixel_of(Pen().color);
  switch (Rop2()) {
    case RasterOp::CopyPen:
      and_ = 0, xor_ = pen;
      break;
    case RasterOp::Not:
      and_ = ~std::uint32_t{0}, xor_ = kColorBits;
      break;
    case RasterOp::XorPen:
      and_ = ~std::uint32_t{0}, xor_ = pen & kColorBits;
      break;
  }
}

void BitmapContext::MoveTo(int x, int y) {
  position_ = {x, y};
  phase_ = 0;
}

void BitmapContext::LineTo(int x2, int y2) {
  const int x1 = tame(position_.x);
  const int y1 = tame(position_.y);
  position_ = {x2, y2};
  if (Pen().style == PenStyle::Null) return;
  x2 = tame(x2);
  y2 = tame(y2);
  const std::int64_t dx = std::abs(x2 - x1);
  const std::int64_t dy = std::abs(y2 - y1);
  const std::int64_t steps = std::max(dx, dy);
  if (steps == 0) return;
  const int stepX = x2 < x1 ? -1 : 1;
  const int stepY = y2 < y1 ? -1 : 1;
  const bool flat = dx >= dy;
  const int rise = flat ? stepY : stepX;
  const Stepping line{steps, flat ? dy : dx, rise, rise > 0 ? 1 : 0};

  Visible visible{0, steps};
  const auto inside = [&](int x, int y) { return x >= 0 && x < width_ && y >= 0 && y < height_; };
  if (!inside(x1, y1) || !inside(x2, y2)) {
    const Visible along = flat ? clip_along(x1, stepX, steps, width_) : clip_along(y1, stepY, steps, height_);
    const Visible across = flat ? clip_across(line, y1, steps, height_) : clip_across(line, x1, steps, width_);
    visible = {std::max(along.from, across.from), std::min(along.to, across.to)};
  }
  const unsigned phase = phase_;
  phase_ += static_cast<unsigned>(steps);
  if (visible.from >= visible.to) return;

  const std::int64_t i = visible.from;
  const std::int64_t startX = flat ? x1 + stepX * i : x1 + line.offset(i);
  const std::int64_t startY = flat ? y1 + line.offset(i) : y1 + stepY * i;
  const std::ptrdiff_t alongStep = flat ? stepX : static_cast<std::ptrdiff_t>(stepY) * width_;
  const std::ptrdiff_t acrossStep = flat ? static_cast<std::ptrdiff_t>(stepY) * width_ : stepX;
  std::uint32_t* pixel = pixels_.data() + startY * width_ + startX;
  std::int64_t error = (2 * i * line.across + steps - line.tie) % (2 * steps) - 2 * steps;
  const auto each = [&](const auto& put) {
    for (std::int64_t n = visible.from; n < visible.to; ++n) {
      put(*pixel, n);
      error += 2 * line.across;
      // Without a branch, since the turn of a slanted line cannot be predicted.
      const std::int64_t carry = error >= 0 ? -1 : 0;
      pixel += alongStep + (acrossStep & carry);
      error -= (2 * steps) & carry;
    }
  };
  if (Pen().style == PenStyle::Solid) {
    if (and_ == 0) return each([color = xor_](std::uint32_t& p, std::int64_t) { p = color; });
    return each([this](std::uint32_t& p, std::int64_t) { p = (p & and_) ^ xor_; });
  }
  const Pattern& pattern = kPatterns[static_cast<std::size_t>(Pen().style)];
  const bool gaps = BkMode() == BackgroundMode::Opaque;
  each([&](std::uint32_t& p, std::int64_t n) {
    if (is_on(pattern, phase + static_cast<unsigned>(n)))
      p = (p & and_) ^ xor_;
    else if (gaps)
      p = ~std::uint32_t{0};
  });
}

void BitmapContext::SetPixel(int x, int y, COLORREF color) {
  if (static_cast<unsigned>(x) < static_cast<unsigned>(width_) &&
      static_cast<unsigned>(y) < static_cast<unsigned>(height_))
    pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)] =
        pixel_of(color);
}

void BitmapContext::FillRgn(const CRgn& region, const CBrush& brush) {
  edges_.clear();
  const CPoint* const p = region.Points();
  const int n = region.Count();
  for (int i = 0; i < n; ++i) {
    const CPoint& a = p[i];
    const CPoint& b = p[i + 1 < n ? i + 1 : 0];
    const CPoint& upper = a.y < b.y ? a : b;
    const CPoint& lower = a.y < b.y ? b : a;
    if (upper.y == lower.y || upper.y >= height_ || lower.y <= 0) continue;
    const double slope = (static_cast<double>(lower.x) - upper.x) / (static_cast<double>(lower.y) - upper.y);
    const int top = std::max(upper.y, 0);
    edges_.push_back({top, std::min(lower.y, height_), upper.x + slope * (static_cast<double>(top) - upper.y), slope,
                      a.y < b.y ? 1 : -1});
  }
  if (edges_.empty()) return;
  std::sort(edges_.begin(), edges_.end(), [](const Edge& a, const Edge& b) { return a.top < b.top; });
  active_.clear();
  std::size_t next = 0;
  const std::uint32_t color = pixel_of(brush.color);
  for (int y = edges_[0].top; next < edges_.size() || !active_.empty(); ++y) {
    std::erase_if(active_, [y](const Edge& e) { return e.bottom <= y; });
    while (next < edges_.size() && edges_[next].top == y) active_.push_back(edges_[next++]);
    fill_row(y, region.Rule(), color);
  }
}

void BitmapContext::fill_row(int y, FillRule rule, std::uint32_t color) {
  crossings_.clear();
  for (const Edge& e : active_) crossings_.push_back({e.x + e.slope * (y - e.top), e.winding});
  std::sort(crossings_.begin(), crossings_.end(), [](const Crossing& a, const Crossing& b) { return a.x < b.x; });
  std::uint32_t* const row = pixels_.data() + static_cast<std::ptrdiff_t>(y) * width_;
  int winding = 0;
  for (std::size_t i = 0; i + 1 < crossings_.size(); ++i) {
    winding += rule == FillRule::Winding ? crossings_[i].winding : 1;
    if (rule == FillRule::Winding ? winding == 0 : winding % 2 == 0) continue;
    const double from = std::clamp(std::ceil(crossings_[i].x), 0.0, static_cast<double>(width_));
    const double to = std::clamp(std::ceil(crossings_[i + 1].x), 0.0, static_cast<double>(width_));
    std::fill(row + static_cast<int>(from), row + static_cast<int>(to), color);
  }
}

}  // namespace qv
