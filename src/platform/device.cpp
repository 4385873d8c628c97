#include "platform/device.h"

#include <algorithm>
#include <cstdint>

namespace {

constexpr CPen kBlackPen{qv::PenStyle::Solid, 1, 0x000000};
constexpr CPen kWhitePen{qv::PenStyle::Solid, 1, 0xFFFFFF};
constexpr CBrush kWhiteBrush{0xFFFFFF};

}  // namespace

CDC::CDC() : pen_(&kBlackPen), brush_(&kWhiteBrush) {}

CDC::~CDC() = default;

const CPen* CDC::StockWhitePen() {
  return &kWhitePen;
}
const CPen* CDC::StockBlackPen() {
  return &kBlackPen;
}

const CPen* CDC::SelectObject(const CPen* pen) {
  const CPen* before = std::exchange(pen_, pen);
  PenChanged();
  return before;
}

const CBrush* CDC::SelectObject(const CBrush* brush) {
  return std::exchange(brush_, brush);
}

qv::BackgroundMode CDC::SetBkMode(qv::BackgroundMode mode) {
  const qv::BackgroundMode before = std::exchange(mode_, mode);
  PenChanged();
  return before;
}

qv::RasterOp CDC::SetROP2(qv::RasterOp op) {
  const qv::RasterOp before = std::exchange(op_, op);
  PenChanged();
  return before;
}

int CRgn::CreatePolygonRgn(const CPoint* points, int n, qv::FillRule rule) {
  rule_ = rule;
  count_ = n < 3 ? 0 : n;
  if (count_ > kInline)
    many_.assign(points, points + n);
  else
    std::copy_n(points, count_, few_.begin());
  return count_ > 0 ? 1 : 0;
}

CRect CRgn::GetRgnBox() const {
  if (count_ == 0) return {};
  const CPoint* p = Points();
  CRect box(p->x, p->y, p->x, p->y);
  for (const CPoint* const end = p + count_; p != end; ++p) {
    box.left = std::min(box.left, p->x);
    box.top = std::min(box.top, p->y);
    box.right = std::max(box.right, p->x);
    box.bottom = std::max(box.bottom, p->y);
  }
  return box;
}

namespace {

/// Whether a segment meets a rectangle, borders included: it may not lie beyond one side, nor may all corners lie on
/// one side of it.
bool meets(const CPoint& a, const CPoint& b, const CRect& r) {
  if (std::max(a.x, b.x) < r.left || std::min(a.x, b.x) > r.right) return false;
  if (std::max(a.y, b.y) < r.top || std::min(a.y, b.y) > r.bottom) return false;
  const double dx = static_cast<double>(b.x) - a.x;
  const double dy = static_cast<double>(b.y) - a.y;
  int left = 0;
  int right = 0;
  for (const CPoint& c :
       {CPoint(r.left, r.top), CPoint(r.right, r.top), CPoint(r.right, r.bottom), CPoint(r.left, r.bottom)}) {
    const double side = dx * (static_cast<double>(c.y) - a.y) - dy * (static_cast<double>(c.x) - a.x);
    left += side > 0;
    right += side < 0;
  }
  return left < 4 && right < 4;
}

}  // namespace

bool CRgn::RectInRegion(const CRect& rect) const {
  const CPoint* const p = Points();
  // The number of times that the outline winds round the rectangle's first corner.
  int winding = 0;
  for (int i = 0; i < count_; ++i) {
    const CPoint& a = p[i];
    const CPoint& b = p[i + 1 < count_ ? i + 1 : 0];
    if (meets(a, b, rect)) return true;
    if ((a.y <= rect.top) == (b.y <= rect.top)) continue;
    const double side = (static_cast<double>(b.x) - a.x) * (static_cast<double>(rect.top) - a.y) -
                        (static_cast<double>(b.y) - a.y) * (static_cast<double>(rect.left) - a.x);
    const bool downward = b.y > a.y;
    if (downward == (side > 0)) winding += downward ? 1 : -1;
  }
  return rule_ == qv::FillRule::Winding ? winding != 0 : (winding & 1) != 0;
}
